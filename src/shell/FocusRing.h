#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

/// The areas of the window that F6 goes around. Each remembers which of its controls had the keyboard last.
class FocusRing : public QObject
{
    Q_OBJECT

public:
    explicit FocusRing(QObject *parent = nullptr);

    /// At the end of the ring.
    void Add(QWidget *area);
    /// The keyboard goes to the next area that can take it, -1: to the one before, around the end.
    void Move(int step);

    /// Gives the keyboard to a control, as the Tab key does: it shows that it has it.
    static void Enter(QWidget *control);
    /// The first control within `area`, itself included, that takes the Tab key now; nullptr: none.
    static QWidget *FirstIn(QWidget *area);

private:
    int Current() const;
    QWidget *Entry(QWidget *area) const;

    QList<QPointer<QWidget>> m_areas;
    QHash<QWidget *, QPointer<QWidget>> m_last; ///< by area
};
