#include "platform/Settings.h"
#include "support/Files.h"
#include "support/SmallDisk.h"

#include <QCoreApplication>
#include <QLockFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class SettingsTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_home;
    QString Folder() const { return m_home->filePath(u"config/inkloom"_s); }
    QString File() const { return Folder() + u"/inkloom.ini"_s; }
    Settings Own() const { return Settings(Folder(), m_home->filePath(u"system"_s)); }
    bool Put(const QByteArray &bytes) const { return QDir().mkpath(Folder()) && PutBytes(File(), bytes); }

private slots:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".?"_s));
        m_home = std::make_unique<QTemporaryDir>();
    }

    void Write_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char *name, const char *before, const char *section, const char *key,
                            const char *value, const char *after) {
            QTest::newRow(name) << QByteArray(before) << QString::fromUtf8(section) << QString::fromUtf8(key)
                                << QString::fromUtf8(value) << QByteArray(after);
        };
        row("first key of all", "", "Locations", "main dir", "/opt/x", "[Locations]\nmain dir=/opt/x\n");
        row("all else stays as it lies", "; head\n\n# more\n[B]\n; of k\nk = 1 \n\nother=x\n\n[A]\nodd line\n; tail",
            "B", "k", "2", "; head\n\n# more\n[B]\n; of k\nk = 2\n\nother=x\n\n[A]\nodd line\n; tail");
        row("new key behind the last of its section", "[A]\nx=1\n\n; about B\n[B]\ny=2\n", "A", "new", "v",
            "[A]\nx=1\nnew=v\n\n; about B\n[B]\ny=2\n");
        row("new section", "[A]\nx=1", "Recent Projects", "0", "/a b.htm| ",
            "[A]\nx=1\n\n[Recent Projects]\n0=/a b.htm|\n");
        row("names without regard to case", "[SETTINGS]\nAutoOpen=1\n", "Settings", "autoopen", "0",
            "[SETTINGS]\nAutoOpen=0\n");
        row("section in two parts", "[A]\nx=1\n[B]\ny=1\n[A]\nz=1\n", "A", "x", "2", "[A]\nx=2\n[B]\ny=1\n[A]\nz=1\n");
        row("the later of two equal keys counts", "[A]\nx=1\nx=2\n", "A", "x", "3", "[A]\nx=1\nx=3\n");
        row("CR LF file", "[A]\r\nx=1\r\n", "A", "y", "2", "[A]\r\nx=1\r\ny=2\r\n");
        row("byte order mark", "\xEF\xBB\xBF[A]\nx=1\n", "A", "x", "2", "\xEF\xBB\xBF[A]\nx=2\n");
        row("value cannot break out of its line", "[A]\nx=1\n", "A", "x", "a\r\n[B]\ny=1", "[A]\nx=a  [B] y=1\n");
        row("value like a parser's own syntax", "[A]\n", "A", "x", "<<<END", "[A]\nx=<<<END\n");
        row("key named in a value and a comment", "[A]\n;x=0\ny=x=1\n", "A", "x", "2", "[A]\n;x=0\ny=x=1\nx=2\n");
        row("empty value", "[A]\nx=1\ny=2\n", "A", "x", "", "[A]\nx=\ny=2\n");
        row("empty key writes nothing", "[FTP:h]\npw=x\n", "FTP:h", "", "", "[FTP:h]\npw=x\n");
        row("name that no INI file can hold", "[A]\nx=1\n", "A", "x=1;y", "2", "[A]\nx=1\n");
        row("host with brackets", "", "FTP:[::1]", "user", "ann", "[FTP:[::1]\nuser=ann\n");
        row("bytes that are no UTF-8", "[A]\nx=\xE4\ny=1\n", "A", "y", "ä", "[A]\nx=\xE4\ny=\xC3\xA4\n");
    }
    void Write()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QVERIFY(before.isEmpty() || Put(before));
        Own().SetIni(section, key, value);
        QTEST(BytesOf(File()), "after");
        if (BytesOf(File()) != before)
            QCOMPARE(Own().GetIni(section, key, u"?"_s),
                     value.simplified() == value ? value
                                                 : value.replace(u"\r\n"_s, u"  "_s).replace(u'\n', u' ').trimmed());
    }

    void Read_data()
    {
        QTest::addColumn<QByteArray>("own");
        QTest::addColumn<QByteArray>("system");
        QTest::addColumn<QString>("value");
        QTest::newRow("own file first") << QByteArray("[S]\nk=own\n") << QByteArray("[S]\nk=system\n") << u"own"_s;
        QTest::newRow("empty is not absent") << QByteArray("[S]\nk=\n") << QByteArray("[S]\nk=system\n") << u""_s;
        QTest::newRow("system file next")
            << QByteArray("[S]\nj=1\n") << QByteArray("[s]\nK = system \n") << u"system"_s;
        QTest::newRow("fallback last") << QByteArray("[T]\nk=1\n") << QByteArray("k=1\n") << u"fallback"_s;
        QTest::newRow("cut at 298 units")
            << QByteArray("[S]\nk=" + QByteArray(400, 'x')) << QByteArray() << QString(298, u'x');
        QTest::newRow("no half character at the cut")
            << QByteArray("[S]\nk=" + QByteArray(297, 'x') + "\xF0\x9F\x98\x80") << QByteArray() << QString(297, u'x');
        QTest::newRow("cut at NUL, the rest is found")
            << QByteArray("[S]\na=1\0\nk=a b\0c\n[T]", 20) << QByteArray() << u"a b"_s;
        QTest::newRow("broken section line") << QByteArray("[S\nk=1\n[S]\nk=2\n") << QByteArray() << u"2"_s;
    }
    void Read()
    {
        QFETCH(QByteArray, own);
        QFETCH(QByteArray, system);
        QVERIFY(Put(own));
        QVERIFY(QDir().mkpath(m_home->filePath(u"system"_s)));
        QVERIFY(PutBytes(m_home->filePath(u"system/inkloom.ini"_s), system));
        QTEST(Own().GetIni(u"S"_s, u"k"_s, u"fallback"_s), "value");
        QCOMPARE(BytesOf(File()), own);
    }

    void SideFiles()
    {
        Settings settings = Own();
        settings.SetSide(u"../../index.prj"_s, u"IMAGE MAP"_s, u"MapCount"_s, u"3"_s);
        settings.SetSide(u"C:\\site\\.prj"_s, u"Settings"_s, u"preview"_s, u"0"_s);
        settings.SetSide(u"/"_s, u"S"_s, u"k"_s, u"1"_s);
        settings.SetSide(u".."_s, u"S"_s, u"k"_s, u"1"_s);
        QCOMPARE(settings.GetSide(u"index.prj"_s, u"image map"_s, u"mapcount"_s, u"0"_s), u"3"_s);
        QCOMPARE(settings.GetSide(u".prj"_s, u"Settings"_s, u"preview"_s, u"1"_s), u"0"_s);
        QCOMPARE(settings.GetSide(u".."_s, u"S"_s, u"k"_s, u"none"_s), u"none"_s);
        QCOMPARE(EntriesOf(Folder()), QStringList({u".prj"_s, u"index.prj"_s}));
        QVERIFY(QDir().mkpath(m_home->filePath(u"system"_s)));
        QVERIFY(PutBytes(m_home->filePath(u"system/index.prj"_s), "[S]\nk=1\n"));
        QCOMPARE(settings.GetSide(u"index.prj"_s, u"S"_s, u"k"_s, u"0"_s), u"0"_s);
    }

    void OnlyTheUserMayLook()
    {
        Own().SetIni(u"FTP:h"_s, u"pw"_s, u"secret"_s);
        const auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QCOMPARE(QFile::permissions(File()), owner);
        QCOMPARE(QFile::permissions(Folder()), owner | QFile::ExeOwner | QFile::ExeUser);
        QVERIFY(QFile::setPermissions(File(), owner | QFile::ReadOther));
        Own().SetIni(u"FTP:h"_s, u"pw"_s, u"other"_s);
        QCOMPARE(QFile::permissions(File()), owner);
    }

    /// What a power cut leaves: zeros in the middle.
    void DamagedFileIsKeptAside()
    {
        const QByteArray damaged("[A]\nx=1\n" + QByteArray(20, '\0') + "\n[B]\ny=2\n");
        QVERIFY(Put(damaged));
        Own().SetIni(u"B"_s, u"z"_s, u"3"_s);
        QCOMPARE(BytesOf(File()), "[A]\nx=1\n[B]\ny=2\nz=3\n");
        QCOMPARE(BytesOf(File() + u".damaged"_s), damaged);
        QVERIFY(Put("\xFF\xFE["_ba + '\0'));
        Own().SetIni(u"B"_s, u"z"_s, u"4"_s);
        QCOMPARE(BytesOf(File()), "[B]\nz=4\n");
        QCOMPARE(BytesOf(File() + u".damaged"_s), damaged);
        QCOMPARE(BytesOf(File() + u".damaged-2"_s), "\xFF\xFE["_ba + '\0');
    }

    void FolderInPlaceOfTheFile()
    {
        QVERIFY(QDir().mkpath(File() + u"/precious"_s));
        Own().SetIni(u"A"_s, u"x"_s, u"1"_s);
        QCOMPARE(Own().GetIni(u"A"_s, u"x"_s, u"0"_s), u"1"_s);
        QVERIFY(QFileInfo(File() + u".damaged/precious"_s).isDir());
    }

    void FullDiskLosesNothing()
    {
        const SmallDisk disk(16);
        if (!disk.IsMounted())
            QSKIP("This system lets nobody mount a small disk");
        const QByteArray before = "[A]\nx=" + QByteArray(7000, 'x') + "\n";
        QVERIFY(PutBytes(disk.FilePath(u"inkloom.ini"_s), before));
        PutBytes(disk.FilePath(u"filler"_s), QByteArray(20'000, 'f')); // as much as goes in
        Settings(disk.Path(), {}).SetIni(u"A"_s, u"y"_s, u"1"_s);
        QCOMPARE(BytesOf(disk.FilePath(u"inkloom.ini"_s)), before);
        QCOMPARE(EntriesOf(disk.Path()), QStringList({u"filler"_s, u"inkloom.ini"_s}));
    }

    void WindowsDoNotLoseEachOthersKeys()
    {
        constexpr int Windows = 3;
        constexpr int Keys = 40;
        std::vector<std::unique_ptr<QProcess>> windows;
        for (int w = 0; w < Windows; ++w) {
            windows.push_back(std::make_unique<QProcess>());
            windows.back()->start(QCoreApplication::applicationFilePath(),
                                  {u"--write-keys"_s, Folder(), QString::number(w), QString::number(Keys)});
        }
        for (const auto &window : windows)
            QVERIFY(window->waitForFinished() && window->exitCode() == 0);
        for (int w = 0; w < Windows; ++w) {
            for (int k = 0; k < Keys; ++k)
                QCOMPARE(Own().GetIni(u"Window %1"_s.arg(w), u"key %1"_s.arg(k), u"lost"_s), QString::number(k));
        }
        QCOMPARE(EntriesOf(Folder()), QStringList(u"inkloom.ini"_s));
    }

    void KilledWindow()
    {
        QVERIFY(Put("[Mine]\nkey=kept\n"));
        for (int run = 1; run <= 5; ++run) {
            QProcess window;
            window.start(QCoreApplication::applicationFilePath(), {u"--write-keys"_s, Folder(), u"0"_s, u"100000"_s});
            for (int dots = 0; dots < run * 3; dots += int(window.readAll().size()))
                QVERIFY(window.waitForReadyRead());
            window.kill();
            QVERIFY(window.waitForFinished());
            Own().SetIni(u"Mine"_s, u"run"_s, QString::number(run)); // the dead window's lock does not hold us up
            QCOMPARE(Own().GetIni(u"Mine"_s, u"run"_s, u"0"_s), QString::number(run));
            QCOMPARE(Own().GetIni(u"Mine"_s, u"key"_s, u"lost"_s), u"kept"_s);
            QCOMPARE(Own().GetIni(u"Window 0"_s, u"key 2"_s, u"lost"_s), u"2"_s);
        }
    }

    /// A window that was killed before it had put its name into the lock.
    void NamelessLock()
    {
        QVERIFY(Put("") && PutBytes(File() + u".lock"_s, ""));
        QFile lock(File() + u".lock"_s);
        QVERIFY(lock.open(QIODevice::ReadWrite));
        QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addSecs(-10), QFileDevice::FileModificationTime));
        Own().SetIni(u"A"_s, u"x"_s, u"1"_s);
        QCOMPARE(BytesOf(File()), "[A]\nx=1\n");
        QCOMPARE(EntriesOf(Folder()), QStringList(u"inkloom.ini"_s));
    }

    void LockHeldTooLong()
    {
        QVERIFY(QDir().mkpath(Folder()));
        QLockFile lock(File() + u".lock"_s);
        QVERIFY(lock.lock());
        Own().SetIni(u"A"_s, u"x"_s, u"1"_s);
        QCOMPARE(Own().GetIni(u"A"_s, u"x"_s, u"0"_s), u"1"_s);
    }
};

int main(int argc, char **argv)
{
    SmallDisk::Prepare();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--write-keys"_s) {
        Settings settings(arguments[2], {});
        for (int k = 0; k < arguments[4].toInt(); ++k) {
            settings.SetIni(u"Window %1"_s.arg(arguments[3]), u"key %1"_s.arg(k), QString::number(k));
            ::write(STDOUT_FILENO, ".", 1);
        }
        return 0;
    }
    SettingsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "SettingsTest.moc"
