#include "Photographer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb HeaderCells = 0xffe8f0d8; ///< the row of headings in the table of the start page

/// What docs/ shows. A further picture is a further row.
QList<Picture> Pictures()
{
    const QString start = u"index.htm"_s;
    const QString gate = u"images/gate.jpg"_s;
    return {
        {u"normal"_s, start},
        {u"page-properties"_s, start, {Keys(u"ctrl+2"_s)}},
        {u"html-source"_s, start, {Keys(u"ctrl+3"_s)}},
        {u"preview"_s, start, {Keys(u"ctrl+4"_s)}},
        {u"publish"_s, start, {Keys(u"ctrl+5"_s)}},
        {u"image"_s, start, {Keys(u"ctrl+End"_s), ClickPicture(gate)}},
        {u"table"_s, start, {HoldColumnBorder(HeaderCells, 30)}},
        {u"dialog-graphic"_s,
         start,
         {Keys(u"ctrl+End"_s), ClickPicture(gate), Keys(u"alt+i g"_s), Window(u"Graphic"_s)}},
        {u"dialog-table"_s, start, {Keys(u"ctrl+End alt+a i"_s), Window(u"Insert Table"_s)}},
        {u"dialog-global-find"_s,
         start,
         {Keys(u"ctrl+shift+f"_s), Window(u"Global Find/Replace"_s), Type(u"brook"_s), Keys(u"alt+f"_s)}},
        {u"details"_s, u"join.htm"_s, {Keys(u"alt+v d"_s)}},
        {u"window-large"_s, start, {}, Picture::Colours::Light, 1, {1920, 1080}},
        {u"window-dark"_s, start, {}, Picture::Colours::Dark},
        {u"window-200"_s, start, {}, Picture::Colours::Light, 2},
    };
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Takes the pictures of the documentation."_s);
    parser.addHelpOption();
    parser.addOption({u"to"_s, u"Folder for the pictures."_s, u"folder"_s, QStringLiteral(INKLOOM_IMAGES)});
    parser.addOption({u"scale"_s, u"Dots for one pixel, 1 or 2."_s, u"number"_s, u"1"_s});
    parser.addOption({u"dark"_s, u"On a dark desktop."_s});
    parser.addPositionalArgument(u"name"_s, u"Only these pictures."_s, u"[name...]"_s);
    parser.process(application);

    const QDir folder(parser.value(u"to"_s));
    const QStringList wanted = parser.positionalArguments();
    bool all = folder.mkpath(u"."_s);
    for (Picture picture : Pictures()) {
        if (!wanted.isEmpty() && !wanted.contains(picture.Name))
            continue;
        picture.Scale *= qMax(1, parser.value(u"scale"_s).toInt());
        if (parser.isSet(u"dark"_s))
            picture.Theme = Picture::Colours::Dark;
        const QImage taken = Photographer(picture).Take();
        const QString path = folder.filePath(picture.Name + u".png"_s);
        const bool saved = !taken.isNull() && taken.save(path);
        qInfo().noquote() << (saved ? u"taken  "_s : u"FAILED "_s) << path;
        all = all && saved;
    }
    return all ? 0 : 1;
}
