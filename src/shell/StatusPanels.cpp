#include "shell/StatusPanels.h"

#include "shell/ElidedLabel.h"

#include <QEvent>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

StatusPanels::StatusPanels(QStatusBar *bar)
    : QObject(bar),
      m_bar(bar),
      m_text(new ElidedLabel(Qt::ElideRight, bar)),
      m_path(new ElidedLabel(Qt::ElideMiddle, bar)),
      m_progress(new QProgressBar(bar))
{
    m_text->setObjectName(u"StatusBar1Panel1"_s);
    m_text->setAccessibleName(tr("Page status"));
    m_path->setObjectName(u"StatusBar1Panel2"_s);
    m_path->setAccessibleName(tr("File of the page"));
    m_progress->setObjectName(u"ProgressReport"_s);
    m_progress->setAccessibleName(tr("Progress"));
    m_progress->setRange(0, 0); // the engine does not tell how far it is
    m_progress->setTextVisible(false);
    m_progress->hide();
    bar->addWidget(m_text, 1);
    bar->addPermanentWidget(m_progress);
    bar->addPermanentWidget(m_path);
    auto *update = new QToolButton(bar);
    update->setObjectName(u"StatusBar1Update"_s);
    update->setText(tr("Updates"));
    update->setAccessibleName(tr("Updates"));
    update->setToolTip(tr("Read in the browser how to bring the program up to date"));
    update->setAutoRaise(true);
    update->setFocusPolicy(Qt::TabFocus);
    connect(update, &QToolButton::clicked, this, &StatusPanels::UpdateAsked);
    bar->addPermanentWidget(update);
    bar->installEventFilter(this);
}

void StatusPanels::ShowText(const QString &text)
{
    m_text->setText(text);
    m_text->setAccessibleDescription(text);
}

void StatusPanels::ShowPath(const QString &path)
{
    m_path->setText(path);
    m_path->setAccessibleDescription(path);
    m_path->setToolTip(Qt::mightBeRichText(path) ? path.toHtmlEscaped() : path);
    SizePanels();
}

void StatusPanels::ShowProgress(bool show)
{
    if (m_progress->maximum() == 0)
        m_progress->setVisible(show);
}

void StatusPanels::ShowProgressOf(int done, int parts)
{
    m_progress->setRange(0, parts);
    m_progress->setValue(done);
    m_progress->setVisible(parts > 0);
}

bool StatusPanels::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_bar && event->type() == QEvent::Resize)
        SizePanels();
    return QObject::eventFilter(watched, event);
}

void StatusPanels::SizePanels()
{
    // The path gets what it needs, up to half of the bar; the title has the rest.
    const int needed = m_path->sizeHint().width();
    m_path->setFixedWidth(qMin(needed, m_bar->width() / 2));
    m_progress->setMaximumWidth(m_bar->width() / 6);
}

QWidget *StatusPanels::Bar() const
{
    return m_bar;
}
