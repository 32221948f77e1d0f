#pragma once

#include "support/EditorRig.h"

#include <QFileInfo>
#include <QRegularExpression>

// What a random session works on, what it pastes, and what must not be left of it.
namespace SessionPages {

using namespace Qt::StringLiterals;

/// A page of a random session.
struct Found
{
    QString Name;
    QString Page;
};

/// Ten pages as people keep them, each with a script that would leave its mark if it ran.
inline QList<Found> Pages()
{
    QList<Found> pages;
    for (const char *name : {"index.htm", "calendar.htm", "gallery.htm", "history.htm", "join.htm", "newsletter.htm",
                             "plots.htm", "news.php", "shop.asp", "rules.htm"})
        pages.append(
            {QString::fromLatin1(name), QStringLiteral(INKLOOM_SOURCE_DIR "/samples/") + QLatin1StringView(name)});
    return pages;
}

/// What the engine or an overlay of ours would leave behind. None of it stands in the pages or in what is pasted.
inline const QStringList &Litter()
{
    static const QStringList patterns{
        u"<SPAN"_s,
        u"(?i)<DIV(?! ALIGN=)"_s, // the line of a list item has no other way to be aligned
        u"-webkit-"_s,
        u"Apple-"_s,
        u"text-align"_s,
        u"font-family:"_s,
        u"white-space"_s,
        u"caret-color"_s,
        u"<P[^>]*><(UL|OL|TABLE|P|H[1-6])\\b"_s,
        u"<(UL|OL)[^>]*>\\s*<(UL|OL)\\b"_s,
        u"<(B|I|U|FONT)\\b[^>]*></\\1>"_s,
        u"(?i)<inkloom"_s,
        u"(?i)\\bran\\b"_s};
    return patterns;
}

/// Paragraphs, tables and lists out of the pages.
inline QStringList RealFragments()
{
    static const QRegularExpression one(
        u"<(table|ul|ol|p|h[1-6]|blockquote|address|form|dl)\\b(?:(?!<\\1\\b|<div|<span|<script).)*?</\\1>"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    QStringList fragments;
    for (const Found &page : Pages())
        for (auto each = one.globalMatch(QString::fromLatin1(EditorRig::Bytes(page.Page))); each.hasNext();)
            fragments.append(each.next().captured());
    return fragments;
}

inline const QStringList &Fragments()
{
    static const QStringList fragments{
        u"<p>One <b>bold</b> and one <i>slanted</i> word.</p><p>A second.</p>"_s,
        u"just <a href=\"links.htm\">a link</a> in the line"_s,
        u"<ul><li>first</li><li>second<ol><li>nested</li></ol></li></ul>"_s,
        u"<table border=1><tr><td>a</td><td rowspan=2>b</td></tr><tr><td>c</td></tr></table>"_s,
        u"<h2 align=center>A heading</h2>"_s,
        u"<img src=\"images/bean.png\" width=40 height=30 alt=x>"_s,
        u"<form action=x.cgi><input type=hidden name=h value=1><input name=q><select><option>1</select></form>"_s,
        u"<hr><!-- a note --><a name=here></a>"_s,
        u"<?php echo 'here'; ?> and <% = there %>"_s,
    };
    return fragments;
}

// Where the tree on screen and the one that a parser makes of its text part; "" if nowhere. A parser drops a line end
// at the start of some elements; the host writes it twice.
inline constexpr const char *ParsesBack = R"js((() => {
  const flat = (root) => {
    const out = [];
    const walk = (node) => {
      for (let child = node.firstChild; child; child = child.nextSibling) {
        if (child.nodeType === Node.TEXT_NODE) {
          if (out.length && out[out.length - 1].startsWith("T:")) out[out.length - 1] += child.data;
          else if (child.data) out.push("T:" + child.data);
        } else if (child.nodeType === Node.COMMENT_NODE) {
          out.push("C:" + child.data);
        } else if (child.localName !== "inkloom-overlay") {
          out.push("<" + child.localName + [...child.attributes].map((x) => " " + x.name + "=" + x.value).join("") + ">");
          walk(child.content || child);
          out.push("</>");
        }
      }
    };
    walk(root);
    return out;
  };
  const html = document.documentElement.outerHTML.replace("<inkloom-overlay></inkloom-overlay>", "")
    .replace(/<(pre|listing|textarea)([^>]*)>\n/g, "<$1$2>\n\n");
  const doctype = document.compatMode === "CSS1Compat" ? "<!DOCTYPE html>" : "";
  const x = flat(document.documentElement);
  const y = flat(new DOMParser().parseFromString(doctype + html, "text/html").documentElement);
  for (let i = 0; i < Math.max(x.length, y.length); ++i)
    if (x[i] !== y[i])
      return JSON.stringify(x.slice(Math.max(0, i - 3), i + 3)) + " became " + JSON.stringify(y.slice(Math.max(0, i - 3), i + 3));
  return "";
})())js";

} // namespace SessionPages
