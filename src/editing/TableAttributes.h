#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What the dialogs on tables show of a tag and write into it. An empty optional stands for an attribute that is not
/// there, or that no dialog can show.

/// The values of ALIGN and VALIGN that the dialogs offer.
const QStringList &AlignWords();
const QStringList &VAlignWords();

/// A width or height.
struct TableExtent
{
    QString Text; ///< without "%"
    bool Percent = false;

    bool operator==(const TableExtent &) const = default;
};

/// What tables and cells have in common.
struct TableLook
{
    std::optional<TableExtent> Width;
    std::optional<TableExtent> Height;
    std::optional<QString> BgColor; ///< as the page writes it
    std::optional<QString> BorderColor;
    std::optional<QString> Background; ///< address of a picture
    QString Align;                     ///< one of AlignWords, or ""

    bool operator==(const TableLook &) const = default;
};

struct CellAttributes : TableLook
{
    QString VAlign; ///< one of VAlignWords, or ""
    bool NoWrap = false;
    int RowSpan = 1;
    int ColSpan = 1;

    bool operator==(const CellAttributes &) const = default;
};

struct TableAttributes : TableLook
{
    int Border = 0; ///< these stand for a table that says nothing
    int Padding = 3;
    int Spacing = 0;

    bool operator==(const TableAttributes &) const = default;
};

/// Of the tag at `tag` (1-based) in `text`.
CellAttributes ReadCell(const QString &text, qsizetype tag);
TableAttributes ReadTable(const QString &text, qsizetype tag);

/// Sets and removes what differs from what ReadCell finds; all else stays as it is written: "middle" for "center", a
/// colour by its name, quotes.
QString WriteCell(QString text, qsizetype tag, CellAttributes cell);

/// The same; border, padding and spacing are written where the table does not tell them, as soon as anything changes.
QString WriteTable(QString text, qsizetype tag, TableAttributes table);

/// The number that a text begins with; 0 when it begins with none.
double LeadingNumber(const QString &text);
