#pragma once

#include <QString>

#include <array>
#include <optional>

/// Colours and background picture of a page, as the attributes of its body tag. An empty optional stands for an
/// attribute that is not there.
struct BodyAttributes
{
    enum Color { BgColor, Text, Link, VisitedLink, ActiveLink };
    static constexpr int ColorCount = 5;

    std::array<std::optional<QString>, ColorCount> Colors; ///< as the page writes them
    std::optional<QString> Background;                     ///< address of the picture
    bool HasBody = false;                                  ///< there is a body tag

    bool operator==(const BodyAttributes &) const = default;
};

BodyAttributes ReadBodyAttributes(const QString &html);

/// Sets and removes the attributes of the body tag. Those that are as they were are left as they are written; a text
/// without a body tag comes back as it is.
QString WriteBodyAttributes(QString html, const BodyAttributes &attributes);
