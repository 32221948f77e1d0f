#pragma once

class Editor;

/// File > Save Copy of Page as Template: asks for a name among the templates and writes the page there. The page in
/// hand keeps its name and its unsaved changes.
void SaveCopyAsTemplate(Editor &editor);
