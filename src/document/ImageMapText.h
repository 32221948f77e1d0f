#pragma once

#include <QString>

/// The name of the map that an element's markup refers to: what stands behind the "#" of its useMap, up to the end of
/// the value. "" when there is none.
QString UsedMapName(const QString &markup);

/// `html` without the map of this name, from its "<MAP" to the end of its closing tag; names that differ only in case
/// count as equal when none is the same. Unchanged when there is no such map, or it never closes. Comments and scripts
/// are passed over.
QString WithoutImageMap(const QString &html, const QString &name);

/// The whole map of this name, found as above; "" when there is none.
QString ImageMapNamed(const QString &html, const QString &name);

/// `html` with `map`, the text of a whole map, in place of the map of this name; where there is none, in front of the
/// body's end tag. A page without that gets it right behind the body's start tag, but only when it is a changed map
/// (`oldMap` is not ""); else the page stays as it is.
QString WithImageMap(const QString &html, const QString &name, const QString &map, const QString &oldMap);
