#pragma once

#include <QString>
#include <QStringView>

/// The start tag `written` changed to say what `wanted` says, as little as possible: attributes that mean the same stay
/// as they are spelt, a changed value keeps its place and its quotes, new attributes come last. Both are whole tags of
/// one name; `wanted` is in engine form.
QString PatchTag(const QString &written, const QString &wanted);

/// Text (no markup) changed in the same way: characters that read the same at both ends keep their spelling.
QString PatchText(QStringView written, QStringView wanted);
