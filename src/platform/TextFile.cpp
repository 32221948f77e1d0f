#include "platform/TextFile.h"

#include "platform/PageEncoding.h"
#include "platform/SafeFile.h"

#include <QFileInfo>

namespace {

constexpr qint64 LargestTextFile = 512 * 1024 * 1024;

struct Mark
{
    const char *Encoding;
    QByteArrayView Bytes;
};
/// Longer marks first: that of UTF-32LE starts with that of UTF-16LE.
constexpr Mark Marks[] = {
    {"UTF-8", QByteArrayView("\xEF\xBB\xBF", 3)},    {"UTF-32LE", QByteArrayView("\xFF\xFE\0\0", 4)},
    {"UTF-32BE", QByteArrayView("\0\0\xFE\xFF", 4)}, {"UTF-16LE", QByteArrayView("\xFF\xFE", 2)},
    {"UTF-16BE", QByteArrayView("\xFE\xFF", 2)},
};

bool Decode(QByteArrayView bytes, const QByteArray &encoding, TextFileContent &content)
{
    std::optional<QString> text = encoding.isEmpty() ? std::nullopt : DecodeExactly(bytes, encoding);
    if (!text || text->contains(QChar::Null))
        return false;
    content.Text = std::move(*text);
    content.Encoding.Name = encoding;
    return true;
}

/// True when some encoding holds the bytes exactly.
bool DecodePage(QByteArrayView bytes, TextFileContent &content)
{
    for (const Mark &mark : Marks) {
        if (bytes.startsWith(mark.Bytes) && Decode(bytes.sliced(mark.Bytes.size()), mark.Encoding, content)) {
            content.Encoding.ByteOrderMark = true;
            return true;
        }
    }
    if (bytes.contains('\0'))
        return false;
    for (const QByteArray &encoding : DeclaredEncodings(bytes)) {
        if (Decode(bytes, encoding, content))
            return true;
    }
    // windows-1252 holds any bytes: the five without a character there stand for control characters.
    return Decode(bytes, "UTF-8", content) || Decode(bytes, GuessEncoding(bytes), content) ||
           Decode(bytes, "windows-1252", content);
}

} // namespace

TextFileContent ReadTextFile(const QString &path)
{
    TextFileContent content;
    const FileBytes file = ReadBytes(path, LargestTextFile);
    content.Error = file.Error;
    if (file.Error != FileError::None)
        return content;
    content.Stamp = file.Stamp;
    if (!DecodePage(file.Bytes, content))
        content.Error = FileError::NotText;
    return content;
}

TextFileWritten WriteTextFile(const QString &path, const QString &text, const TextEncoding &encoding)
{
    std::optional<QByteArray> bytes = EncodeText(text, encoding.Name);
    if (!bytes)
        return {FileError::Unexpected, {}};
    if (encoding.ByteOrderMark) {
        for (const Mark &mark : Marks) {
            if (encoding.Name.compare(mark.Encoding, Qt::CaseInsensitive) == 0)
                bytes->prepend(mark.Bytes.data(), mark.Bytes.size());
        }
    }
    return ReplaceBytes(path, *bytes);
}

bool ChangedOnDisk(const QString &path, const FileStamp &stamp)
{
    const QFileInfo file(path);
    if (!file.exists() || !stamp.Exists)
        return file.exists() != stamp.Exists;
    if (file.size() != stamp.Size)
        return true;
    if (file.lastModified() == stamp.Modified)
        return false;
    return ReadBytes(path, LargestTextFile).Stamp.Digest != stamp.Digest;
}
