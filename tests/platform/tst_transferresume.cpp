// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/TransferScene.h"
#include "testlib/Table.h"

#include <QTest>

#include <array>
#include <atomic>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

using Answer = FaultServer::Answer;

constexpr const char *modified = "Tue, 01 Feb 2022 10:00:00 GMT";
constexpr const char *later = "Tue, 01 Feb 2022 10:00:01 GMT";
const QByteArray first = "\"first\"";
const QByteArray second = "\"second\"";

/// As long as film(); the last byte is another one.
QByteArray changedFilm()
{
    QByteArray bytes = film();
    bytes.back() = static_cast<char>(bytes.back() + 1);
    return bytes;
}

/// A 206 with the bytes of `body` from `from` on, which says that it brings `range`.
Answer partial(const QByteArray &body, qint64 from, const QByteArray &range,
               const QByteArray &etag = first)
{
    return {.body = body.sliced(from),
            .status = 206,
            .headers = {{"Content-Range", "bytes " + range}},
            .etag = etag};
}

void breakServer(TransferScene &scene, const QString &fault, qint64 offset)
{
    Answer &whole = scene.answer();
    const QByteArray from = QByteArray::number(offset);
    const qint64 between = offset + (film().size() - offset) / 2;
    const auto serveRange = [&](const Answer &answer) {
        scene.server.serveRange(scene.path, answer);
    };
    if (fault == "chunked")
        whole.framing = FaultServer::Framing::Chunked;
    if (fault.startsWith("redirect")) {
        scene.server.serve("/mirror", whole);
        scene.server.redirect(scene.path, "/mirror");
    }
    if (fault == "drop")
        whole.cutAfter = between;
    if (fault == "stall")
        whole.silentAfter = between;
    if (fault == "truncated")
        whole.body.truncate(150'000);
    if (fault.startsWith("changed")) {
        whole.body = changedFilm();
        whole.etag = second;
    }
    if (fault.startsWith("validator gone"))
        whole.etag.clear();
    if (fault.endsWith("range all the same"))
        serveRange(partial(whole.body, offset, from + "-199999/200000", whole.etag));
    if (fault == "no ranges")
        whole.ranges = false;
    if (fault == "later range")
        serveRange(partial(film(), offset + 1, QByteArray::number(offset + 1) + "-199999/200000"));
    if (fault == "earlier range")
        serveRange(partial(film(), offset - 1, QByteArray::number(offset - 1) + "-199999/200000"));
    if (fault == "short range")
        serveRange(partial(film().chopped(1), offset, from + "-199998/200000"));
    if (fault == "longer film")
        serveRange(partial(film() + '!', offset, from + "-200000/200001"));
    if (fault == "unknown total")
        serveRange(partial(film(), offset, from + "-199999/*"));
    if (fault == "no range told")
        serveRange(partial(film(), offset, ""));
    if (fault == "404" || fault == "416" || fault == "503")
        serveRange({.body = "no", .status = fault.toInt()});
}

void breakPart(TransferScene &scene, const QString &fault, qint64 place)
{
    const QString path = scene.part();
    QFile part(path);
    const auto change = [path, place] {
        QFile changed(path);
        if (changed.open(QIODevice::ReadWrite) && changed.seek(place))
            changed.putChar('!');
    };
    if (fault == "part changed")
        change();
    if (fault == "part changed late")
        QObject::connect(&scene.server, &FaultServer::requested, &scene.server, change);
    if (fault == "part longer" && part.open(QIODevice::Append))
        part.write("!");
    if (fault == "part shorter")
        part.resize(place);
    if (fault == "part deleted")
        part.remove();
    if (fault == "part replaced") {
        part.copy(scene.target());
        part.remove();
        QFile::rename(scene.target(), path);
    }
    if (fault == "folder removed")
        QDir(scene.folder()).removeRecursively();
}

} // namespace

