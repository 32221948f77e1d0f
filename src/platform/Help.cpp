#include "platform/Help.h"

#include <QHash>
#include <QWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QHash<QString, QString> &Pages()
{
    static const QHash<QString, QString> pages = {
        // The main window and what stands in it.
        {u"MainForm"_s, u"window.htm"_s},
        {u"DHTMLEdit1"_s, u"normal-view.htm"_s},
        {u"PagePropertiesPanel"_s, u"page-properties.htm"_s},
        {u"Source1"_s, u"source-view.htm"_s},
        {u"WebBrowser1"_s, u"preview.htm"_s},
        {u"PictureProperties"_s, u"page-properties.htm"_s},
        {u"PanelFTP"_s, u"publish.htm"_s},
        {u"PictureFTP"_s, u"publish.htm"_s},
        {u"FilePane"_s, u"file-pane.htm"_s},
        {u"ListForm"_s, u"forms.htm"_s},
        {u"ListForm2"_s, u"forms.htm"_s},
        {u"PictureLinks"_s, u"broken-links.htm"_s},
        // Dialogs.
        {u"DialogGlobalReplace"_s, u"global-find.htm"_s},
        {u"FontDialog"_s, u"format.htm"_s},
        {u"FormAskwren"_s, u"knowledgebase.htm"_s},
        {u"FormBackground"_s, u"background.htm"_s},
        {u"FormBookmark"_s, u"bookmarks.htm"_s},
        {u"FormBrowser"_s, u"browsers.htm"_s},
        {u"FormCellProp"_s, u"cell-properties.htm"_s},
        {u"FormErrorLog"_s, u"style-sheets.htm"_s},
        {u"FormExSection"_s, u"expanding-sections.htm"_s},
        {u"FormField"_s, u"form-field.htm"_s},
        {u"FormFTP"_s, u"publish.htm"_s},
        {u"FormHyperLink"_s, u"links.htm"_s},
        {u"FormImage"_s, u"pictures.htm"_s},
        {u"FormInsForm"_s, u"forms.htm"_s},
        {u"FormJavaPopup"_s, u"pop-ups.htm"_s},
        {u"FormJavaPopupAdv"_s, u"pop-ups.htm"_s},
        {u"FormJavaWinSizer"_s, u"pop-ups.htm"_s},
        {u"FormNewFolder"_s, u"file-pane.htm"_s},
        {u"FormNewTopic"_s, u"new-page.htm"_s},
        {u"FormReplace"_s, u"find.htm"_s},
        {u"FormSettings"_s, u"settings.htm"_s},
        {u"FormSpellOptions"_s, u"spelling.htm"_s},
        {u"FormTableProp"_s, u"table-properties.htm"_s},
        {u"TableLookPanel"_s, u"table-properties.htm"_s},
        {u"frmImageEd"_s, u"image-maps.htm"_s},
        {u"frmMapName"_s, u"image-maps.htm"_s},
        {u"HelpWindow"_s, u"index.htm"_s},
        {u"InsertHTMLDlg"_s, u"html-code.htm"_s},
        {u"InsertTableDlg"_s, u"tables.htm"_s},
        // What menus open directly.
        {u"helpcontents"_s, u"index.htm"_s},
        {u"helpindex"_s, u"alphabetical.htm"_s},
        {u"helpkeys"_s, u"keyboard.htm"_s},
    };
    return pages;
}

HelpViewer &Viewer()
{
    static HelpViewer viewer;
    return viewer;
}

void Show(const QString &page)
{
    if (Viewer())
        Viewer()(page.isEmpty() ? u"index.htm"_s : page);
}

} // namespace

void ShowHelp(const QString &topic)
{
    Show(HelpPage(topic));
}

void ShowHelp(const QWidget *control)
{
    Show(HelpPage(control));
}

QString HelpPage(const QString &topic)
{
    return Pages().value(topic);
}

QString HelpPage(const QWidget *control)
{
    if (!control)
        return {};
    const QString window = control->window()->objectName();
    if (window != "MainForm"_L1)
        return HelpPage(window);
    for (const QWidget *at = control; at; at = at->parentWidget()) {
        if (const QString page = HelpPage(at->objectName()); !page.isEmpty())
            return page;
    }
    return {};
}

QStringList HelpTopics()
{
    return Pages().keys();
}

void SetHelpViewer(HelpViewer viewer)
{
    Viewer() = std::move(viewer);
}
