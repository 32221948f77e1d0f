#pragma once

#include "document/Editor.h"
#include "document/PageSaver.h"

/// The commands that save: they ask before a file is overwritten that is not the one we know, choose names, and tell
/// the user when a page could not be written. A page that could not be written keeps its name and stays unsaved.
class SaveCommands
{
public:
    SaveCommands(Editor &editor, PageSaver &saver) : m_editor(editor), m_saver(saver) {}

    enum class Outcome {
        Done,    ///< saved, or refused in silence
        NotDone, ///< cancelled by the user in the choice of a name
        Stopped  ///< not written, or the user does not want the file overwritten: what is unsaved must stay
    };

    void SetDirty();
    void SaveCurrentPage();
    void SaveDocument();
    Editor::Prompted PromptSaveChanges();
    Outcome FileSave_Click();
    Outcome FileSaveAs_Click();

    /// Saves the page that a load is about to replace; asks for a name when it has none. False: it must stay.
    bool SaveBeforeLeaving();

private:
    Outcome Report(PageSaver::Result result);
    bool MayOverwrite(const QString &path);
    QString AskForName();
    QString WithDefaultExtension(const QString &name);

    Editor &m_editor;
    PageSaver &m_saver;
};
