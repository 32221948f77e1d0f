#pragma once

class Editor;

/// Offers the unsaved text of editors that were ended by force, one question each, until one is taken back: a window
/// holds one page. Yes restores, No throws the copy away; closing the box keeps it for the next start.
void OfferRecovery(Editor &editor);
