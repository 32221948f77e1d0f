#pragma once

#include "support/SurfaceRig.h"

/// Keys as a test writes them: "ab Enter S+Enter Backspace": words are keys, "C+" and "S+" hold Ctrl and Shift, and
/// what is no key's name is typed letter by letter ("_" types a blank).
inline void PressKeys(SurfaceRig &rig, const QString &keys)
{
    static const QHash<QString, Qt::Key> names{
        {QStringLiteral("Enter"), Qt::Key_Return},  {QStringLiteral("Backspace"), Qt::Key_Backspace},
        {QStringLiteral("Delete"), Qt::Key_Delete}, {QStringLiteral("Tab"), Qt::Key_Tab},
        {QStringLiteral("Home"), Qt::Key_Home},     {QStringLiteral("End"), Qt::Key_End},
        {QStringLiteral("Left"), Qt::Key_Left},     {QStringLiteral("Right"), Qt::Key_Right},
        {QStringLiteral("A"), Qt::Key_A},           {QStringLiteral("B"), Qt::Key_B},
        {QStringLiteral("X"), Qt::Key_X},
    };
    for (QString word : keys.split(u' ', Qt::SkipEmptyParts)) {
        Qt::KeyboardModifiers modifiers;
        for (; word.size() > 2 && word[1] == u'+'; word.remove(0, 2))
            modifiers |= word[0] == u'C' ? Qt::ControlModifier : Qt::ShiftModifier;
        if (names.contains(word))
            rig.Key(names.value(word), modifiers);
        else
            rig.Type(word.replace(u'_', u' '));
    }
}
