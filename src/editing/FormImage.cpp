#include "editing/FormImage.h"

#include "document/Editor.h"
#include "document/ImageMapText.h"
#include "document/PageOutput.h"
#include "document/PathText.h"
#include "document/TagText.h"
#include "editing/AttributeText.h"
#include "editing/FirstArrowKey.h"
#include "editing/PictureFiles.h"
#include "platform/FolderTree.h"
#include "platform/Help.h"
#include "platform/surface/DesignSurface.h"
#include "ui_FormImage.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QRegularExpression>
#include <QScreen>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr quint16 MapIsSet = 65535;
constexpr int MostLinkLevels = 5; ///< formats between a picture and the link around it

/// Behind the title of a row of cboImageHref.
QString PathMark()
{
    return QString(50, u' ') + u'>';
}

QString Words(FileError error)
{
    switch (error) {
    case FileError::NotFound:
    case FileError::PathNotFound:
        return FormImage::tr("it is not there");
    case FileError::AccessDenied:
        return FormImage::tr("access denied");
    case FileError::DiskFull:
        return FormImage::tr("the disk is full");
    case FileError::TooLarge:
        return FormImage::tr("it is too large");
    default:
        return FormImage::tr("unexpected error");
    }
}

} // namespace

FormImage::FormImage(Editor &editor, Parts parts, Purpose purpose, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_parts(std::move(parts)),
      m_purpose(purpose),
      ui(std::make_unique<Ui::FormImage>()),
      m_folders(new QFileSystemModel(this))
{
    ui->setupUi(this);
    BuildControls();
    const QString page = m_editor.Page().CurrentFilePath;
    ShowFolder(IsPageName(page) ? QFileInfo(page).path() : m_editor.App().ProjectDir);
    if (m_purpose == Purpose::PickPath) {
        ShowOnlyFiles();
    } else {
        if (m_editor.Selection().ImageDialogEditing == 0 && m_editor.Surface().WaitWhileBusy())
            FindSelectedPicture();
        if (m_editingImage)
            ReadTag();
        else
            m_imageTag = NewImageTag;
    }
    ConnectControls();
    ui->File1->setFocus();
}

FormImage::~FormImage() = default;

void FormImage::BuildControls()
{
    m_width = {ui->CheckSetWidth, ui->EditWidth, ui->OptionWidthPix, ui->OptionWidthPercent};
    m_height = {ui->CheckSetHeight, ui->EditHeight, ui->OptionHeightPix, ui->OptionHeightPercent};
    for (const PictureType &type : PictureTypes())
        ui->ComboType->addItem(type.Text);
    ui->ComboType->setCurrentIndex(UsualPictureType);
    ui->ComboAlign->addItems({u"Default"_s, u"left"_s, u"right"_s, u"top"_s, u"texttop"_s, u"middle"_s, u"absmiddle"_s,
                              u"baseline"_s, u"bottom"_s, u"absbottom"_s, u"center"_s});
    for (QLineEdit *box : {ui->EditBorder, ui->EditHSpace, ui->EditVSpace})
        box->setText(u"0"_s);
    ui->CheckPreview->setChecked(m_editor.GetProj(u"Settings"_s, u"preview"_s, u"1"_s) == "1"_L1);
    ui->cmdMapEdit->setEnabled(false);
    ui->cmdMapEdit->setToolTip(m_parts.EditMap ? tr("Draw the parts of the picture that lead to pages")
                                               : tr("Not available yet"));
    ShowFolderTree(*ui->Dir1, *m_folders);
    resize(QSize(700, 560).boundedTo(screen()->availableSize() * 9 / 10));
}

void FormImage::ConnectControls()
{
    connect(ui->Dir1->selectionModel(), &QItemSelectionModel::currentChanged, this, &FormImage::Dir1_Change);
    LetFirstArrowKeyChoose(*ui->File1);
    connect(ui->File1, &QListWidget::itemSelectionChanged, this, &FormImage::File1_Click);
    connect(ui->File1, &QListWidget::itemDoubleClicked, this, &FormImage::Command1_Click);
    connect(ui->ComboType, &QComboBox::currentIndexChanged, this, &FormImage::FillFiles);
    connect(ui->CommandBrowse, &QPushButton::clicked, this, &FormImage::CommandBrowse_Click);
    connect(ui->CheckPreview, &QCheckBox::toggled, this, &FormImage::CheckPreview_Click);
    const auto choose = [this](QRadioButton *button, ImageMode mode) {
        connect(button, &QRadioButton::toggled, this, [this, mode](bool on) {
            if (on)
                SetMode(mode);
        });
    };
    choose(ui->optImage, ImageMode::Regular);
    choose(ui->optImageJump, ImageMode::Hyperlink);
    choose(ui->optImageMap, ImageMode::Map);
    connect(ui->cmdMapEdit, &QPushButton::clicked, this, &FormImage::cmdMapEdit_Click);
    for (const SizeRow &row : {m_width, m_height})
        connect(row.Edit, &QLineEdit::textEdited, row.Set, [row] { row.Set->setChecked(true); });
    connect(ui->Command1, &QPushButton::clicked, this, &FormImage::Command1_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &FormImage::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

void FormImage::ShowOnlyFiles()
{
    setWindowTitle(tr("Choose Graphic"));
    for (QWidget *group : {ui->GroupMode, ui->GroupAttributes, ui->GroupSize})
        group->hide();
    resize(QSize(560, 420).boundedTo(size()));
}

/// What a selected object is or holds, or a selected text that is nothing but a picture. A picture that only stands in
/// the same paragraph as the caret is not meant: a new one is to go where the caret is.
void FormImage::FindSelectedPicture()
{
    const DomDocument dom = m_editor.Surface().DOM();
    QString markup;
    if (dom.SelectionType() == "Control"_L1) {
        m_element = dom.SelectionControlRange().commonParentElement();
        markup = m_element.outerHTML();
        m_imageTag = FirstImageTag(markup);
    } else {
        markup = dom.SelectionTextRange().HTMLText().trimmed();
        const QString tag = FirstImageTag(markup);
        m_imageTag = tag == markup ? tag : QString();
    }
    m_editingImage = !m_imageTag.isEmpty();
}

void FormImage::ReadTag()
{
    const ImageAttributes image = ReadImageTag(m_imageTag);
    const QString page = m_editor.Page().CurrentFilePath;
    if (image.Source.size() >= 3)
        m_originalImagePath = PathFromPageText(image.Source, IsPageName(page) ? page : QString());
    if (QFileInfo(m_originalImagePath).isAbsolute())
        SelectFile(m_originalImagePath);
    ui->EditAltText->setPlainText(image.Alt);
    ShowSize(m_width, image.Width);
    ShowSize(m_height, image.Height);
    ui->ComboAlign->setCurrentIndex(std::max(0, ui->ComboAlign->findText(image.Align, Qt::MatchFixedString)));
    ui->EditBorder->setText(image.Border);
    ui->EditHSpace->setText(image.HSpace);
    ui->EditVSpace->setText(image.VSpace);
    m_map.MapSource = image.UseMap;
    if (!image.UseMap.isEmpty())
        ReadMap();
    ReadLink();
    m_shown = Entered();
    m_shown.Source = image.Source;
    m_shown.Width = image.Width; // as the page has them: over 100 percent becomes 100 with the next OK
    m_shown.Height = image.Height;
}

void FormImage::ReadMap()
{
    m_mapAttributesSet = MapIsSet;
    ui->optImageMap->setChecked(true);
    SetMode(ImageMode::Map);
    m_pageMap = ImageMapNamed(m_editor.Surface().EngineHTML(), m_map.MapSource.mid(1));
    m_map.MapText = m_pageMap;
}

/// Only shown: a picture in a link opens as a regular image, and stays in its link.
void FormImage::ReadLink()
{
    DomElement around = m_element.parentElement();
    for (int level = 0; level < MostLinkLevels && !around.IsNull(); ++level, around = around.parentElement()) {
        if (around.tagName() != "A"_L1)
            continue;
        m_linkTarget = DecodedAttribute(around.outerHTML(), 1, u"HREF"_s);
        if (m_linkTarget.isEmpty())
            return;
        m_link = around;
        ui->cboImageHref->setEditText(m_linkTarget);
        return;
    }
}

void FormImage::ShowSize(const SizeRow &row, const QString &value)
{
    const bool percent = value.endsWith(u'%');
    row.Set->setChecked(!value.isEmpty());
    (percent ? row.Percent : row.Pixels)->setChecked(true);
    row.Edit->setText(percent ? value.chopped(1).trimmed() : value);
}

/// Once, when somebody wants one: the titles are read from the files.
void FormImage::FillPages()
{
    if (ui->cboImageHref->count() > 0 || !m_parts.Pages)
        return;
    const QString kept = ui->cboImageHref->currentText();
    for (const SitePage &page : m_parts.Pages())
        ui->cboImageHref->addItem(page.Title + PathMark() + page.Path);
    ui->cboImageHref->setCurrentIndex(-1);
    ui->cboImageHref->setEditText(kept);
}

void FormImage::SetMode(ImageMode mode)
{
    m_mode = mode;
    ui->cboImageHref->setEnabled(mode == ImageMode::Hyperlink);
    ui->cmdMapEdit->setEnabled(mode == ImageMode::Map && m_parts.EditMap);
    if (mode == ImageMode::Hyperlink)
        FillPages();
}

void FormImage::cmdMapEdit_Click()
{
    const QString chosen = SelectedPath();
    m_map.PictureFile = chosen.isEmpty() ? m_originalImagePath : chosen;
    m_map.MapName = m_map.MapSource.size() < 3 ? u"USEFILE"_s : m_map.MapSource.sliced(1);
    if (m_parts.EditMap(this, m_map))
        m_mapAttributesSet = MapIsSet;
}

void FormImage::WritePreviewSetting()
{
    m_editor.SetProj(u"Settings"_s, u"preview"_s, ui->CheckPreview->isChecked() ? u"1"_s : u"0"_s);
}

void FormImage::reject()
{
    WritePreviewSetting();
    QDialog::reject();
}

void FormImage::Command1_Click()
{
    if (!std::exchange(m_okArmed, false))
        return; // a double click in the list comes here too, even while a message is up
    WritePreviewSetting();
    if (!HasAllItNeeds()) {
        m_okArmed = true;
        return;
    }
    if (m_purpose == Purpose::PickPath) {
        m_picked = SelectedPath();
        accept();
        return;
    }
    CopyIntoSite();
    accept(); // what follows may ask for the name of a file
    PutIntoPage();
}

/// The size is looked at first, then what the way of use needs. Says what is missing.
bool FormImage::HasAllItNeeds()
{
    const auto missing = [this](const QString &message) {
        m_editor.Boxes().Tell(this, message);
        return false;
    };
    const bool hasFile = !SelectedPath().isEmpty();
    const QString noFile = tr("Please select an image to insert or press Cancel,");
    if (m_purpose == Purpose::PickPath)
        return hasFile || missing(noFile);
    if (!IsSizeGood(m_width, m_shown.Width, tr("You must specify a valid width for the image.")) ||
        !IsSizeGood(m_height, m_shown.Height, tr("You must specify a valid height for the image.")))
        return false;
    if (m_mode == ImageMode::Map && m_mapAttributesSet == 0)
        return missing(tr("Please set the image map attributes, or if you don't want to use an image map, choose "
                          "Regular Image at the bottom left of the dialog"));
    if (!hasFile && m_originalImagePath.isEmpty() && m_shown.Source.isEmpty())
        return missing(noFile);
    if (m_mode == ImageMode::Hyperlink && HyperlinkTarget().isEmpty())
        return missing(tr("Please select a topic to jump to"));
    return true;
}

/// What the page itself says stays valid, whatever it is.
bool FormImage::IsSizeGood(const SizeRow &row, const QString &shown, const QString &message)
{
    static const QRegularExpression number(u"^[0-9]+([.][0-9]+)?$"_s);
    if (!row.Set->isChecked() || number.match(row.Edit->text().trimmed()).hasMatch())
        return true;
    if (!row.Edit->text().trimmed().isEmpty() && SizeOf(row) == shown)
        return true;
    m_editor.Boxes().Tell(this, message);
    row.Edit->setFocus();
    return false;
}

/// As the page is to write it.
QString FormImage::HyperlinkTarget() const
{
    const QString text = ui->cboImageHref->currentText();
    const qsizetype mark = text.indexOf(PathMark());
    if (mark >= 0)
        return AddressOfFile(text.sliced(mark + PathMark().size()), m_editor.Page().CurrentFilePath);
    const QString typed = text.sliced(text.indexOf(u'>') + 1).trimmed();
    return QFileInfo(typed).isAbsolute() ? AddressOfFile(typed, m_editor.Page().CurrentFilePath) : typed;
}

QString FormImage::SizeOf(const SizeRow &row)
{
    const QString value = row.Edit->text().trimmed();
    if (!row.Set->isChecked() || value.isEmpty())
        return {};
    if (!row.Percent->isChecked())
        return value;
    return (value.toDouble() > 100 ? u"100"_s : value) + u'%';
}

/// The picture that the page has already, by whatever path.
bool FormImage::IsOriginal(const QString &path) const
{
    return !m_originalImagePath.isEmpty() && QFileInfo(path) == QFileInfo(m_originalImagePath);
}

ImageAttributes FormImage::Entered() const
{
    ImageAttributes image = m_shown;
    const QString chosen = SelectedPath();
    if (!chosen.isEmpty() && !IsOriginal(chosen))
        image.Source = AddressOfFile(chosen, m_editor.Page().CurrentFilePath);
    image.Alt = ui->EditAltText->toPlainText().replace("\r\n"_L1, " "_L1).replace(u'\n', u' ');
    image.Border = ui->EditBorder->text().trimmed();
    image.HSpace = ui->EditHSpace->text().trimmed();
    image.VSpace = ui->EditVSpace->text().trimmed();
    image.Align = ui->ComboAlign->currentIndex() > 0 ? ui->ComboAlign->currentText().toUpper() : QString();
    image.Width = SizeOf(m_width);
    image.Height = SizeOf(m_height);
    image.UseMap = m_mode == ImageMode::Map ? m_map.MapSource : QString();
    return image;
}

/// Publishing takes what lies beside the page. Where the copy fails the page refers to the picture where it is.
void FormImage::CopyIntoSite()
{
    const QString page = m_editor.Page().CurrentFilePath;
    const QString chosen = SelectedPath();
    if (chosen.isEmpty() || IsOriginal(chosen) || !IsOutsideSite(chosen, page))
        return;
    QString copy;
    const FileError error = CopyBesidePage(chosen, page, copy);
    if (error != FileError::None) {
        m_editor.Boxes().Tell(
            this,
            tr("The picture %1 could not be copied into the folder of the page: %2. The page shows it "
               "from where it is.")
                .arg(chosen, Words(error)),
            MessageBoxes::Icon::Exclamation);
        return;
    }
    SelectFile(copy);
    emit m_editor.FilesChanged(QFileInfo(copy).path());
}

void FormImage::PutIntoPage()
{
    if (!m_editor.Surface().WaitWhileBusy())
        return;
    const bool placed = Place(WriteImageTag(m_imageTag, m_shown, Entered()));
    const bool mapChanged = m_mode == ImageMode::Map && m_map.MapText != m_pageMap;
    if (mapChanged)
        WriteMap(placed);
    if (!placed && !mapChanged)
        return;
    m_editor.Page().HtmlDirty = true;
    // Saved under its name and, by the surface's own save, under one that the user is asked for. On purpose: it has
    // always been so.
    m_editor.SetDirty();
    m_editor.SaveDocument();
    m_editor.SetDirty();
    emit m_editor.CommandStatesChanged();
}

/// False when there is nothing to change.
bool FormImage::Place(const QString &tag)
{
    DomDocument dom = m_editor.Surface().DOM();
    const bool toLink = m_mode == ImageMode::Hyperlink;
    const QString target = toLink ? HyperlinkTarget() : QString();
    // A link within a link would be torn apart when the page is read again.
    const bool ownLink = toLink && m_link.IsNull();
    const bool otherTarget = toLink && !m_link.IsNull() && target != m_linkTarget;
    if (m_editingImage && tag == m_imageTag && !ownLink && !otherTarget)
        return false;
    const QString markup = ownLink ? LinkedMarkup(tag, target) : tag;
    if (otherTarget) {
        const QString link = WriteAttribute(m_link.outerHTML(), 1, u"HREF"_s, QuotedValue(target), TagMode::Set);
        const qsizetype at = link.indexOf(m_imageTag);
        m_link.SetOuterHTML(at < 0 ? link : QString(link).replace(at, m_imageTag.size(), tag));
    } else if (!m_element.IsNull() && m_editingImage) {
        m_element.SetOuterHTML(WithFirstImageTag(m_element.outerHTML(), markup));
    } else if (!m_element.IsNull()) {
        m_element.SetOuterHTML(markup);
    } else {
        dom.PasteHTML(markup);
    }
    return true;
}

/// Picture and map are one step for undo: the picture is taken back, and put in again with the map.
void FormImage::WriteMap(bool placed)
{
    DesignSurface &surface = m_editor.Surface();
    if (!surface.WaitWhileBusy())
        return;
    const QString base = surface.BaseURL();
    const QString html = WithImageMap(surface.EngineHTML(), m_map.MapSource.mid(1), m_map.MapText, m_pageMap);
    if (placed)
        surface.ExecCommand(DECMD_UNDO);
    surface.SetDocumentHTML(html, DesignSurface::TextForm::Engine);
    surface.SetBaseURL(base);
    surface.WaitWhileBusy();
}
