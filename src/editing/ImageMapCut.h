#pragma once

class Editor;

/// Edit > Cut of the design view; toolbar, context menu and Ctrl+X cut plainly.
///
/// A selected object that uses an image map is deleted together with the map, and the page is saved and loaded again;
/// any other object stays where it is. With text or nothing selected, the markup of the object that was met last
/// (LastCutMarkup, empty at first) takes the place of the selection. The clipboard is not touched. On purpose: older
/// versions had it so, and there is Ctrl+X for all else.
void DeleteImageMapTag(Editor &editor);
