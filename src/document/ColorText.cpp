#include "document/ColorText.h"

using namespace Qt::StringLiterals;

QString FormatRGBString(quint32 color)
{
    const QString digits = QString::number(color, 16).toUpper().rightJustified(6, u'0');
    return u'#' + digits.last(2) + digits.sliced(2, 2) + digits.first(2);
}

qint32 RevFormatRGBString(const QString &text)
{
    QString digits = text;
    digits.remove(u'#');
    // Taken from both ends, so that a text of fewer than six characters uses some of them twice.
    const QString reordered = digits.right(2) + digits.mid(2, 2) + digits.left(2);
    qint32 color = 0;
    for (const QChar c : reordered) {
        const qsizetype digit = QStringView(u"0123456789ABCDEF").indexOf(c.toUpper());
        if (digit < 0)
            break;
        color = color * 16 + qint32(digit);
    }
    return color;
}
