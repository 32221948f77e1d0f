#pragma once

#include <QByteArray>
#include <QString>

/// Writes `data` into a new file "picture1.png", "picture2.png", ... of `folder`; `suffix` is "png". A file that is
/// there is never touched. The file's name; "" when it could not be written, and then there is no file.
QString WriteNewPicture(const QString &folder, const QByteArray &data, const QString &suffix);

/// Pictures that stand in `html` as data: addresses become files of `folder`; what can't be written stays as it is.
QString WithPictureFiles(const QString &html, const QString &folder);
