#pragma once

#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <memory>

class QWebEngineProfile;
class QWebEngineView;

/// The page as a browser shows it, with its scripts running, apart from the design view. Keeps nothing on the disk:
/// no cookies, no history. A page that hangs, or that wants to stay, is left all the same.
class PreviewView : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewView(QWidget *parent = nullptr);
    ~PreviewView() override;

    /// Shows a file, read again even if it is shown already; "" for an empty view.
    void Navigate(const QString &path);
    /// The same for an address, which may be one on the network; what no browser shows as a page gives an empty view.
    void ShowAddress(const QUrl &address);
    QUrl Url() const;

    void GoBack();
    void Refresh();
    void Stop();

signals:
    /// A page is there, or could not be loaded.
    void Loaded(bool ok);

private:
    class Page;

    void StartEngine();
    void NewPage();
    void DropPage();

    std::unique_ptr<QWebEngineProfile> m_profile; ///< made when something is to be shown first
    QWebEngineView *m_view = nullptr;
    Page *m_page = nullptr;
    QString m_path; ///< of the last Navigate
};
