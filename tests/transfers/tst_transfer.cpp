// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/StandardFolders.h"
#include "testlib/Table.h"
#include "transfers/PartMarks.h"
#include "transfers/TransferScene.h"

#include <QTest>

#include <array>
#include <atomic>
#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

using Answer = HttpService::Answer;
using Framing = HttpService::Framing;
using How = TransferResult;

constexpr const char *modified = "Tue, 01 Feb 2022 10:00:00 GMT";
constexpr const char *early = "The connection ended before the file did.";
constexpr const char *silent = "The server stopped answering.";
const QByteArray first = "\"first\"";
const QByteArray second = "\"second\"";

/// No file of this process may grow past a limit while this lives.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit m_before = {};
};

void breakServer(TransferScene &scene, const QString &fault)
{
    Answer &answer = scene.answer();
    if (fault == "refused")
        scene.server.setListening(false);
    answer.silent = fault == "no answer";
    if (fault == "stall")
        answer.silentAfter = 50'000;
    if (fault == "folder removed")
        answer.bytesPerSecond = 500'000;
    if (fault == "no body")
        answer.cutAfter = 0;
    if (fault == "drop" || fault == "reset" || fault == "cut in a chunk")
        answer.cutAfter = 50'000;
    if (fault == "no last chunk")
        answer.cutAfter = film().size();
    if (fault.contains("chunk"))
        answer.framing = Framing::Chunked;
    answer.reset = fault == "reset";
    if (fault == "part unasked") {
        answer.status = 206;
        answer.headers = {{"Content-Range", "bytes 0-199999/200001"}};
    }
    if (fault.toInt() > 0)
        answer.status = fault.toInt();
}

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

