#include "platform/TextFile.h"
#include "support/Files.h"
#include "support/SmallDisk.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

/// Random bytes, marks and declarations: whatever is read without error is written back byte for byte.
class TextFileFuzzTest : public QObject
{
    Q_OBJECT

private:
    static QByteArray Page(QRandomGenerator &random)
    {
        static const QByteArray pieces[] = {
            "\xEF\xBB\xBF",
            "\xFF\xFE",
            "\xFE\xFF",
            QByteArray("\xFF\xFE\0\0", 4),
            QByteArray("\0\0\xFE\xFF", 4),
            "<meta charset=",
            "<meta http-equiv=content-type content='text/html;charset=",
            "<?xml encoding=\"",
            "<!--",
            "utf-8",
            "utf-16",
            "shift_jis",
            "iso-2022-jp",
            "gb18030",
            "big5-hkscs",
            "euc-kr",
            "koi8-u",
            "hz-gb-2312",
            "windows-1258",
            "x-mac-cyrillic",
            "'",
            "\">",
            ">",
            "-->",
            "\x1B$B",
            "\x1B(J",
            "\x0E",
            "~{",
            "\r\n",
            "\r",
            "\xC3\xA9",
            "\xED\xA0\xBD",
            "\xF0\x9F\x98\x80",
            "\xEF\xBF\xBD",
            "\x82\xA0",
            "\xA4\xA4",
            "\x81\x30\x81\x30",
        };
        QByteArray page;
        const int length = random.bounded(40);
        for (int i = 0; i < length; ++i) {
            if (random.bounded(3) > 0)
                page += pieces[random.bounded(quint32(std::size(pieces)))];
            else
                page += char(random.bounded(random.bounded(20) == 0 ? 0 : 1, 256));
        }
        return page;
    }

private slots:
    void SameBytesBack()
    {
        const SmallDisk disk(1024); // in memory: thousands of flushes cost nothing there
        const QString path = disk.FilePath(u"a.htm"_s);
        QRandomGenerator random(20010101);
        int texts = 0;
        for (int run = 0; run < 3000; ++run) {
            const QByteArray bytes = Page(random);
            QVERIFY(PutBytes(path, bytes));
            const TextFileContent page = ReadTextFile(path);
            if (page.Error != FileError::None) {
                QVERIFY2(bytes.contains('\0'), bytes.toPercentEncoding().constData());
                continue;
            }
            ++texts;
            QCOMPARE(WriteTextFile(path, page.Text, page.Encoding).Error, FileError::None);
            QVERIFY2(BytesOf(path) == bytes, bytes.toPercentEncoding().constData());
        }
        QVERIFY2(texts > 1000, "most of the pages are meant to be texts");
    }

    /// Any text in any encoding: written somehow, readable again, never with a lost character.
    void AnyTextCanBeWritten()
    {
        const SmallDisk disk(1024); // in memory: thousands of flushes cost nothing there
        const QString path = disk.FilePath(u"a.htm"_s);
        QRandomGenerator random(20010102);
        for (const char *encoding : {"UTF-8", "UTF-16LE", "windows-1252", "Shift_JIS", "ISO-2022-JP", "GB18030", "GBK"})
        {
            for (int run = 0; run < 100; ++run) {
                QString text;
                for (int i = 0; i < 50; ++i)
                    text += QChar(char16_t(random.bounded(1, random.bounded(2) ? 0x10000 : 0x180)));
                QCOMPARE(WriteTextFile(path, text, {encoding, false}).Error, FileError::None);
                QVERIFY(BytesOf(path).size() >= text.size());
            }
        }
    }
};

int main(int argc, char **argv)
{
    SmallDisk::Prepare();
    QCoreApplication application(argc, argv);
    TextFileFuzzTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "TextFileFuzzTest.moc"
