#include "shell/HelpWindow.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QScreen>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>
#include <QWindow>

using namespace Qt::StringLiterals;

HelpWindow::HelpWindow() : m_text(new QTextBrowser(this))
{
    setObjectName(u"HelpWindow"_s);
    setWindowTitle(tr("Inkloom Help"));
    setAttribute(Qt::WA_QuitOnClose, false); // the program ends with its main window
    resize(QSize(820, 700).boundedTo(screen()->availableSize() * 9 / 10));
    m_text->setObjectName(u"HelpText"_s);
    m_text->setAccessibleName(tr("Page of the manual"));
    m_text->setOpenLinks(false);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->document()->setDocumentMargin(20);
    setCentralWidget(m_text);
    connect(m_text, &QTextBrowser::anchorClicked, this, &HelpWindow::FollowLink);
    BuildToolBar();
}

void HelpWindow::BuildToolBar()
{
    QAction *back = AddButton(u"HelpBack"_s, tr("&Back"), tr("To the page before"), u"go-previous"_s,
                              {Qt::ALT | Qt::Key_Left, Qt::Key_Backspace});
    QAction *forward = AddButton(u"HelpForward"_s, tr("&Forward"), tr("To the page that was left by Back"),
                                 u"go-next"_s, {Qt::ALT | Qt::Key_Right});
    QAction *home =
        AddButton(u"HelpHome"_s, tr("&Contents"), tr("To the start page"), u"go-home"_s, {Qt::ALT | Qt::Key_Home});
    QAction *index = AddButton(u"HelpIndex"_s, tr("&Index"), tr("All subjects from A to Z"), u"view-list-text"_s,
                               {Qt::CTRL | Qt::Key_I});
    QAction *close =
        AddButton(u"HelpClose"_s, tr("C&lose"), tr("Close the manual"), u"window-close"_s, {Qt::CTRL | Qt::Key_W});
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(m_text, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(m_text, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    connect(back, &QAction::triggered, m_text, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, m_text, &QTextBrowser::forward);
    connect(home, &QAction::triggered, this, [this] { Go(u"index.htm"_s); });
    connect(index, &QAction::triggered, this, [this] { Go(u"alphabetical.htm"_s); });
    connect(close, &QAction::triggered, this, &QWidget::close);
}

QAction *HelpWindow::AddButton(const QString &name, const QString &text, const QString &tip, const QString &icon,
                               const QList<QKeySequence> &keys)
{
    auto *bar = findChild<QToolBar *>();
    if (!bar) {
        bar = addToolBar(tr("Manual"));
        bar->setMovable(false);
        bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        bar->setContextMenuPolicy(Qt::PreventContextMenu);
    }
    auto *action = new QAction(QIcon::fromTheme(icon), text, this);
    action->setObjectName(name);
    action->setShortcuts(keys);
    action->setToolTip(tip + u" ("_s + keys.first().toString(QKeySequence::NativeText) + u')');
    bar->addAction(action);
    bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    return action;
}

void HelpWindow::ShowPage(const QString &folder, const QString &page)
{
    m_folder = folder;
    Go(page);
    RiseAboveDialog();
    show();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
    m_text->setFocus();
}

/// A modal dialog lets the user at no other window but those that belong to it. Whether that holds is looked at when a
/// window comes up, so the manual goes and comes again.
void HelpWindow::RiseAboveDialog()
{
    const QWidget *dialog = QApplication::activeModalWidget();
    QWindow *owner = dialog ? dialog->windowHandle() : nullptr;
    winId(); // makes the window
    if (windowHandle()->transientParent() == owner)
        return;
    hide();
    windowHandle()->setTransientParent(owner);
}

void HelpWindow::Go(const QString &page)
{
    const QUrl url = QUrl::fromLocalFile(m_folder + u'/' + page);
    if (!QFileInfo(url.toLocalFile()).isFile()) {
        m_text->setPlainText(
            tr("The manual is not installed: there is no file %1.").arg(QDir::toNativeSeparators(url.toLocalFile())));
    } else if (m_text->source() != url) {
        m_text->setSource(url);
    }
}

/// Pages of the manual stay here; an address in the network is the browser's affair.
void HelpWindow::FollowLink(const QUrl &link)
{
    if (link.scheme() == "http"_L1 || link.scheme() == "https"_L1)
        QDesktopServices::openUrl(link);
    else
        m_text->setSource(link);
}

void HelpWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QMainWindow::keyPressEvent(event);
}
