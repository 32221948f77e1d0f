#include "document/PreviewFile.h"

#include "document/Editor.h"
#include "document/PageOutput.h"
#include "platform/surface/DesignSurface.h"
#include "platform/TextFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// Relative addresses keep the folder that they were written for.
QString WithBase(const QString &text, const QString &folder)
{
    if (text.contains("<base"_L1, Qt::CaseInsensitive))
        return text;
    const QString base =
        u"<base href=\""_s + QUrl::fromLocalFile(folder + u'/').toString(QUrl::FullyEncoded) + u"\">"_s;
    const qsizetype head = text.indexOf("<head"_L1, 0, Qt::CaseInsensitive);
    const qsizetype end = head < 0 ? -1 : text.indexOf(u'>', head);
    return end < 0 ? base + text : QString(text).insert(end + 1, base);
}

} // namespace

PreviewFile::~PreviewFile()
{
    Remove();
}

QString PreviewFile::Prepare()
{
    PageState &page = m_editor.Page();
    const QString path = page.CurrentFilePath;
    const bool named = IsPageName(path);
    const QString own = named && path.contains(u'.') ? path : QString();
    if ((m_editor.App().StartingUp || page.KeepPreviewFile) && !own.isEmpty())
        return own;
    if (!page.HtmlDirty && !m_editor.Surface().IsDirty())
        return own;

    QString copy = named ? QFileInfo(path).dir().filePath(PreviewCopyName) : QString();
    if (copy.isEmpty() || !WriteCopy(copy))
        copy = WriteElsewhere();
    page.HtmlDirty = true;
    page.PreviewTempFile = copy;
    return copy;
}

/// Not over something that is no copy of ours: a link that stands there, or the page itself.
bool PreviewFile::WriteCopy(const QString &path)
{
    const QFileInfo info(path);
    if (info.isSymLink() || path == m_editor.Page().CurrentFilePath || !QFileInfo(info.path()).isWritable())
        return false;
    return m_editor.SaveHTML(path);
}

QString PreviewFile::WriteElsewhere()
{
    if (!m_elsewhere)
        m_elsewhere = std::make_unique<QTemporaryDir>();
    const QString path = m_elsewhere->filePath(PreviewCopyName);
    if (!m_elsewhere->isValid() || !m_editor.SaveHTML(path))
        return {};
    if (!IsPageName(m_editor.Page().CurrentFilePath))
        return path;
    const TextFileContent copy = ReadTextFile(path);
    const QString folder = QFileInfo(m_editor.Page().CurrentFilePath).path();
    if (copy.Error == FileError::None)
        WriteTextFile(path, WithBase(copy.Text, folder), copy.Encoding);
    return path;
}

void PreviewFile::Remove()
{
    QString &copy = m_editor.Page().PreviewTempFile;
    if (!copy.isEmpty())
        QFile::remove(copy);
    copy.clear();
    m_elsewhere.reset();
}
