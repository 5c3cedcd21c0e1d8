// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/TransferScene.h"
#include "testlib/Table.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

using Framing = FaultServer::Framing;

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
    FaultServer::Answer &answer = scene.answer();
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
    if (fault == "bad framing")
        answer.headers = {{"Transfer-Encoding", "chunked"}};
    if (fault == "redirect to a file")
        scene.server.redirect(scene.path, "file:///etc/hostname");
    if (fault.contains("chunk"))
        answer.framing = Framing::Chunked;
    answer.reset = fault == "reset";
    if (fault == "part unasked") {
        answer.status = 206;
        answer.headers = {{"Content-Range", "bytes 0-199999/200001"}};
    }
    if (fault == "redirect loop")
        scene.server.redirect(scene.path, scene.path);
}

} // namespace

/// Transfers in one go.
class tst_TransferSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        const auto id =
            scene.session->start({scene.server.url("/moved"), scene.folder(), scene.target()});
        QVERIFY(scene.probe.waitEnd(id));
        const auto record = scene.probe.of(id);
        QVERIFY2(!record.error, record.error ? qPrintable(record.error->text) : "");
        QCOMPARE(record.status, 200);
        QCOMPARE(record.finishes, 1);
        QCOMPARE(record.received, size > 0 ? size : -1);
        QCOMPARE(record.expected, framing == Framing::Length && size > 0 ? size : -1);
        QVERIFY(contentsOf(scene.target()) == body);
        QVERIFY(scene.isOver(id, {"film.mp4"}));
        QCOMPARE(scene.server.requests().size(), 2);
        for (const auto &request : scene.server.requests()) {
            QCOMPARE(request.headers.value("accept-encoding"), "identity");
            QCOMPARE(request.headers.value("user-agent"), "TaveloApp/1.0 (macOS)");
            QVERIFY(!request.headers.contains("range"));
        }
    }

    void permissions()
    {
        TransferScene scene({.progressInterval = 0ms});
        scene.answer().silentAfter = 1000;
        const auto id = scene.start();
        QVERIFY(scene.probe.waitReceived(id, 1000));
        struct stat found = {};
        QCOMPARE(stat(qPrintable(scene.part()), &found), 0);
        QCOMPARE(found.st_mode & 07777, 0600U);
        scene.answer().silentAfter.reset();
        QVERIFY(scene.probe.waitEnd(scene.start()));
        const mode_t mask = umask(0);
        umask(mask);
        QCOMPARE(stat(qPrintable(scene.target()), &found), 0);
        QCOMPARE(found.st_mode & 07777, 0666U & ~mask);
    }

    void fails_data()
    {
        const auto row = columns<ErrorKind, QString>("kind", "text");
        const char *early = "The connection ended before the file did.";
        const char *silent = "The server stopped answering.";
        row("refused", ErrorKind::Transport, "Connection refused");
        row("no answer", ErrorKind::TimedOut, silent);
        row("stall", ErrorKind::TimedOut, silent);
        row("no body", ErrorKind::Transport, early);
        row("drop", ErrorKind::Transport, early);
        row("reset", ErrorKind::Transport, early);
        row("cut in a chunk", ErrorKind::Transport, early);
        row("part unasked", ErrorKind::Transport, "The server sent only a part of the file.");
        row("no last chunk", ErrorKind::Transport, early);
        row("bad framing", ErrorKind::Transport, "The server's answer cannot be understood.");
        row("redirect to a file", ErrorKind::Transport,
            "The server redirects to an address that is not safe.");
        row("redirect loop", ErrorKind::Transport, "The server redirects without end.");
        row("no web address", ErrorKind::BadUrl, "Invalid URL");
        row("no folder", ErrorKind::Storage, "The folder is gone.");
        row("folder removed", ErrorKind::Storage,
            "The file was removed or changed while it was downloaded.");
        row("full disk", ErrorKind::Storage, "The disk is full.");
        row("size limit", ErrorKind::Storage, "The file is too large for this disk.");
    }

    void fails()
    {
        const QString fault = QTest::currentDataTag();
        TransferOptions options{.progressInterval = 0ms};
        if (fault == "no answer" || fault == "stall")
            options.silenceLimit = 150ms;
        if (fault == "full disk")
            options.write = fullAfter(123'456);
        TransferScene scene(options);
        breakServer(scene, fault);
        TransferRequest request = scene.request();
        if (fault == "no web address")
            request.url.setScheme("ftp");
        if (fault == "no folder")
            request.folder += "/gone";
        const FileSizeLimit limit(fault == "size limit" ? 123'456 : RLIM_INFINITY);
        const auto id = scene.session->start(request);
        if (fault == "folder removed") {
            QVERIFY(scene.probe.waitReceived(id, 1));
            QVERIFY(QDir(scene.folder()).removeRecursively());
        }
        QVERIFY(scene.probe.waitEnd(id));
        const auto record = scene.probe.of(id);
        QVERIFY(record.error);
        QTEST(record.error->kind, "kind");
        QTEST(record.error->text, "text");
        QCOMPARE(record.finishes, 0);
        QVERIFY(scene.isOver(id, {}));
        QTRY_COMPARE(scene.server.openRequests(), 0);
    }

    void statuses_data()
    {
        columns<int>("status");
        for (const int status : {302, 404, 416, 503})
            QTest::addRow("%d", status) << status;
    }

    void statuses()
    {
        QFETCH(int, status);
        TransferScene scene;
        scene.answer().status = status;
        const auto id = scene.start();
        QVERIFY(scene.probe.waitEnd(id));
        QCOMPARE(scene.probe.of(id).status, status);
        QCOMPARE(scene.probe.of(id).finishes, 1);
        QVERIFY(!scene.probe.of(id).error);
        QVERIFY(scene.isOver(id, {}));
    }

    void cancelEndsItForGood()
    {
        TransferScene scene({.progressInterval = 0ms});
        scene.answer().silentAfter = 1000;
        const auto id = scene.start();
        QVERIFY(scene.probe.waitReceived(id, 1000));
        scene.session->cancel(id);
        QVERIFY(scene.probe.waitEnd(id));
        QCOMPARE(scene.probe.of(id).error->kind, ErrorKind::Cancelled);
        QTRY_COMPARE(scene.server.openRequests(), 0);
        QVERIFY(scene.isOver(id, {}));

        scene.answer().silentAfter.reset();
        const auto next = scene.start();
        QVERIFY(scene.probe.waitEnd(next));
        for (const auto over : {id, next}) {
            scene.session->pause(over);
            scene.session->cancel(over);
        }
        QVERIFY(scene.probe.waitEnd(scene.session->start({}))); // behind those in the queue
        QVERIFY(scene.isOver(id, {"film.mp4"}));
        QVERIFY(scene.isOver(next, {"film.mp4"}));
    }

    void destructionLeavesNothing()
    {
        TransferScene scene({.progressInterval = 0ms});
        QVERIFY(!scene.pausedAt(1000).isEmpty());
        scene.answer().silentAfter = 1000;
        QVERIFY(scene.probe.waitReceived(scene.start(), 1000));
        QCOMPARE(scene.files().size(), 2);
        const int calls = scene.probe.calls();
        scene.session.reset();
        QCOMPARE(scene.probe.calls(), calls);
        QCOMPARE(scene.files(), QStringList());
        QTRY_COMPARE(scene.server.openRequests(), 0);
    }

    /// More transfers than connections to one host: those that wait are not called silent. And no
    /// screen is told more than it can show.
    void waitsForItsTurn()
    {
        TransferScene scene({.silenceLimit = 500ms});
        scene.answer().bytesPerSecond = film().size(); // one second
        QElapsedTimer timer;
        timer.start();
        std::vector<TransferId> ids;
        for (int i = 0; i < 8; ++i) {
            TransferRequest request = scene.request();
            request.description += QString::number(i);
            ids.push_back(scene.session->start(request));
        }
        QTRY_COMPARE(scene.server.requests().size(), 6);
        scene.answer().bytesPerSecond = 0;
        for (const auto id : ids) {
            QVERIFY(scene.probe.waitEnd(id));
            QCOMPARE(scene.probe.of(id).finishes, 1);
            QVERIFY(scene.probe.of(id).reports <= 2 + timer.elapsed() / 100);
        }
    }

    void sweepSparesTheLiving()
    {
        TransferScene scene({.progressInterval = 0ms});
        QVERIFY(!scene.pausedAt(1000).isEmpty());
        QStringList kept = scene.files();
        const auto make = [&](const QString &name) {
            QFile file(scene.dir.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write("film") == 4;
        };
        QVERIFY(make(".tavelo-1-dead.part") && make(".tavelo-1-held.part") && make("film.part"));
        QVERIFY(QFile::link("film.part", scene.dir.filePath(".tavelo-1-link.part")));
        const int held = open(qPrintable(scene.dir.filePath(".tavelo-1-held.part")), O_WRONLY);
        QCOMPARE(flock(held, LOCK_EX), 0);
        scene.session->sweep(scene.folder());
        QVERIFY(scene.probe.waitEnd(scene.session->start({}))); // behind it in the queue
        close(held);
        kept += {".tavelo-1-held.part", ".tavelo-1-link.part", "film.part"};
        kept.sort();
        QStringList found = scene.files();
        found.sort();
        QCOMPARE(found, kept);
    }
};

QTEST_GUILESS_MAIN(tst_TransferSession)
#include "tst_transfersession.moc"
