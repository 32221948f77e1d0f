#include "editing/TableLookPanel.h"

#include "document/Editor.h"
#include "document/PageOutput.h"
#include "document/PathText.h"
#include "editing/ColorRow.h"
#include "editing/TableControls.h"
#include "ui_TableLookPanel.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 White = 0xFFFFFF;
constexpr quint32 Black = 0;
constexpr double MostPercent = 100;

std::optional<TableExtent> EnteredExtent(const QCheckBox *tick, const QLineEdit *edit, const QRadioButton *percent)
{
    if (!tick->isChecked())
        return std::nullopt;
    TableExtent extent{edit->text().trimmed(), percent->isChecked()};
    if (extent.Percent && LeadingNumber(extent.Text) > MostPercent)
        extent.Text = QString::number(MostPercent);
    return extent;
}

void ShowExtent(const std::optional<TableExtent> &extent, QCheckBox *tick, QLineEdit *edit, QRadioButton *percent,
                QRadioButton *pixels)
{
    edit->setText(extent ? extent->Text : QString());
    tick->setChecked(extent.has_value());
    (extent && !extent->Percent ? pixels : percent)->setChecked(true);
}

} // namespace

TableLookPanel::TableLookPanel(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::TableLookPanel>())
{
    ui->setupUi(this);
    OfferWords(ui->ComboHoriz, AlignWords());
}

TableLookPanel::~TableLookPanel() = default;

void TableLookPanel::Connect(Editor &editor, const QString &pictures)
{
    m_editor = &editor;
    m_pictures = pictures;
    m_background = new ColorRow(editor, ui->CheckSetBkColor, ui->ShapeBkColor, ui->Command2, White);
    m_border = new ColorRow(editor, ui->CheckSetBorderColor, ui->ShapeBorderColor, ui->Command3, Black);
    const auto tickByText = [this](QLineEdit *edit, QCheckBox *tick) {
        connect(edit, &QLineEdit::textChanged, this,
                [tick](const QString &text) { tick->setChecked(!text.isEmpty() && tick->isEnabled()); });
    };
    tickByText(ui->EditWidth, ui->CheckSetWidth);
    tickByText(ui->EditHeight, ui->CheckSetHeight);
    tickByText(ui->EditBkImage, ui->CheckUseBkImage);
    connect(ui->Command1, &QPushButton::clicked, this, &TableLookPanel::Command1_Click);
}

void TableLookPanel::Show(const TableLook &look)
{
    ShowExtent(look.Width, ui->CheckSetWidth, ui->EditWidth, ui->OptionWidthPct, ui->OptionWidthPix);
    ShowExtent(look.Height, ui->CheckSetHeight, ui->EditHeight, ui->OptionHeightPct, ui->OptionHeightPix);
    m_background->Show(look.BgColor);
    m_border->Show(look.BorderColor);
    ui->EditBkImage->setText(look.Background.value_or(QString()));
    ui->CheckUseBkImage->setChecked(look.Background.has_value());
    SelectWord(ui->ComboHoriz, look.Align);
}

TableLook TableLookPanel::Entered() const
{
    TableLook look;
    look.Width = EnteredExtent(ui->CheckSetWidth, ui->EditWidth, ui->OptionWidthPct);
    look.Height = EnteredExtent(ui->CheckSetHeight, ui->EditHeight, ui->OptionHeightPct);
    look.BgColor = m_background->Entered();
    look.BorderColor = m_border->Entered();
    look.Align = ChosenWord(ui->ComboHoriz);
    const QString picture = ui->EditBkImage->text();
    if (ui->CheckUseBkImage->isChecked() && !picture.isEmpty()) {
        const QString page = m_editor->Page().CurrentFilePath;
        look.Background = IsPageName(page) ? GetRelativePath(picture, page) : picture;
    }
    return look;
}

bool TableLookPanel::CheckSizes(const QString &widthMessage, const QString &heightMessage)
{
    return CheckSize(ui->CheckSetWidth, ui->EditWidth, widthMessage) &&
           CheckSize(ui->CheckSetHeight, ui->EditHeight, heightMessage);
}

bool TableLookPanel::CheckSize(const QCheckBox *tick, QLineEdit *edit, const QString &message)
{
    const QString text = edit->text().trimmed();
    if (!tick->isChecked() || (!text.isEmpty() && LeadingNumber(text) >= 0))
        return true;
    m_editor->Boxes().Tell(window(), message, MessageBoxes::Icon::Exclamation);
    edit->setFocus();
    edit->selectAll();
    return false;
}

void TableLookPanel::Fix(Fixed fixed)
{
    const bool width = fixed != Fixed::Width;
    const bool height = fixed != Fixed::Height;
    for (QWidget *control : std::initializer_list<QWidget *>{ui->CheckSetWidth, ui->EditWidth, ui->WidthUnit})
        control->setEnabled(width);
    for (QWidget *control : std::initializer_list<QWidget *>{ui->CheckSetHeight, ui->EditHeight, ui->HeightUnit})
        control->setEnabled(height);
    if (!width)
        ui->CheckSetWidth->setChecked(false);
    if (!height)
        ui->CheckSetHeight->setChecked(false);
}

void TableLookPanel::Command1_Click()
{
    const QString page = m_editor->Page().CurrentFilePath;
    FileDialogs::Request request;
    request.Title = tr("Set Background Image");
    request.Filter = m_pictures;
    if (IsPageName(page))
        request.Folder = QFileInfo(page).path();
    const std::optional<QString> chosen = m_editor->Dialogs().Open(window(), request);
    if (!chosen)
        return;
    ui->EditBkImage->setText(*chosen);
    ui->CheckUseBkImage->setChecked(true);
}
