#pragma once

#include "state/FindState.h"

#include <QObject>
#include <QStringList>

#include <functional>

class DialogGlobalReplace;
class Editor;
class FormReplace;

/// The commands of the Edit menu that look for text. Their dialogs stay open beside the page, one of each.
class FindTools : public QObject
{
    Q_OBJECT

public:
    /// `files`: what the file pane lists.
    FindTools(Editor &editor, std::function<QStringList()> files);

    void Find();
    void FindNext();
    void Replace();
    void GlobalReplace();

signals:
    /// Of a run through all files; `files` 0: it is done.
    void Progress(int done, int files);

private:
    void OpenDialog(bool replaceMode);

    Editor &m_editor;
    FindState m_state;
    std::function<QStringList()> m_files;
    FormReplace *m_replace = nullptr; ///< once it was asked for
    DialogGlobalReplace *m_global = nullptr;
};
