#include "platform/SourceEditor.h"

#include <Qsci/qscilexerhtml.h>
#include <Qsci/qsciscintilla.h>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using Sci = QsciScintilla;

namespace {

Sci *ControlOf(const QWidget &editor)
{
    return editor.findChild<Sci *>();
}

/// Style of the character at the first `what`, once the text is coloured.
int StyleAt(SourceEditor &editor, QStringView what)
{
    Sci *control = ControlOf(editor);
    control->SendScintilla(Sci::SCI_COLOURISE, 0UL, -1L);
    const QString text = editor.Text();
    const long at = text.left(text.indexOf(what)).toUtf8().size();
    return static_cast<int>(control->SendScintilla(Sci::SCI_GETSTYLEAT, at));
}

double Luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast(const QColor &a, const QColor &b)
{
    const double first = Luminance(a) + 0.05;
    const double second = Luminance(b) + 0.05;
    return qMax(first, second) / qMin(first, second);
}

const QString mixedPage = u"<html>\r\n<head>\n<style>\nbody { color: red }\n</style>\r"
                          "<script>var a = \"s\"; // note\n</script></head>\r\n"
                          "<body><?php echo 'x'; $y = 1; ?>\n<p class=\"k\">Grüße &amp; 😀</p>\r\n</body></html>\n\n"_s;

} // namespace

class SourceColoursTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        // Showing a window without a screen warns of that alone.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }
    void Lexer_TellsTheLanguagesApart();
    void StyleSheet_IsColoured_data();
    void StyleSheet_IsColoured();
    void Colours_FollowThePalette();
};

void SourceColoursTest::Lexer_TellsTheLanguagesApart()
{
    SourceEditor editor;
    editor.SetText(mixedPage);
    QCOMPARE(StyleAt(editor, u"body>"), int{QsciLexerHTML::Tag});
    QCOMPARE(StyleAt(editor, u"\"k\""), int{QsciLexerHTML::HTMLDoubleQuotedString});
    QCOMPARE(StyleAt(editor, u"&amp;"), int{QsciLexerHTML::Entity});
    QCOMPARE(StyleAt(editor, u"var a"), int{QsciLexerHTML::JavaScriptKeyword});
    QCOMPARE(StyleAt(editor, u"\"s\""), int{QsciLexerHTML::JavaScriptDoubleQuotedString});
    QCOMPARE(StyleAt(editor, u"// note"), int{QsciLexerHTML::JavaScriptCommentLine});
    QCOMPARE(StyleAt(editor, u"echo"), int{QsciLexerHTML::PHPKeyword});
    QCOMPARE(StyleAt(editor, u"$y"), int{QsciLexerHTML::PHPVariable});
    editor.SetText(u"<% Response.Write \"x\" ' it's a remark\n%><p>"_s);
    QCOMPARE(StyleAt(editor, u"' it's"), int{QsciLexerHTML::ASPVBScriptComment});
    QCOMPARE(StyleAt(editor, u"p>"), int{QsciLexerHTML::Tag});
}

void SourceColoursTest::StyleSheet_IsColoured_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("what");     // one place of the page
    QTest::addColumn<QString>("likeWhat"); // another whose colour it shares; "" for plain text
    const QString page = u"<style type=x>\n@media print { h1:hover, td { color: red; font: \"A;b\" } }\n/* n { */ "
                         "@import 'i.css'; ol { margin : 0 }\n<?php foo: ?> li { top:1px }</style><p>outside</p>"_s;
    const auto row = [&](const char *what, const char *like) {
        QTest::newRow(what) << page << QString::fromLatin1(what) << QString::fromLatin1(like);
    };
    row("hover", "h1");
    row("td {", "h1");
    row("ol {", "h1");
    row("li {", "h1");
    row("margin", "color:");
    row("font:", "color:");
    row("top:", "color:");
    row("0 }", "red;");
    row("b\"", "\"A");
    row("i.css", "\"A");
    row("n {", "/*");
    row("@import", "@media");
    row("foo", "");
    row("outside", "");
    QTest::newRow("hidden from old readers") << u"<style><!--\nh1 { a:b }\n--></style>"_s << u"a:"_s << u"a:"_s;
    QTest::newRow("in capitals, not closed") << u"<STYLE>h1, p {"_s << u"p {"_s << u"h1"_s;
    QTest::newRow("in a comment") << u"<!-- <style>h1 { } </style> -->"_s << u"h1"_s << u""_s;
    QTest::newRow("in a script") << u"<script>x = '<style>h1 { }';</script>"_s << u"h1"_s << u""_s;
    QTest::newRow("another element") << u"<styled>h1 { }</styled>"_s << u"h1"_s << u""_s;
    const QString lines = u"<br>\n"_s.repeated(3000);
    QTest::newRow("long page") << u"<style>h1, p { a:b }</style>"_s + lines << u"p {"_s << u"h1"_s;
}

void SourceColoursTest::StyleSheet_IsColoured()
{
    QFETCH(QString, page);
    QFETCH(QString, what);
    QFETCH(QString, likeWhat);
    SourceEditor editor;
    editor.resize(600, 400);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    const QString text = u"<style>seen{</style>"_s + page; // coloured first: then the rest has had its turn
    editor.SetText(text);
    const auto inkOf = [&](const QString &part) { // bit mask of the indicators there
        const long at = text.left(text.indexOf(part)).toUtf8().size();
        return ControlOf(editor)->SendScintilla(Sci::SCI_INDICATORALLONFOR, at);
    };
    QTRY_VERIFY(inkOf(u"seen"_s) != 0);
    QCOMPARE(inkOf(what) != 0, !likeWhat.isEmpty());
    if (!likeWhat.isEmpty())
        QCOMPARE(inkOf(what), inkOf(likeWhat));
}

void SourceColoursTest::Colours_FollowThePalette()
{
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(0x23, 0x26, 0x29));
    dark.setColor(QPalette::Text, QColor(0xef, 0xf0, 0xf1));
    QPalette light;
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, QColor(0x20, 0x20, 0x20));
    QPalette faulty; // as themes that set one colour only leave it
    faulty.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
    faulty.setColor(QPalette::Text, Qt::black);

    SourceEditor editor;
    editor.SetText(mixedPage);
    const Sci *control = ControlOf(editor);
    for (const QPalette &palette : {dark, light, faulty, dark}) {
        editor.setPalette(palette);
        const QColor paper = palette.color(QPalette::Base);
        QCOMPARE(control->lexer()->paper(QsciLexerHTML::Default), paper);
        for (int style = 0; style < 128; ++style) {
            const auto colour = [&](unsigned message) {
                return QColor::fromRgb(qRgb(control->SendScintilla(message, style) & 0xff,
                                            control->SendScintilla(message, style) >> 8 & 0xff,
                                            control->SendScintilla(message, style) >> 16 & 0xff));
            };
            const double contrast = Contrast(colour(Sci::SCI_STYLEGETFORE), colour(Sci::SCI_STYLEGETBACK));
            QVERIFY2(contrast >= 4.5, qPrintable(u"style %1: %2"_s.arg(style).arg(contrast)));
        }
        for (long indicator = 8; indicator < 15; ++indicator) {
            const long ink = control->SendScintilla(Sci::SCI_INDICGETFORE, indicator);
            QVERIFY(Contrast(QColor(ink & 0xff, ink >> 8 & 0xff, ink >> 16 & 0xff), paper) >= 4.5);
        }
    }
}

QTEST_MAIN(SourceColoursTest)
#include "SourceColoursTest.moc"
