#pragma once

#include <QColor>
#include <QString>

#include <optional>

class QPrinter;
class QWidget;

/// The desktop's own dialogs for files, colours and printers, behind a seam that a test can answer.
/// Every routine blocks until answered and gives nothing when the user cancels.
class FileDialogs
{
public:
    struct Request
    {
        QString Title{};
        QString Filter{};           ///< "HTML Files (*.htm*)|*.htm*": description and pattern, "|" between all of them
        QString Folder{};           ///< where to start; "" for the last folder used
        QString FileName{};         ///< proposed name, for saving
        QString DefaultExtension{}; ///< without its dot; added by the desktop's dialog to a name that has none
    };

    virtual ~FileDialogs() = default;

    /// An existing file.
    virtual std::optional<QString> Open(QWidget *parent, const Request &request) = 0;
    /// A name to write to. The dialog itself asks before an existing file is chosen.
    virtual std::optional<QString> Save(QWidget *parent, const Request &request) = 0;
    virtual std::optional<QColor> Color(QWidget *parent, const QColor &start) = 0;
    /// Sets the printer up as the user wants it. False: nothing is to be printed.
    virtual bool Print(QWidget *parent, QPrinter &printer) = 0;
};
