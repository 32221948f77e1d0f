#include "platform/DesktopFileDialogs.h"

#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QPrintDialog>

using namespace Qt::StringLiterals;

namespace {

/// "GIF files (*.gif)" -> "GIF files"; other brackets stay.
QString WithoutPatterns(const QString &description)
{
    const QString trimmed = description.trimmed();
    const qsizetype open = trimmed.lastIndexOf(u'(');
    if (open < 0 || !trimmed.endsWith(u')') || !QStringView(trimmed).sliced(open).contains(u'*'))
        return trimmed;
    return trimmed.left(open).trimmed();
}

QString QtPatterns(const QString &patterns)
{
    QStringList parts;
    for (const QString &part : patterns.split(u';', Qt::SkipEmptyParts)) {
        const QString pattern = part.trimmed();
        if (!pattern.isEmpty())
            parts += pattern == "*.*"_L1 ? u"*"_s : pattern;
    }
    return parts.isEmpty() ? u"*"_s : parts.join(u' ');
}

} // namespace

QString QtNameFilter(const QString &filter)
{
    if (filter.isEmpty())
        return {};
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i < parts.size(); i += 2)
        filters += u"%1 (%2)"_s.arg(WithoutPatterns(parts[i]), QtPatterns(parts.value(i + 1)));
    return filters.join(";;"_L1);
}

DesktopFileDialogs::DesktopFileDialogs() : m_lastFolder(QDir::currentPath()) {}

std::optional<QString> DesktopFileDialogs::Open(QWidget *parent, const Request &request)
{
    return Run(parent, request, Purpose::Open);
}

std::optional<QString> DesktopFileDialogs::Save(QWidget *parent, const Request &request)
{
    return Run(parent, request, Purpose::Save);
}

std::optional<QString> DesktopFileDialogs::Run(QWidget *parent, const Request &request, Purpose purpose)
{
    const bool folderGiven = !request.Folder.isEmpty() && QFileInfo(request.Folder).isDir();
    QString folder = folderGiven ? request.Folder : m_lastFolder;
    QString name = request.FileName;
    if (QFileInfo(name).isAbsolute()) {
        folder = QFileInfo(name).absolutePath();
        name = QFileInfo(name).fileName();
    }

    // On the heap: the parent may go, and take the dialog with it, while the dialog waits.
    const QPointer<QFileDialog> dialog = new QFileDialog(parent, request.Title, folder);
    dialog->setObjectName("FileDialog"_L1);
    dialog->setAcceptMode(purpose == Purpose::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(purpose == Purpose::Save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!request.Filter.isEmpty())
        dialog->setNameFilter(QtNameFilter(request.Filter));
    dialog->setDefaultSuffix(request.DefaultExtension);
    if (!name.isEmpty())
        dialog->selectFile(name);

    std::optional<QString> chosen;
    if (dialog->exec() == QDialog::Accepted && dialog && !dialog->selectedFiles().isEmpty()) {
        const QString path = dialog->selectedFiles().constFirst();
        m_lastFolder = QFileInfo(path).absolutePath();
        chosen = QDir::toNativeSeparators(path);
    }
    delete dialog;
    return chosen;
}

std::optional<QColor> DesktopFileDialogs::Color(QWidget *parent, const QColor &start)
{
    const QPointer<QColorDialog> dialog = new QColorDialog(start.isValid() ? start : QColor(Qt::black), parent);
    dialog->setObjectName("ColorDialog"_L1);
    std::optional<QColor> chosen;
    if (dialog->exec() == QDialog::Accepted && dialog)
        chosen = dialog->selectedColor();
    delete dialog;
    return chosen;
}

bool DesktopFileDialogs::Print(QWidget *parent, QPrinter &printer)
{
    const QPointer<QPrintDialog> dialog = new QPrintDialog(&printer, parent);
    dialog->setObjectName("PrintDialog"_L1);
    dialog->setOption(QAbstractPrintDialog::PrintPageRange, false);
    const bool print = dialog->exec() == QDialog::Accepted && dialog;
    delete dialog;
    return print;
}
