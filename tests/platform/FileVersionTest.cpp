#include "platform/FileVersion.h"
#include "platform/ErrorLog.h"
#include "platform/Folders.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// The small readers and writers of fixed places: version resources, folders, the error log.
class FileVersionTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void Versions_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("version");

        const QByteArray info("\xBD\x04\xEF\xFE\0\0\1\0" // signature, structure version
                              "\2\0\1\0\4\0\3\0"         // file version 1.2.3.4
                              "\1\0\6\0\x1E\x24\0\0"     // product version 6.1.0.9246
                              "\x3F\0\0\0",
                              28);
        QByteArray negative = info;
        negative.replace(16, 8, QByteArray("\xFF\xFF\0\x80\xFE\xFF\xFF\x7F", 8));
        QTest::newRow("product, not file version") << "MZ" + info << u"6.1.0.9246"_s;
        QTest::newRow("signed numbers") << QByteArray(3, 'x') + negative << u"-32768.-1.32767.-2"_s;
        QTest::newRow("chance signature before")
            << QByteArray("\xBD\x04\xEF\xFE\xBD\x04\xEF\xFE") + info << u"6.1.0.9246"_s;
        for (const int split : {1, 4, 7, 8, 20, 23, 24}) {
            QTest::addRow("%d bytes before the first MB ends", split)
                << QByteArray((1 << 20) - split, 'x') + info << u"6.1.0.9246"_s;
        }
        QTest::newRow("cut short") << info.first(23) << QString();
        QTest::newRow("other structure version") << info.first(4) + QByteArray(24, '\2') << QString();
        QTest::newRow("empty file") << QByteArray() << QString();
    }
    void Versions()
    {
        QFETCH(QByteArray, bytes);
        const QTemporaryDir folder;
        QVERIFY(PutBytes(folder.filePath(u"a.dll"_s), bytes));
        QTEST(ReadVersion(folder.filePath(u"a.dll"_s)), "version");
    }
    void VersionOfNoFile()
    {
        const QTemporaryDir folder;
        QCOMPARE(ReadVersion(folder.filePath(u"none.dll"_s)), QString());
        QCOMPARE(ReadVersion(folder.path()), QString());
        QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"pipe"_s)).constData(), 0600), 0);
        QCOMPARE(ReadVersion(folder.filePath(u"pipe"_s)), QString()); // and does not wait for a writer
    }

    void FoldersFollowTheEnvironment()
    {
        qputenv("HOME", "/home/ann");
        qputenv("XDG_CONFIG_HOME", "/a/config/");
        qputenv("XDG_STATE_HOME", "relative/counts/as/unset");
        qunsetenv("XDG_DATA_HOME");
        QCOMPARE(Folders::Config(), u"/a/config/inkloom"_s);
        QCOMPARE(Folders::State(), u"/home/ann/.local/state/inkloom"_s);
        QCOMPARE(Folders::Data(), u"/home/ann/.local/share/inkloom"_s);
        qputenv("INKLOOM_SYSTEM_CONFIG", "/opt/conf/");
        QCOMPARE(Folders::SystemConfig(), u"/opt/conf"_s);
        qunsetenv("INKLOOM_SYSTEM_CONFIG");
        QCOMPARE(Folders::SystemConfig(), u"/etc/inkloom"_s);
    }

    void LogGrowsLineByLine()
    {
        const QTemporaryDir state;
        qputenv("XDG_STATE_HOME", QFile::encodeName(state.path() + u"/not/yet"_s));
        LogError(u"FormNewFolder OKButton_Click"_s, 76, u"Path not found"_s);
        LogError(u"FormX %1"_s, -5, u"two\r\nlines, Größe"_s);
        QCOMPARE(BytesOf(state.path() + u"/not/yet/inkloom/TomeloftJavaHelp.log"_s),
                 "FormNewFolder OKButton_Click: 76 Path not found\nFormX %1: -5 two  lines, Gr\xC3\xB6\xC3\x9F"
                 "e\n");
        qputenv("XDG_STATE_HOME", "/proc/nowhere");
        LogError(u"FormX"_s, 1, u"cannot be written, and nothing stops"_s);
    }
};

QTEST_GUILESS_MAIN(FileVersionTest)
#include "FileVersionTest.moc"
