#pragma once

#include <QString>

/// What FixupHTML needs to know beyond the text, and what it tells about positions.
struct FixupContext
{
    bool CharsetFix = false; ///< "charset=unicode" becomes "charset=" + DocumentCharset
    QString DocumentCharset;
    qsizetype SelectionOffset = 0; ///< 1-based place in the text that is passed; 0: none
    qsizetype SelectionShift = 0;  ///< in and out: grows by 2 for each pair of quotes put in before that place
};

/// The clean-up of every text that leaves the design view: guide style out, tag and attribute names in lower case,
/// attribute values in double quotes. Script bodies keep their case, comments are skipped tag by tag. An attribute
/// without "=" ends the clean-up of its tag; required quirks like this one are told in the source.
///
/// Server-side blocks (`<? ?>`, `<% %>`) and conditional comments pass without a byte changed; a value made of a block
/// gets its quotes like any other, unless it stands in single quotes. In a comment, a tag whose ">" is that of the
/// comment's "-->" stays as it is. Made for the engine's form of a page: a value in single quotes that holds a blank,
/// as people write it, does not come out whole. What was cleaned once is not changed again. Linear in the text.
QString FixupHTML(const QString &text, FixupContext &context);
QString FixupHTML(const QString &text);
