#pragma once

#include <QString>

#include <memory>

class DesignSurface;

/// The document behind the design surface, as far as dialogs and tools need it.
///
/// These are light values: an Element, TextRange or ControlRange is a handle on something in the page and may be
/// copied. A handle whose thing is gone (the page was replaced, the renderer died), or that came from a question with
/// no answer, is null; reading from it gives "", 0 or false, and writing does nothing. Texts are markup in engine form
/// (EngineForm.h) with server-side code as it stands in the page; markup given to the page may hold such code too.
/// Every change is one step for undo. All calls wait for what the user typed before.

class DomElement
{
public:
    bool IsNull() const { return m_handle == 0; }
    QString tagName() const; ///< upper case
    QString outerHTML() const;
    /// In place of the element. The handle then holds the first element of the new markup.
    void SetOuterHTML(const QString &html);
    QString innerHTML() const;
    QString innerText() const;
    /// Null above the root element.
    DomElement parentElement() const;
    /// `where`: "BeforeBegin", "AfterBegin", "BeforeEnd" or "AfterEnd", in any case.
    void insertAdjacentHTML(const QString &where, const QString &html);

private:
    friend class DomDocument;
    friend class DomTextRange;
    friend class DomControlRange;
    std::weak_ptr<DesignSurface *> m_surface; ///< gone with the surface
    int m_handle = 0;
};

/// A stretch of the page's text. Positions are counted in characters as the page shows them: a run of white space is
/// one, a picture, field or line break is one, and the border between two blocks is one.
class DomTextRange
{
public:
    bool IsNull() const { return m_handle == 0; }
    QString HTMLText() const;
    QString Text() const;
    /// In place of the range; it is then empty and stands behind the new markup, as the caret does.
    void pasteHTML(const QString &html);
    DomElement parentElement() const; ///< the innermost element that holds the whole range
    void collapse(bool toStart = true);
    /// Makes it the selection.
    void Select();
    /// `unit` is "character" or "word". Collapses the range and moves it; answers how far it got.
    int Move(const QString &unit, int count);
    int moveStart(const QString &unit, int count);
    int moveEnd(const QString &unit, int count);
    /// Looks for `text` inside the range, or, when that is empty, from it to the end of the page (`count` >= 0) or back
    /// to its start (`count` < 0). Flags: 2 whole words, 4 match case. Found: the range is the place. Across inline
    /// tags.
    bool findText(const QString &text, int count = 0, int flags = 0);
    void scrollIntoView();

private:
    friend class DomDocument;
    std::weak_ptr<DesignSurface *> m_surface;
    int m_handle = 0;
};

/// The object that is selected as a whole.
class DomControlRange
{
public:
    bool IsNull() const { return m_handle == 0; }
    DomElement commonParentElement() const;

private:
    friend class DomDocument;
    std::weak_ptr<DesignSurface *> m_surface;
    int m_handle = 0;
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
    /// Over the whole body.
    DomTextRange BodyTextRange() const;
    DomElement body() const;
    /// Code of the key in the key event that is being handled; 0 otherwise.
    int EventKeyCode() const;

private:
    friend class DesignSurface;
    explicit DomDocument(std::weak_ptr<DesignSurface *> surface);
    std::weak_ptr<DesignSurface *> m_surface;
};
