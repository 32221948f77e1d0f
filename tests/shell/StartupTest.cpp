#include "platform/Settings.h"
#include "shell/CommandLine.h"
#include "shell/EngineVersions.h"
#include "shell/StartSettings.h"
#include "state/AppState.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class StartupTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }
    void CommandLine_data();
    void CommandLine();
    void PageOfCommandLine_data();
    void PageOfCommandLine();
    void Versions_data();
    void Versions();
    void VersionsWithoutSystemFiles();
    void DefaultsOfSettings();
    void Settings_data();
    void Settings();
    void DerivedNames_data();
    void DerivedNames();

private:
    static AppState ReadFrom(const QString &ini);
};

void StartupTest::CommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("splash");
    QTest::newRow("nothing") << QStringList{} << u""_s << true;
    QTest::newRow("a page") << QStringList{u"/a.htm"_s} << u"/a.htm"_s << true;
    QTest::newRow("a path with blanks is one argument")
        << QStringList{u"/a b/c  d.htm"_s} << u"/a b/c  d.htm"_s << true;
    QTest::newRow("several arguments are one text") << QStringList{u"/a"_s, u"b.htm"_s} << u"/a b.htm"_s << true;
    QTest::newRow("no splash") << QStringList{u"nosplash-/x.htm"_s} << u"/x.htm"_s << false;
    QTest::newRow("no splash, no page") << QStringList{u"nosplash-"_s} << u""_s << false;
    QTest::newRow("the marker is taken to stand first")
        << QStringList{u"/dir/nosplash-x.htm"_s} << u"lash-x.htm"_s << false;
    QTest::newRow("double quotes go") << QStringList{u"\"/a b.htm\""_s} << u"/a b.htm"_s << true;
    QTest::newRow("double quotes behind the marker") << QStringList{u"nosplash-\"/a.htm\""_s} << u"/a.htm"_s << false;
    QTest::newRow("quotes before the marker shift it")
        << QStringList{u"\"nosplash-/a.htm\""_s} << u"-/a.htm"_s << false;
}

void StartupTest::CommandLine()
{
    QFETCH(QStringList, arguments);
    const ::CommandLine commandLine = ParseCommandLine(CommandText(QStringList{u"inkloom"_s} + arguments));
    QTEST(commandLine.File, "file");
    QTEST(commandLine.Splash, "splash");
}

void StartupTest::PageOfCommandLine_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("page"); // below the working folder
    QTest::newRow("nothing") << u""_s << u""_s;
    QTest::newRow("relative") << u"sub/../a b.htm"_s << u"/a b.htm"_s;
    QTest::newRow("absent") << u"no.htm"_s << u"/no.htm"_s;
    QTest::newRow("folder with index.htm") << u"both"_s << u"/both/index.htm"_s;
    QTest::newRow("folder with index.html") << u"html/"_s << u"/html/index.html"_s;
    QTest::newRow("folder without an index") << u"none"_s << u"/none"_s;
}

void StartupTest::PageOfCommandLine()
{
    QFETCH(QString, file);
    QFETCH(QString, page);
    const QTemporaryDir folder;
    const QDir dir(folder.path());
    for (const QString &name : {u"both"_s, u"html"_s, u"none"_s})
        QVERIFY(dir.mkdir(name));
    for (const QString &name : {u"both/index.htm"_s, u"both/index.html"_s, u"html/index.html"_s})
        QVERIFY(QFile(dir.filePath(name)).open(QIODevice::WriteOnly));
    QCOMPARE(PageFromCommandLine(file, folder.path()), page.isEmpty() ? QString() : folder.path() + page);
    if (!page.isEmpty()) {
        QCOMPARE(PageFromCommandLine(folder.filePath(file), u"/elsewhere"_s), folder.path() + page);
    }
}

void StartupTest::Versions_data()
{
    QTest::addColumn<QString>("browser");
    QTest::addColumn<QString>("editing");
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<bool>("charsetFix");
    QTest::newRow("8") << u"8.0.6001.18702"_s << u""_s << true << false;
    QTest::newRow("9") << u"9.0.8112.16421"_s << u""_s << true << false;
    QTest::newRow("just below") << u"7.9"_s << u""_s << false << false;
    QTest::newRow("10 is less as text") << u"10.0"_s << u""_s << false << false;
    QTest::newRow("11 is less as text") << u"11.0.9600.16384"_s << u""_s << false << false;
    QTest::newRow("none") << u""_s << u""_s << false << false;
    QTest::newRow("charset fix") << u"9.0"_s << u"6.1.0.9246"_s << true << true;
    QTest::newRow("another editing engine") << u"9.0"_s << u"6.1.0.92460"_s << true << false;
}

void StartupTest::Versions()
{
    QFETCH(QString, browser);
    QFETCH(QString, editing);
    AppState app;
    TakeEngineVersions(app, {.Browser = browser, .Editing = editing});
    QTEST(app.EngineVersionNew, "isNew");
    QTEST(app.CharsetFix, "charsetFix");
}

