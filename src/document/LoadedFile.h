#pragma once

#include "platform/TextFile.h"

#include <QString>

/// The file of the page in hand, as it was when we last read or wrote it: what a save needs to leave everything but
/// the user's changes as it was.
struct LoadedFile
{
    QString Path; ///< the file that the rest speaks of; "" for a page that never had one
    TextEncoding Encoding;
    FileStamp Stamp;
    QString Text; ///< exact text, for its line ends
};
