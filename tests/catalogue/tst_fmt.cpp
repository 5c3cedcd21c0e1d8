// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Fmt.h"
#include "testlib/Table.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tavelo;
using Text = std::optional<QString>;

class TestFmt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void time_data()
    {
        const auto row = columns<double, QString>("seconds", "text");
        row("zero", 0.0, "0:00");
        row("below zero", -0.5, "0:00");
        row("not a number", std::nan(""), "0:00");
        row("infinite", std::numeric_limits<double>::infinity(), "0:00");
        row("truncated", 59.9, "0:59");
        row("last without hours", 3599.999, "59:59");
        row("first with hours", 3600.0, "1:00:00");
        row("more than a day", 90061.0, "25:01:01");
        row("past 64 bits", 1e300, "2562047788015215:30:07");
    }
    void time()
    {
        QFETCH(double, seconds);
        QTEST(Fmt::time(seconds), "text");
    }

    void stripHTML_data()
    {
        const auto row = columns<Text, Text>("html", "text");
        row("absent", {}, {});
        row("blank", "   ", {});
        row("only tags", "<p></p>", {});
        row("paragraph", "<p>A &amp; B</p><br/>C", "A & B\nC");
        row("line breaks", "a<br>b<br />c<br\t\n>d", "a\nb\nc\nd");
        row("upper case is a tag like any other", "a<BR>b", "ab");
        row("longer name is no line break", "a<broken>b", "ab");
        row("no tag without a name", "a <> b <", "a <> b <");
        row("tag up to the next end", "a<b<c>d>e", "ad>e");
        row("over several lines", "a<a\nhref='x'>b</a>", "ab");
        row("break inside a tag", "a<x<br>y>b", "ab");
        row("decoded once, ampersand first", "&amp;quot;&amp;amp;&#39;", "\"&amp;'");
        row("what is left of an entity", "&amp;amp;quot; &&quot;& &#39 &nbsp &",
            "&amp;quot; &\"& &#39 &nbsp &");
        row("blanks of entities are trimmed", "&nbsp; x &nbsp;", "x");
        row("others stay", "&lt;b&gt;", "&lt;b&gt;");
    }
    void stripHTML()
    {
        QFETCH(Text, html);
        QTEST(Fmt::stripHTML(html), "text");
    }

    // Each of these takes minutes where the time grows by the square of the length.
    void stripHTMLOfHostileText_data()
    {
        const auto row = columns<QString, int>("piece", "count");
        for (const char *piece : {"<", "<br", "<br ", "<>"})
            row(piece, piece, 1'000'000);
        row("&amp;", "&amp;", 8'000'000);
    }
    void stripHTMLOfHostileText()
    {
        QFETCH(QString, piece);
        QFETCH(int, count);
        const QDeadlineTimer deadline(20'000);
        QVERIFY(Fmt::stripHTML(piece.repeated(count)));
        QVERIFY(!deadline.hasExpired());
    }

    void byteCount_data()
    {
        const auto row = columns<std::optional<qint64>, QString>("bytes", "text");
        const auto reads = [&](std::optional<qint64> bytes, const char *text) {
            row(text, bytes, text);
        };
        reads({}, "—");
        reads(0, "0 bytes");
        reads(999, "999 bytes");
        reads(1000, "1.0 kB");
        reads(1'234'000'000, "1.2 GB");
        row("negative", -1, "—");
    }
    void byteCount()
    {
        QFETCH(std::optional<qint64>, bytes);
        QTEST(Fmt::byteCount(bytes), "text");
    }
};

QTEST_GUILESS_MAIN(TestFmt)
#include "tst_fmt.moc"
