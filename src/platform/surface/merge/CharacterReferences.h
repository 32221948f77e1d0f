#pragma once

#include <QList>
#include <QString>
#include <QStringView>

/// Where character references (`&eacute;`, `&#233;`) stand: a name without ";" in front of "=", a letter or a digit is
/// none in an attribute value.
enum class ReferencePlace { Text, Attribute };

/// What a parser makes of page text: references decoded, CR LF and CR as LF.
QString DecodeReferences(QStringView text, ReferencePlace place);

/// The same, and where each unit comes from: `starts` gets for every unit of the result the place in `text` of what
/// made it, and the text's size as one more.
QString DecodeReferences(QStringView text, ReferencePlace place, QList<qsizetype> &starts);
