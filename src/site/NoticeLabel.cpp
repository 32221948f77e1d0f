#include "site/NoticeLabel.h"

#include "site/FilePane.h"

#include <QFocusEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int ShownFor = 15000;        // milliseconds
constexpr int UndoOfferedFor = 600000; // milliseconds: nobody was asked before, so there is time to see the mistake

} // namespace

NoticeLabel::NoticeLabel(FilePane &pane, QWidget *parent) : QLabel(parent)
{
    setObjectName(u"FileNotice"_s);
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    hide();
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, &QWidget::hide);
    connect(&pane, &FilePane::Notice, this, &NoticeLabel::ShowNotice);
    connect(this, &QLabel::linkActivated, &pane, &FilePane::UndoLastDeletion);
}

void NoticeLabel::ShowNotice(const QString &text, bool canUndo)
{
    const QString shown = fontMetrics().elidedText(text, Qt::ElideMiddle, fontMetrics().averageCharWidth() * 60);
    const QString undo = canUndo ? u" <a href=\"undo\">"_s + tr("Undo") + u"</a>"_s : QString();
    setText(shown.toHtmlEscaped() + undo);
    setToolTip(text.toHtmlEscaped());
    setAccessibleName(text);
    setAccessibleDescription(canUndo ? tr("Enter takes the deletion back.") : QString());
    setFocusPolicy(canUndo ? Qt::StrongFocus : Qt::NoFocus);
    show();
    m_end.start(canUndo ? UndoOfferedFor : ShownFor);
}

/// The link is what the keyboard wants, not the label around it.
void NoticeLabel::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        focusNextPrevChild(true);
}
