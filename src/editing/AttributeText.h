#pragma once

#include <QString>

/// Values of attributes as the dialogs show them, and as tags have them. Server-side code in a value is the same in
/// both.

bool HasServerCode(const QString &value);

/// What a browser reads where `written` stands in a tag: character references are decoded.
QString DecodedValue(const QString &written);
/// DecodedValue of an attribute that is found as ReadAttribute finds it; "" also for one without a value.
QString DecodedAttribute(const QString &text, qsizetype start, const QString &name);

/// The way back: in double quotes, fit for a tag that ends at its first ">".
QString QuotedValue(const QString &value);
/// As it is to stand behind the "=" of an attribute: plain values bare, all others as QuotedValue.
QString AttributeText(const QString &value);
