// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/DisplayText.h"
#include "testlib/Table.h"

#include <QTest>
#include <QTextBoundaryFinder>

using namespace tavelo;

namespace {

const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_qs; // one for the eye

/// Without a place to break.
qsizetype longestRun(const QString &text)
{
    QTextBoundaryFinder places(QTextBoundaryFinder::Line, text);
    qsizetype longest = 0;
    for (qsizetype from = 0, to = 0; (to = places.toNextBoundary()) >= 0; from = to)
        longest = qMax(longest, to - from);
    return longest;
}

} // namespace

class TestDisplayText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void name_data()
    {
        const auto row = columns<QString, QString>("text", "shown");
        row("nothing", "", "");
        row("letters", u"Dr. Mabuse – Café No. 5…"_qs, u"Dr. Mabuse – Café No. 5…"_qs);
        row("as long as it may be", QString(500, 'x'), QString(500, 'x'));
        row("too long", QString(501, 'x'), QString(499, 'x') + u'…');
        row("cut beside a character", QString(495, 'x') + family + "y", QString(495, 'x') + u'…');
        row("a whole character at the cut", QString(491, 'x') + family + "yz",
            QString(491, 'x') + family + u'…');
        row("an accent at the cut", QString(499, 'e') + u"\u0301 and more"_qs,
            QString(498, 'e') + u'…');
        row("nothing but accents", QString(600, QChar(0x0301)), QString(499, QChar(0x0301)) + u'…');
        row("line ends", u"a\nb\r\u2028c\u2029d\u0085e"_qs, "a b  c d e");
        row("an extension that is none", u"annexe\u202E4pm.exe"_qs, "annexe4pm.exe");
        row("open isolates and ends", u"\u2067\u2069a\u2066\u202A\u202Cb"_qs, "ab");
        row("right to left", u"שלום 1940"_qs, u"\u200F\u2068שלום 1940\u2069"_qs);
        row("both ways", u"Film שלום"_qs, u"\u2068Film שלום\u2069"_qs);
        row("beyond the first plane", u"\U0001E900"_qs, u"\u200F\u2068\U0001E900\u2069"_qs);
        row("right to left, with an end of its own", u"ש\u2069.mp4"_qs,
            u"\u200F\u2068ש.mp4\u2069"_qs);
    }
    void name()
    {
        QFETCH(QString, text);
        QTEST(DisplayText::name(text), "shown");
    }

    void honestTextsStay_data()
    {
        const auto row = columns<QString>("text");
        row("paragraphs", QString("A keeper and his daughter wait.\n\n").repeated(100));
        row("an address", "See https://example.org/" + QString("path/").repeated(50) + "?q=1");
        row("no blanks", QString(u"灯台守の娘。"_qs).repeated(300));
        row("accents", QString(u"e\u0301\u0323 "_qs).repeated(500));
        row("both ways", QString(u"Film אבג "_qs).repeated(200));
        row("marked by its author", u"\u2067אבג\u2069 and \u202Babc\u202C"_qs);
    }
    void honestTextsStay()
    {
        QFETCH(QString, text);
        QCOMPARE(DisplayText::body(text), text);
    }

    // Each of these took the window from 0.05 to 10 seconds to lay out.
    void hostileTextsAreTamed_data()
    {
        const auto row = columns<QString, qsizetype>("text", "most");
        row("letters", QString(1'000'000, 'x'), 21'000);
        row("blanks that do not break", QString(1'000'000, QChar(0x00A0)), 21'000);
        row("letters that join", QString(1'000'000, QChar(0x0628)), 21'000);
        row("characters that join", family.repeated(100'000), 21'500);
        row("to and fro", QString(u"aש"_qs).repeated(500'000), 1'100);
        row("numbers to and fro", QString(u"1ש"_qs).repeated(500'000), 1'100);
        row("controls", QString(u"a\u202Eb\u202C"_qs).repeated(500'000), 2'200);
        row("accents", "a" + QString(1'000'000, QChar(0x0301)), 40);
        row("lines", QString("a\n").repeated(500'000), 2'000);
    }
    void hostileTextsAreTamed()
    {
        QFETCH(QString, text);
        QFETCH(qsizetype, most);
        const QString shown = DisplayText::body(text);
        QVERIFY2(shown.size() <= most, qPrintable(QString::number(shown.size())));
        QVERIFY(shown.startsWith(text.left(10)));
        QVERIFY2(longestRun(shown) <= 100, qPrintable(QString::number(longestRun(shown))));
    }

    void placesToBreakAreBetweenCharacters()
    {
        const QString accented = u"e\u0301\u0323"_qs;
        const QString shown = DisplayText::breakable(accented.repeated(100));
        QVERIFY(longestRun(shown) <= 20 + 1);
        for (const QString &run : shown.split(QChar(0x200B)))
            QCOMPARE(run.size() % accented.size(), 0);
        QCOMPARE(shown.count('e'), 100);
    }
};

QTEST_GUILESS_MAIN(TestDisplayText)
#include "tst_displaytext.moc"
