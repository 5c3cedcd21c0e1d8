// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "playback/SubtitleManager.h"
#include "playback/SubtitleParser.h"
#include "testlib/Table.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

// "start-end text" of each cue, with "/" for a line feed.
QStringList linesOf(const QList<SubtitleCue> &cues)
{
    QStringList lines;
    for (const SubtitleCue &cue : cues)
        lines.append(
            QString("%1-%2 %3").arg(cue.start).arg(cue.end).arg(cue.text).replace('\n', '/'));
    return lines;
}

const QByteArray film = "1\n00:00:01,000 --> 00:00:04,000\nA\n\n00:03.000 --> 00:06.000\nB\n";

} // namespace

class TestSubtitles : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    HttpService m_server;

    SubtitleTrack file(const QString &name, const QByteArray &content) const
    {
        QFile made(m_folder.filePath(name));
        if (made.open(QIODevice::WriteOnly))
            made.write(content);
        return {name, QUrl::fromLocalFile(made.fileName())};
    }

private Q_SLOTS:
    void readsTimes_data()
    {
        // seconds: below -1e6: none
        const auto row = columns<QString, double>("text", "seconds");
        const double none = -1e9;
        row("SubRip", "00:01:02,500", 62.5);
        row("WebVTT", "00:01:02.500", 62.5);
        row("no hours", "01:02.5", 62.5);
        row("many hours", "100:00:00", 360'000.0);
        row("blanks around", u"\t\u00A0 0:01 \u2003"_qs, 1.0);
        row("no bounds", "0:75", 75.0);
        row("signs", "-1:+1", -59.0);
        row("points alone", "0:.5", 0.5);
        row("exponent", "0:1e1", 10.0);
        row("empty pieces", ":1::2:", 62.0);
        row("one piece", "5", none);
        row("four pieces", "0:0:1:0", none);
        row("nothing", "", none);
        row("colons", "::", none);
        row("a word", "a:1", none);
        row("blank in a piece", "0: 1", none);
        row("rest in a piece", "0:1s", none);
        row("two commas", "0:1,5,0", none);
        row("two signs", "0:+-1", none);
        row("other digits", u"0:\u0661"_qs, none);
        row("line break", "0:1\n", none);
    }
    void readsTimes()
    {
        QFETCH(QString, text);
        QTEST(SubtitleParser::parseTime(text).value_or(-1e9), "seconds");
    }

    void parses_data()
    {
        const auto row = columns<QString, QStringList>("text", "expected");
        const QString time = "0:01 --> 0:02\n";
        row("SubRip", "1\n00:00:01,000 --> 00:00:04,000\nHi\n\n2\n00:00:05,0 --> 00:00:06,0\nYou\n",
            {"1-4 Hi", "5-6 You"});
        row("WebVTT",
            "WEBVTT\n\n1\n00:00:01.000 --> 00:00:02.000 align:start\n<i>Hello</i>\nworld\n",
            {"1-2 Hello/world"});
        row("header without a blank line", "WEBVTT\n" + time + "x", {"1-2 x"});
        row("notes and styles", "NOTE no\n\nSTYLE\n::cue {}\n\n" + time + "x", {"1-2 x"});
        row("CR LF", "1\r\n0:01 --> 0:02\r\na\r\nb\r\n\r\n0:03 --> 0:04\r\nc",
            {"1-2 a/b", "3-4 c"});
        row("lone CR", "0:01 --> 0:02\rx\r\r0:03 --> 0:04\rx", {});
        row("byte order marks", u"\uFEFF0:01 --> 0:\uFEFF02\nx\uFEFF"_qs, {"1-2 x"});
        row("three line feeds", time + "a\n\n\n" + time + "b", {"1-2 a", "1-2 b"});
        row("a blank line of blanks", time + "a\n \n" + time + "b", {"1-2 a/ /0:01 --> 0:02/b"});
        row("tags", time + "<b>a</b><font color=red>b<c.yellow><00:00:01.000>", {"1-2 ab"});
        row("tag over lines", time + "a<b\nc>d", {"1-2 ad"});
        row("no tags", time + "a <> b < c", {"1-2 a <> b < c"});
        row("tag in a tag", time + "a<b<c>d", {"1-2 ad"});
        row("an empty pair, then a tag", time + "<><i>x</i>", {"1-2 <>x"});
        row("entities and codes stay", time + "{\\an8}a&amp;b", {"1-2 {\\an8}a&amp;b"});
        row("nothing left", time + "<i> </i>\n\n" + time + " \t\n\n" + time, {});
        row("arrow twice", "0:01 --> 0:02 --> 0:03\nx", {});
        row("arrow in the text", time + "a --> b", {"1-2 a --> b"});
        row("settings after a tab", "0:01 --> 0:02\tline:0\nx", {});
        row("blanks around the times", "\t0:01\t-->\t 0:02 line:0\nx", {"1-2 x"});
        row("no blanks", "0:01-->0:02\nx", {"1-2 x"});
        row("bad times", "0:0:1:0 --> 0:02\nx\n\n5 --> 6\nx\n\n0:01 --> x\nx", {});
        row("end before start", "0:05 --> 0:01\nx", {"5-1 x"});
        row("overlap", "0:01 --> 0:09\na\n\n0:02 --> 0:03\nb", {"1-9 a", "2-3 b"});
        const QString line(1'000, 'x');
        row("a cue as long as it may be", time + line, {"1-2 " + line});
        row("a longer one", time + line + "x", {"1-2 " + line.left(999) + u'…'});
        row("its lines", time + QString("a\n").repeated(11) + "a",
            {"1-2 " + QString("a/").repeated(9) + u"a…"_qs});
        row("nothing", "", {});
        row("no arrow", "a\n\nb\n", {});
    }
    void parses()
    {
        QFETCH(QString, text);
        QTEST(linesOf(SubtitleParser::parse(text)), "expected");
    }

    void takesTimeInProportion()
    {
        // Each would be quadratic for a parser that looks for a tag's end from every start, or that
        // moves the rest for every line's end.
        const QDeadlineTimer deadline(20s);
        for (const char *part : {"<", "<>", "-->", "\n\n", "\r\n"})
            SubtitleParser::parse("0:01 --> 0:02\n" + QString(part).repeated(12'000'000));
        QVERIFY(!deadline.hasExpired());
    }

    void showsTheFirstCueOfTheTime()
    {
        SubtitleManager subtitles;
        subtitles.select(file("film.srt", film));
        QTRY_COMPARE(subtitles.cues().size(), 2);
        QVERIFY(!subtitles.currentText());
        QSignalSpy changes(&subtitles, &SubtitleManager::currentTextChanged);
        const QList<std::pair<double, const char *>> times{{3.5, "A"}, {4.0, "A"}, {4.5, "B"},
                                                           {6.0, "B"}, {7.0, ""},  {0.5, ""}};
        for (const auto &[time, text] : times) {
            subtitles.update(time);
            QCOMPARE(subtitles.currentTextOrEmpty(), text);
        }
        QCOMPARE(changes.size(), 3);
        subtitles.update(2);
        subtitles.select({});
        QVERIFY(!subtitles.selected() && !subtitles.currentText() && subtitles.cues().isEmpty());
    }

    void saysWhatIsWrong_data()
    {
        const auto row = columns<SubtitleTrack, QString>("track", "error");
        m_server.serve("/busy.srt", {.status = 503});
        m_server.serve("/empty.srt", {.body = "nothing here"});
        row("no file", SubtitleTrack{"x.srt", QUrl("file:///nowhere/x.srt")},
            "Subtitles failed: No such file or directory");
        row("a folder", SubtitleTrack{"x", QUrl::fromLocalFile(m_folder.path())},
            "Subtitles failed: This is not a file.");
        row("no cues", file("film.srt", "none"), "No subtitle cues found in film.srt");
        row("status", SubtitleTrack{"b.srt", m_server.url("/busy.srt")},
            "Subtitles failed: HTTP 503");
        row("no cues there", SubtitleTrack{"e.srt", m_server.url("/empty.srt")},
            "No subtitle cues found in e.srt");
    }
    void saysWhatIsWrong()
    {
        QFETCH(SubtitleTrack, track);
        SubtitleManager subtitles;
        subtitles.select(track);
        QTRY_VERIFY(subtitles.error());
        QTEST(subtitles.errorText(), "error");
        QVERIFY(subtitles.selected() == track);
        subtitles.reset({});
        QVERIFY(!subtitles.error() && !subtitles.selected());
    }

    void readsOtherEncodings()
    {
        SubtitleManager subtitles;
        subtitles.select(file("latin.srt", "0:01 --> 0:02\nZo\xEB \xC3\x89"));
        QTRY_COMPARE(linesOf(subtitles.cues()), QStringList{u"1-2 Zo\u00EB \u00C3\u0089"_qs});
        subtitles.select(file("utf8.srt", "\xEF\xBB\xBF"
                                          "0:01 --> 0:02\nZo\xC3\xAB"));
        QTRY_COMPARE(linesOf(subtitles.cues()), QStringList{u"1-2 Zo\u00EB"_qs});
    }

    void aLaterChoiceSilencesTheEarlier()
    {
        m_server.serve("/late.srt", {.body = film, .delay = 200ms});
        m_server.serve("/fails.srt", {.status = 500, .delay = 200ms});
        const SubtitleTrack late{"late.srt", m_server.url("/late.srt")};
        const SubtitleTrack fails{"fails.srt", m_server.url("/fails.srt")};
        const SubtitleTrack near = file("near.srt", "0:01 --> 0:02\nnear");
        SubtitleManager subtitles;
        for (const SubtitleTrack &earlier : {late, fails, near}) {
            subtitles.select(earlier);
            subtitles.select(near);
            QTRY_COMPARE(linesOf(subtitles.cues()), QStringList{"1-2 near"});
            QTRY_COMPARE(m_server.openRequests(), 0);
            QVERIFY(!subtitles.error());
            QCOMPARE(linesOf(subtitles.cues()), QStringList{"1-2 near"});
        }
        subtitles.select(late);
        QTRY_COMPARE(m_server.openRequests(), 1);
        subtitles.reset({near});
        QTRY_COMPARE(m_server.openRequests(), 0);
        QVERIFY(subtitles.cues().isEmpty() && !subtitles.error());
        {
            SubtitleManager leaving;
            leaving.select(late);
            QTRY_COMPARE(m_server.openRequests(), 1);
        }
        QTRY_COMPARE(m_server.openRequests(), 0);
    }

    void listsAChosenFileOnce()
    {
        SubtitleManager subtitles;
        const SubtitleTrack mine = file("mine.srt", film);
        subtitles.reset({{"other.srt", QUrl("http://h/other.srt")}});
        for (int turn = 0; turn < 2; ++turn) {
            subtitles.addLocal(mine.url);
            QTRY_COMPARE(subtitles.cues().size(), 2);
            QCOMPARE(subtitles.tracks().size(), 2);
            QVERIFY(subtitles.selected() == mine && subtitles.tracks().last() == mine);
        }
    }

    void findsSiblings()
    {
        const QString folder = m_folder.filePath("siblings");
        QDir().mkpath(folder + "/film.srt folder.srt");
        for (const char *name : {"film.mp4", "film.srt", "film.en.vtt", "film.SRT",
                                 "filmography.srt", "Film.srt", "film.txt", "other.srt"})
            file(QString("siblings/") + name, "x");
        QStringList names;
        for (const SubtitleTrack &track :
             siblingSubtitles(QUrl::fromLocalFile(folder + "/film.mp4"))) {
            names.append(track.name);
            QCOMPARE(track.url, QUrl::fromLocalFile(folder + "/" + track.name));
        }
        names.sort();
        QCOMPARE(names, QStringList({"film.SRT", "film.en.vtt", "film.srt", "filmography.srt"}));
        QVERIFY(siblingSubtitles(QUrl("file:///nowhere/film.mp4")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSubtitles)
#include "tst_subtitles.moc"
