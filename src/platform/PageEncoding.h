#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <optional>

/// Names of encodings, where pages declare them, and what can be said about bytes without a declaration.
/// All names are those of Qt's converters, as in TextEncoding.

/// The encoding that browsers mean by a label on a page ("latin1" is windows-1252, "gb2312" is GBK); "" for a label
/// that is unknown or that no page can truthfully bear, being readable (UTF-7, EBCDIC).
QByteArray EncodingOfLabel(const QByteArray &label);

/// What a page says about itself, the most binding first: <meta charset> and http-equiv in the first 4 KB outside
/// comments, then the XML declaration. A UTF-16 label means UTF-8: it was read from bytes.
QByteArrayList DeclaredEncodings(QByteArrayView page);

/// A guess from the letters of an undeclared page that is no UTF-8, the same for the same bytes everywhere; "" for
/// Western pages, and where there are too few letters to tell.
QByteArray GuessEncoding(QByteArrayView page);

/// `bytes` as text, if the encoding holds them exactly: encoding the text again gives `bytes`. No byte order mark is
/// looked for or taken away.
std::optional<QString> DecodeExactly(QByteArrayView bytes, const QByteArray &encoding);

/// `text` in an encoding, without byte order mark, characters that it cannot hold as decimal references. A surrogate
/// without its partner is no character and becomes U+FFFD, except in UTF-16. Nothing for an unknown encoding.
std::optional<QByteArray> EncodeText(const QString &text, const QByteArray &encoding);
