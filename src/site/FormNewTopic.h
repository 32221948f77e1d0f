#pragma once

#include <QDialog>

#include <functional>
#include <memory>

class Editor;
class QFileSystemModel;
class QModelIndex;

namespace Ui {
class FormNewTopic;
}

/// File > New Page: writes a new page from a template to disk and loads it. The page in hand is not touched before OK;
/// then the load offers to save it, and when that is cancelled the new file is there but the old page stays.
class FormNewTopic : public QDialog
{
    Q_OBJECT

public:
    /// Asks for a new folder in `folder` and makes it; "" when none was made.
    using NewFolder = std::function<QString(QWidget *parent, const QString &folder)>;

    /// `folder` is that of the file pane. Without `newFolder` its button is off.
    FormNewTopic(Editor &editor, const QString &folder, NewFolder newFolder, QWidget *parent = nullptr);
    ~FormNewTopic() override;

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void BuildFolders(const QString &folder);
    void ConnectControls();
    void SelectFolder(const QString &folder);
    QString Folder() const;
    void EditTitle_Change();
    void Dir1_Change();
    void SuggestFile();
    void Command2_Click();
    void FileTemplate_Change();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void OkCmd_Click();
    bool WritePage(const QString &path);
    void Fail(int number, const QString &description);

    Editor &m_editor;
    NewFolder m_newFolder;
    QFileSystemModel *m_folders;
    QString m_suggested; ///< what EditFile was filled with last
    std::unique_ptr<Ui::FormNewTopic> ui;
};
