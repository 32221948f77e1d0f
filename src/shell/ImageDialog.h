#pragma once

class Editor;
class FilePane;

/// Opens the graphic dialog on what is selected; the pages that a picture can lead to are those of the file pane.
void OpenImageDialog(Editor &editor, const FilePane &files);
