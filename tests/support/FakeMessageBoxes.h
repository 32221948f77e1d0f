#pragma once

#include "platform/MessageBoxes.h"

#include <QList>
#include <QTest>

#include <functional>
#include <utility>

/// Answers message boxes by the list: `Expect` announces one, in the order of their coming. The test fails on a box
/// that nobody announced, on one whose text or buttons do not fit what was announced, and on an announced one that
/// never came. Make one a test function; a longer lived one needs `Verify` in cleanup().
class FakeMessageBoxes : public MessageBoxes
{
public:
    struct Asked
    {
        QString Text;
        Buttons Offered = Buttons::Ok;
        Icon Sign = Icon::None;
        QWidget *Parent = nullptr;
    };

    ~FakeMessageBoxes() override { Verify(); }

    /// The next box is answered so; its text must hold `part`.
    void Expect(Answer answer, const QString &part = {}) { m_expected.append({answer, part}); }

    Answer Ask(QWidget *parent, const QString &text, Buttons buttons, Icon icon) override
    {
        Boxes.append({text, buttons, icon, parent});
        if (m_expected.isEmpty()) {
            OnFault(QStringLiteral("Nobody announced the message box: ") + text);
            return ClosingAnswer(buttons);
        }
        const Expected next = m_expected.takeFirst();
        if (WhileAsking)
            WhileAsking();
        if (!text.contains(next.Part))
            OnFault(QStringLiteral("The message box \"%1\" does not say \"%2\"").arg(text, next.Part));
        if (!IsOffered(next.Reply, buttons)) {
            OnFault(QStringLiteral("The message box does not offer the answer announced for it: ") + text);
            return ClosingAnswer(buttons);
        }
        return next.Reply;
    }

    /// All announced boxes have come; forgets those that have not.
    void Verify()
    {
        for (const Expected &missing : std::exchange(m_expected, {}))
            OnFault(QStringLiteral("An announced message box never came: \"%1\"").arg(missing.Part));
    }

    static Answer ClosingAnswer(Buttons buttons)
    {
        switch (buttons) {
        case Buttons::YesNoCancel:
        case Buttons::OkCancel:
            return Answer::Cancel;
        case Buttons::YesNo:
            return Answer::No;
        default:
            return Answer::Ok;
        }
    }

    static bool IsOffered(Answer answer, Buttons buttons)
    {
        switch (answer) {
        case Answer::Ok:
            return buttons == Buttons::Ok || buttons == Buttons::OkCancel;
        case Answer::Cancel:
            return buttons == Buttons::YesNoCancel || buttons == Buttons::OkCancel;
        default:
            return buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel;
        }
    }

    QList<Asked> Boxes;                ///< all that was asked, in order
    std::function<void()> WhileAsking; ///< what happens behind an announced box while it is up
    /// What a fault does; fails the running test unless replaced.
    std::function<void(const QString &)> OnFault = [](const QString &fault) {
        QTest::qFail(qPrintable(fault), __FILE__, __LINE__);
    };

private:
    struct Expected
    {
        Answer Reply;
        QString Part;
    };
    QList<Expected> m_expected;
};