/// Transfers that are paused and taken up again.
class tst_TransferResume : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validators_data()
    {
        // condition: empty: no token
        const auto row = columns<QByteArray, QByteArray, QByteArray>("etag", "date", "condition");
        row("strong tag", "\"a\"", "", "\"a\"");
        row("tag and date", "\"a\"", later, "\"a\"");
        row("weak tag", "W/\"a\"", "", "");
        row("weak tag and date", "W/\"a\"", later, modified);
        row("bare tag", "a", "", "");
        row("date", "", later, modified);
        row("date of the same second", "", modified, "");
        row("no clock", "", "today", "");
        row("nothing", "", "", "");
    }

    void validators()
    {
        QFETCH(QByteArray, etag);
        QFETCH(QByteArray, date);
        QFETCH(QByteArray, condition);
        TransferScene scene;
        scene.answer().etag = etag;
        scene.answer().headers = {{"Last-Modified", modified}};
        if (!date.isEmpty())
            scene.answer().headers.append({"Date", date});
        const QByteArray token = scene.pausedAt(100'000);
        QCOMPARE(token.isEmpty(), condition.isEmpty());
        QCOMPARE(scene.files().isEmpty(), condition.isEmpty());
        const auto id = scene.start(token);
        QVERIFY(scene.probe.waitEnd(id));
        QCOMPARE(scene.server.requests().size(), 2);
        const auto &headers = scene.server.requests().last().headers;
        QCOMPARE(headers.value("if-range"), condition);
        QCOMPARE(headers.value("range"), condition.isEmpty() ? "" : "bytes=100000-");
        QVERIFY(contentsOf(scene.target()) == film());
        QVERIFY(scene.isOver(id, {"film.mp4"}));
    }

    void faults_data()
    {
        // end: a status, an error's text, or else the film's name
        const auto row = columns<int, QString>("requests", "end");
        row("none", 1, "film");
        row("chunked", 1, "film");
        row("redirect", 2, "film");
        row("redirect, only a date", 4, "film");
        row("drop", 1, "The connection ended before the file did.");
        row("stall", 1, "The server stopped answering.");
        row("truncated", 2, "truncated film");
        row("changed", 1, "changed film");
        row("changed, range all the same", 2, "changed film");
        row("validator gone", 1, "film");
        row("validator gone, range all the same", 2, "film");
        row("no ranges", 1, "film");
        row("later range", 2, "film");
        row("earlier range", 2, "film");
        row("short range", 2, "film");
        row("longer film", 2, "film");
        row("unknown total", 2, "film");
        row("no range told", 2, "film");
        row("416", 2, "film");
        row("404", 1, "404");
        row("503", 1, "503");
        row("part changed", 1, "film");
        row("part changed late", 2, "film");
        row("part longer", 1, "film");
        row("part shorter", 1, "film");
        row("part replaced", 1, "film");
        row("part deleted", 1, "film");
        row("folder removed", 1, "The folder is gone.");
        row("disk full", 1, "The disk is full.");
    }

    /// Each at several places of the film: it is whole in the end, or it is said why not.
    void faults()
    {
        const QString fault = QTest::currentDataTag();
        QFETCH(int, requests);
        QFETCH(QString, end);
        std::atomic<bool> full = false;
        const auto write = [&full](int file, const void *bytes, size_t count, off_t at) {
            return full ? fullAfter(0)(file, bytes, count, at) : pwrite(file, bytes, count, at);
        };
        const auto silence = fault == "stall" ? 500ms : 60'000ms;
        QRandomGenerator random(7);
        for (int round = 0; round < (fault == "stall" ? 3 : 20); ++round) {
            full = false;
            TransferScene scene({.silenceLimit = silence, .progressInterval = 0ms, .write = write});
            if (fault == "redirect, only a date") {
                scene.answer().etag.clear();
                scene.answer().headers = {{"Last-Modified", modified}, {"Date", later}};
            }
            const qint64 offset = random.bounded(2, int(film().size()) - 2);
            const QByteArray token = scene.pausedAt(offset);
            QVERIFY(!token.isEmpty());
            full = fault == "disk full";
            breakServer(scene, fault, offset);
            breakPart(scene, fault, random.bounded(int(offset)));
            const QByteArray body = fault.startsWith("redirect") ? film() : scene.answer().body;
            scene.server.forgetRequests();
            const auto id = scene.start(token);
            QVERIFY(scene.probe.waitEnd(id));
            const auto record = scene.probe.of(id);
            const bool whole = end.endsWith("film");
            QCOMPARE(record.error           ? record.error->text
                     : record.status >= 300 ? QString::number(record.status)
                                            : "film",
                     whole ? "film" : end);
            QVERIFY(contentsOf(scene.target()) == (whole ? body : QByteArray()));
            QVERIFY(scene.isOver(id, whole ? QStringList("film.mp4") : QStringList()));
            QCOMPARE(scene.server.requests().size(), requests);
        }
    }

    void tokens_data()
    {
        const auto row = columns<QString>("flaw");
        for (const char *flaw : {"damaged", "used", "discarded", "of another session",
                                 "for another address", "for another folder"})
            row(flaw, QString(flaw));
    }

    /// A token that is good for nothing leads to a download from the first byte.
    void tokens()
    {
        QFETCH(QString, flaw);
        TransferScene scene({.progressInterval = 0ms});
        TransferScene other({.progressInterval = 0ms});
        const QByteArray token = (flaw == "of another session" ? other : scene).pausedAt(100'000);
        QVERIFY(!token.isEmpty());
        TransferRequest request = scene.request(token);
        if (flaw == "damaged")
            request.token.back() = static_cast<char>(request.token.back() + 1);
        if (flaw == "used")
            QVERIFY(scene.probe.waitEnd(scene.start(token)) && QFile::remove(scene.target()));
        if (flaw == "discarded")
            scene.session->discard(token);
        if (flaw == "for another address") {
            request.url = scene.server.url("/other.mp4");
            scene.server.serve("/other.mp4", scene.answer());
        }
        if (flaw == "for another folder")
            request.folder = other.folder();
        const auto id = scene.session->start(request);
        QVERIFY(scene.probe.waitEnd(id));
        QVERIFY(!scene.server.requests().last().headers.contains("range"));
        QVERIFY(contentsOf(scene.target()) == film());
        QCOMPARE(other.files().size(), flaw == "of another session" ? 1 : 0);
        scene.session->discard(token);
        QTRY_COMPARE(scene.files(), QStringList("film.mp4"));
    }

    void tokenOfAPauseBeforeTheAnswer()
    {
        TransferScene scene({.progressInterval = 0ms});
        const QByteArray token = scene.pausedAt(100'000);
        scene.answer().silent = true;
        const auto silent = scene.start(token);
        QTRY_COMPARE(scene.server.requests().size(), 2);
        scene.session->pause(silent);
        QVERIFY(scene.probe.waitEnd(silent));
        scene.answer().silent = false;
        const auto id = scene.start(scene.probe.of(silent).token);
        QVERIFY(scene.probe.waitEnd(id));
        QCOMPARE(scene.server.requests().last().headers.value("range"), "bytes=100000-");
        QVERIFY(contentsOf(scene.target()) == film());
        QVERIFY(scene.isOver(id, {"film.mp4"}));
    }

    /// Starts, pauses and cancels that cross the transfers' own ends.
    void storm()
    {
        constexpr int slots = 5;
        TransferScene scene({.progressInterval = 0ms});
        scene.answer().bytesPerSecond = 10'000'000;
        std::array<TransferId, slots> ids{};
        const auto startIn = [&](size_t slot) {
            TransferRequest request = scene.request(scene.probe.of(ids[slot]).token);
            request.description += QString::number(slot);
            ids[slot] = scene.session->start(request);
        };
        QRandomGenerator random(11);
        for (int step = 0; step < 600; ++step) {
            const size_t slot = random.bounded(slots);
            const int calls = scene.probe.calls();
            const int action = random.bounded(4);
            if (ids[slot] == TransferId() || scene.probe.of(ids[slot]).ends > 0)
                startIn(slot);
            else if (action == 0)
                scene.session->cancel(ids[slot]);
            if (action == 1 || action == 2)
                scene.session->pause(ids[slot]);
            QVERIFY(scene.probe.wait([&] { return scene.probe.calls() > calls; }));
        }
        for (size_t slot = 0; slot < slots; ++slot) {
            scene.session->pause(ids[slot]);
            QVERIFY(scene.probe.waitEnd(ids[slot]));
            startIn(slot);
            QVERIFY(scene.probe.waitEnd(ids[slot]));
            QCOMPARE(scene.probe.of(ids[slot]).finishes, 1);
            QVERIFY(contentsOf(scene.target() + QString::number(slot)) == film());
        }
        QCOMPARE(scene.files().size(), slots);
        for (const auto &[id, record] : scene.probe.records()) {
            QCOMPARE(record.ends, 1);
            QCOMPARE(record.lateCalls, 0);
        }
    }
};

QTEST_GUILESS_MAIN(tst_TransferResume)
#include "tst_transferresume.moc"
