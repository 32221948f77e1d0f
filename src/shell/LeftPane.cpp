#include "shell/LeftPane.h"

#include "shell/FocusRing.h"
#include "shell/PaneStrip.h"

#include <QHBoxLayout>
#include <QStackedLayout>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

LeftPane::LeftPane(QWidget *parent) : QWidget(parent), m_states(new QStackedLayout(this)), m_strip(new PaneStrip(this))
{
    setObjectName(u"LeftPane"_s);
    setAccessibleName(tr("Files and form builder"));
    m_strip->setObjectName(u"CommandShowAddress"_s);
    m_strip->setAccessibleName(tr("Show Files/Form Builder Pane"));
    m_strip->setToolTip(tr("Show Files/Form Builder Pane"));

    auto *open = new QWidget(this);
    m_tabs = new QTabBar(open);
    m_tabs->setObjectName(u"TabStrip1"_s);
    m_tabs->setAccessibleName(tr("Pages of the left pane"));
    m_tabs->setDocumentMode(true);
    m_tabs->setExpanding(false);
    m_tabs->setDrawBase(true);
    m_hide = HideButton(u"CommandHide"_s, open);
    m_hide2 = HideButton(u"CommandHide2"_s, open);
    m_pages = new QStackedWidget(open);

    auto *top = new QHBoxLayout;
    top->setSpacing(0);
    top->addWidget(m_tabs, 1);
    top->addWidget(m_hide);
    top->addWidget(m_hide2);
    auto *layout = new QVBoxLayout(open);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(m_pages, 1);
    m_states->addWidget(open);
    m_states->addWidget(m_strip);

    connect(m_tabs, &QTabBar::currentChanged, this, &LeftPane::ShowPage);
    connect(m_strip, &PaneStrip::clicked, this, &LeftPane::ShowAsked);
}

QToolButton *LeftPane::HideButton(const QString &name, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(name);
    button->setAccessibleName(tr("Hide Files/Form Builder Pane"));
    button->setToolTip(tr("Hide Files/Form Builder Pane"));
    button->setArrowType(Qt::LeftArrow); // drawn in the palette's colours
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QToolButton::clicked, this, &LeftPane::HideAsked);
    return button;
}

void LeftPane::AddPage(const QString &title, const QString &tip, QWidget *page)
{
    m_pages->addWidget(page);
    m_tabs->setTabToolTip(m_tabs->addTab(title), tip);
    m_tabs->updateGeometry(); // unseen tabs do not tell their layout that they have grown
    ShowPage(m_tabs->currentIndex());
}

void LeftPane::ShowFirstPage()
{
    m_tabs->setCurrentIndex(0);
}

void LeftPane::ShowPage(int index)
{
    m_pages->setCurrentIndex(index);
    m_hide->setVisible(index == 0);
    m_hide2->setVisible(index != 0);
}

void LeftPane::ShowCollapsed(bool collapsed)
{
    m_states->setCurrentIndex(collapsed ? 1 : 0);
}

void LeftPane::TakeFocus()
{
    QWidget *area = m_states->currentIndex() == 1 ? static_cast<QWidget *>(m_strip) : m_pages;
    if (QWidget *first = FocusRing::FirstIn(area))
        FocusRing::Enter(first);
}
