#pragma once

#include "editing/LinkText.h"

#include <QDialog>

#include <memory>

class Editor;
class LinkFileModel;
class QFileSystemModel;

namespace Ui {
class FormHyperLink;
}

/// Insert > Hyperlink: makes, changes or removes the link at the selection. OK is one step for undo; without a change
/// it leaves the page as it is.
class FormHyperLink : public QDialog
{
    Q_OBJECT

public:
    /// Leaves a blank at the end of the selected text out of the selection, unless there is a link already.
    explicit FormHyperLink(Editor &editor, QWidget *parent = nullptr);
    ~FormHyperLink() override;

    /// False: neither a link nor an object nor any text is selected, and the dialog is not to be shown.
    bool HasSomethingToLink() const { return m_hasText || m_linkExists; }

    void done(int result) override;

private:
    /// What the controls hold.
    struct Choice
    {
        bool Local = true;
        QString Path; ///< of the selected row
        QString Url;
        QString Bookmark;
        QString Target;
        QString Style;

        bool LeadsAs(const Choice &other) const
        {
            const bool same = Local ? Path == other.Path : Url == other.Url;
            return Local == other.Local && same && Bookmark == other.Bookmark;
        }
    };

    void BuildFolders();
    void ConnectControls();
    void ReadSelection();
    void ShowAddress();
    void ShowFiles();
    void SelectRow(int row);
    QString SelectedPath() const;
    bool IsThisPage(const QString &path) const;
    Choice Entered() const;
    QString AddressOf(const Choice &choice) const;
    void ComboBookmark_DropDown();
    void TabStrip1_Click();
    void CommandRemoveLink_Click();
    void OkCmd_Click();

    Editor &m_editor;
    QFileSystemModel *m_folders;
    LinkFileModel *m_files;
    QString m_folder;      ///< whose files are listed
    LinkAttributes m_link; ///< as the page has it
    Choice m_shown;        ///< what the dialog opened with
    bool m_linkExists = false;
    bool m_hasText = false;
    std::unique_ptr<Ui::FormHyperLink> ui;
};

/// Shows the dialog, or tells that there is nothing to make a link of.
void OpenHyperlink(Editor &editor);
