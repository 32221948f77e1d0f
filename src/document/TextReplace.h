#pragma once

#include <QString>

/// `text` with every `what` replaced by `with`, found from left to right in the text as it was. Linear however many
/// there are, which QString::replace is not: it moves the rest of the text once for each batch of finds.
QString ReplaceAll(const QString &text, QStringView what, QStringView with);
