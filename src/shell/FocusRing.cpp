#include "shell/FocusRing.h"

#include <QApplication>

namespace {

bool Holds(const QWidget *area, const QWidget *widget)
{
    return area && widget && (area == widget || area->isAncestorOf(widget));
}

bool CanTake(const QWidget *widget)
{
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus);
}

} // namespace

FocusRing::FocusRing(QObject *parent) : QObject(parent)
{
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        for (const QPointer<QWidget> &area : m_areas) {
            if (Holds(area, now))
                m_last[area] = now;
        }
    });
}

void FocusRing::Add(QWidget *area)
{
    m_areas.append(area);
}

QWidget *FocusRing::FirstIn(QWidget *area)
{
    if (CanTake(area))
        return area;
    for (QWidget *next = area->nextInFocusChain(); next != area; next = next->nextInFocusChain()) {
        if (Holds(area, next) && CanTake(next))
            return next;
    }
    return nullptr;
}

void FocusRing::Enter(QWidget *control)
{
    control->window()->setAttribute(Qt::WA_KeyboardFocusChange); // else styles spare themselves the frame
    control->setFocus(Qt::OtherFocusReason);
}

QWidget *FocusRing::Entry(QWidget *area) const
{
    QWidget *last = m_last.value(area);
    return last && Holds(area, last) && CanTake(last) ? last : FirstIn(area);
}

int FocusRing::Current() const
{
    for (int i = 0; i < m_areas.size(); ++i) {
        if (Holds(m_areas[i], QApplication::focusWidget()))
            return i;
    }
    return -1;
}

void FocusRing::Move(int step)
{
    const int count = static_cast<int>(m_areas.size());
    const int start = Current() < 0 && step < 0 ? 0 : Current();
    for (int i = 1; i <= count; ++i) {
        QWidget *area = m_areas[(start + i * step + count * 2) % count];
        QWidget *entry = area ? Entry(area) : nullptr;
        if (entry) {
            Enter(entry);
            return;
        }
    }
}
