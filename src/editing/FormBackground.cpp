#include "editing/FormBackground.h"

#include "document/ColorText.h"
#include "document/Editor.h"
#include "document/PageOutput.h"
#include "document/PathText.h"
#include "platform/surface/DesignSurface.h"

#include "ui_FormBackground.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QColor ColorOf(quint32 color)
{
    return QColor(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF));
}

} // namespace

FormBackground::FormBackground(Editor &editor, QWidget *parent)
    : QDialog(parent), m_editor(editor), ui(std::make_unique<Ui::FormBackground>())
{
    ui->setupUi(this);
    // The colours of a new row are those that browsers use where a page says nothing.
    m_rows = {{{ui->CheckSetBkColor, ui->ShapeBkColor, ui->Command2, 0xFFFFFF},
               {ui->CheckText, ui->ShapeText, ui->Command3, 0x000000},
               {ui->CheckLink, ui->ShapeLink, ui->Command4, 0xFF0000},
               {ui->CheckVisitedLink, ui->ShapeVisitedLink, ui->Command5, 0x800080},
               {ui->CheckActiveLink, ui->ShapeActiveLink, ui->Command6, 0x0000FF}}};
    if (m_editor.Surface().WaitWhileBusy())
        m_page = ReadBodyAttributes(m_editor.Surface().EngineHTML());
    ShowAttributes();
    for (int row = 0; row < BodyAttributes::ColorCount; ++row)
        connect(m_rows[row].Choose, &QPushButton::clicked, this, [this, row] { ChooseColor(row); });
    connect(ui->Command1, &QPushButton::clicked, this, &FormBackground::Command1_Click);
    connect(ui->EditBkImage, &QLineEdit::textEdited, this,
            [this](const QString &text) { ui->CheckUseBkImage->setChecked(!text.isEmpty()); });
    connect(ui->OKButton, &QPushButton::clicked, this, &FormBackground::OKButton_Click);
    connect(ui->CancelButton, &QPushButton::clicked, this, &QDialog::reject);
}

FormBackground::~FormBackground() = default;

void FormBackground::ShowAttributes()
{
    for (int row = 0; row < BodyAttributes::ColorCount; ++row) {
        if (const std::optional<QString> &value = m_page.Colors[row]) {
            m_rows[row].Tick->setChecked(true);
            m_rows[row].Color = static_cast<quint32>(RevFormatRGBString(*value));
        }
        ShowColor(row);
    }
    ui->CheckUseBkImage->setChecked(m_page.Background.has_value());
    ui->EditBkImage->setText(m_page.Background.value_or(QString()));
}

void FormBackground::ShowColor(int row)
{
    const QColor color = ColorOf(m_rows[row].Color);
    QPalette palette = m_rows[row].Sample->palette();
    palette.setColor(QPalette::Window, color);
    m_rows[row].Sample->setPalette(palette);
    m_rows[row].Sample->setToolTip(color.name().toUpper());
}

void FormBackground::ChooseColor(int row)
{
    if (!m_editor.ChooseAColor(m_rows[row].Color))
        return;
    m_rows[row].Color = m_editor.ChosenColor;
    m_rows[row].Chosen = true;
    m_rows[row].Tick->setChecked(true);
    ShowColor(row);
}

void FormBackground::Command1_Click()
{
    const QString page = m_editor.Page().CurrentFilePath;
    FileDialogs::Request request;
    request.Title = tr("Background Picture");
    request.Filter = tr("Pictures (*.gif;*.jpg;*.jpeg;*.png)|*.gif;*.jpg;*.jpeg;*.png|All Files (*.*)|*.*");
    if (IsPageName(page))
        request.Folder = QFileInfo(page).path();
    const std::optional<QString> chosen = m_editor.Dialogs().Open(this, request);
    if (!chosen)
        return;
    ui->EditBkImage->setText(IsPageName(page) ? MakeRelPathRel(*chosen, page) : *chosen);
    ui->CheckUseBkImage->setChecked(true);
}

BodyAttributes FormBackground::Entered() const
{
    BodyAttributes entered;
    entered.HasBody = m_page.HasBody;
    for (int row = 0; row < BodyAttributes::ColorCount; ++row) {
        if (!m_rows[row].Tick->isChecked())
            continue;
        // "red" or a short colour would come out as another colour: what nobody chose anew stays as it is written.
        const bool keep = m_page.Colors[row] && !m_rows[row].Chosen;
        entered.Colors[row] = keep ? *m_page.Colors[row] : FormatRGBString(m_rows[row].Color);
    }
    const QString picture = ui->EditBkImage->text();
    if (ui->CheckUseBkImage->isChecked() && !picture.isEmpty())
        entered.Background = QString(picture).replace(u'"', u"&quot;"_s);
    return entered;
}

void FormBackground::OKButton_Click()
{
    const BodyAttributes entered = Entered();
    DesignSurface &surface = m_editor.Surface();
    if (entered != m_page && m_page.HasBody && surface.WaitWhileBusy()) {
        surface.SetDocumentHTML(WriteBodyAttributes(surface.EngineHTML(), entered), DesignSurface::TextForm::Engine);
        m_editor.Page().HtmlDirty = true;
        surface.WaitWhileBusy();
    }
    accept();
}
