#pragma once

#include <QString>

class Editor;
struct Services;

/// Opening a page: the menu, the recent list and the start of the program all come here.
class OpenPage
{
public:
    OpenPage(Editor &editor, const Services &services);

    /// Opens `FileToOpen`, or what the user chooses when that is empty; in NewWindowMode in a second window, which is a
    /// second process.
    void OpenProject_Click();
    /// File > Open in New Editor Window: always asks for the page.
    void newwin_Click();
    /// Opens a row of the recent list; a row whose file is gone stays in the list.
    void recent_Click(int row);
    /// Opens `FileToOpen` if it is a file; else says that it cannot be found.
    void OpenIfFound();

    /// File > New Page: asks for title, file and template, and writes the page.
    void FileNew_Click();
    /// The blank page of the program folder becomes the page, without a name: it is never saved over.
    void LoadBlankPage();
    /// Opens a page in a second window. The one in this window is not touched.
    void OpenInNewWindow(const QString &path);

private:
    bool LeavePage();
    QString AskForPage();
    void Load(const QString &path);

    Editor &m_editor;
    const Services &m_services;
    bool m_changesDropped = false; ///< the user answered No when last asked to save
};
