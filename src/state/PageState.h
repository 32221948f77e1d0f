#pragma once

#include <QString>
#include <QStringList>

/// The views of one page, by the index of their tab.
enum class ViewTab { Normal = 1, PageProperties = 2, HtmlSource = 3, Preview = 4, Publish = 5 };

/// The open page: where it came from, which of its copies is ahead, and the texts to fall back on.
struct PageState
{
    QString FileToLoad;      ///< argument of LoadFile, set by the caller
    QString CurrentFilePath; ///< the page now open; "" for none, "NEW PAGE" after a prompt on an unnamed page
    QString LoadedFilePath;  ///< the path handed to the surface

    bool HtmlDirty = false;       ///< changes not yet saved
    bool PropertiesDirty = false; ///< page properties changed and not yet written into the page
    bool HasBodyTag = false;      ///< the text held "<body" or "<BODY" when loaded
    bool SourceChanged = false;   ///< the source view was opened: its text may be newer than the surface's
    QString DocumentCharset;      ///< charset declared in the page (only with CharsetFix)

    QStringList BackHistory;       ///< paths left behind, oldest first; at most four
    bool InitialBlankLoad = false; ///< set by start-up: no history for this load
    bool GoingBack = false;        ///< set by Go Back: the page left is not pushed again
    bool SkipSavePrompt = false;   ///< set by Save As around its reload
    bool LoadInProgress = false;   ///< set at the start of a load
    bool FormatBoxesReady = false; ///< false from the start of a load until DocumentComplete filled the boxes
    bool BusySaving = false;       ///< a save is running
    bool ToolbarsOff = false;      ///< while the surface asks for a name and saves
    bool SuppressSave = false;     ///< SaveHTML does nothing

    ViewTab ActiveTab = ViewTab::Normal; ///< what the user is editing
    bool TabChanging = false;            ///< a change of tab runs no view switch

    QString PreviewTempFile;      ///< copy of unsaved work that the preview shows; removed with the page
    bool KeepPreviewFile = false; ///< during start-up the preview shows the file itself, whatever is unsaved

    // The controls of the page properties. They keep what they hold when a page has no such tag.
    QString EditTitle;    ///< text of the title element
    QString EditStyle;    ///< address of the first linked style sheet
    QString TextMetaKeys; ///< keywords
    QString TextMetaDesc; ///< description

    QString LastGoodHtml;       ///< last text of the surface that was not blank
    QString LastGoodSource;     ///< last text of the source view that was not blank
    QString LastGoodBaseUrl;    ///< base of LastGoodHtml
    bool RefillIfBlank = false; ///< the surface was handed a text with content: coming up blank is a fault

    QString StyleSheetPath = QStringLiteral("none"); ///< full path of the linked style sheet
    int MapCount = 0;                                ///< image maps counted for this page, kept in its side file

    bool TagValueQuoted = false; ///< the value that TagValue read last stood in double quotes
};
