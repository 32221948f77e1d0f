// The commands of the design surface: their names in the page scripts, and what is known of their status.
#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/FontDialog.h"
#include "platform/surface/PasteSource.h"
#include "platform/surface/SurfacePage.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHash>
#include <QJsonObject>
#include <QMimeData>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace {

const QHash<int, QString> &CommandNames()
{
    static const QHash<int, QString> names{
        {DECMD_UNDO, u"undo"_s},
        {DECMD_REDO, u"redo"_s},
        {DECMD_CUT, u"cut"_s},
        {DECMD_COPY, u"copy"_s},
        {DECMD_PASTE, u"paste"_s},
        {DECMD_DELETE, u"delete"_s},
        {DECMD_SELECTALL, u"selectAll"_s},
        {DECMD_FINDTEXT, u"findText"_s},
        {DECMD_BOLD, u"bold"_s},
        {DECMD_ITALIC, u"italic"_s},
        {DECMD_UNDERLINE, u"underline"_s},
        {DECMD_FONT, u"font"_s},
        {DECMD_GETFONTNAME, u"getFontName"_s},
        {DECMD_SETFONTNAME, u"setFontName"_s},
        {DECMD_GETFONTSIZE, u"getFontSize"_s},
        {DECMD_SETFONTSIZE, u"setFontSize"_s},
        {DECMD_GETFORECOLOR, u"getForeColor"_s},
        {DECMD_SETFORECOLOR, u"setForeColor"_s},
        {DECMD_GETBLOCKFMT, u"getBlockFormat"_s},
        {DECMD_SETBLOCKFMT, u"setBlockFormat"_s},
        {DECMD_GETBLOCKFMTNAMES, u"getBlockFormatNames"_s},
        {DECMD_JUSTIFYLEFT, u"justifyLeft"_s},
        {DECMD_JUSTIFYCENTER, u"justifyCenter"_s},
        {DECMD_JUSTIFYRIGHT, u"justifyRight"_s},
        {DECMD_ORDERLIST, u"orderedList"_s},
        {DECMD_UNORDERLIST, u"unorderedList"_s},
        {DECMD_INDENT, u"indent"_s},
        {DECMD_OUTDENT, u"outdent"_s},
        {DECMD_HYPERLINK, u"hyperlink"_s},
        {DECMD_UNLINK, u"unlink"_s},
        {DECMD_IMAGE, u"image"_s},
        {DECMD_INSERTTABLE, u"insertTable"_s},
        {DECMD_INSERTROW, u"insertRow"_s},
        {DECMD_INSERTCOL, u"insertColumn"_s},
        {DECMD_INSERTCELL, u"insertCell"_s},
        {DECMD_DELETEROWS, u"deleteRows"_s},
        {DECMD_DELETECOLS, u"deleteColumns"_s},
        {DECMD_DELETECELLS, u"deleteCells"_s},
        {DECMD_MERGECELLS, u"mergeCells"_s},
        {DECMD_SPLITCELL, u"splitCell"_s},
        {DECMD_MAKE_ABSOLUTE, u"makeAbsolute"_s},
        {DECMD_BRING_TO_FRONT, u"bringToFront"_s},
        {DECMD_SEND_TO_BACK, u"sendToBack"_s},
        {DECMD_BRING_FORWARD, u"bringForward"_s},
        {DECMD_SEND_BACKWARD, u"sendBackward"_s},
        {DECMD_BRING_ABOVE_TEXT, u"bringAboveText"_s},
        {DECMD_SEND_BELOW_TEXT, u"sendBelowText"_s},
        {DECMD_LOCK_ELEMENT, u"lockElement"_s},
    };
    return names;
}

QJsonValue ToJson(const InsertTableParam &table)
{
    return QJsonObject{{u"rows"_s, table.NumRows},
                       {u"cols"_s, table.NumCols},
                       {u"tableAttrs"_s, table.TableAttrs},
                       {u"cellAttrs"_s, table.CellAttrs},
                       {u"caption"_s, table.Caption}};
}

