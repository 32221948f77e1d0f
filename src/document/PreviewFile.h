#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

class Editor;

/// The name of the copy that is shown in place of a page with unsaved work.
inline constexpr QLatin1StringView PreviewCopyName("_inklm_temp.htm");

/// What the preview shows: the page's own file, or, when there is unsaved work, a copy of it beside the page, so that
/// relative addresses mean the same.
class PreviewFile
{
public:
    explicit PreviewFile(Editor &editor) : m_editor(editor) {}
    ~PreviewFile();

    /// Brings the copy up to date if there is to be one, and answers with the file to show; "" for none. The page's own
    /// state is not changed, unsaved work stays unsaved.
    QString Prepare();
    /// The copy goes.
    void Remove();

private:
    bool WriteCopy(const QString &path);
    QString WriteElsewhere();

    Editor &m_editor;
    std::unique_ptr<QTemporaryDir> m_elsewhere; ///< for a page without a folder that can be written to
};
