#include "shell/LinksPanel.h"

#include "platform/Twips.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr double LinkWidth = 2500;
constexpr double FileWidth = 3000;
constexpr double PanelHeight = 2700;
} // namespace

LinksPanel::LinksPanel(QWidget *parent) : QWidget(parent), m_heading(new QLabel(this)), m_list(new QTreeWidget(this))
{
    setObjectName(u"PictureLinks"_s);
    setAccessibleName(tr("Broken links"));
    m_heading->setObjectName(u"LabelLinks"_s);
    m_heading->setTextFormat(Qt::PlainText); // holds names of files
    m_heading->setText(tr("Broken Links:"));
    m_list->setObjectName(u"ListLinks"_s);
    m_list->setAccessibleName(tr("Broken links"));
    m_list->setHeaderLabels({QString(), tr("Broken Link"), tr("File"), QString()});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->header()->setStretchLastSection(false);
    m_list->setColumnWidth(1, PixelsFromTwips(LinkWidth));
    m_list->setColumnWidth(2, PixelsFromTwips(FileWidth));
    m_list->setColumnHidden(0, true);
    m_list->setColumnHidden(3, true);
    auto *close = new QPushButton(tr("&Close"), this);
    close->setObjectName(u"CommandCloseLinks"_s);
    connect(close, &QPushButton::clicked, this, &QWidget::hide);

    auto *top = new QHBoxLayout;
    top->addWidget(m_heading, 1);
    top->addWidget(close);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->addLayout(top);
    layout->addWidget(m_list);
    setTabOrder(m_list, close);
    hide();
}

QSize LinksPanel::sizeHint() const
{
    return {QWidget::sizeHint().width(), PixelsFromTwips(PanelHeight)};
}

void LinksPanel::SetHeading(const QString &text)
{
    m_heading->setText(text);
}
