#pragma once

#include <QString>

#include <optional>

class Editor;
class ViewSwitcher;

/// Title, style sheet, keywords and description of a page as text beside text: values stand as they do in the page's
/// own text (entities and all). The routines go by position, not by parsing; their quirks are told where they are.
namespace PageProperties {

struct Fields
{
    QString Title;
    QString Style;
    QString Keywords;
    QString Description;
};

struct Found
{
    QString Title;                      ///< "" without a closed title element
    std::optional<QString> Keywords;    ///< of the last such tag
    std::optional<QString> Description; ///< of the last such tag
    QString Style;                      ///< address of the first style sheet link; "" for none
    bool HasStyle = false;
};
Found Read(const QString &text);

/// `text` with all the fields written into it: the title into a title element that is there, the address into the first
/// style sheet link, keywords and description into every tag of theirs. What has no tag gets one behind "<HEAD>",
/// unless it is empty or there is no head tag. Tags that are there are never removed, only emptied.
QString Write(const QString &text, const Fields &fields);

/// A value as a person types it, for a page's text, and back: & < > and double quotes. Server-side code passes.
QString Escaped(const QString &value);
QString Unescaped(const QString &text);

/// Between the page and the fields of PageState; what Editor::LoadTopicProperties and SaveTopicProperties run.
void Load(Editor &editor);
void Save(Editor &editor, ViewSwitcher &views);

} // namespace PageProperties
