#pragma once

#include "editing/ImageMapHandOver.h"
#include "editing/ImageTag.h"
#include "platform/surface/Dom.h"

#include <QDialog>

#include <functional>
#include <memory>

class Editor;
class QCheckBox;
class QFileSystemModel;
class QLineEdit;
class QRadioButton;

namespace Ui {
class FormImage;
}

/// Insert > Graphic, the Graphic button and a double click on a picture: puts a picture in, or changes the one that is
/// selected. A picture from outside the page's folder is copied beside the page.
///
/// It opens on what the page has. OK without a change leaves the page as it is; else it is one step for undo, and the
/// page is saved: under its own name, and where the surface's own save then asks for. Cancel leaves no trace but the
/// setting of the preview.
class FormImage : public QDialog
{
    Q_OBJECT

public:
    struct SitePage
    {
        QString Title; ///< "" for a page without one
        QString Path;
    };
    /// What other parts of the program give.
    struct Parts
    {
        std::function<QList<SitePage>()> Pages; ///< that a picture can lead to
        /// Opens the image map editor; false when the user cancelled. Without it its button is off.
        std::function<bool(QWidget *parent, ImageMapHandOver &map)> EditMap;
    };
    enum class Purpose {
        EditPage, ///< picture in the page
        PickPath  ///< nothing but the choice of a file: the page, its folder and the selection are left alone
    };

    FormImage(Editor &editor, Parts parts, Purpose purpose = Purpose::EditPage, QWidget *parent = nullptr);
    ~FormImage() override;

    /// PickPath: full path of the file chosen with OK.
    QString PickedPath() const { return m_picked; }

    void reject() override;

private:
    enum class ImageMode { Regular = 1, Hyperlink = 2, Map = 8 };
    /// The controls of width or height.
    struct SizeRow
    {
        QCheckBox *Set;
        QLineEdit *Edit;
        QRadioButton *Pixels;
        QRadioButton *Percent;
    };

    void BuildControls();
    void ConnectControls();
    void ShowOnlyFiles();

    void FindSelectedPicture();
    void ReadTag();
    void ReadMap();
    void ReadLink();
    static void ShowSize(const SizeRow &row, const QString &value);
    void FillPages();

    void ShowFolder(const QString &folder);
    void FillFiles();
    void SelectFile(const QString &path);
    QString SelectedPath() const;
    void Dir1_Change();
    void File1_Click();
    void CommandBrowse_Click();
    void CheckPreview_Click();
    QSize ShowPreview(const QString &path);
    void ShowNoPreview(const QString &words);

    void SetMode(ImageMode mode);
    void cmdMapEdit_Click();
    void Command1_Click();
    bool HasAllItNeeds();
    bool IsSizeGood(const SizeRow &row, const QString &shown, const QString &message);
    QString HyperlinkTarget() const;
    bool IsOriginal(const QString &path) const;
    ImageAttributes Entered() const;
    static QString SizeOf(const SizeRow &row);
    void WritePreviewSetting();
    void CopyIntoSite();
    void PutIntoPage();
    bool Place(const QString &tag);
    void WriteMap(bool placed);

    Editor &m_editor;
    const Parts m_parts;
    const Purpose m_purpose;
    std::unique_ptr<Ui::FormImage> ui;
    QFileSystemModel *m_folders;
    SizeRow m_width;
    SizeRow m_height;
    QString m_folder; ///< that the list of pictures shows

    ImageMode m_mode = ImageMode::Regular;
    bool m_okArmed = true;          ///< OK runs once; whatever keeps the dialog open sets it again
    bool m_editingImage = false;    ///< the selection is a picture
    quint16 m_mapAttributesSet = 0; ///< 65535: there is a map, or the map editor has finished
    QString m_imageTag;             ///< as it is in the page, or what a new one starts from
    DomElement m_element;           ///< selected object that is or holds the picture
    DomElement m_link;              ///< around it
    QString m_linkTarget;           ///< of that link, as it was shown
    QString m_originalImagePath;    ///< full path, or the address of a picture that is no file here
    ImageAttributes m_shown;        ///< what the boxes said when they were filled
    ImageMapHandOver m_map;
    QString m_pageMap; ///< the map's text in the page
    QString m_picked;
};
