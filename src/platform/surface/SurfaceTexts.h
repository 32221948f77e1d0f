#pragma once

#include "platform/LineEnds.h"
#include "platform/surface/Islands.h"
#include "platform/surface/PageParts.h"

#include <QList>
#include <QMap>

/// What the engine can't hold of the texts it was given: the parts around the page, the server-side code in it, the
/// line ends. Each text gets a number, its generation, which the page scripts keep with the root element made of it,
/// so that an undo across a replaced page finds the right ones again.
class SurfaceTexts
{
public:
    struct Prepared
    {
        int Generation;
        QString Doctype;   ///< for the empty document that the page is put into
        QString Html;      ///< for the engine's parser
        QString Tail;      ///< what follows in the file: closing tags, comments, white space
        QString TailSpace; ///< the white space of it, which a parser puts into elements left open
    };

    enum class End {
        Apart, ///< closing tags and what follows stay with us
        InPage ///< all goes to the engine
    };
    /// A comment to be put into `Html`, where no part of the text is changed by it; not part of the text.
    struct Mark
    {
        qsizetype Position; ///< 0-based, in the page text
        QString Word;
    };
    Prepared Add(const QString &pageText, End end = End::Apart, const QList<Mark> &marks = {});
    /// The page text of a generation whose root element the engine now writes as `outerHtml`.
    QString Compose(int generation, const QString &outerHtml) const;
    /// A piece of text out of that page, with its server-side code.
    QString WithIslands(int generation, const QString &text) const;
    /// The same for markup as the engine writes it: in engine form and in the line ends of the page.
    QString ComposeFragment(int generation, const QString &html) const;
    /// Markup that is to go into that page, ready for the engine's parser: server-side code in it as tokens, which
    /// Compose, WithIslands and ComposeFragment turn back. Line ends are line feeds.
    QString ProtectFragment(int generation, const QString &html);
    /// The parser put the white space of this text's tail into an element that was open: it must not be written twice.
    void TailSpaceIsInPage(int generation);

    void Forget(int generation) { m_sources.remove(generation); }
    /// Forgets all texts before this one.
    void ForgetBefore(int generation);

private:
    struct Source
    {
        PageParts Parts;
        ProtectedText Islands;   ///< without its text
        QString TokenCharacters; ///< those that stand in the page itself
        LineEnds Ends;
    };

    QMap<int, Source> m_sources;
    int m_last = 0;
};
