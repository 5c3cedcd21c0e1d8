// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Fmt.h"

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
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0 << "0:00";
        QTest::newRow("below zero") << -0.5 << "0:00";
        QTest::newRow("not a number") << std::nan("") << "0:00";
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << "0:00";
        QTest::newRow("truncated") << 59.9 << "0:59";
        QTest::newRow("last without hours") << 3599.999 << "59:59";
        QTest::newRow("first with hours") << 3600.0 << "1:00:00";
        QTest::newRow("more than a day") << 90061.0 << "25:01:01";
        QTest::newRow("past 64 bits") << 1e300 << "2562047788015215:30:07";
    }
    void time()
    {
        QFETCH(double, seconds);
        QTEST(Fmt::time(seconds), "text");
    }

    void stripHTML_data()
    {
        QTest::addColumn<Text>("html");
        QTest::addColumn<Text>("text");
        const auto row = [](const char *name, Text html, Text text) {
            QTest::newRow(name) << std::move(html) << std::move(text);
        };
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
        QTest::addColumn<QString>("piece");
        for (const char *piece : {"<", "<br", "<br ", "<>", "&amp;"})
            QTest::newRow(piece) << piece;
    }
    void stripHTMLOfHostileText()
    {
        QFETCH(QString, piece);
        const QDeadlineTimer deadline(20'000);
        QVERIFY(Fmt::stripHTML(piece.repeated(1'000'000)));
        QVERIFY(!deadline.hasExpired());
    }

    void byteCount_data()
    {
        QTest::addColumn<std::optional<qint64>>("bytes");
        QTest::addColumn<QString>("text");
        const auto row = [](std::optional<qint64> bytes, const char *text) {
            QTest::newRow(text) << bytes << text;
        };
        row({}, "—");
        row(0, "0 bytes");
        row(999, "999 bytes");
        row(1000, "1.0 kB");
        row(1'234'000'000, "1.2 GB");
        QTest::newRow("negative") << std::optional<qint64>(-1) << "—";
    }
    void byteCount()
    {
        QFETCH(std::optional<qint64>, bytes);
        QTEST(Fmt::byteCount(bytes), "text");
    }
};

QTEST_GUILESS_MAIN(TestFmt)
#include "tst_fmt.moc"
