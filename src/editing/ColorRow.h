#pragma once

#include <QObject>
#include <QString>

#include <optional>

class Editor;
class QCheckBox;
class QFrame;
class QPushButton;

/// A colour in a dialog: a tick whether it is set, a sample that shows it, and a button to choose another. A colour
/// that a page tells by its name stays so until another is chosen.
class ColorRow : public QObject
{
    Q_OBJECT

public:
    /// Shows `color` (0xBBGGRR) at first, not ticked. A child of `tick`.
    ColorRow(Editor &editor, QCheckBox *tick, QFrame *sample, QPushButton *choose, quint32 color);

    /// A colour as the page writes it, or that it has none.
    void Show(const std::optional<QString> &written);
    /// Nothing when it is not ticked.
    std::optional<QString> Entered() const;

private:
    void Choose();
    void ShowSample();

    Editor &m_editor;
    QCheckBox *m_tick;
    QFrame *m_sample;
    quint32 m_color;
    std::optional<QString> m_written; ///< words of the page that still hold
};
