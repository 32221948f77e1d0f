#include "shell/WindowPanes.h"

#include "platform/Twips.h"
#include "shell/LeftPane.h"
#include "shell/Splitter.h"
#include "state/AppState.h"

#include <QStyle>

using namespace Qt::StringLiterals;

namespace {
constexpr double KeyStep = 150;
} // namespace

WindowPanes::WindowPanes(AppState &app, QWidget *work, QWidget *parent)
    : QWidget(parent),
      m_app(app),
      m_left(new LeftPane(this)),
      m_splitter(new Splitter(this)),
      m_work(work),
      m_picSplitter(new QWidget(this))
{
    setObjectName(u"WindowPanes"_s);
    m_work->setParent(this); // behind the others in the order of Tab, too
    m_splitter->setObjectName(u"imgSplitter"_s);
    m_splitter->setAccessibleName(tr("Width of the left pane"));
    m_splitter->setToolTip(tr("Drag to make the left pane wider or narrower"));
    m_picSplitter->setObjectName(u"picSplitter"_s);
    m_picSplitter->setAutoFillBackground(true);
    m_picSplitter->setBackgroundRole(QPalette::Highlight);
    m_picSplitter->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_picSplitter->hide();
    ConnectSplitter();
    connect(m_left, &LeftPane::HideAsked, this, &WindowPanes::HidePane);
    connect(m_left, &LeftPane::ShowAsked, this, [this] {
        ShowPane();
        m_left->TakeFocus();
    });
}

void WindowPanes::ConnectSplitter()
{
    connect(m_splitter, &Splitter::DragStarted, this, [this](int place) {
        DragTo(place);
        m_picSplitter->raise();
        m_picSplitter->show();
    });
    connect(m_splitter, &Splitter::DraggedTo, this, &WindowPanes::DragTo);
    connect(m_splitter, &Splitter::Dropped, this, [this] {
        m_picSplitter->hide();
        SizeControls(m_dragged);
    });
    connect(m_splitter, &Splitter::DragGivenUp, m_picSplitter, &QWidget::hide);
    connect(m_splitter, &Splitter::Stepped, this,
            [this](int direction) { SizeControls(m_width + direction * KeyStep); });
    connect(m_splitter, &Splitter::SentToEnd, this,
            [this](int direction) { SizeControls(direction < 0 ? 0 : Inside().Width); });
}

PaneLayout::Area WindowPanes::Inside() const
{
    return {.Width = TwipsFromPixels(width()), .Height = TwipsFromPixels(height()), .PaneHidden = m_app.PaneHidden};
}

void WindowPanes::DragTo(int place)
{
    m_dragged = PaneLayout::DraggedTo(TwipsFromPixels(place), Inside());
    Place(m_picSplitter, {.Left = m_dragged, .Width = PaneLayout::SplitterWidth, .Height = TwipsFromPixels(height())});
}

void WindowPanes::SizeControls(double paneWidth)
{
    m_width = paneWidth;
    if (!isVisible())
        return;
    const PaneLayout::Area inside = Inside();
    if (!m_app.PaneHidden)
        m_width = PaneLayout::HeldWidth(paneWidth, inside);
    PaneLayout::SizeControls(m_boxes, paneWidth, inside);
    m_left->ShowCollapsed(m_app.PaneHidden);
    m_splitter->setVisible(!m_app.PaneHidden);
    Place(m_left, m_boxes.Pane);
    Place(m_splitter, m_boxes.Splitter);
    Place(m_work, m_boxes.Work);
}

/// Edges are cut to whole pixels, not widths: neighbours touch.
void WindowPanes::Place(QWidget *widget, const PaneLayout::Box &box)
{
    const QPoint corner(PixelsFromTwips(box.Left), PixelsFromTwips(box.Top));
    const QPoint end(PixelsFromTwips(box.Left + box.Width), PixelsFromTwips(box.Top + box.Height));
    widget->setGeometry(QStyle::visualRect(layoutDirection(), rect(),
                                           QRect(corner, QSize(end.x() - corner.x(), end.y() - corner.y()))));
}

void WindowPanes::HidePane()
{
    const bool hadFocus = m_left->isAncestorOf(focusWidget()) || m_splitter->hasFocus();
    m_app.PaneHidden = true;
    SizeControls(m_width);
    if (hadFocus)
        emit FocusLost();
    emit PaneHiddenChanged();
}

void WindowPanes::ShowPane()
{
    m_app.PaneHidden = false;
    SizeControls(PaneLayout::StartWidth);
    emit PaneHiddenChanged();
}

void WindowPanes::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    SizeControls(m_width);
}

void WindowPanes::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    SizeControls(m_width);
}
