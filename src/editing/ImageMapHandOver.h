#pragma once

#include <QString>

/// What graphic dialog and image map editor hand each other. The running number of maps is PageState::MapCount.
struct ImageMapHandOver
{
    QString MapName;      ///< in: of the map, or "USEFILE", which stands for the picture's file name
    QString PictureFile;  ///< in: full path
    QString MapText;      ///< in: the map as the page has it, "" for a new one; out: the whole map
    QString MapSource;    ///< in and out: what USEMAP holds, "#" and the name
    QString HotspotCount; ///< out
};
