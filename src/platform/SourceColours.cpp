#include "platform/SourceColours.h"

#include <QFontDatabase>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qsciscintilla.h>

namespace {

using Lexer = QsciLexerHTML;
using Sci = QsciScintilla;

constexpr int LexerStyles = Lexer::PHPOperator + 1;

QColor Mixed(const QColor &base, const QColor &hint, double share)
{
    const auto mix = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
    return {mix(base.red(), hint.red()), mix(base.green(), hint.green()), mix(base.blue(), hint.blue())};
}

/// The lexer has one run of styles a language, some of them twice: on the client and on the server.
struct LanguageStyles
{
    int First;
    int Last;
    std::initializer_list<int> Comments;
    std::initializer_list<int> Strings;
    std::initializer_list<int> Keywords;
    std::initializer_list<int> Numbers;
    std::initializer_list<int> Variables;
    std::initializer_list<int> Errors;
    QColor SourceColours::*Paper;
};

constexpr auto Client = &SourceColours::ScriptPaper;
constexpr auto Server = &SourceColours::ServerPaper;

constexpr LanguageStyles languages[] = {
    {Lexer::JavaScriptStart,
     Lexer::JavaScriptRegex,
     {Lexer::JavaScriptComment, Lexer::JavaScriptCommentLine, Lexer::JavaScriptCommentDoc},
     {Lexer::JavaScriptDoubleQuotedString, Lexer::JavaScriptSingleQuotedString, Lexer::JavaScriptRegex},
     {Lexer::JavaScriptKeyword},
     {Lexer::JavaScriptNumber},
     {},
     {Lexer::JavaScriptUnclosedString},
     Client},
    {Lexer::ASPJavaScriptStart,
     Lexer::ASPJavaScriptRegex,
     {Lexer::ASPJavaScriptComment, Lexer::ASPJavaScriptCommentLine, Lexer::ASPJavaScriptCommentDoc},
     {Lexer::ASPJavaScriptDoubleQuotedString, Lexer::ASPJavaScriptSingleQuotedString, Lexer::ASPJavaScriptRegex},
     {Lexer::ASPJavaScriptKeyword},
     {Lexer::ASPJavaScriptNumber},
     {},
     {Lexer::ASPJavaScriptUnclosedString},
     Server},
    {Lexer::VBScriptStart,
     Lexer::VBScriptUnclosedString,
     {Lexer::VBScriptComment},
     {Lexer::VBScriptString},
     {Lexer::VBScriptKeyword},
     {Lexer::VBScriptNumber},
     {},
     {Lexer::VBScriptUnclosedString},
     Client},
    {Lexer::ASPVBScriptStart,
     Lexer::ASPVBScriptUnclosedString,
     {Lexer::ASPVBScriptComment},
     {Lexer::ASPVBScriptString},
     {Lexer::ASPVBScriptKeyword},
     {Lexer::ASPVBScriptNumber},
     {},
     {Lexer::ASPVBScriptUnclosedString},
     Server},
    {Lexer::PythonStart,
     Lexer::PythonIdentifier,
     {Lexer::PythonComment},
     {Lexer::PythonDoubleQuotedString, Lexer::PythonSingleQuotedString, Lexer::PythonTripleSingleQuotedString,
      Lexer::PythonTripleDoubleQuotedString},
     {Lexer::PythonKeyword},
     {Lexer::PythonNumber},
     {},
     {},
     Client},
    {Lexer::ASPPythonStart,
     Lexer::ASPPythonIdentifier,
     {Lexer::ASPPythonComment},
     {Lexer::ASPPythonDoubleQuotedString, Lexer::ASPPythonSingleQuotedString, Lexer::ASPPythonTripleSingleQuotedString,
      Lexer::ASPPythonTripleDoubleQuotedString},
     {Lexer::ASPPythonKeyword},
     {Lexer::ASPPythonNumber},
     {},
     {},
     Server},
    {Lexer::PHPDefault,
     Lexer::PHPOperator,
     {Lexer::PHPComment, Lexer::PHPCommentLine},
     {Lexer::PHPDoubleQuotedString, Lexer::PHPSingleQuotedString},
     {Lexer::PHPKeyword},
     {Lexer::PHPNumber},
     {Lexer::PHPVariable, Lexer::PHPDoubleQuotedVariable},
     {},
     Server},
};

void ColourLanguages(QsciLexerHTML &lexer, const SourceColours &colours)
{
    for (const LanguageStyles &language : languages) {
        for (int style = language.First; style <= language.Last; ++style)
            lexer.setPaper(colours.*language.Paper, style);
        const auto colour = [&lexer](const QColor &ink, std::initializer_list<int> styles) {
            for (int style : styles)
                lexer.setColor(ink, style);
        };
        colour(colours.Comment, language.Comments);
        colour(colours.String, language.Strings);
        colour(colours.Keyword, language.Keywords);
        colour(colours.Number, language.Numbers);
        colour(colours.Variable, language.Variables);
        colour(colours.Error, language.Errors);
        for (int style : language.Comments) {
            QFont slanted = lexer.font(style);
            slanted.setItalic(true);
            lexer.setFont(slanted, style);
        }
    }
}

} // namespace

