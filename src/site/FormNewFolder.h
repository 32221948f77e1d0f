#pragma once

#include "platform/BackgroundWork.h"

#include <QDialog>

#include <memory>

namespace Ui {
class FormNewFolder;
}

/// Asks for the name of a folder and makes it. One that is there already does as well. When it cannot be made, the
/// dialog stays open and says why.
class FormNewFolder : public QDialog
{
    Q_OBJECT

public:
    /// The folder is made in `parentFolder`.
    explicit FormNewFolder(const QString &parentFolder, QWidget *parent = nullptr);
    ~FormNewFolder() override;

    /// Shows the dialog; the folder to go to, or "" when it was cancelled.
    static QString Ask(QWidget *parent, const QString &parentFolder);

    /// The folder to go to, once the dialog was accepted; `parentFolder` itself when no name was typed.
    QString NewPath() const { return m_path; }

private:
    void OKButton_Click();
    void Made(const QString &path, const QString &problem);

    QString m_parentFolder;
    QString m_path;
    std::unique_ptr<Ui::FormNewFolder> ui;
    BackgroundWork m_work;
};
