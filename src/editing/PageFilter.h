#pragma once

#include <QByteArrayView>
#include <QString>

/// False only when a page made of these bytes surely shows `text` nowhere, whatever its encoding: such a page need not
/// be loaded to be searched. One pass over the bytes for each word of the text that is there.
///
/// It looks for the runs of plain letters and digits in `text`, as they stand and as numeric references, with tags
/// between them or without. Where it cannot tell (scripts, tables or server code amid what may be the word, text
/// in which tags do not count, encodings of two bytes a letter), or there are none, the answer is true.
bool MayShow(QByteArrayView page, const QString &text, Qt::CaseSensitivity sensitivity);