/// For a transfer of which `offset` bytes are there, and which asks for those from `from` on.
void breakRest(TransferScene &scene, const QString &fault, qint64 offset, qint64 from)
{
    Answer &whole = scene.answer();
    const QByteArray start = QByteArray::number(from);
    const qint64 between = offset + (film().size() - offset) / 2;
    const auto serveRange = [&](const Answer &answer) {
        scene.server.serveRange(scene.path, answer);
    };
    if (fault == "chunked")
        whole.framing = Framing::Chunked;
    if (fault == "other node, other bytes")
        whole.body[offset - 1] = static_cast<char>(whole.body[offset - 1] + 1);
    if (fault.startsWith("redirect") || fault.startsWith("other node")) {
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
        serveRange(partial(whole.body, from, start + "-199999/200000", whole.etag));
    if (fault == "no ranges")
        whole.ranges = false;
    if (fault == "no ranges, changed before") {
        whole.ranges = false;
        whole.etag.clear();
        whole.body[offset / 2] = static_cast<char>(whole.body[offset / 2] + 1);
    }
    if (fault == "later range")
        serveRange(partial(film(), from + 1, QByteArray::number(from + 1) + "-199999/200000"));
    if (fault == "earlier range")
        serveRange(partial(film(), from - 1, QByteArray::number(from - 1) + "-199999/200000"));
    if (fault == "short range")
        serveRange(partial(film().chopped(1), from, start + "-199998/200000"));
    if (fault == "longer film")
        serveRange(partial(film() + '!', from, start + "-200000/200001"));
    if (fault == "unknown total")
        serveRange(partial(film(), from, start + "-199999/*"));
    if (fault == "no range told")
        serveRange(partial(film(), from, ""));
    if (fault.toInt() > 0)
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
        QObject::connect(&scene.server, &HttpService::requested, &scene.server, change,
                         Qt::SingleShotConnection);
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
    if (fault == "marks damaged") {
        QFile marks(PartMarks::pathOf(scene.name));
        if (marks.open(QIODevice::ReadWrite) && marks.seek(place % 20))
            marks.write("\"}");
    }
    if (fault == "marks gone")
        QFile::remove(PartMarks::pathOf(scene.name));
    if (fault == "folder removed")
        QDir(scene.dir.path()).removeRecursively();
}

/// A transfer that is stopped somewhere, goes on when something has gone wrong, and goes on again
/// when that is put right.
struct FaultRound
{
    const QString fault;
    const qint64 offset;
    TransferScene scene = {};
    CurlFetch laterFetch; // which leaves no host alone any more
    std::atomic<bool> isFull = false;
    std::unique_ptr<TransferRun> run = {};
    QByteArray body = {}; // that the server has
    bool isMended = false;
    bool hadFolder = true;

    FaultRound(const QString &what, qint64 place)
        : fault(what)
        , offset(place)
    {
        scene.options.progressInterval = 0ms;
        scene.options.write = [this](int file, const void *bytes, size_t count, off_t at) {
            return isFull ? fullAfter(0)(file, bytes, count, at) : pwrite(file, bytes, count, at);
        };
        if (fault == "stall")
            scene.options.silenceLimit = 300ms;
        if (fault == "redirect, only a date" || fault.startsWith("other node")) {
            scene.answer().etag.clear();
            scene.answer().headers = {{"Last-Modified", modified}};
        }
    }
    Q_DISABLE_COPY_MOVE(FaultRound)

    bool pause()
    {
        const PartState part = scene.pausedAt(offset);
        isFull = fault == "disk full";
        breakRest(scene, fault, offset, offset - 65'536);
        breakPart(scene, fault, offset / 2);
        body = fault.startsWith("other node") ? scene.server.at("/mirror").body
               : fault.startsWith("redirect") ? film()
                                              : scene.answer().body;
        scene.server.forgetRequests();
        m_part = part;
        return part.done.front() == offset;
    }

    void goOn() { run = scene.start(m_part); }

    void repair()
    {
        isMended = true;
        isFull = false;
        hadFolder = QDir().exists(scene.dir.path());
        QDir().mkpath(scene.dir.path());
        scene.server.serveRange(scene.path, {.body = film(), .etag = first, .ranges = true});
        scene.serve(film());
        run =
            std::make_unique<TransferRun>(laterFetch, scene.request(run->end.part), scene.options);
    }

    /// Nothing that was there is fetched again.
    bool isRepaired() const
    {
        const QByteArray range = scene.server.requests().last().headers.value("range");
        const qint64 from = range.mid(6).chopped(range.isEmpty() ? 0 : 1).toLongLong();
        return contentsOf(scene.target()) == film() && (from >= offset - 65'536 || !hadFolder);
    }

private:
    PartState m_part = {};
};

} // namespace

/// One file on its way: it comes whole, or it is said why not, and what has come stays.
class tst_Transfer : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase() { StandardFolders::relocate(m_folder.path()); }

    void downloads_data()
    {
        columns<Framing, int>("framing", "size");
        for (const int size : {0, 1, 9'000'000}) {
            QTest::addRow("%d, length", size) << Framing::Length << size;
            QTest::addRow("%d, chunked", size) << Framing::Chunked << size;
            QTest::addRow("%d, until close", size) << Framing::Close << size;
        }
    }

    void downloads()
    {
        QFETCH(Framing, framing);
        QFETCH(int, size);
        TransferScene scene;
        const QByteArray body = randomBytes(size, 2);
        scene.serve(body);
        scene.answer().framing = framing;
        scene.server.redirect("/moved", scene.path);
        TransferRequest request = scene.request();
        request.url = scene.server.url("/moved");
        TransferRun run(scene.fetch, request, scene.options);
        QVERIFY(run.waitEnd());
        QCOMPARE(run.end.text, "");
        QVERIFY(run.end.result == How::Saved && !run.end.isChecked);
        QCOMPARE(run.last.received, size);
        QCOMPARE(run.last.total, size);
        QVERIFY(contentsOf(scene.target()) == body);
        QCOMPARE(scene.files(), QStringList("film.mp4"));
        QCOMPARE(scene.server.requests().size(), 2);
        for (const auto &asked : scene.server.requests()) {
            QCOMPARE(asked.headers.value("accept-encoding"), "identity");
            QVERIFY(!asked.headers.contains("range"));
        }
        struct stat found = {};
        const mode_t mask = umask(0);
        umask(mask);
        QCOMPARE(stat(qPrintable(scene.target()), &found), 0);
        QCOMPARE(found.st_mode & 07777, 0666U & ~mask);
    }

    void fails_data()
    {
        const auto row = columns<int, QString>("result", "text");
        const auto broken = int(How::Broken);
        const auto failed = int(How::Failed);
        const auto full = int(How::NoSpace);
        row("refused", broken, "Connection refused");
        row("no answer", broken, silent);
        row("stall", broken, silent);
        row("no body", broken, early);
        row("drop", broken, early);
        row("reset", broken, early);
        row("cut in a chunk", broken, early);
        row("no last chunk", broken, early);
        row("part unasked", failed, "The server sent only a part of the file.");
        row("no web address", failed, "Invalid URL");
        row("no folder", failed, "The folder is gone.");
        row("folder removed", failed, "The file was removed or changed while it was downloaded.");
        row("full disk", full, "The disk is full.");
        row("size limit", failed, "The file is too large for this disk.");
        row("404", failed, "HTTP 404");
        row("416", failed, "HTTP 416");
        row("500", broken, "HTTP 500");
        row("429", int(How::AskedToWait), "The server asks to wait");
        row("503", int(How::AskedToWait), "The server asks to wait");
    }

    void fails()
    {
        const QString fault = QTest::currentDataTag();
        TransferScene scene;
        scene.options.progressInterval = 0ms;
        if (fault == "no answer" || fault == "stall")
            scene.options.silenceLimit = 150ms;
        if (fault == "full disk")
            scene.options.write = fullAfter(123'456);
        breakServer(scene, fault);
        TransferRequest request = scene.request();
        if (fault == "no web address")
            request.url.setScheme("ftp");
        if (fault == "no folder")
            request.destination = scene.dir.filePath("gone/film.mp4");
        const FileSizeLimit limit(fault == "size limit" ? 123'456 : RLIM_INFINITY);
        TransferRun run(scene.fetch, request, scene.options);
        if (fault == "folder removed") {
            QVERIFY(run.waitReceived(1));
            QVERIFY(QDir(scene.dir.path()).removeRecursively());
        }
        QVERIFY(run.waitEnd());
        QTEST(run.end.text, "text");
        QTEST(int(run.end.result), "result");
        QVERIFY(!QFile::exists(scene.target()));
        QTRY_COMPARE(scene.server.openRequests(), 0);
        QCOMPARE(run.ends + run.lateCalls, 1);
        const bool waits = fault == "refused" || run.end.result == How::AskedToWait;
        QCOMPARE(run.end.pause >= 500ms, waits);
    }

    void partsAreTheUsersOwn()
    {
        TransferScene scene;
        scene.answer().silentAfter = 1000;
        const auto run = scene.start();
        QVERIFY(run->waitReceived(1000));
        struct stat found = {};
        QCOMPARE(stat(qPrintable(scene.part()), &found), 0);
        QCOMPARE(found.st_mode & 07777, 0600U);
        run->transfer->discard();
        QVERIFY(run->waitEnd());
        QVERIFY(run->end.result == How::Stopped);
        QCOMPARE(scene.files(), QStringList());
        QVERIFY(!QFile::exists(PartMarks::pathOf(scene.name)));
        QTRY_COMPARE(scene.server.openRequests(), 0);
    }

    void validators_data()
    {
        // condition: empty: there is no telling the version, and it starts from the first byte
        const auto row = columns<QByteArray, QByteArray, QByteArray>("etag", "date", "condition");
        row("strong tag", "\"a\"", modified, "\"a\"");
        row("weak tag", "W/\"a\"", "", "");
        row("weak tag and date", "W/\"a\"", modified, modified);
        row("changed just now", "", HttpAnswer::date(QDateTime::currentDateTime().addDays(1)), "");
    }

    void validators()
    {
        QFETCH(QByteArray, etag);
        QFETCH(QByteArray, date);
        QFETCH(QByteArray, condition);
        TransferScene scene;
        scene.answer().etag = etag;
        if (!date.isEmpty())
            scene.answer().headers = {{"Last-Modified", date}};
        const auto run = scene.start(scene.pausedAt(100'000));
        QVERIFY(run->waitEnd());
        const auto &headers = scene.server.requests().last().headers;
        QCOMPARE(headers.value("if-range"), condition);
        QCOMPARE(headers.value("range"), condition.isEmpty() ? "" : "bytes=34464-");
        QVERIFY(contentsOf(scene.target()) == film());
    }

    void faults_data()
    {
        // end: an error's text, or else the film's name
        const auto row = columns<int, QString>("requests", "end");
        row("none", 1, "film");
        row("chunked", 1, "film");
        row("redirect", 2, "film");
        row("redirect, only a date", 2, "film");
        row("other node, other bytes", 4, "film, over");
        row("drop", 1, early);
        row("stall", 1, silent);
        row("truncated", 2, "film, over");
        row("changed", 1, "film, over");
        row("changed, range all the same", 2, "film, over");
        row("validator gone", 1, "film");
        row("validator gone, range all the same", 1, "film");
        row("no ranges", 1, "film");
        row("no ranges, changed before", 1, "film, over");
        row("later range", 2, "film");
        row("earlier range", 2, "film");
        row("short range", 3, "film");
        row("longer film", 2, "film, over");
        row("unknown total", 2, "film");
        row("no range told", 2, "film");
        row("416", 2, "film, over");
        row("404", 1, "HTTP 404");
        row("500", 1, "HTTP 500");
        row("503", 1, "The server asks to wait");
        row("part changed", 1, "film");
        row("part changed late", 2, "film");
        row("part longer", 1, "film");
        row("part shorter", 1, "film");
        row("part replaced", 1, "film");
        row("part deleted", 1, "film");
        row("marks damaged", 1, "film");
        row("marks gone", 1, "film");
        row("folder removed", 0, "The folder is gone.");
        row("disk full", 1, "The disk is full.");
    }

    /// Each at twenty places of the film, all at once.
    void faults()
    {
        const QString fault = QTest::currentDataTag();
        QRandomGenerator random(7);
        std::vector<std::unique_ptr<FaultRound>> rounds;
        for (int i = 0; i < 20; ++i)
            rounds.push_back(std::make_unique<FaultRound>(
                fault, random.bounded(70'000, int(film().size()) - 2)));
        for (const auto &round : rounds)
            QVERIFY(round->pause());
        for (const auto &round : rounds)
            round->goOn();
        for (const auto &round : rounds) {
            const TransferRun &run = *round->run;
            QVERIFY(run.waitEnd());
            const bool whole = run.end.result == How::Saved;
            QTEST(!whole ? run.end.text : run.last.startedOver ? "film, over" : "film", "end");
            QCOMPARE(run.ends + run.lateCalls, 1);
            QTEST(int(round->scene.server.requests().size()), "requests");
            QVERIFY(contentsOf(round->scene.target()) == (whole ? round->body : QByteArray()));
            if (whole)
                QCOMPARE(round->scene.files(), QStringList("film.mp4"));
            else
                round->repair();
        }
        for (const auto &round : rounds) {
            QVERIFY(round->run->waitEnd());
            QVERIFY(!round->isMended || round->isRepaired());
        }
    }

    void checks_data()
    {
        const auto row =
            columns<QCryptographicHash::Algorithm, qint64, bool>("algorithm", "offset", "isGood");
        row("md5", QCryptographicHash::Md5, 0, true);
        row("sha1", QCryptographicHash::Sha1, 0, true);
        row("md5, after a pause", QCryptographicHash::Md5, 150'000, true);
        row("damaged", QCryptographicHash::Md5, 0, false);
        row("damaged before a pause", QCryptographicHash::Sha1, 150'000, false);
    }

    void checks()
    {
        QFETCH(QCryptographicHash::Algorithm, algorithm);
        QFETCH(qint64, offset);
        QFETCH(bool, isGood);
        TransferScene scene;
        scene.checksum = checksumOf(film(), algorithm);
        if (!isGood)
            scene.answer().body[1000] = static_cast<char>(film()[1000] + 1);
        const PartState part = offset > 0 ? scene.pausedAt(offset) : PartState();
        const auto run = scene.start(part);
        QVERIFY(run->waitEnd());
        QCOMPARE(run->end.isChecked, isGood);
        QCOMPARE(run->end.text, isGood ? "" : "Damaged on the way");
        QCOMPARE(scene.files(), isGood ? QStringList("film.mp4") : QStringList());
        QCOMPARE(run->end.part, PartState());
        if (!isGood) {
            scene.serve(film());
            const auto again = scene.start();
            QVERIFY(again->waitEnd());
            QVERIFY(again->end.isChecked);
        }
    }

    void twoConnections_data()
    {
        const auto row = columns<bool>("bothCount");
        row("both", true);
        row("paused on the way", true);
        row("no ranges", false);
        row("another film for the second", false);
        row("other bytes for the second", false);
        row("the second breaks", false);
    }

    void twoConnections()
    {
        QFETCH(bool, bothCount);
        const QString fault = QTest::currentDataTag();
        const QByteArray body = randomBytes(8 << 20, 3);
        QByteArray other = body;
        for (char &byte : other)
            byte = static_cast<char>(byte + 1);
        TransferScene scene;
        scene.options.leastForTwo = 1 << 20;
        scene.options.progressInterval = 0ms;
        scene.serve(body);
        scene.answer().bytesPerSecond = 10'000'000;
        scene.answer().ranges = fault != "no ranges";
        Answer range = scene.answer();
        if (fault.contains("for the second"))
            range.body = other;
        if (fault.startsWith("another film"))
            range.etag = second;
        if (fault == "the second breaks")
            range.cutAfter = 5 << 20;
        scene.server.serveRange(scene.path, range);
        auto run = scene.start();
        run->transfer->allowTwo(true);
        if (fault.startsWith("paused")) {
            QVERIFY(run->waitReceived(3 << 20));
            run->transfer->stop();
            QVERIFY(run->waitEnd());
            QCOMPARE(run->end.part.done.all().size(), 2);
            scene.server.forgetRequests();
            run = scene.start(run->end.part);
            run->transfer->allowTwo(true);
        }
        if (fault == "the second breaks") {
            QVERIFY(run->waitReceived(3 << 20));
            scene.server.serveRange(scene.path, scene.answer());
        }
        QVERIFY(run->waitEnd());
        QCOMPARE(run->end.text, "");
        QVERIFY(contentsOf(scene.target()) == body);
        const qint64 fetched = scene.server.bytesSent();
        if (bothCount)
            QVERIFY2(fetched < body.size() + (2 << 20), qPrintable(QString::number(fetched)));
        QVERIFY(scene.server.requests().size() >= 2);
    }

    /// Starts, stops and discards that cross the transfers' own ends.
    void storm()
    {
        constexpr int slots = 5;
        TransferScene scene;
        scene.options.progressInterval = 0ms;
        scene.answer().bytesPerSecond = 10'000'000;
        std::array<std::unique_ptr<TransferRun>, slots> runs;
        const auto startIn = [&](size_t slot) {
            TransferRequest request =
                scene.request(runs[slot] ? runs[slot]->end.part : PartState());
            request.destination += QString::number(slot);
            request.name += QString::number(slot);
            runs[slot] = std::make_unique<TransferRun>(scene.fetch, request, scene.options);
        };
        QRandomGenerator random(11);
        for (int step = 0; step < 300; ++step) {
            const size_t slot = random.bounded(slots);
            const int action = random.bounded(4);
            if (!runs[slot] || runs[slot]->ends > 0)
                startIn(slot);
            else if (action == 0)
                runs[slot]->transfer->discard();
            if (action == 1 || action == 2)
                runs[slot]->transfer->stop();
            QTest::qWait(random.bounded(5));
        }
        for (size_t slot = 0; slot < slots; ++slot) {
            if (runs[slot]) {
                runs[slot]->transfer->stop();
                QVERIFY(runs[slot]->waitEnd());
            }
            startIn(slot);
            QVERIFY(runs[slot]->waitEnd());
            QCOMPARE(runs[slot]->ends + runs[slot]->lateCalls, 1);
            QVERIFY(contentsOf(scene.target() + QString::number(slot)) == film());
        }
        QCOMPARE(scene.files().size(), slots);
    }

    void sweepSparesTheLiving()
    {
        TransferScene scene;
        QVERIFY(scene.pausedAt(1000).done.front() == 1000);
        QStringList kept = scene.files();
        const auto make = [&](const QString &name) {
            QFile file(scene.dir.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write("film") == 4;
        };
        QVERIFY(make(".tavelo-1-dead.part") && make(".tavelo-1-held.part") && make("film.part"));
        QVERIFY(QFile::link("film.part", scene.dir.filePath(".tavelo-1-link.part")));
        const int held = open(qPrintable(scene.dir.filePath(".tavelo-1-held.part")), O_WRONLY);
        QCOMPARE(flock(held, LOCK_EX), 0);
        PartFile::sweep(scene.dir.path(), {scene.name});
        close(held);
        kept += {".tavelo-1-held.part", ".tavelo-1-link.part", "film.part"};
        kept.sort();
        QStringList found = scene.files();
        found.sort();
        QCOMPARE(found, kept);
    }
};

QTEST_GUILESS_MAIN(tst_Transfer)
#include "tst_transfer.moc"
