#include "document/FixupHtml.h"
#include "document/GuideStyle.h"
#include "document/TagText.h"

#include <benchmark/benchmark.h>

#include <QHash>
#include <QString>

using namespace Qt::StringLiterals;

namespace {

const QString Head =
    u"<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\r\n<HTML><HEAD><TITLE>Garden seeds</TITLE>\r\n"
    "<META content=\"text/html; charset=windows-1252\" http-equiv=Content-Type>\r\n"
    "<LINK rel=stylesheet href=styles/site.css>\r\n<SCRIPT type=text/javascript src=master.js></SCRIPT></HEAD>\r\n"
    "<BODY bgcolor=#ffffff link=#003366 text=#000000>\r\n"_s;

const QString Block =
    u"<H2 align=center>Spring catalogue</H2>\r\n<TABLE border=1 cellpadding=2 cellspacing=0 width=100%>\r\n<TBODY>\r\n"
    "<TR valign=top><TD bgcolor=#eeeeee width=120><IMG alt=\"Sweet pea, mixed\" border=0 height=90 "
    "src=images/sweetpea.jpg width=120></TD>\r\n<TD><P class=lead style=\"MARGIN-TOP: 0px\">Sweet peas like a deep, "
    "rich "
    "soil and plenty of water. Sow them early under glass, or outside from the end of March; pinch out the tips once "
    "there are two pairs of leaves.</P>\r\n<UL><LI><A href=\"order.htm?item=1042&amp;size=small\" target=_blank>Small "
    "packet</A></LI>\r\n<LI><A href=order.htm#large>Large packet</A>, <B>new</B> this year</LI></UL></TD></TR>\r\n"
    "<TR><TD noWrap>Height &lt; 2 m</TD><TD><FONT color=#cc0000 face=\"Verdana, Arial\" size=2>Sold out until the "
    "autumn. Write to us if you want to be told.</FONT><BR></TD></TR></TBODY></TABLE>\r\n<!-- end of item -->\r\n"
    "<P>Every order is packed by hand on the day it arrives. We send to all countries of the union, and further afield "
    "when the law there lets seeds in. Postage is worked out from the weight at the last step.</P>\r\n<HR>\r\n"_s;

/// A page of that many megabytes of characters, made once.
const QString &Page(qsizetype megabytes)
{
    static QHash<qsizetype, QString> pages;
    QString &page = pages[megabytes];
    if (page.isEmpty()) {
        const qsizetype size = megabytes * 1000000;
        page = Head + Block.repeated((size - Head.size()) / Block.size()) + u"</BODY></HTML>\r\n"_s;
    }
    return page;
}

void Report(benchmark::State &state)
{
    state.SetBytesProcessed(state.iterations() * Page(state.range(0)).size());
}

/// The measure for the others: one pass over the text that makes a copy.
void ToLower(benchmark::State &state)
{
    const QString &page = Page(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(page.toLower());
    Report(state);
}

void Fixup(benchmark::State &state)
{
    const QString &page = Page(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(FixupHTML(page));
    Report(state);
}

void FixupWithServerCode(benchmark::State &state)
{
    const QString page = u"<?php include \"top.inc\"; ?>"_s + Page(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(FixupHTML(page));
    Report(state);
}

void GuideStyleAbsent(benchmark::State &state)
{
    const QString &page = Page(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(GuideStyle::Remove(page));
    Report(state);
}

void GuideStylePresent(benchmark::State &state)
{
    const QString page = GuideStyle::Insert(Page(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(GuideStyle::Remove(page));
    Report(state);
}

/// What a dialog that lists the pictures of a page does.
void ReadEverySource(benchmark::State &state)
{
    const QString &page = Page(state.range(0));
    const QString source = u"SRC"_s;
    for (auto _ : state) {
        for (qsizetype at = page.indexOf(u"<IMG"_s); at >= 0; at = page.indexOf(u"<IMG"_s, at + 4))
            benchmark::DoNotOptimize(TagValue(page, at + 1, source, {}, TagMode::Read));
    }
    Report(state);
}

void ReadNearTheEnd(benchmark::State &state)
{
    const QString &page = Page(state.range(0));
    const qsizetype at = page.lastIndexOf(u"<IMG"_s) + 1;
    const QString source = u"SRC"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(TagValue(page, at, source, {}, TagMode::Read));
}

void SetNearTheEnd(benchmark::State &state)
{
    const QString &page = Page(state.range(0));
    const qsizetype at = page.lastIndexOf(u"<IMG"_s) + 1;
    const QString source = u"SRC"_s;
    const QString value = u"images/other.jpg"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(TagValue(page, at, source, value, TagMode::Set));
    Report(state);
}

void Sizes(benchmark::internal::Benchmark *bench)
{
    bench->Arg(1)->Arg(5)->Arg(20)->Arg(50)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(ToLower)->Apply(Sizes);
BENCHMARK(Fixup)->Apply(Sizes);
BENCHMARK(FixupWithServerCode)->Apply(Sizes);
BENCHMARK(GuideStyleAbsent)->Apply(Sizes);
BENCHMARK(GuideStylePresent)->Apply(Sizes);
BENCHMARK(ReadEverySource)->Apply(Sizes);
BENCHMARK(ReadNearTheEnd)->Apply(Sizes);
BENCHMARK(SetNearTheEnd)->Apply(Sizes);

BENCHMARK_MAIN();
