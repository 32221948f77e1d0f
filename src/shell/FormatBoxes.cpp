#include "shell/FormatBoxes.h"

#include "document/Editor.h"
#include "platform/surface/DesignSurface.h"

#include <QComboBox>
#include <QEvent>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

/// The family of each row of the font box.
const QStringList &FontNames()
{
    static const QStringList names{u"Times New Roman"_s, u"Arial"_s,   u"Tahoma"_s,
                                   u"Courier"_s,         u"Verdana"_s, u"Wingdings"_s};
    return names;
}

/// A value that is none of the rows is shown all the same.
void Show(QComboBox *box, const QString &text)
{
    box->setPlaceholderText(text);
    box->setCurrentIndex(box->findText(text, Qt::MatchFixedString));
}

} // namespace

FormatBoxes::FormatBoxes(Editor &editor, QToolBar &bar)
    : m_editor(editor),
      m_styles(AddBox(bar, u"ComboStyle"_s, tr("Style"),
                      {u"Normal"_s, u"Heading 1"_s, u"Heading 2"_s, u"Heading 3"_s, u"Heading 4"_s, u"Heading 5"_s,
                       u"Heading 6"_s})),
      m_fonts(AddBox(bar, u"FontCombo"_s, tr("Font"), FontNames())),
      m_sizes(
          AddBox(bar, u"FontSizeCombo"_s, tr("Font Size"), {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s}))
{
    // `activated` is the user's choice alone: a box that is made to follow the selection says nothing.
    connect(m_styles, &QComboBox::activated, this, &FormatBoxes::ComboStyle_Click);
    connect(m_fonts, &QComboBox::activated, this, &FormatBoxes::FontCombo_Click);
    connect(m_sizes, &QComboBox::activated, this, &FormatBoxes::FontSizeCombo_Click);
}

QComboBox *FormatBoxes::AddBox(QToolBar &bar, const QString &name, const QString &tip, const QStringList &rows)
{
    auto *box = new QComboBox(&bar);
    box->setObjectName(name);
    box->setAccessibleName(tip);
    box->setToolTip(tip);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    box->addItems(rows);
    box->installEventFilter(this);
    bar.addWidget(box);
    return box;
}

/// Turning the wheel over a box on the way down a page would change the page.
bool FormatBoxes::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Wheel)
        return QObject::eventFilter(watched, event);
    event->ignore();
    return true;
}

void FormatBoxes::Follow()
{
    const DesignSurface &surface = m_editor.Surface();
    Show(m_styles, surface.ShownValue(DECMD_GETBLOCKFMT).toString());
    Show(m_fonts, surface.ShownValue(DECMD_GETFONTNAME).toString());
    Show(m_sizes, surface.ShownValue(DECMD_GETFONTSIZE).toString());
}

void FormatBoxes::SetOn(bool on)
{
    for (QComboBox *box : {m_styles, m_fonts, m_sizes})
        box->setEnabled(on);
}

void FormatBoxes::ShowBlockFormats(const QStringList &names)
{
    m_styles->clear();
    m_styles->addItems(names);
    m_sizes->setCurrentIndex(0);
}

void FormatBoxes::FontCombo_Click(int row)
{
    if (m_editor.Page().FormatBoxesReady && row < FontNames().size())
        m_editor.Surface().ExecCommand(DECMD_SETFONTNAME, ExecOption::DoDefault, FontNames().value(row));
    m_editor.Surface().setFocus();
}

void FormatBoxes::FontSizeCombo_Click(int row)
{
    if (m_editor.Page().FormatBoxesReady)
        m_editor.Surface().ExecCommand(DECMD_SETFONTSIZE, ExecOption::DoDefault, row + 1);
    m_editor.Surface().setFocus();
}

void FormatBoxes::ComboStyle_Click(int row)
{
    m_editor.Surface().ExecCommand(DECMD_SETBLOCKFMT, ExecOption::DoDefault, m_styles->itemText(row));
    m_editor.Surface().setFocus();
}
