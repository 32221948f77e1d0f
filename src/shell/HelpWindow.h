#pragma once

#include <QMainWindow>

class QAction;
class QTextBrowser;

/// The manual in a window of its own. It needs no web engine, so it is there at once and whatever became of a page. It
/// can be read while a dialog is open.
class HelpWindow : public QMainWindow
{
    Q_OBJECT

public:
    HelpWindow();

    /// Comes up on a page of `folder`, which need not exist.
    void ShowPage(const QString &folder, const QString &page);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QAction *AddButton(const QString &name, const QString &text, const QString &tip, const QString &icon,
                       const QList<QKeySequence> &keys);
    void BuildToolBar();
    void Go(const QString &page);
    void FollowLink(const QUrl &link);
    void RiseAboveDialog();

    QTextBrowser *m_text;
    QString m_folder;
};
