#include "editing/FindTools.h"

#include "document/Editor.h"
#include "editing/DialogGlobalReplace.h"
#include "editing/FormReplace.h"

FindTools::FindTools(Editor &editor, std::function<QStringList()> files) : m_editor(editor), m_files(std::move(files))
{}

FindTools::~FindTools()
{
    delete m_replace;
    delete m_global;
}

void FindTools::Find()
{
    OpenDialog(false);
}

void FindTools::Replace()
{
    OpenDialog(true);
}

void FindTools::OpenDialog(bool replaceMode)
{
    m_state.ReplaceMode = replaceMode;
    if (!m_replace)
        m_replace = new FormReplace(m_editor, m_state, m_editor.Window());
    m_replace->Open();
}

void FindTools::FindNext()
{
    DoFindNext(m_editor, m_state);
}

void FindTools::GlobalReplace()
{
    if (!m_global) {
        m_global = new DialogGlobalReplace(m_editor, m_state, m_files, m_editor.Window());
        connect(m_global, &DialogGlobalReplace::Progress, this, &FindTools::Progress);
    }
    m_global->Open();
}
