#pragma once

#include <QString>

#include <functional>

/// The dialogs that events of the design surface open, each modally; the window fills them in. Where one is missing,
/// nothing happens. What a dialog is to work on stands in SurfaceState or is the selection.
struct EditingDialogs
{
    std::function<void()> OpenImage;
    std::function<void()> OpenHyperlink;
    std::function<void()> OpenField;
    std::function<void()> OpenJavaPopup;
    std::function<void()> OpenCellProperties;
    std::function<void()> OpenTableProperties;
    /// A form element of this kind (SurfaceState::DropKind) was dropped on the page.
    std::function<void(const QString &kind)> PlaceFormElement;
};
