#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// One key of the text of an INI file (UTF-8). Names compare without regard to ASCII case and to blanks around them; a
/// section name reaches to its first "]". Of a key that stands twice the last one counts. Lines that are no key, no
/// section and no comment are left alone.

/// Value of a key, without the blanks around it, cut at a NUL; nothing when the key is absent.
std::optional<QString> IniValue(const QByteArray &ini, const QString &section, const QString &key);

/// `ini` with one key changed and every other byte as it was. A new key goes behind the last one of its section, a new
/// section to the end. Line breaks in the value become blanks. Nothing for names that an INI file cannot hold.
std::optional<QByteArray> WithIniValue(const QByteArray &ini, const QString &section, const QString &key,
                                       const QString &value);