bool SomethingToPaste()
{
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    return data && HasPasteSource(*data);
}

Qt::CheckState CheckOf(const QVariant &status)
{
    const int value = status.toInt();
    return value == DECMDF_LATCHED ? Qt::Checked : value == DECMDF_NINCHED ? Qt::PartiallyChecked : Qt::Unchecked;
}

} // namespace

QVariant DesignSurface::ExecCommand(Decmd command, ExecOption option, const QVariant &argument)
{
    if (command == DECMD_GETBLOCKFMTNAMES)
        return QStringList{u"Normal"_s,    u"Heading 1"_s,     u"Heading 2"_s,    u"Heading 3"_s,
                           u"Heading 4"_s, u"Heading 5"_s,     u"Heading 6"_s,    u"Formatted"_s,
                           u"Address"_s,   u"Numbered List"_s, u"Bulleted List"_s};
    if (QueryStatus(command) < DECMDF_ENABLED)
        return {};
    if (command == DECMD_INSERTTABLE) {
        d->Run(CommandNames().value(command), ToJson(argument.value<InsertTableParam>()));
        return argument;
    }
    if (command == DECMD_CUT || command == DECMD_COPY || command == DECMD_PASTE) {
        d->Clipboard(command);
        return {};
    }
    if (command == DECMD_FONT && option == ExecOption::PromptUser) {
        d->AskForFont();
        return {};
    }
    if (command == DECMD_FINDTEXT) {
        emit FindTextWanted();
        return {};
    }
    return d->Run(CommandNames().value(command), QJsonValue::fromVariant(argument));
}

Decmdf DesignSurface::QueryStatus(Decmd command)
{
    const QString name = CommandNames().value(command);
    if (name.isEmpty())
        return DECMDF_NOTSUPPORTED;
    if (command == DECMD_GETBLOCKFMTNAMES)
        return DECMDF_ENABLED;
    if (!d->EverLoaded || Busy())
        return DECMDF_DISABLED;
    if (command == DECMD_FINDTEXT)
        return DECMDF_ENABLED;
    if (command == DECMD_PASTE && !SomethingToPaste())
        return DECMDF_DISABLED;
    d->FlushInput();
    if (d->Statuses.isEmpty())
        d->Statuses = d->Ask(u"statuses"_s).toMap();
    return static_cast<Decmdf>(d->Statuses.value(name, DECMDF_NOTSUPPORTED).toInt());
}

Decmdf DesignSurface::ShownStatus(Decmd command) const
{
    return static_cast<Decmdf>(d->ShownStatuses.value(CommandNames().value(command), DECMDF_DISABLED).toInt());
}

QVariant DesignSurface::ShownValue(Decmd command) const
{
    return d->ShownValues.value(CommandNames().value(command));
}

QVariant DesignSurface::Private::Run(const QString &name, const QJsonValue &argument)
{
    return Do(u"run"_s, QJsonObject{{u"name"_s, name}, {u"argument"_s, argument}});
}

/// Lets the user choose font, size, colour and style; what was changed is one step.
void DesignSurface::Private::AskForFont()
{
    const QVariantMap state = Ask(u"fontState"_s).toMap();
    FontDialog dialog({.Family = state.value(u"name"_s).toString(),
                       .Size = state.value(u"size"_s).toInt(),
                       .Color = state.value(u"color"_s).toString(),
                       .Bold = CheckOf(state.value(u"bold"_s)),
                       .Italic = CheckOf(state.value(u"italic"_s)),
                       .Underline = CheckOf(state.value(u"underline"_s))},
                      q->window());
    const QPointer<DesignSurface> surface(q);
    if (dialog.exec() != QDialog::Accepted || !surface)
        return;
    const QVariantMap changes = dialog.Changes();
    if (!changes.isEmpty())
        Run(u"font"_s, QJsonObject::fromVariantMap(changes));
}
