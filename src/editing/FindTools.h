#pragma once

#include "state/FindState.h"

#include <QObject>
#include <QPointer>
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
    ~FindTools() override; ///< the dialogs go, too

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
    QPointer<FormReplace> m_replace; ///< once it was asked for
    QPointer<DialogGlobalReplace> m_global;
};
