#pragma once

#include <QString>

/// Text routines over one tag of a page, by position. Positions are 1-based UTF-16 units; a start below 1 counts as 1.
/// None of them fails or loops on bad input; each is linear in what lies from `start` to the tag's end.

enum class TagMode { Read = 0, Set = 1, SetFlag = 2 };

/// Reads or rewrites one attribute of a tag in page text.
/// `start` is the position of the tag's "<", or anything before the attribute. The tag reaches to the first ">" from
/// there, even one inside quotes. `name` is upper case and matches without word boundary; a place where a blank
/// follows the name wins over an earlier one without.
/// Read      the value without quotes; "" when absent.
/// Set       `text` with the value replaced; added before ">" when absent; removed when `value` is "" (the blank
///           after it stays). The old quotes go: a caller who wants quotes passes them within `value`.
/// SetFlag   `text` with the bare attribute added (`value` "1") or removed (anything else).
///
/// An attribute without "=" after it answers "<ON>" to Read and Set. No ">" from `start` on: "" in every mode.
/// `quoted`, when given, tells whether the value that was found stood in double quotes.
QString TagValue(const QString &text, qsizetype start, const QString &name, const QString &value, TagMode mode,
                 bool *quoted = nullptr);

/// TagValue for dialogs: finds the attribute by its whole name within the tag that starts at or after `start` (not
/// inside VLINK, VALIGN, BORDERCOLOR or a value), so that an attribute is never mistaken for another. "" when absent;
/// "<ON>" for a flag attribute, one without "=" of its own.
QString ReadAttribute(const QString &text, qsizetype start, const QString &name);

/// Sets (`value` not empty) or removes the attribute found as ReadAttribute finds it; an absent one is added before
/// the tag's ">". A flag attribute that gets a value becomes one with a value. `text` unchanged when there is no tag;
/// never "" or "<ON>" in place of the page's text.
QString WriteAttribute(const QString &text, qsizetype start, const QString &name, const QString &value, TagMode mode);
