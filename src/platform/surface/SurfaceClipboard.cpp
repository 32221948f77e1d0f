// The clipboard of the design surface. The host reads and writes it itself: so the real server-side code is copied and
// protected again when it is pasted, pictures become files, and keys typed behind Ctrl+V wait until all is in the page.
#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/Islands.h"
#include "platform/surface/PasteSource.h"
#include "platform/surface/PictureFiles.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QJsonObject>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

QString PictureTag(const QString &address, QSize size)
{
    QString tag = "<img src=\""_L1 + address.toHtmlEscaped() + u'"';
    if (size.isValid())
        tag += u" width=\"%1\" height=\"%2\""_s.arg(size.width()).arg(size.height());
    return tag + u'>';
}

QString LinkTag(const QString &address, const QString &text)
{
    return "<a href=\""_L1 + address.toHtmlEscaped() + "\">"_L1 + text.toHtmlEscaped() + "</a>"_L1;
}

/// A path as a page writes it.
QString AsAddress(const QString &path)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(path, "/!$&'()*+,;=@~"));
}

} // namespace

void DesignSurface::PasteText()
{
    const QMimeData *held = QGuiApplication::clipboard()->mimeData();
    if (held && QueryStatus(DECMD_PASTE) >= DECMDF_ENABLED)
        d->Paste(ReadPasteSource(*held, PasteAs::Text));
}

bool DesignSurface::Private::Copy()
{
    const QVariantMap copied = Ask(u"copy"_s).toMap();
    if (copied.isEmpty())
        return false;
    const auto real = [&](const QString &key) {
        return Texts.WithIslands(copied.value(u"generation"_s).toInt(), copied.value(key).toString());
    };
    QGuiApplication::clipboard()->setMimeData(
        ToMimeData({real(u"html"_s), real(u"absolute"_s), real(u"text"_s), copied.value(u"base"_s).toString()}));
    return true;
}

void DesignSurface::Private::Clipboard(Decmd command)
{
    if (command == DECMD_PASTE) {
        if (const QMimeData *data = QGuiApplication::clipboard()->mimeData())
            Paste(ReadPasteSource(*data));
    } else if (Copy() && command == DECMD_CUT) {
        Run(u"delete"_s);
    }
}

QString DesignSurface::Private::PageFolder() const
{
    return Base.isLocalFile() ? QFileInfo(Base.toLocalFile()).absolutePath() : QString();
}

/// The markup of an image without a file, which gets one beside the page; "" when that can't be.
QString DesignSurface::Private::PictureBesidePage(const QImage &picture)
{
    const QString folder = PageFolder();
    if (folder.isEmpty()) {
        emit q->Notice(tr("Save the page first: the picture is put into a file beside it."));
        return {};
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const QString name = picture.save(&buffer, "PNG") ? WriteNewPicture(folder, bytes, u"png"_s) : QString();
    if (name.isEmpty()) {
        emit q->Notice(
            tr("The picture could not be written into the folder %1.").arg(QDir::toNativeSeparators(folder)));
        return {};
    }
    emit q->Notice(tr("The picture was saved as %1.").arg(name));
    return PictureTag(name, picture.size());
}

/// A file as the page can refer to it: relative, below its own folder. "" when it is not.
QString DesignSurface::Private::MarkupOfLink(const QUrl &link)
{
    if (!link.isLocalFile())
        return LinkTag(link.toString(QUrl::FullyEncoded), link.toDisplayString());
    const QString path = link.toLocalFile();
    const QString folder = PageFolder();
    const QString relative = folder.isEmpty() ? QString() : QDir(folder).relativeFilePath(path);
    if (relative.isEmpty() || relative.startsWith("../"_L1) || QDir::isAbsolutePath(relative)) {
        emit q->Notice(
            folder.isEmpty()
                ? tr("Save the page first: files are linked from where it lies.")
                : tr("%1 is not in the page's folder. Copy it there first.").arg(QDir::toNativeSeparators(path)));
        return {};
    }
    const QImageReader reader(path);
    return reader.canRead() ? PictureTag(AsAddress(relative), reader.size())
                            : LinkTag(AsAddress(relative), QFileInfo(path).fileName());
}

void DesignSurface::Private::Paste(const PasteSource &source)
{
    using Kind = PasteSource::Kind;
    QString way = u"exact"_s;
    QString html;
    switch (source.What) {
    case Kind::Nothing:
        return;
    case Kind::Own:
        way = u"own"_s;
        html = ProtectFragment(source.Html);
        break;
    case Kind::Html:
        way = u"foreign"_s;
        // Other marks that no parser keeps are litter of theirs.
        html = FindServerBlocks(source.Html).isEmpty() ? source.Html : ProtectFragment(source.Html);
        html = WithPictureFiles(html, PageFolder());
        break;
    case Kind::Picture:
        html = PictureBesidePage(source.Picture);
        break;
    case Kind::Links:
        for (const QUrl &link : source.Links) {
            const QString markup = MarkupOfLink(link);
            html += html.isEmpty() || markup.isEmpty() ? markup : u' ' + markup;
        }
        break;
    case Kind::Text:
        way = u"text"_s;
        break;
    }
    if (way == "exact"_L1 && html.isEmpty())
        return;
    Do(u"paste"_s, QJsonObject{{u"way"_s, way}, {u"html"_s, html}, {u"text"_s, source.Text}, {u"base"_s, source.Base}});
}
