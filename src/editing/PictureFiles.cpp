#include "editing/PictureFiles.h"

#include "document/PageOutput.h"
#include "document/PathText.h"
#include "platform/FolderListing.h"
#include "platform/SafeFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 LargestFile = 512LL * 1024 * 1024;

QString Text(const char *text)
{
    return QCoreApplication::translate("FormImage", text);
}

QStringList Patterns(const QString &pattern)
{
    // There are files without a dot, too.
    return pattern == "*.*"_L1 ? QStringList{u"*"_s} : pattern.split(u';', Qt::SkipEmptyParts);
}

} // namespace

const QList<PictureType> &PictureTypes()
{
    static const QList<PictureType> types = {
        {Text(QT_TRANSLATE_NOOP("FormImage", "All Files (*.*)")), u"*.*"_s},
        {Text(QT_TRANSLATE_NOOP("FormImage", "GIF and JPEG (*.gif, *jpg, *.jpeg)")), u"*.gif;*.jpg;*.jpeg"_s},
        {Text(QT_TRANSLATE_NOOP("FormImage", "Windows Bitmaps (*.bmp)")), u"*.bmp"_s},
        {Text(QT_TRANSLATE_NOOP("FormImage", "Windows MetaFiles (*.wmg)")), u"*.wmf"_s},
        {Text(QT_TRANSLATE_NOOP("FormImage", "PNG Files (*.png)")), u"*.png"_s},
        {Text(QT_TRANSLATE_NOOP("FormImage", "Web Pictures (*.png, *.gif, *.jpg, *.jpeg, *.webp, *.svg, *.avif)")),
         u"*.png;*.gif;*.jpg;*.jpeg;*.webp;*.svg;*.avif"_s},
    };
    return types;
}

QString PictureFilter()
{
    // The desktop's dialog starts with the first: the widest of those that pages use.
    QStringList parts;
    const QList<PictureType> &types = PictureTypes();
    for (auto type = types.rbegin(); type != types.rend(); ++type)
        parts << type->Text << type->Pattern;
    return parts.join(u'|');
}

QStringList PicturesIn(const QString &folder, const QString &pattern)
{
    const QStringList patterns = Patterns(pattern);
    QStringList names = ListFolder(folder).Files;
    names.removeIf([&](const QString &name) { return !QDir::match(patterns, name); });
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order == 0 ? a < b : order < 0;
    });
    return names;
}

int PictureTypeOf(const QString &name)
{
    const auto shows = [&](int type) { return QDir::match(Patterns(PictureTypes().at(type).Pattern), name); };
    if (shows(UsualPictureType))
        return UsualPictureType;
    for (int type = 1; type < PictureTypes().size(); ++type) {
        if (shows(type))
            return type;
    }
    return 0;
}

Picture ReadPicture(const QString &path, QSize largest)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    Picture picture;
    picture.Size = reader.size();
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize room = turned ? largest.transposed() : largest;
    if (picture.Size.width() > room.width() || picture.Size.height() > room.height())
        reader.setScaledSize(picture.Size.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1}));
    picture.Image = reader.read();
    if (!picture.Size.isValid())
        picture.Size = picture.Image.isNull() ? QSize() : picture.Image.size();
    else if (turned)
        picture.Size.transpose();
    return picture;
}

bool IsOutsideSite(const QString &path, const QString &page)
{
    if (!IsPageName(page))
        return false;
    const PathStyle style = PathStyle::Native();
    const QString site = page.first(page.lastIndexOf(style.Separator) + 1);
    // Where one root holds every folder, "/backup/home/ann/" must not count as "/home/ann/".
    return style.DriveLetters ? !path.contains(site, style.CaseSensitivity)
                              : !path.startsWith(site, style.CaseSensitivity);
}

FileError CopyBesidePage(const QString &path, const QString &page, QString &copy)
{
    copy = QFileInfo(page).dir().filePath(QFileInfo(path).fileName());
    if (QFileInfo(copy).canonicalFilePath() == QFileInfo(path).canonicalFilePath() && QFileInfo::exists(path))
        return FileError::None; // a link leads there
    const FileBytes source = ReadBytes(path, LargestFile);
    return source.Error != FileError::None ? source.Error : ReplaceBytes(copy, source.Bytes).Error;
}
