#pragma once

#include "platform/TextFile.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

/// A recovery copy on disk: one line of JSON that tells whose words these are, then the text in UTF-8.
struct RecoveryFile
{
    QString Process;  ///< mark of the process that keeps it (ProcessMark.h)
    QString PagePath; ///< the page it belongs to; "" for one without a name
    QDateTime Time;
    TextEncoding Encoding; ///< of the page's file
    FileStamp Stamp;       ///< of the page's file when it was opened or saved last
    QString Text;
};

QByteArray EncodeRecoveryFile(const RecoveryFile &copy);
/// Nothing when the bytes are no recovery copy of a version that we know.
std::optional<RecoveryFile> DecodeRecoveryFile(const QByteArray &bytes);

/// Writes the copy for the user's eyes only, whole or not at all. Creates the folder, 0700.
bool WriteRecoveryFile(const QString &path, const RecoveryFile &copy);
