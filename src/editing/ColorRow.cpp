#include "editing/ColorRow.h"

#include "document/ColorText.h"
#include "document/Editor.h"

#include <QCheckBox>
#include <QFrame>
#include <QPushButton>

ColorRow::ColorRow(Editor &editor, QCheckBox *tick, QFrame *sample, QPushButton *choose, quint32 color)
    : QObject(tick), m_editor(editor), m_tick(tick), m_sample(sample), m_color(color)
{
    connect(choose, &QPushButton::clicked, this, &ColorRow::Choose);
    ShowSample();
}

void ColorRow::Show(const std::optional<QString> &written)
{
    m_written = written;
    m_tick->setChecked(written.has_value());
    if (written)
        m_color = static_cast<quint32>(RevFormatRGBString(*written));
    ShowSample();
}

std::optional<QString> ColorRow::Entered() const
{
    if (!m_tick->isChecked())
        return std::nullopt;
    const QString color = FormatRGBString(m_color);
    // "red" or a short colour would come out as another colour.
    const bool told = m_written && m_written->compare(color, Qt::CaseInsensitive) != 0;
    return told ? *m_written : color;
}

void ColorRow::Choose()
{
    if (!m_editor.ChooseAColor(m_color))
        return;
    m_color = m_editor.ChosenColor;
    m_written.reset();
    m_tick->setChecked(true);
    ShowSample();
}

void ColorRow::ShowSample()
{
    const QColor color(int(m_color & 0xFF), int((m_color >> 8) & 0xFF), int((m_color >> 16) & 0xFF));
    QPalette palette = m_sample->palette();
    palette.setColor(QPalette::Window, color);
    m_sample->setPalette(palette);
    m_sample->setToolTip(color.name().toUpper());
}
