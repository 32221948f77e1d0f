#include "shell/FormSettings.h"

#include "platform/Settings.h"
#include "state/AppState.h"
#include "ui_FormSettings.h"

using namespace Qt::StringLiterals;

FormSettings::FormSettings(AppState &app, Settings &ini, QWidget *parent)
    : QDialog(parent), m_app(app), m_ini(ini), ui(std::make_unique<Ui::FormSettings>())
{
    ui->setupUi(this);
    ui->CheckAutoOpen->setChecked(app.AutoOpen);
    ui->CheckAutoSave->setChecked(app.AutoSave);
    ui->CheckAutoLinkStyles->setChecked(app.AutoLinkStyles);
    ui->EditExt->setText(app.DefaultExtension);
    connect(ui->OKButton, &QPushButton::clicked, this, &FormSettings::OKButton_Click);
    connect(ui->CancelButton, &QPushButton::clicked, this, &QDialog::reject);
}

FormSettings::~FormSettings() = default;

void FormSettings::OKButton_Click()
{
    const auto write = [this](const QString &key, const QString &value) { m_ini.SetIni(u"Settings"_s, key, value); };
    const auto take = [&write](bool &flag, const QCheckBox *box, const QString &key) {
        flag = box->isChecked();
        write(key, flag ? u"1"_s : u"0"_s);
    };
    take(m_app.AutoOpen, ui->CheckAutoOpen, u"autoopen"_s);
    take(m_app.AutoSave, ui->CheckAutoSave, u"autosave"_s);
    take(m_app.AutoLinkStyles, ui->CheckAutoLinkStyles, u"auto_link_style_insert"_s);
    m_app.DefaultExtension = ExtensionFromInput(ui->EditExt->text());
    write(u"defext"_s, m_app.DefaultExtension);
    m_app.FilePattern += u";*"_s + m_app.DefaultExtension; // each OK adds one; a repetition does no harm
    accept();
}

QString ExtensionFromInput(const QString &typed)
{
    if (typed.size() < 2)
        return u".htm"_s;
    return typed.startsWith(u'.') ? typed : u'.' + typed;
}