SourceColours::SourceColours(const QPalette &palette)
    : Text(palette.color(QPalette::Text)), Paper(palette.color(QPalette::Base))
{
    const bool dark = qGray(Paper.rgb()) < 128;
    // A theme may pair colours that cannot be told apart; the source must be readable all the same.
    if (qAbs(qGray(Text.rgb()) - qGray(Paper.rgb())) < 96)
        Text = dark ? Qt::white : Qt::black;
    const auto pick = [dark](QRgb light, QRgb onDark) { return QColor(dark ? onDark : light); };
    ScriptPaper = Mixed(Paper, QColor(0x40, 0x80, 0xff), dark ? 0.10 : 0.06);
    ServerPaper = Mixed(Paper, QColor(0xff, 0x50, 0x60), dark ? 0.10 : 0.06);
    CurrentLine = Mixed(Paper, Text, 0.07);
    MarginText = Mixed(Paper, Text, 0.70);
    MarginPaper = Mixed(Paper, Text, 0.05);

    Tag = pick(0x0b4f9e, 0x7db4f5);
    Attribute = pick(0x8a4500, 0xe3b673);
    String = pick(0x1a6b2d, 0x9ad08b);
    Comment = pick(0x646b73, 0x9aa3ad);
    Entity = pick(0x9b2f80, 0xe29bd0);
    Keyword = pick(0x5a32b8, 0xbba4f7);
    Number = pick(0xa1341c, 0xf0a37e);
    Variable = pick(0x00646e, 0x74ccd6);
    Delimiter = pick(0xa8123f, 0xff8fa3);
    Error = pick(0xb80000, 0xff7a70);
}

void ColourLexer(QsciLexerHTML &lexer, const SourceColours &colours)
{
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    lexer.setDefaultFont(font);
    lexer.setDefaultColor(colours.Text);
    lexer.setDefaultPaper(colours.Paper);
    // One by one: asked for all, the lexer leaves out styles that it has no description for.
    for (int style = 0; style < LexerStyles; ++style) {
        lexer.setFont(font, style);
        lexer.setColor(colours.Text, style);
        lexer.setPaper(colours.Paper, style);
    }

    // Unknown tags and attributes are no fault: the lexer's own list ends long before today's HTML.
    for (int style : {Lexer::Tag, Lexer::UnknownTag, Lexer::XMLTagEnd, Lexer::XMLStart, Lexer::XMLEnd, Lexer::Script})
        lexer.setColor(colours.Tag, style);
    for (int style : {Lexer::Attribute, Lexer::UnknownAttribute})
        lexer.setColor(colours.Attribute, style);
    for (int style : {Lexer::HTMLDoubleQuotedString, Lexer::HTMLSingleQuotedString, Lexer::HTMLValue, Lexer::CDATA,
                      Lexer::SGMLDoubleQuotedString, Lexer::SGMLSingleQuotedString})
        lexer.setColor(colours.String, style);
    for (int style : {Lexer::HTMLComment, Lexer::ASPXCComment, Lexer::SGMLComment, Lexer::SGMLParameterComment,
                      Lexer::SGMLDefault, Lexer::SGMLCommand, Lexer::SGMLParameter, Lexer::SGMLBlockDefault})
        lexer.setColor(colours.Comment, style);
    for (int style : {Lexer::Entity, Lexer::SGMLEntity, Lexer::SGMLSpecial})
        lexer.setColor(colours.Entity, style);
    lexer.setColor(colours.Number, Lexer::HTMLNumber);
    lexer.setColor(colours.Error, Lexer::SGMLError);
    for (int style : {Lexer::ASPStart, Lexer::ASPAtStart, Lexer::PHPStart}) {
        lexer.setColor(colours.Delimiter, style);
        lexer.setPaper(colours.ServerPaper, style);
    }
    ColourLanguages(lexer, colours);
}

void ColourEditor(QsciScintilla &editor, const SourceColours &colours, const QPalette &palette)
{
    editor.setCaretForegroundColor(colours.Text);
    editor.setCaretLineBackgroundColor(colours.CurrentLine);
    editor.setSelectionBackgroundColor(palette.color(QPalette::Highlight));
    editor.setSelectionForegroundColor(palette.color(QPalette::HighlightedText));
    editor.setMarginsFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    editor.setMarginsForegroundColor(colours.MarginText);
    editor.setMarginsBackgroundColor(colours.MarginPaper);
    editor.setFoldMarginColors(colours.MarginPaper, colours.MarginPaper);
    editor.setMatchedBraceForegroundColor(colours.Text);
    editor.setMatchedBraceBackgroundColor(Mixed(colours.Paper, colours.Tag, 0.35));
    editor.setUnmatchedBraceForegroundColor(colours.Error);
    editor.setUnmatchedBraceBackgroundColor(colours.Paper);
    for (int mark = Sci::SC_MARKNUM_FOLDEREND; mark <= int{Sci::SC_MARKNUM_FOLDEROPEN}; ++mark) {
        editor.SendScintilla(Sci::SCI_MARKERSETFORE, static_cast<unsigned long>(mark), colours.MarginPaper);
        editor.SendScintilla(Sci::SCI_MARKERSETBACK, static_cast<unsigned long>(mark), colours.MarginText);
    }
}