void StartupTest::VersionsWithoutSystemFiles()
{
    const EngineVersions versions = AskEngineVersions();
    QCOMPARE(versions.Browser, u"9.0.0.0"_s);
    QCOMPARE(versions.Editing, QString());
}

AppState StartupTest::ReadFrom(const QString &ini)
{
    const QTemporaryDir folder;
    if (!ini.isEmpty()) {
        QFile file(folder.filePath(::Settings::FileName()));
        if (file.open(QIODevice::WriteOnly))
            file.write(ini.toUtf8());
    }
    AppState app;
    ReadStartSettings(app, ::Settings(folder.path(), folder.filePath(u"system"_s)));
    return app;
}

void StartupTest::DefaultsOfSettings()
{
    AppState app;
    app.AutoOpen = app.SaveImmediately = app.AutoLinkStyles = false;
    app = ReadFrom(QString());
    QCOMPARE(app.AutoOpen, true);
    QCOMPARE(app.AutoSave, false);
    QCOMPARE(app.UseExternalEditor, false);
    QCOMPARE(app.ExternalEditorPath, QString());
    QCOMPARE(app.DefaultExtension, u".htm"_s);
    QCOMPARE(app.FilePattern, u"*.htm*;*.shtml;*.asp*;*.php*;*.htm"_s);
    QCOMPARE(app.XmlEncoding, u"ISO-8859-1"_s);
    QCOMPARE(app.SaveImmediately, true);
    QCOMPARE(app.DefaultTemplate, u"_blank.htm"_s);
    QCOMPARE(app.AutoLinkStyles, true);
    QCOMPARE(app.PreserveHtml, false);
    QCOMPARE(app.ExactSource, false);
    QCOMPARE(app.MainDir, QString());
    QCOMPARE(app.TemplatesDir, u"Templates"_s);
    QCOMPARE(app.MainDictionary, u"/american.vtd"_s);
    QCOMPARE(app.CustomDictionary, u"/custom.dic"_s);
}

void StartupTest::Settings_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<std::function<QVariant(const AppState &)>>("field");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const QString &line, auto member, const QVariant &value) {
        const std::function<QVariant(const AppState &)> field = [member](const AppState &app) {
            return QVariant(app.*member);
        };
        QTest::newRow(name) << line << field << value;
    };
    row("autoopen off", u"autoopen=0"_s, &AppState::AutoOpen, false);
    row("autosave", u"autosave=1"_s, &AppState::AutoSave, true);
    row("useexted", u"useexted=1"_s, &AppState::UseExternalEditor, true);
    row("exted", u"exted=/usr/bin/ed"_s, &AppState::ExternalEditorPath, u"/usr/bin/ed"_s);
    row("defext", u"defext=.php"_s, &AppState::DefaultExtension, u".php"_s);
    row("defext goes into the pattern", u"defext=.php"_s, &AppState::FilePattern,
        u"*.htm*;*.shtml;*.asp*;*.php*;*.php"_s);
    row("xmlencode", u"xmlencode=UTF-8"_s, &AppState::XmlEncoding, u"UTF-8"_s);
    row("xmlencode too short", u"xmlencode=ab"_s, &AppState::XmlEncoding, u"ISO-8859-1"_s);
    row("saveimmed off", u"saveimmed=0"_s, &AppState::SaveImmediately, false);
    row("saveimmed odd", u"saveimmed=no"_s, &AppState::SaveImmediately, true);
    row("any number but zero is true", u"auto_link_style_insert=-1"_s, &AppState::AutoLinkStyles, true);
    row("zero is false", u"auto_link_style_insert=0"_s, &AppState::AutoLinkStyles, false);
    row("preserveHTML", u"preserveHTML=1"_s, &AppState::PreserveHtml, true);
    row("exactsource", u"exactsource=1"_s, &AppState::ExactSource, true);
}

void StartupTest::Settings()
{
    QFETCH(QString, line);
    using Field = std::function<QVariant(const AppState &)>;
    QFETCH(Field, field);
    QTEST(field(ReadFrom(u"[Settings]\n"_s + line + u'\n')), "value");
}

void StartupTest::DerivedNames_data()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QString>("mainDir");
    QTest::addColumn<QString>("dictionary");
    QTest::newRow("with separator") << u"main dir=/opt/ink/"_s << u"/opt/ink/"_s << u"/opt/ink/american.vtd"_s;
    QTest::newRow("without separator") << u"main dir=/opt/ink"_s << u"/opt/ink/"_s << u"/opt/ink/american.vtd"_s;
    QTest::newRow("own dictionary stays as it is")
        << u"main dir=/opt/ink/\nmain dictionary=/d//a.vtd"_s << u"/opt/ink/"_s << u"/d//a.vtd"_s;
}

void StartupTest::DerivedNames()
{
    QFETCH(QString, lines);
    QFETCH(QString, mainDir);
    const AppState app = ReadFrom(u"[Locations]\n"_s + lines + u'\n');
    QCOMPARE(app.MainDir, mainDir);
    QCOMPARE(app.TemplatesDir, mainDir + u"Templates"_s);
    QTEST(app.MainDictionary, "dictionary");
}

QTEST_GUILESS_MAIN(StartupTest)
#include "StartupTest.moc"
