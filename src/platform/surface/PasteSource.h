#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <QUrl>

class QMimeData;

/// What the clipboard or a drop holds, in the form that serves a page best.
struct PasteSource
{
    enum class Kind {
        Nothing,
        Own,     ///< Html exactly as it stood in a page of ours at the address Base
        Html,    ///< of another program
        Links,   ///< addresses of files or pages
        Picture, ///< an image without a file
        Text
    };

    Kind What = Kind::Nothing;
    QString Html{};
    QString Base{};
    QString Text{};
    QList<QUrl> Links{};
    QImage Picture{};
};

enum class PasteAs { Best, Text };

/// Whether there is anything in it that ReadPasteSource would give. Reads no contents, which may lie with a slow
/// program.
bool HasPasteSource(const QMimeData &data);
PasteSource ReadPasteSource(const QMimeData &data, PasteAs as = PasteAs::Best);

/// Markup out of a page, as the clipboard takes it.
struct CopiedMarkup
{
    QString Html;     ///< as it stands in the page
    QString Absolute; ///< the same with full addresses, for programs that do not know the page
    QString Text;
    QString Base; ///< the address of the page
};
/// Caller owns the result.
QMimeData *ToMimeData(const CopiedMarkup &copied);
