#include "site/FormNewFolder.h"

#include "platform/ErrorLog.h"
#include "site/FileRules.h"
#include "ui_FormNewFolder.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int UsuallyDone = 50; // milliseconds

/// 0, or the number of the system's error. A folder that is there already is none.
int MakeFolder(const QString &path)
{
    if (::mkdir(QFile::encodeName(path).constData(), 0777) == 0)
        return 0;
    const int error = errno;
    return QFileInfo(path).isDir() ? 0 : error;
}

} // namespace

FormNewFolder::FormNewFolder(const QString &parentFolder, QWidget *parent)
    : QDialog(parent), m_parentFolder(parentFolder), ui(std::make_unique<Ui::FormNewFolder>())
{
    ui->setupUi(this);
    ui->LabelProblem->hide();
    connect(ui->OKButton, &QPushButton::clicked, this, &FormNewFolder::OKButton_Click);
    connect(ui->CancelButton, &QPushButton::clicked, this, &QDialog::reject);
}

FormNewFolder::~FormNewFolder() = default;

QString FormNewFolder::Ask(QWidget *parent, const QString &parentFolder)
{
    FormNewFolder dialog(parentFolder, parent);
    return dialog.exec() == QDialog::Accepted ? dialog.NewPath() : QString();
}

void FormNewFolder::OKButton_Click()
{
    const QString name = ui->Text1->text();
    if (name.isEmpty()) {
        m_path = m_parentFolder;
        accept();
        return;
    }
    const QString path = PathIn(m_parentFolder, name);
    ui->OKButton->setEnabled(false);
    m_work.Start([this, path] {
        const int error = MakeFolder(path);
        const QString problem = error == 0 ? QString() : QString::fromLocal8Bit(std::strerror(error));
        return [this, path, error, problem] {
            if (error != 0)
                LogError(u"FormNewFolder OKButton_Click"_s, error, problem);
            Made(path, problem);
        };
    });
    m_work.Settle(UsuallyDone);
}

void FormNewFolder::Made(const QString &path, const QString &problem)
{
    ui->OKButton->setEnabled(true);
    if (problem.isEmpty()) {
        m_path = path;
        accept();
        return;
    }
    ui->LabelProblem->setText(tr("The folder could not be made: %1.").arg(problem));
    ui->LabelProblem->setAccessibleName(ui->LabelProblem->text());
    ui->LabelProblem->show();
    ui->Text1->setFocus();
    ui->Text1->selectAll();
}
