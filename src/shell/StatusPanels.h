#pragma once

#include <QObject>

class ElidedLabel;
class QProgressBar;
class QStatusBar;

/// The panels of the status bar: 1 progress words and page title, 2 path of the page, a bar while a load takes
/// long, and the panel that leads to updates.
class StatusPanels : public QObject
{
    Q_OBJECT

public:
    explicit StatusPanels(QStatusBar *bar);

    void ShowText(const QString &text);
    void ShowPath(const QString &path);
    /// Work that does not tell how far it is. Nothing while the other kind shows.
    void ShowProgress(bool show);
    /// Work of so many parts; 0: it is done.
    void ShowProgressOf(int done, int parts);

    QWidget *Bar() const;

signals:
    /// A click on the update panel.
    void UpdateAsked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void SizePanels();

    QStatusBar *m_bar;
    ElidedLabel *m_text;
    ElidedLabel *m_path;
    QProgressBar *m_progress;
};
