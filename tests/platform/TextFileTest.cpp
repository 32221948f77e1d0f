#include "platform/TextFile.h"
#include "support/Files.h"
#include "support/SmallDisk.h"
#include "support/WithoutPrivileges.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype BigText = 8'000'000; // of the texts that the killed writer puts down by turns

QByteArray Meta(const char *charset)
{
    return QByteArray("<html><head><meta charset=") + charset + "></head>";
}

struct EncodingRow
{
    const char *Name;
    QByteArray Mark;
    QByteArray Head; ///< plain characters, 8 bits each
    QByteArray Word;
    QString Text;
    QByteArray Encoding;
};

std::vector<EncodingRow> EncodingRows()
{
    const QByteArray latin("Gr\xFC\xDF"
                           "e \x80 \x81");
    const QString latinText = u"Gr\u00FC\u00DFe \u20AC \u0081"_s;
    return {
        {"plain", "", "", "abc", u"abc"_s, "UTF-8"},
        {"UTF-8", "", "", "\xC3\xA9\xF0\x9F\x98\x80", u"\u00E9\U0001F600"_s, "UTF-8"},
        {"UTF-8 with mark", "\xEF\xBB\xBF", "", "\xC3\xA9", u"\u00E9"_s, "UTF-8"},
        {"two marks", "\xEF\xBB\xBF", "", "\xEF\xBB\xBF\xC3\xA9", u"\uFEFF\u00E9"_s, "UTF-8"},
        {"mark before declaration", "\xEF\xBB\xBF", Meta("koi8-r"), "\xC3\xA9", u"\u00E9"_s, "UTF-8"},
        {"UTF-16LE", "\xFF\xFE", "", QByteArray("\xE9\0\x3D\xD8\0\xDE", 6), u"\u00E9\U0001F600"_s, "UTF-16LE"},
        {"UTF-16BE", "\xFE\xFF", "", QByteArray("\0\xE9", 2), u"\u00E9"_s, "UTF-16BE"},
        {"half a pair in UTF-16", "\xFE\xFF", "", QByteArray("\xD8\x3D\0x", 4), QChar(0xD83D) + u"x"_s, "UTF-16BE"},
        {"UTF-32LE", QByteArray("\xFF\xFE\0\0", 4), "", QByteArray("\xE9\0\0\0", 4), u"\u00E9"_s, "UTF-32LE"},
        {"UTF-32BE", QByteArray("\0\0\xFE\xFF", 4), "", QByteArray("\0\1\xF6\0", 4), u"\U0001F600"_s, "UTF-32BE"},
        {"undeclared Western", "", "", latin, latinText, "windows-1252"},
        {"latin1 means windows-1252", "", Meta("Latin1"), latin, latinText, "windows-1252"},
        {"ascii means windows-1252", "", Meta("us-ascii"), "\x93", u"\u201C"_s, "windows-1252"},
        {"declared Western that is UTF-8 too", "", Meta("iso-8859-1"), "\xC3\xA9", u"\u00C3\u00A9"_s, "windows-1252"},
        {"ISO-8859-2", "", Meta("iso-8859-2"), "\xB3\xF3", u"\u0142\u00F3"_s, "ISO-8859-2"},
        {"KOI8-R", "", Meta("KOI8-R"), "\xD0\xD2\xC9", u"\u043F\u0440\u0438"_s, "KOI8-R"},
        {"windows-1251", "", Meta("cp1251"), "\xEF\xF0\xE8", u"\u043F\u0440\u0438"_s, "windows-1251"},
        {"latin5 means windows-1254", "", Meta("ISO-8859-9"), "\xFE\x80", u"\u015F\u20AC"_s, "windows-1254"},
        {"Shift_JIS", "", Meta("x-sjis"), "\x93\xFA\x96\x7B\\~", u"\u65E5\u672C\\~"_s, "Shift_JIS"},
        {"EUC-JP", "", Meta("euc-jp"), "\xC6\xFC", u"\u65E5"_s, "EUC-JP"},
        {"ISO-2022-JP", "", Meta("iso-2022-jp"), "\x1B$BF|\x1B(B", u"\u65E5"_s, "ISO-2022-JP"},
        {"gb2312 means GBK", "", Meta("gb2312"), "\xD6\xD0\xE9\x46", u"\u4E2D\u9555"_s, "GBK"},
        {"Big5", "", Meta("big5"), "\xA4\xA4", u"\u4E2D"_s, "Big5"},
        {"euc-kr means windows-949", "", Meta("euc-kr"), "\xB0\xA1\x8C\x63", u"\uAC00\uB620"_s, "windows-949"},
        {"meta that says UTF-16", "", Meta("utf-16le"), "\xC3\xA9", u"\u00E9"_s, "UTF-8"},
        {"XML declaration", "", "<?xml version='1.0' encoding='koi8-r'?>", "\xD0", u"\u043F"_s, "KOI8-R"},
    };
}

} // namespace

class TextFileTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString Path(const QString &name = u"a.htm"_s) const { return m_folder->filePath(name); }
    bool Link(const QString &target, const QString &name) const
    {
        return ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(Path(name)).constData()) == 0;
    }
    static mode_t ModeOf(const QString &path)
    {
        struct stat status = {};
        return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }
    static bool SetMode(const QString &path, mode_t mode)
    {
        return ::chmod(QFile::encodeName(path).constData(), mode) == 0;
    }

private slots:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".?"_s));
        m_folder = std::make_unique<QTemporaryDir>();
    }

    /// Every encoding with every kind of line end: right text, and the same bytes back.
    void Encodings_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("mark");

        const std::pair<const char *, QByteArray> kinds[] = {
            {"LF", "\n"}, {"CR LF", "\r\n"}, {"CR", "\r"}, {"mixed", "\r\n\n\r\r\n"}};
        for (const EncodingRow &row : EncodingRows()) {
            for (const auto &[kind, end] : kinds) {
                const auto wide = [&](const QByteArray &plain) {
                    QByteArray result;
                    const int width = row.Encoding.startsWith("UTF-32") ? 4 : row.Encoding.startsWith("UTF-16") ? 2 : 1;
                    for (const char c : plain) {
                        const QByteArray zeros(width - 1, '\0');
                        result += row.Encoding.endsWith("BE") ? zeros + c : c + zeros;
                    }
                    return result;
                };
                QTest::addRow("%s, %s", row.Name, kind)
                    << row.Mark + wide(row.Head + end) + row.Word + wide(end + "x" + end)
                    << QString::fromLatin1(row.Head + end) + row.Text + QString::fromLatin1(end + "x" + end)
                    << row.Encoding << !row.Mark.isEmpty();
            }
        }
    }
    void Encodings()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(PutBytes(Path(), bytes));
        const TextFileContent page = ReadTextFile(Path());
        QCOMPARE(page.Error, FileError::None);
        QTEST(page.Text, "text");
        QTEST(page.Encoding.Name, "name");
        QTEST(page.Encoding.ByteOrderMark, "mark");
        QCOMPARE(WriteTextFile(Path(u"b.htm"_s), page.Text, page.Encoding).Error, FileError::None);
        QCOMPARE(BytesOf(Path(u"b.htm"_s)), bytes);
    }

    void Declarations_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("name");
        const auto row = [](const char *name, const QByteArray &head, const char *encoding) {
            QTest::newRow(name) << head + "\xF0" << QByteArray(encoding);
        };
        row("http-equiv", "<META content='text/html; CHARSET = \"koi8-r\"' HTTP-EQUIV=Content-Type>", "KOI8-R");
        row("http-equiv without quotes", "<meta http-equiv=content-type content=text/html;charset=koi8-r;x>", "KOI8-R");
        row("content of something else", "<meta name=x content='text/html;charset=koi8-r'>", "windows-1252");
        row("blanks and other attributes", "<meta\n id='charset=x' charset\t=\n' koi8-r ' />", "KOI8-R");
        row("in a comment", "<!-- <meta charset=koi8-r> -->", "windows-1252");
        row("behind a comment", "<!--><meta charset=koi8-r>", "KOI8-R");
        row("in a value", "<p title='<meta charset=koi8-r>'>", "windows-1252");
        row("no meta tag", "<metal charset=koi8-r>", "windows-1252");
        row("behind server code", "<?php echo '<b>'; ?><meta charset=koi8-r>", "KOI8-R");
        row("first known label counts", "<meta charset=klingon><meta charset=koi8-r><meta charset=cp1251>", "KOI8-R");
        row("declared UTF-8, but is not", "<meta charset=utf-8>", "windows-1252");
        row("next declaration when the first does not hold",
            "<?xml version=\"1.0\" encoding=\"koi8-r\"?><meta charset=utf-8>", "KOI8-R");
        row("labels no page can bear", "<meta charset=utf-7><meta charset=ebcdic-cp-us><meta charset=utf-32>",
            "windows-1252");
        row("within 4 KB", QByteArray(4096 - 21, ' ') + "<meta charset=koi8-r>", "KOI8-R");
        row("beyond 4 KB", QByteArray(4097, ' ') + "<meta charset=koi8-r>", "windows-1252");
        row("broken off", "<meta charset='koi8-r", "windows-1252");
        row("wrong mark", "\xEF\xBB\xBF", "windows-1252");
        QTest::newRow("UTF-16 cut in a unit") << QByteArray("\xFF\xFE\x41") << QByteArray("windows-1252");
        QTest::newRow("few foreign letters are no reason to guess")
            << QByteArray("<p>caf\xE9 \xE0 la cr\xE8me</p>") << QByteArray("windows-1252");
        QTest::newRow("Western signs are no letters")
            << QByteArray("Home \xB7 News \xA0\xA0\xBB About \x93us\x94 \xA9 2001 \x96 ").repeated(20)
            << QByteArray("windows-1252");
        QTest::newRow("undeclared Russian")
            << QByteArray("<p>\xC4\xEE\xE1\xF0\xEE \xEF\xEE\xE6\xE0\xEB\xEE\xE2\xE0\xF2\xFC \xED\xE0 \xED\xE0\xF8 "
                          "\xF1\xE0\xE9\xF2, \xE7\xE4\xE5\xF1\xFC \xE2\xFB \xED\xE0\xE9\xE4\xE5\xF2\xE5</p>")
            << QByteArray("windows-1251");
        QTest::newRow("undeclared Japanese")
            << QByteArray("<p>\x82\xE6\x82\xA4\x82\xB1\x82\xBB\x81\x41\x8E\x84\x82\xBD\x82\xBF\x82\xCC\x83\x79\x81\x5B"
                          "\x83\x57\x82\xD6\x81\x42</p>")
            << QByteArray("Shift_JIS");
    }
    void Declarations()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(PutBytes(Path(), bytes));
        const TextFileContent page = ReadTextFile(Path());
        QTEST(page.Encoding.Name, "name");
        QCOMPARE(WriteTextFile(Path(), page.Text, page.Encoding).Error, FileError::None);
        QCOMPARE(BytesOf(Path()), bytes);
    }

    void AnyByteIsWestern()
    {
        QByteArray bytes;
        for (int c = 1; c < 256; ++c)
            bytes += char(c);
        QVERIFY(PutBytes(Path(), Meta("windows-1252") + bytes));
        const TextFileContent page = ReadTextFile(Path());
        QCOMPARE(page.Encoding.Name, "windows-1252");
        QCOMPARE(WriteTextFile(Path(), page.Text, page.Encoding).Error, FileError::None);
        QCOMPARE(BytesOf(Path()), Meta("windows-1252") + bytes);
    }

    void ForeignCharacters_data()
    {
        QTest::addColumn<QByteArray>("encoding");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        const QString lone = u"a"_s + QChar(0xD83D) + u"b"_s + QChar(0xDE00);
        QTest::newRow("Western") << "windows-1252"_ba << u"\u20AC\u0416\U0001F600?\u0416\uFF21"_s
                                 << "\x80&#1046;&#128512;?&#1046;&#65313;"_ba;
        QTest::newRow("Russian") << "KOI8-R"_ba << u"\u0416\u20AC"_s << "\xF6&#8364;"_ba;
        QTest::newRow("Japanese with shifts")
            << "ISO-2022-JP"_ba << u"\u65E5\u20AC\u65E5"_s << "\x1B$BF|\x1B(B&#8364;\x1B$BF|\x1B(B"_ba;
        QTest::newRow("converter's silent look-alike") << "Shift_JIS"_ba << u"\uF86F"_s << "&#63599;"_ba;
        QTest::newRow("lone halves, UTF-8") << "UTF-8"_ba << lone << "a\xEF\xBF\xBD"_ba + "b\xEF\xBF\xBD";
        QTest::newRow("lone halves, Western") << "windows-1252"_ba << lone << "a&#65533;b&#65533;"_ba;
    }
    void ForeignCharacters()
    {
        QFETCH(QByteArray, encoding);
        QFETCH(QString, text);
        QCOMPARE(WriteTextFile(Path(), text, {encoding, false}).Error, FileError::None);
        QTEST(BytesOf(Path()), "bytes");
    }
    void UnknownEncodingWritesNothing()
    {
        QVERIFY(PutBytes(Path(), "old"));
        QCOMPARE(WriteTextFile(Path(), u"new"_s, {"klingon", false}).Error, FileError::Unexpected);
        QCOMPARE(BytesOf(Path()), "old");
    }

    void UnreadableFiles()
    {
        QCOMPARE(ReadTextFile(Path()).Error, FileError::NotFound);
        QCOMPARE(ReadTextFile(Path(u"none/a.htm"_s)).Error, FileError::PathNotFound);
        QCOMPARE(ReadTextFile(m_folder->path()).Error, FileError::AccessDenied);
        QVERIFY(PutBytes(Path(), "GIF89a\0"_ba + '\0'));
        QCOMPARE(ReadTextFile(Path()).Error, FileError::NotText);
        QVERIFY(PutBytes(Path(), QByteArray("a\0b\0", 4))); // UTF-16, but who knows
        QCOMPARE(ReadTextFile(Path()).Error, FileError::NotText);
        QCOMPARE(ReadTextFile(Path(u"a.htm/b"_s)).Error, FileError::PathNotFound);
        QVERIFY(SetMode(Path(), 0));
        {
            const WithoutPrivileges bound;
            QCOMPARE(ReadTextFile(Path()).Error, FileError::AccessDenied);
        }
        QVERIFY(QFile::resize(Path(), 512LL * 1024 * 1024 + 1)); // a hole: takes no room
        QCOMPARE(ReadTextFile(Path()).Error, FileError::TooLarge);
        QCOMPARE(::mkfifo(QFile::encodeName(Path(u"pipe"_s)).constData(), 0600), 0);
        QCOMPARE(ReadTextFile(Path(u"pipe"_s)).Error, FileError::AccessDenied); // and does not wait for a writer
    }

    void PermissionsStay_data()
    {
        QTest::addColumn<int>("mode");
        for (const int mode : {0600, 0664, 0755, 0222, 02775})
            QTest::addRow("%o", unsigned(mode)) << mode;
    }
    void PermissionsStay()
    {
        QFETCH(int, mode);
        QVERIFY(PutBytes(Path(), "old"));
        QVERIFY(SetMode(Path(), mode_t(mode)));
        QCOMPARE(WriteTextFile(Path(), u"new"_s, {}).Error, FileError::None);
        QCOMPARE(ModeOf(Path()), mode_t(mode));
        QCOMPARE(EntriesOf(m_folder->path()), QStringList(u"a.htm"_s));
    }
    void NewFileTakesTheUmask()
    {
        const mode_t before = ::umask(027);
        const TextFileWritten written = WriteTextFile(Path(), u"new"_s, {});
        ::umask(before);
        QCOMPARE(written.Error, FileError::None);
        QCOMPARE(ModeOf(Path()), mode_t(0640));
    }

    void LinksAreFollowed()
    {
        QVERIFY(QDir(m_folder->path()).mkpath(u"real/deep"_s));
        QVERIFY(PutBytes(Path(u"real/page.htm"_s), "old"));
        QVERIFY(Link(u"real/deep"_s, u"deep"_s));
        QVERIFY(Link(u"deep/../page.htm"_s, u"second"_s)); // ".." counts from real/deep
        QVERIFY(Link(Path(u"second"_s), u"a.htm"_s));
        QCOMPARE(WriteTextFile(Path(), u"new"_s, {}).Error, FileError::None);
        QCOMPARE(BytesOf(Path(u"real/page.htm"_s)), "new");
        QVERIFY(QFileInfo(Path()).isSymLink() && QFileInfo(Path(u"second"_s)).isSymLink());

        QVERIFY(Link(u"real/later.htm"_s, u"dangling"_s));
        QCOMPARE(ReadTextFile(Path(u"dangling"_s)).Error, FileError::NotFound);
        QCOMPARE(WriteTextFile(Path(u"dangling"_s), u"new"_s, {}).Error, FileError::None);
        QCOMPARE(BytesOf(Path(u"real/later.htm"_s)), "new");

        QVERIFY(Link(u"loop"_s, u"loop"_s));
        QCOMPARE(WriteTextFile(Path(u"loop"_s), u"new"_s, {}).Error, FileError::Unexpected);
        QVERIFY(QFileInfo(Path(u"loop"_s)).isSymLink());
    }

    void ReadOnlyFileIsNotReplaced()
    {
        QVERIFY(PutBytes(Path(), "old"));
        QVERIFY(SetMode(Path(), 0444));
        QCOMPARE(WriteTextFile(Path(), u"new"_s, {}).Error, FileError::AccessDenied);
        QCOMPARE(BytesOf(Path()), "old");
        QCOMPARE(ModeOf(Path()), mode_t(0444));
    }
    void FoldersThatTakeNothing()
    {
        QVERIFY(PutBytes(Path(), "old and longer"));
        QVERIFY(SetMode(m_folder->path(), 0555));
        const WithoutPrivileges bound;
        QCOMPARE(WriteTextFile(Path(u"new.htm"_s), u"new"_s, {}).Error, FileError::AccessDenied);
        const TextFileWritten written = WriteTextFile(Path(), u"in place"_s, {});
        QCOMPARE(written.Error, FileError::None);
        QCOMPARE(BytesOf(Path()), "in place");
        QVERIFY(!ChangedOnDisk(Path(), written.Stamp));
        QVERIFY(SetMode(m_folder->path(), 0755));
        QCOMPARE(EntriesOf(m_folder->path()), QStringList(u"a.htm"_s));
    }
    void VanishedFolder()
    {
        const QString path = Path(u"gone/a.htm"_s);
        QVERIFY(QDir(m_folder->path()).mkpath(u"gone"_s));
        QCOMPARE(WriteTextFile(path, u"x"_s, {}).Error, FileError::None);
        QVERIFY(QDir(Path(u"gone"_s)).removeRecursively());
        QCOMPARE(WriteTextFile(path, u"x"_s, {}).Error, FileError::PathNotFound);
        QCOMPARE(WriteTextFile({}, u"x"_s, {}).Error, FileError::PathNotFound);
        QCOMPARE(WriteTextFile(m_folder->path(), u"x"_s, {}).Error, FileError::AccessDenied);
    }

    void FullDisk_data()
    {
        QTest::addColumn<bool>("inPlace");
        QTest::newRow("beside the old file") << false;
        QTest::newRow("in place") << true;
    }
    void FullDisk()
    {
        QFETCH(bool, inPlace);
        const SmallDisk disk(64);
        if (!disk.IsMounted())
            QSKIP("This system lets nobody mount a small disk");
        const QString page = disk.FilePath(u"a.htm"_s);
        const QByteArray old = QByteArray("old page\n").repeated(2000);
        QVERIFY(PutBytes(page, old));
        QVERIFY(SetMode(disk.Path(), inPlace ? 0555 : 0755));
        const WithoutPrivileges bound;
        QCOMPARE(WriteTextFile(page, QString(70'000, u'x'), {}).Error, FileError::DiskFull);
        QCOMPARE(BytesOf(page), old);
        QCOMPARE(EntriesOf(disk.Path()), QStringList(u"a.htm"_s));
        QCOMPARE(WriteTextFile(page, QString(20'000, u'x'), {}).Error, FileError::None);
        QCOMPARE(BytesOf(page), QByteArray(20'000, 'x'));
    }

    /// The writer dies a little later in every run: before, in and behind the writing.
    void KilledWhileWriting()
    {
        QVERIFY(PutBytes(Path(), QByteArray(BigText, 'a')));
        for (int run = 0; run < 20; ++run) {
            QProcess writer;
            writer.start(QCoreApplication::applicationFilePath(), {u"--write-on-and-on"_s, Path()});
            QVERIFY(writer.waitForReadyRead());
            QElapsedTimer timer;
            timer.start();
            while (timer.nsecsElapsed() < run * 2'000'000)
                ;
            writer.kill();
            QVERIFY(writer.waitForFinished());
            const QByteArray bytes = BytesOf(Path());
            QVERIFY(bytes == QByteArray(BigText, 'a') || bytes == QByteArray(BigText, 'b'));
        }
    }

    void Changes()
    {
        QVERIFY(!ChangedOnDisk(Path(), {}));
        const FileStamp written = WriteTextFile(Path(), u"page"_s, {}).Stamp;
        QCOMPARE(written, ReadTextFile(Path()).Stamp);
        QVERIFY(!ChangedOnDisk(Path(), written));
        QVERIFY(ChangedOnDisk(Path(), {}));

        const auto touch = [this] {
            QFile file(Path());
            return file.open(QIODevice::ReadWrite) &&
                   file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime);
        };
        QVERIFY(touch());
        QVERIFY2(!ChangedOnDisk(Path(), written), "a new time alone is no change");
        QVERIFY(PutBytes(Path(), "PAGE") && touch());
        QVERIFY(ChangedOnDisk(Path(), written));
        QVERIFY(PutBytes(Path(), "pages"));
        QVERIFY(ChangedOnDisk(Path(), written));
        QVERIFY(QFile::remove(Path()));
        QVERIFY(ChangedOnDisk(Path(), written));
    }
};

bool operator==(const FileStamp &a, const FileStamp &b)
{
    return a.Exists == b.Exists && a.Size == b.Size && a.Modified == b.Modified && a.Digest == b.Digest;
}

int main(int argc, char **argv)
{
    SmallDisk::Prepare();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--write-on-and-on"_s) {
        for (char16_t letter = u'b';; letter = letter == u'a' ? u'b' : u'a') {
            if (WriteTextFile(arguments[2], QString(BigText, letter), {}).Error != FileError::None ||
                ::write(STDOUT_FILENO, ".", 1) != 1)
                return 1;
        }
    }
    TextFileTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "TextFileTest.moc"
