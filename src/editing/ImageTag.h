#pragma once

#include <QString>

/// The tag of a picture as the graphic dialog reads and writes it. Text only: no page and no widgets here.

/// What the dialog shows of a tag. "" stands for an attribute that is not there.
struct ImageAttributes
{
    QString Source; ///< address, as a browser reads it
    QString Alt;    ///< words; "&#13;&#10;" of the page is a blank, and blanks in a row are one
    QString Border;
    QString HSpace;
    QString VSpace;
    QString Align;  ///< in upper case, as it is written
    QString Width;  ///< a number, or one with "%"
    QString Height; ///< as Width
    QString UseMap; ///< "#" and the name of the image map

    bool operator==(const ImageAttributes &) const = default;
};

/// What a tag starts from that is put in anew. Its source is always replaced.
inline const QString NewImageTag = QStringLiteral("<IMG SRC=X>");

ImageAttributes ReadImageTag(const QString &tag);

/// Writes the attributes in which `wanted` differs from `shown`, which is what ReadImageTag gave; all others stay as
/// they are written. Source and alternate text come in double quotes, the rest only where it needs them; what is ""
/// goes. Server-side code within a value stays code.
QString WriteImageTag(QString tag, const ImageAttributes &shown, const ImageAttributes &wanted);

/// The first picture's tag in a markup, and the markup with another text in its place; "" and the markup itself when
/// there is none.
QString FirstImageTag(const QString &markup);
QString WithFirstImageTag(const QString &markup, const QString &tag);

/// `markup` as a link to `address`. The blank before "=" is on purpose: it has always been written so.
QString LinkedMarkup(const QString &markup, const QString &address);

/// How a page refers to a file: seen from the page, with "/", and with "%", "#" and "?" encoded, which mean something
/// else in an address. A page without a name has no folder to see it from: the file's own address.
QString AddressOfFile(const QString &path, const QString &page);
