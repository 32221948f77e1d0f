#include "shell/WorkArea.h"

#include "platform/PreviewView.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/LinksPanel.h"
#include "shell/PagePropertiesPanel.h"

#include <QEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

WorkArea::WorkArea(QWidget *parent)
    : QWidget(parent),
      m_tabs(new QTabBar(this)),
      m_views(new QStackedWidget(this)),
      m_surface(new DesignSurface(this)),
      m_source(new SourceEditor(this)),
      m_properties(new PagePropertiesPanel(this)),
      m_preview(new PreviewView(this)),
      m_links(new LinksPanel(this)),
      m_whiteOut(new QLabel(tr("Saving..."), m_views))
{
    m_tabs->setObjectName(u"TabStrip2"_s);
    m_tabs->setAccessibleName(tr("Views of the page"));
    m_tabs->setDocumentMode(true);
    m_tabs->setExpanding(false);
    m_tabs->setDrawBase(true);
    m_surface->setObjectName(u"DHTMLEdit1"_s);
    m_surface->setAccessibleName(tr("Page as it looks"));
    m_source->setObjectName(u"Source1"_s);
    m_source->setAccessibleName(tr("HTML source"));
    m_properties->setObjectName(u"PictureProperties"_s);
    m_properties->setAccessibleName(tr("Page properties"));
    m_preview->setObjectName(u"WebBrowser1"_s);
    m_preview->setAccessibleName(tr("Preview"));
    auto *publish = new QLabel(tr("Publishing is not available yet."), this);
    publish->setObjectName(u"PictureFTP"_s);
    publish->setAlignment(Qt::AlignCenter);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_tabs);
    layout->addWidget(m_views, 1);
    layout->addWidget(m_links);
    m_whiteOut->setObjectName(u"PictureWhiteOut"_s);
    m_whiteOut->setAlignment(Qt::AlignCenter);
    m_whiteOut->setAutoFillBackground(true);
    m_whiteOut->setBackgroundRole(QPalette::Base);
    m_whiteOut->setForegroundRole(QPalette::Text);
    m_whiteOut->hide();
    m_views->installEventFilter(this);

    AddView(ViewTab::Normal, tr("Normal"), tr("Edit the page as it looks"), m_surface);
    AddView(ViewTab::PageProperties, tr("Page Properties"), tr("Title, style sheet and description of the page"),
            m_properties);
    AddView(ViewTab::HtmlSource, tr("HTML Source"), tr("Edit the text of the page"), m_source);
    AddView(ViewTab::Preview, tr("Preview"), tr("The page as a browser shows it, unsaved words too"), m_preview);
    AddView(ViewTab::Publish, tr("Publish (FTP)"), tr("Bring the page to a server"), publish);
    connect(m_tabs, &QTabBar::currentChanged, this, [this](int index) { emit ViewChosen(ViewOfTab(index)); });
}

void WorkArea::AddView(ViewTab view, const QString &title, const QString &tip, QWidget *widget)
{
    const int index = m_tabs->addTab(title);
    m_tabs->setTabData(index, static_cast<int>(view));
    m_tabs->setTabToolTip(index, tip);
    m_views->addWidget(widget);
}

void WorkArea::Choose(ViewTab view)
{
    m_tabs->setCurrentIndex(TabOfView(view));
}

void WorkArea::ShowView(ViewTab view)
{
    const int index = TabOfView(view);
    if (index < 0)
        return;
    const QSignalBlocker blocker(m_tabs);
    m_tabs->setCurrentIndex(index);
    m_views->setCurrentIndex(index);
    if (view != ViewTab::Preview)
        m_preview->Navigate({}); // its scripts and sounds end when it is not seen
    if (!m_tabs->hasFocus())
        TakeFocus();
}

QWidget *WorkArea::Views() const
{
    return m_views;
}

void WorkArea::TakeFocus()
{
    m_views->currentWidget()->setFocus();
}

void WorkArea::ShowWhiteOut(bool saving)
{
    const bool cover = saving && m_views->currentWidget() == m_source;
    if (cover) {
        m_whiteOut->setGeometry(m_views->rect());
        m_whiteOut->raise();
    }
    m_whiteOut->setVisible(cover);
}

bool WorkArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_views && event->type() == QEvent::Resize)
        m_whiteOut->setGeometry(m_views->rect());
    return QWidget::eventFilter(watched, event);
}

ViewTab WorkArea::Neighbour(int steps) const
{
    const int count = m_tabs->count();
    return ViewOfTab((m_tabs->currentIndex() + steps + count) % count);
}

ViewTab WorkArea::ViewOfTab(int index) const
{
    return static_cast<ViewTab>(m_tabs->tabData(index).toInt());
}

int WorkArea::TabOfView(ViewTab view) const
{
    for (int index = 0; index < m_tabs->count(); ++index) {
        if (ViewOfTab(index) == view)
            return index;
    }
    return -1;
}
