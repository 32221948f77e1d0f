#pragma once

#include "platform/FileDialogs.h"

/// The desktop's own dialogs where it has some, else Qt's; always Qt's when the application carries the attribute
/// Qt::AA_DontUseNativeDialogs. The last folder used is remembered as long as this object lives; before that it is the
/// current folder. Paths come back in the platform's own form.
/// Object names: "FileDialog", "ColorDialog", "PrintDialog".
class DesktopFileDialogs : public FileDialogs
{
public:
    DesktopFileDialogs();

    std::optional<QString> Open(QWidget *parent, const Request &request) override;
    std::optional<QString> Save(QWidget *parent, const Request &request) override;
    std::optional<QColor> Color(QWidget *parent, const QColor &start) override;
    bool Print(QWidget *parent, QPrinter &printer) override;

private:
    enum class Purpose { Open, Save };
    std::optional<QString> Run(QWidget *parent, const Request &request, Purpose purpose);

    QString m_lastFolder;
};

/// A filter in the notation of Request ("Web (*.htm)|*.htm;*.html|All|*.*") in Qt's: "Web (*.htm *.html);;All (*)".
/// The patterns decide; a list of patterns in the description is replaced by them. "*.*" means every file, also one
/// without a dot. A description without patterns behind it stands for every file.
QString QtNameFilter(const QString &filter);
