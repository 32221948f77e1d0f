#include "platform/surface/PasteSource.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// Markup with the address that its relative addresses belong to.
constexpr auto OwnType = "application/x-inkloom-html"_L1;

/// A browser's "copy image": the picture itself is worth more than an address that no edited page fetches.
bool IsJustAPicture(const QString &html)
{
    static const QRegularExpression pictures(u"<img\\b"_s, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tags(u"<!--.*?-->|<[^>]*>|\\s"_s, QRegularExpression::DotMatchesEverythingOption);
    constexpr qsizetype longest = 20000;
    return html.size() < longest && html.count(pictures) == 1 && QString(html).remove(tags).isEmpty();
}

QString WithoutNuls(QString text)
{
    return text.remove(QChar::Null); // some programs count the end mark of their strings in
}

} // namespace

bool HasPasteSource(const QMimeData &data)
{
    return data.hasFormat(OwnType) || data.hasHtml() || data.hasText() || data.hasUrls() || data.hasImage();
}

PasteSource ReadPasteSource(const QMimeData &data, PasteAs as)
{
    using Kind = PasteSource::Kind;
    if (as == PasteAs::Text)
        return data.hasText() ? PasteSource{.What = Kind::Text, .Text = data.text()} : PasteSource{};
    if (data.hasFormat(OwnType)) {
        const QJsonObject own = QJsonDocument::fromJson(data.data(OwnType)).object();
        return {.What = Kind::Own, .Html = own.value("html"_L1).toString(), .Base = own.value("base"_L1).toString()};
    }
    const QString html = data.hasHtml() ? WithoutNuls(data.html()) : QString();
    if (!html.isEmpty() && !(data.hasImage() && IsJustAPicture(html)))
        return {.What = Kind::Html, .Html = html};
    if (data.hasUrls() && !data.urls().isEmpty())
        return {.What = Kind::Links, .Text = data.text(), .Links = data.urls()};
    if (data.hasImage()) {
        const auto picture = qvariant_cast<QImage>(data.imageData());
        if (!picture.isNull())
            return {.What = Kind::Picture, .Picture = picture};
    }
    if (data.hasText() && !data.text().isEmpty())
        return {.What = Kind::Text, .Text = data.text()};
    return {};
}

QMimeData *ToMimeData(const CopiedMarkup &copied)
{
    auto *data = new QMimeData;
    data->setHtml(copied.Absolute);
    data->setText(copied.Text);
    const QJsonObject own{{u"base"_s, copied.Base}, {u"html"_s, copied.Html}};
    data->setData(OwnType, QJsonDocument(own).toJson(QJsonDocument::Compact));
    return data;
}
