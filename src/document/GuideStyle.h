#pragma once

#include <QString>

/// The style that makes table borders visible in the design view. It is put into the text that the surface loads and
/// taken out of every text that comes back; it never reaches a file but the scratch copy.
namespace GuideStyle {
QString Lower();   ///< with "<style>"
QString Upper();   ///< with "<STYLE>"
QString Content(); ///< what stands in the style element

/// `text` without any of the two (nor the escaped form that they take when "</head>" stood inside an attribute).
QString Remove(QString text);
/// `text` with the style in front of every "</head>" and "</HEAD>"; the latter comes back in lower case.
QString Insert(QString text);
/// The same with every character of `text` as it is: Remove gives it back.
QString InsertOnly(QString text);
} // namespace GuideStyle
