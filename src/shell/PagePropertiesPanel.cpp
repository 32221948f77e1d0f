#include "shell/PagePropertiesPanel.h"

#include "document/Editor.h"
#include "document/PageOutput.h"
#include "document/PathText.h"
#include "editing/FormBackground.h"

#include "ui_PagePropertiesPanel.h"

#include <QFileInfo>
#include <QSignalBlocker>

PagePropertiesPanel::PagePropertiesPanel(QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::PagePropertiesPanel>())
{
    ui->setupUi(this);
    setFocusProxy(ui->EditTitle);
}

PagePropertiesPanel::~PagePropertiesPanel() = default;

void PagePropertiesPanel::Connect(Editor &editor)
{
    m_editor = &editor;
    connect(&editor, &Editor::TopicPropertiesLoaded, this, &PagePropertiesPanel::ShowFields);
    for (QLineEdit *field : {ui->EditTitle, ui->EditStyle, ui->TextMetaKeys})
        connect(field, &QLineEdit::textChanged, &editor, [this] { TakeFields(); });
    connect(ui->TextMetaDesc, &QPlainTextEdit::textChanged, &editor, [this] { TakeFields(); });
    connect(ui->CommandStyle, &QPushButton::clicked, &editor, [this] { ChooseStyleSheet(); });
    connect(ui->Command3, &QPushButton::clicked, &editor, [this] { Command3_Click(); });
}

void PagePropertiesPanel::ShowFields()
{
    const PageState &page = m_editor->Page();
    const QSignalBlocker title(ui->EditTitle);
    const QSignalBlocker style(ui->EditStyle);
    const QSignalBlocker keys(ui->TextMetaKeys);
    const QSignalBlocker description(ui->TextMetaDesc);
    ui->EditTitle->setText(page.EditTitle);
    ui->EditStyle->setText(page.EditStyle);
    ui->TextMetaKeys->setText(page.TextMetaKeys);
    ui->TextMetaDesc->setPlainText(page.TextMetaDesc);
}

void PagePropertiesPanel::TakeFields()
{
    PageState &page = m_editor->Page();
    page.EditTitle = ui->EditTitle->text();
    page.EditStyle = ui->EditStyle->text();
    page.TextMetaKeys = ui->TextMetaKeys->text();
    page.TextMetaDesc = ui->TextMetaDesc->toPlainText();
    page.PropertiesDirty = true;
}

void PagePropertiesPanel::ChooseStyleSheet()
{
    const QString page = m_editor->Page().CurrentFilePath;
    FileDialogs::Request request;
    request.Title = tr("Style Sheet");
    request.Filter = tr("Style Sheets (*.css)|*.css|All Files (*.*)|*.*");
    if (IsPageName(page))
        request.Folder = QFileInfo(page).path();
    if (const std::optional<QString> chosen = m_editor->Dialogs().Open(m_editor->Window(), request))
        ui->EditStyle->setText(IsPageName(page) ? MakeRelPathRel(*chosen, page) : *chosen);
}

void PagePropertiesPanel::Command3_Click()
{
    FormBackground(*m_editor, m_editor->Window()).exec();
}
