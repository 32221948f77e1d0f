#pragma once

#include "editing/GlobalRun.h"
#include "editing/PageSearch.h"

#include <QDialog>
#include <QStringList>

#include <functional>
#include <memory>

class DesignSurface;
class Editor;
class QTreeWidgetItem;
struct FindState;

namespace Ui {
class DialogGlobalReplace;
}

/// Find and replace in all files that the file pane lists. Pages are read and written through a design surface of its
/// own that nobody sees; the open page is saved first, so that its latest words count, and read again when something
/// was replaced in its file. All of it can be edited while files are looked through: what is typed meanwhile is saved,
/// too, when the run comes to that page.
class DialogGlobalReplace : public QDialog
{
    Q_OBJECT

public:
    /// Paths of the files to look through, in order.
    using SiteFiles = std::function<QStringList()>;

    DialogGlobalReplace(Editor &editor, FindState &state, SiteFiles files, QWidget *parent = nullptr);
    ~DialogGlobalReplace() override;

    /// Shows itself with the texts of last time.
    void Open();

public slots:
    void done(int result) override;
    /// While files are being looked through that is what ends; the dialog closes the next time.
    void reject() override;

signals:
    /// `files` 0: the work is done.
    void Progress(int done, int files);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Work { Find, Replace };

    void EnableControls();
    FindStep Entered() const;
    void Remember(const FindStep &step);
    QString SaveOpenPage();
    bool IsOpenPage(const QString &path) const;
    GlobalRun::Hold HoldOn(const QString &path, QString &reason);
    void Start(Work work);
    void Command1_Click();
    void OKButton_Click();
    void ListTopics_DblClick(const QTreeWidgetItem *row);
    void ShowProgress(int done, int files);
    void AddRow(const QString &path);
    void AddFailure(const QString &path, const QString &reason);
    void Ended();
    void ReloadOpenPage();

    Editor &m_editor;
    FindState &m_state;
    SiteFiles m_files;
    std::unique_ptr<Ui::DialogGlobalReplace> ui;
    std::unique_ptr<DesignSurface> DHTMLEdit1; ///< made for the first run
    std::unique_ptr<GlobalRun> m_run;
    Work m_work = Work::Find;
    bool m_searchOn = false; ///< the rows are pages that hold the text, not pages that held it
};
