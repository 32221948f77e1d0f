#include "shell/StartSettings.h"

#include "platform/Settings.h"
#include "state/AppState.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

QString WithoutDoubledSeparators(QString path)
{
    const QString doubled(2, QDir::separator());
    while (path.contains(doubled))
        path.replace(doubled, QString(QDir::separator()));
    return path;
}

void ReadPageSettings(AppState &app, const Settings &ini)
{
    const auto read = [&ini](const QString &key, const QString &fallback) {
        return ini.GetIni(u"Settings"_s, key, fallback);
    };
    app.AutoOpen = read(u"autoopen"_s, u"1"_s) == u"1";
    app.AutoSave = read(u"autosave"_s, u"0"_s) == u"1";
    app.UseExternalEditor = read(u"useexted"_s, u"0"_s) == u"1";
    app.DefaultExtension = read(u"defext"_s, u".htm"_s);
    app.FilePattern = u"*.htm*;*.shtml;*.asp*;*.php*"_s + u";*"_s + app.DefaultExtension;
    app.XmlEncoding = read(u"xmlencode"_s, u"ISO-8859-1"_s);
    if (app.XmlEncoding.size() < 3)
        app.XmlEncoding = u"ISO-8859-1"_s;
    app.ExternalEditorPath = read(u"exted"_s, QString());
    app.SaveImmediately = read(u"saveimmed"_s, u"1"_s) != u"0";
    app.DefaultTemplate = read(u"def_template"_s, u"_blank.htm"_s);
    app.AutoLinkStyles = read(u"auto_link_style_insert"_s, u"1"_s).toDouble() != 0;
    app.PreserveHtml = read(u"preserveHTML"_s, u"0"_s) == u"1";
    app.PaneHidden = read(u"showpane"_s, u"1"_s) == u"0";
    app.ExactSource = read(u"exactsource"_s, u"0"_s) == u"1";
}

void ReadLocations(AppState &app, const Settings &ini)
{
    const auto read = [&ini](const QString &key) { return ini.GetIni(u"Locations"_s, key, QString()); };
    app.MainDir = read(u"main dir"_s);
    if (!app.MainDir.isEmpty() && !app.MainDir.endsWith(QDir::separator()))
        app.MainDir += QDir::separator();
    const auto dictionary = [&](const QString &key, const QString &name) {
        const QString own = read(key);
        return own.isEmpty() ? WithoutDoubledSeparators(app.MainDir + QDir::separator() + name) : own;
    };
    app.MainDictionary = dictionary(u"main dictionary"_s, u"american.vtd"_s);
    app.CustomDictionary = dictionary(u"custom dictionary"_s, u"custom.dic"_s);
    app.TemplatesDir = app.MainDir + u"Templates"_s;
}

} // namespace

void ReadStartSettings(AppState &app, const Settings &ini)
{
    ReadPageSettings(app, ini);
    ReadLocations(app, ini);
}
