#include "editing/FormImage.h"

// The choice of a file and its preview.

#include "document/Editor.h"
#include "editing/PictureFiles.h"
#include "ui_FormImage.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

constexpr int PreviewPixels = 150; ///< larger pictures are made smaller

} // namespace

void FormImage::ShowFolder(const QString &folder)
{
    const QFileInfo info(folder);
    m_folder = info.isAbsolute() && info.isDir() ? QDir::cleanPath(info.filePath()) : QDir::homePath();
    const QModelIndex index = m_folders->index(m_folder);
    ui->Dir1->setCurrentIndex(index);
    ui->Dir1->expand(index.parent());
    ui->Dir1->scrollTo(index);
    FillFiles();
}

void FormImage::FillFiles()
{
    const QString selected = SelectedPath();
    const QSignalBlocker quiet(ui->File1);
    ui->File1->clear();
    ui->File1->addItems(PicturesIn(m_folder, PictureTypes().at(ui->ComboType->currentIndex()).Pattern));
    if (!selected.isEmpty() && QFileInfo(selected).path() == m_folder) {
        for (QListWidgetItem *same : ui->File1->findItems(QFileInfo(selected).fileName(), Qt::MatchExactly))
            ui->File1->setCurrentItem(same);
    }
    if (!SelectedPath().isEmpty())
        return;
    if (m_originalImagePath.isEmpty())
        ShowNoPreview({});
    else
        ShowPreview(m_originalImagePath); // which stays, as long as no other is chosen
}

/// Shows the file in the list and in the preview; its size goes into no box.
void FormImage::SelectFile(const QString &path)
{
    const QFileInfo file(path);
    if (!QFileInfo(file.path()).isDir())
        return;
    {
        const QSignalBlocker quiet(ui->ComboType);
        ui->ComboType->setCurrentIndex(PictureTypeOf(file.fileName()));
    }
    ShowFolder(file.path());
    const QSignalBlocker quiet(ui->File1);
    for (QListWidgetItem *item : ui->File1->findItems(file.fileName(), Qt::MatchExactly)) {
        ui->File1->setCurrentItem(item);
        ui->File1->scrollToItem(item);
    }
    ShowPreview(path);
}

QString FormImage::SelectedPath() const
{
    const QList<QListWidgetItem *> chosen = ui->File1->selectedItems();
    return chosen.isEmpty() ? QString() : QDir(m_folder).filePath(chosen.first()->text());
}

void FormImage::Dir1_Change()
{
    const QString folder = m_folders->filePath(ui->Dir1->currentIndex());
    if (folder.isEmpty() || folder == m_folder)
        return;
    m_folder = folder;
    FillFiles();
}

void FormImage::File1_Click()
{
    const QString path = SelectedPath();
    if (path.isEmpty() || !ui->CheckPreview->isChecked())
        return;
    const QSize size = ShowPreview(path);
    for (const auto &[row, pixels] : {std::pair(m_width, size.width()), std::pair(m_height, size.height())})
        ShowSize(row, size.isValid() ? QString::number(pixels) : QString());
}

void FormImage::CommandBrowse_Click()
{
    FileDialogs::Request request;
    request.Title = tr("Graphic");
    request.Filter = PictureFilter();
    request.Folder = m_folder;
    const std::optional<QString> chosen = m_editor.Dialogs().Open(this, request);
    if (!chosen || chosen->isEmpty())
        return;
    SelectFile(*chosen);
    File1_Click();
}

void FormImage::CheckPreview_Click()
{
    if (ui->CheckPreview->isChecked())
        File1_Click();
    else
        ShowNoPreview({});
}

/// Gives the size of the picture; no valid one where there is none, or no preview.
QSize FormImage::ShowPreview(const QString &path)
{
    if (!ui->CheckPreview->isChecked())
        return {};
    const qreal ratio = devicePixelRatioF();
    const int room = qRound(PreviewPixels * ratio);
    const Picture picture = ReadPicture(path, {room, room});
    if (picture.Image.isNull()) {
        ShowNoPreview(QFileInfo::exists(path) ? tr("No preview of this file") : tr("The picture is not there"));
        return picture.Size;
    }
    const bool large = picture.Size.width() > PreviewPixels || picture.Size.height() > PreviewPixels;
    QPixmap shown = QPixmap::fromImage(picture.Image);
    if (large) {
        shown = shown.scaled(room, room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        shown.setDevicePixelRatio(ratio);
    }
    QLabel *label = large ? ui->Image2 : ui->Image1;
    label->setPixmap(shown);
    ui->PictureBox->setCurrentWidget(label);
    ui->LabelSize->setText(tr("%1 x %2 pixels").arg(picture.Size.width()).arg(picture.Size.height()));
    return picture.Size;
}

void FormImage::ShowNoPreview(const QString &words)
{
    ui->Image1->setText(words);
    ui->PictureBox->setCurrentWidget(ui->Image1);
    ui->LabelSize->clear();
}
