#pragma once

#include <QList>
#include <QString>

/// Pages with server-side code in every place where people put it. Each has a name for a test's row.
struct IslandPage
{
    const char *Name;
    QString Text;
};

inline QList<IslandPage> IslandPages()
{
    using namespace Qt::StringLiterals;
    return {
        {"between tags", u"<p>a<?php if ($a > 1) { ?>b<% x %>c</p><?php } ?><p>d</p>"_s},
        {"end mark inside a string", u"<p><?php echo '<b>'; ?>x<?= \"a\" ?></p>"_s},
        {"whole file around the page",
         u"<?php session_start(); ?>\n<!DOCTYPE html>\n<html><body>x</body></html>\n<% y %>"_s},
        {"xml declaration",
         u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE html><html><body>x</body></html>"_s},
        {"office instruction", u"<p><?xml:namespace prefix = o ns = \"urn:x\" /><b>x</b> <?php y ?></p>"_s},
        {"import instruction", u"<html><?import namespace=t urn=\"x\"><body><?php y ?></body>"_s},
        {"asp.net remark", u"<%@ Page Language=\"C#\" %><p><%-- <% old() %> --%>x</p>"_s},
        {"attribute alone", u"<p <?=$a?>>x</p><table><tr><td <?a?> <%b%> nowrap></table>"_s},
        {"attribute without blank", u"<a href=\"x\"<?=$a?>>x</a><p class='y'<%=b%>id=z>q</p>"_s},
        {"behind a tag name", u"<body<?php body_class() ?>><ul><li<?=$sel?> class=x>a<li<%y%>>b</ul>"_s},
        {"behind option", u"<select><option<?= $s ?> value=1>a</option><option<?=$t?>>b</option></select>"_s},
        {"attribute names", u"<p data-<?=$n?>=1 <?=$m?>x=\"2\" y<?=$o?>>z</p>"_s},
        {"attribute with empty value", u"<p <?=$n?>=\"\" <?=$m?> = '' a>z</p>"_s},
        {"double quoted value", u"<a href=\"<?=$u[\"a\"]?>?x=<% y > 1 %>\">z</a>"_s},
        {"single quoted value", u"<a href='<?=$u['a']?>' title='\"<%x%>\"'>z</a>"_s},
        {"unquoted value", u"<a href=<?php echo \"a b\" ?> id=x<%=1%>>z</a>"_s},
        {"conditional attribute", u"<p <?php if ($a) { ?>class=a<?php } else { ?>class=b<?php } ?>>x</p>"_s},
        {"attribute twice",
         u"<p <?php if ($a) { ?> class=\"a\" <?php } else { ?> class=\"<?=$b?>\" <?php } ?>>x</p>"_s},
        {"equal islands in one tag", u"<p <?=$a?> <?=$a?> <?=$a?>>x</p>"_s},
        {"void and self-closing", u"<br <?=$a?>/><img src=\"<?=$b?>\" /><hr<?=$c?>/>"_s},
        {"script", u"<script src=\"<?=$a?>\">var <?=$b?>=\"\"; if (a<b && c>d) '<?=$c?>';</script>"_s},
        {"script with hidden end tag", u"<script>x = '<?php echo \"</script>\" ?>';</script><p><?=$a?></p>"_s},
        {"script in a script's comment", u"<script><!-- <script> <?=1?> </script> --> <?=2?></script><?=3?>"_s},
        {"style", u"<style>a { color: <?=$a?>; } <% if x > 1 %> b > c {}</style>"_s},
        {"title and textarea",
         u"<title><?=$a?> &amp; <%b%></title><textarea><?php echo '</textarea>' ?>&lt;</textarea>"_s},
        {"iframe, xmp, noframes", u"<iframe><?=1?></iframe><xmp><?=2?></xmp><noembed><%3%></noembed>"_s},
        {"select", u"<select><?php foreach ($a as $b): ?><option><?=$b?></option><?php endforeach ?></select>"_s},
        {"table", u"<table><?php while ($r) { ?><tr <?=$c?>><td><?=$r[0]?></td><% x %></tr><?php } ?></table>"_s},
        {"column group", u"<table><colgroup><?=1?><col><%2%></colgroup><caption><?=3?></caption></table>"_s},
        {"frameset", u"<html><?=0?><frameset cols=\"<?=1?>\"><?=2?><frame src=<?=3?>><%4%></frameset></html>"_s},
        {"head", u"<html <?=$l?>><head><?php x ?><meta content=\"<?=$m?>\"><%y%></head><body <?z?>>x</body></html>"_s},
        {"comments", u"<p><!-- <?=1?> --><!--<?=2?>--><!-- a --<%3%>> --></p>"_s},
        {"comment of odd form", u"<p><!--><?=1?><!--->x<!-- <?=2?> --!>y</p>"_s},
        {"conditional comments",
         u"<!--[if lt IE 9]><script src=<?=1?>></script><![endif]--><![if !IE]><p>x<![endif]>"_s},
        {"conditional for the others", u"<!--[if !IE]><!--><p><?=1?></p><!--<![endif]-->"_s},
        {"conditional with CR LF", u"<html><head><!--[if IE]>\r\n<b>\r\n<![endif]--></head><body>x</body></html>"_s},
        {"server side include", u"<p><!--#include virtual=\"a.shtml\" --><!--#if\r\nexpr=\"<?=1?>\" -->x</p>"_s},
        {"includes where a comment is none",
         u"<title><!--#echo var=\"T\" --></title><a href=\"<!--#echo var='U' -->\"<!--#echo var=\"V\" -->>x</a>"
         "<textarea><!--#include file=\"<?=1?>\" --></textarea><!-- a <!--#b --> c --><?'<!--#'?>-->"_s},
        {"declarations", u"<p><!x><![CDATA[a>b]]></ ></p><?stray><!ELEMENT a (<?=1?>)>"_s},
        {"character data in svg", u"<svg><style><![CDATA[ a > b { } ]]></style><g <?=1?>/></svg><![CDATA[x]>"_s},
        {"svg", u"<svg viewBox=\"<?=1?>\"><?=2?><path<?=3?> d=\"<%4%>\"/><title><?=5?></title></svg>"_s},
        {"template and noscript", u"<template><?=1?><td <?=2?>></template><noscript><p><%3%></p></noscript>"_s},
        {"computed names in pairs", u"<h<?=$n?> class=\"<?=$c?>\">a<b><?=1?></b></h<?=$n?>><p>x</p>"_s},
        {"computed name alone", u"<p>a</p><h<?=$n?> id=x>b<<?=$t?> class=\"a\">c</<?=$t?>>"_s},
        {"behind the page", u"<html><body>x</body></html><?php a ?>\n<!-- <?=1?> --><% b %>"_s},
        {"between body and html", u"<body>x</body>\n<?a?>\r\n<?b?>\n<!-- c --></html>\n<%d%>\n<!-- e -->\n<?f?>\n"_s},
        {"end of a page with branches", u"<?if?><body>a</body></html><?else?><body>b</body></html><?end?>"_s},
        {"CR LF in blocks", u"<p><?php\r\n  a();\r\n?>x<!-- \n<%\r\n%> --></p>"_s},
        {"plaintext", u"<p><?=1?></p><plaintext><?=2?><b>"_s},
        {"block without end", u"<p>a</p>\n<?php\nfoo('<b>');\n"_s},
        {"only a block without end", u"<?php\nif ($a->b > 1) echo '<html>';\n"_s},
        {"block without end in a tag", u"<p>a</p><a href=\"<?php foo()"_s},
        {"block without end in a title", u"<title>a</title><body><script>x <% y"_s},
        {"tag without end", u"<p>a<?=1?></p><a <?=2?> href=\"b.htm>c</a>"_s},
    };
}
