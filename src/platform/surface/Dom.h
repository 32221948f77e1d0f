#pragma once

#include <QString>

#include <memory>

class DesignSurface;
class DomHandle;

/// The document behind the design surface, as far as dialogs and tools need it.
///
/// These are light values: an Element, TextRange or ControlRange is a handle on something in the page. Copies are
/// handles on the same thing: moving a range moves its copies (see duplicate). A handle that came from a question with
/// no answer is null. Reading from a null handle, or from one whose thing is gone meanwhile (the page was replaced, the
/// renderer died), gives "", 0, false or null, and writing does nothing. Texts are markup in engine form (EngineForm.h)
/// with server-side code as it stands in the page; markup given to the page may hold such code too. Every change is one
/// step for undo. All calls wait for what the user typed before. None may be made from within a callback of the engine;
/// the surface's signals are none.

class DomElement
{
public:
    DomElement() = default;
    bool IsNull() const { return !m_handle; }
    QString tagName() const; ///< upper case
    QString outerHTML() const;
    /// In place of the element. The handle then holds the first element of the new markup. A selected object's place as
    /// the selection goes to it.
    void SetOuterHTML(const QString &html);
    /// The attributes of the first tag in `html` in place of its own; content and selection stay, and so does
    /// server-side code beside attributes. Not for parts of a table, which a parser keeps only in one.
    void TakeAttributes(const QString &html);
    QString innerHTML() const;
    void SetInnerHTML(const QString &html);
    QString innerText() const;
    /// Null above the root element.
    DomElement parentElement() const;
    /// `where`: "BeforeBegin", "AfterBegin", "BeforeEnd" or "AfterEnd", in any case.
    void insertAdjacentHTML(const QString &where, const QString &html);

private:
    friend class DomDocument;
    friend class DomTextRange;
    friend class DomControlRange;
    explicit DomElement(std::shared_ptr<DomHandle> handle) : m_handle(std::move(handle)) {}
    std::shared_ptr<DomHandle> m_handle;
};

/// A stretch of the page's text. Positions are counted in characters as the page shows them: a run of white space is
/// one, a picture, field or line break is one, and the border between two blocks is one.
class DomTextRange
{
public:
    DomTextRange() = default;
    bool IsNull() const { return !m_handle; }
    QString HTMLText() const;
    /// The characters, with CR LF for a line break or the border of a block and a blank for a picture or field.
    QString Text() const;
    /// Plain text in place of the range, in the formats of where it stands; then as pasteHTML.
    void SetText(const QString &text);
    /// In place of the range; it is then empty and stands behind the new markup, as the caret does.
    void pasteHTML(const QString &html);
    DomElement parentElement() const; ///< the innermost element that holds the whole range
    void collapse(bool toStart = true);
    /// Makes it the selection.
    void Select();
    /// `unit` is "character" or "word", in any case. Collapses the range to its start and moves it; answers how far it
    /// got. A place is kept exactly: from the page's start the opposite of the answer leads back.
    int Move(const QString &unit, int count);
    int moveStart(const QString &unit, int count);
    int moveEnd(const QString &unit, int count);
    /// Looks for `text` inside the range, or, when that is empty, from it to the end of the page (`count` >= 0) or back
    /// to its start (`count` < 0), over no more than |`count`| characters unless that is 0. Flags: 2 whole words, 4
    /// match case. Found: the range is the place. Across inline tags.
    bool findText(const QString &text, int count = 0, int flags = 0);
    void scrollIntoView();
    int offsetTop() const; ///< in pixels below the surface's upper edge; negative above it
    DomTextRange duplicate() const;

private:
    friend class DomDocument;
    explicit DomTextRange(std::shared_ptr<DomHandle> handle) : m_handle(std::move(handle)) {}
    std::shared_ptr<DomHandle> m_handle;
};

/// The object that is selected as a whole.
class DomControlRange
{
public:
    bool IsNull() const { return m_element.IsNull(); }
    DomElement commonParentElement() const { return m_element; }

private:
    friend class DomDocument;
    explicit DomControlRange(DomElement element) : m_element(std::move(element)) {}
    DomElement m_element;
};

class DomDocument
{
public:
    /// "None", "Text" or "Control".
    QString SelectionType() const;
    /// For "None" and "Text"; null for "Control".
    DomTextRange SelectionTextRange() const;
    /// For "Control"; null otherwise.
    DomControlRange SelectionControlRange() const;
    /// The standard way to put markup in: in place of the selection, a selected object included.
    void PasteHTML(const QString &html);
    /// Puts markup in place of every occurrence of `text` that findText comes to from the selection on, each search
    /// going on behind what was put in (in front of it, with a negative `count`). One step for undo; the caret stands
    /// behind the last that was put in. Answers how many there were.
    int ReplaceEach(const QString &text, const QString &html, int count = 0, int flags = 0);
    /// Over the whole body.
    DomTextRange BodyTextRange() const;
    DomElement body() const;
    /// Code of the key in the key event that is being handled; 0 otherwise.
    int EventKeyCode() const;

private:
    friend class DesignSurface;
    explicit DomDocument(std::weak_ptr<DesignSurface *> surface) : m_surface(std::move(surface)) {}
    std::weak_ptr<DesignSurface *> m_surface;
};
