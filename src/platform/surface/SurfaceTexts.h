#pragma once

#include "platform/LineEnds.h"
#include "platform/surface/Islands.h"
#include "platform/surface/PageParts.h"

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
        QString Doctype; ///< for the empty document that the page is put into
        QString Html;    ///< for the engine's parser
    };

    Prepared Add(const QString &pageText);
    /// The page text of a generation whose root element the engine now writes as `outerHtml`.
    QString Compose(int generation, const QString &outerHtml) const;
    /// Forgets all texts before this one.
    void ForgetBefore(int generation);

private:
    struct Source
    {
        PageParts Parts;
        ProtectedText Islands; ///< without its text
        LineEnds Ends;
    };

    QMap<int, Source> m_sources;
    int m_last = 0;
};
