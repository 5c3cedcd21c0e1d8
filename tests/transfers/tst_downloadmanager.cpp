// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/files/FolderWalk.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/CurlFetch.h"
#include "testlib/Table.h"
#include "transfers/DownloadManager.h"
#include "transfers/DownloadName.h"
#include "transfers/PartMarks.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace tavelo;

namespace {

using Downloading = DownloadTask::Downloading;
using Paused = DownloadTask::Paused;
using Finished = DownloadTask::Finished;
using Failed = DownloadTask::Failed;

QByteArray bytes(int count)
{
    QByteArray made(count, Qt::Uninitialized);
    for (int i = 0; i < count; ++i)
        made[i] = char(i * 31 + i / 251);
    return made;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestDownloadManager : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    HttpService m_server;
    CurlFetch m_fetch;
    std::unique_ptr<SettingsStore> m_settings;
    DownloadOptions m_options;
    std::unique_ptr<DownloadManager> m_downloads;
    const QByteArray m_film = bytes(300'000);

    QString folder() const { return m_settings->downloadsPath(); }
    QStringList entries() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    /// As a new start of the program does.
    void open()
    {
        m_downloads.reset();
        m_downloads = std::make_unique<DownloadManager>(*m_settings, m_fetch, m_options);
    }
    static QString nameOf(const DownloadTask &task)
    {
        return task.id.toString(QUuid::WithoutBraces);
    }
    const DownloadTask task(qsizetype place = 0) const { return m_downloads->tasks().at(place); }
    void start(const QByteArray &path)
    {
        QCOMPARE(m_downloads->start("T", m_server.url(path), {}), std::nullopt);
    }
    // A film that stands still after a third of it.
    void startHanging()
    {
        m_server.serve(
            "/film.mp4",
            {.body = m_film, .etag = "\"1\"", .ranges = true, .silentAfter = m_film.size() / 3});
        start("/film.mp4");
        QTRY_COMPARE(task().received, m_film.size() / 3);
    }

private Q_SLOTS:
    void initTestCase() { StandardFolders::relocate(m_folder.path()); }
    void init()
    {
        m_settings = std::make_unique<SettingsStore>();
        m_settings->setDownloadsPath(m_folder.filePath(QTest::currentTestFunction()) + "/films");
        m_options = {.firstPause = std::chrono::milliseconds(5)};
        open();
        m_server.forgetRequests();
        m_server.serve("/film.mp4", {.body = m_film});
    }
    /// Nothing that is cleared leaves anything.
    void cleanup()
    {
        const QList<DownloadTask> tasks = m_downloads->tasks();
        for (const DownloadTask &task : tasks)
            m_downloads->cancel(task.id);
        QTRY_COMPARE(m_server.openRequests(), 0);
        QTRY_COMPARE(entries().filter(".tavelo"), QStringList());
        QTRY_COMPARE(QDir(PartMarks::pathOf("x") + "/..").entryList(QDir::Files), QStringList());
    }

    void namesFilesByTheirAddress_data()
    {
        const auto row = columns<QString, QString>("path", "name");
        row("plain", "/a/film.mp4", "film.mp4");
        row("encoded", "/My%20Film%C3%A9.mp4", u"My Film\u00E9.mp4"_qs);
        row("encoded slash", "/x/a%2Fb.mp4", "a_b.mp4");
        row("encoded twice", "/%2541%252Fb", "A_b");
        row("a lone sign stays", "/100%25.mp4", "100%.mp4");
        row("twice, not UTF-8, stays", "/%25FF", "%FF");
        row("not UTF-8", "/%FFx", u"\uFFFDx"_qs);
        row("up", "/a/%2e%2e", "..");
        row("up, encoded twice", "/a/%252e%252e", "..");
        row("folder", "/a/dir/", "dir");
        row("none", "", "");
        row("root", "/", "_");
        row("marks and dashes", "/-%E2%80%AEx.mp4", u"-\u202Ex.mp4"_qs);
        row("no query", "/a.mp4?b=/c#/d", "a.mp4");
    }
    void namesFilesByTheirAddress()
    {
        QFETCH(QString, path);
        QTEST(downloadName(QUrl("http://h" + path, QUrl::StrictMode)), "name");
    }

    void findsAFreeName_data()
    {
        const auto row = columns<QString, QString>("name", "third");
        row("plain", "film.mp4", "film 2.mp4");
        row("dots", "a.b.mp4", "a.b 2.mp4");
        row("no extension", "film", "film 2.");
        row("hidden", ".film", ".film 2.");
        row("dot at the end", "film.", "film. 2.");
        row("up", "..", ".. 2.");
        row("here", ".", ". 2.");
        row("empty", "", " 2.");
    }
    void findsAFreeName()
    {
        QFETCH(QString, name);
        int asked = 0;
        const QString path =
            freeDestination("/f", name, [&](const QString &) { return ++asked <= 2; });
        QTEST(path.sliced(3), "third");
    }

    void savesAFilm()
    {
        QDir().mkpath(folder());
        start("/film.mp4");
        start("/film.mp4");
        QCOMPARE(task().dest, folder() + "/film 1.mp4");
        QTRY_VERIFY(task(0).is<Finished>() && task(1).is<Finished>());
        QCOMPARE(task(0).received, m_film.size());
        QCOMPARE(task(0).expected, m_film.size());
        QCOMPARE(contentOf(folder() + "/film.mp4"), m_film);
        QCOMPARE(contentOf(folder() + "/film 1.mp4"), m_film);
        QTRY_COMPARE(m_downloads->saved().size(), 2);
        start("/film.mp4");
        QCOMPARE(task().dest, folder() + "/film 2.mp4");
        QTRY_VERIFY(task().is<Finished>());
    }

    void staysInItsFolder_data()
    {
        // name: empty: refused
        const auto row = columns<QByteArray, QString>("path", "name");
        row("up", "/a/%2e%2e", ".. 1.");
        row("up twice encoded", "/%252e%252e%252f%252e%252e%252fx", ".._.._x");
        row("here", "/a/%252e", ". 1.");
        row("zero byte", "/a%00b", "");
        row("too long", "/" + QByteArray(300, 'x'), "");
    }
    void staysInItsFolder()
    {
        QFETCH(QByteArray, path);
        QFETCH(QString, name);
        m_server.serve(m_server.url(path).toEncoded(QUrl::RemoveAuthority | QUrl::RemoveScheme),
                       {.body = "x"});
        start(path);
        if (name.isEmpty()) {
            QTRY_VERIFY(task().is<Failed>());
            QVERIFY(!std::get<Failed>(task().state).message.isEmpty());
            QVERIFY(entries().isEmpty());
        } else {
            QTRY_VERIFY(task().is<Finished>());
            QCOMPARE(entries(), QStringList{name});
        }
        QVERIFY(QDir(folder()).removeRecursively());
    }

    void saysWhyItDoesNotStart()
    {
        const qint64 free = FolderWalk::freeSpace(folder());
        const QUrl url = m_server.url("/film.mp4");
        QVERIFY(m_downloads->start("T", url, free)->startsWith("Not enough free disk space for "));
        QVERIFY(m_downloads->start("T", url, std::numeric_limits<qint64>::max())->endsWith("."));
        QVERIFY(m_downloads->tasks().isEmpty());
        QCOMPARE(m_downloads->start("T", url, 5), std::nullopt);
        QCOMPARE(task().expected, 5);
        QTRY_COMPARE(task().expected, m_film.size());
        QTRY_VERIFY(task().is<Finished>());
        m_settings->setDownloadsPath("/dev/null/films");
        QVERIFY(m_downloads->start("T", url, {})->startsWith("Cannot create downloads folder: "));
    }

    void triesAgainAndFailsWithItsReason()
    {
        m_server.serve("/cut.mp4",
                       {.body = m_film, .etag = "\"1\"", .ranges = true, .cutAfter = 1000});
        start("/nowhere.mp4");
        start("/cut.mp4");
        QTRY_VERIFY(task(0).is<Failed>() && task(1).is<Failed>());
        QCOMPARE(task(1).status(), "Failed: HTTP 404");
        QCOMPARE(task(0).status(), "Failed: The connection ended before the file did.");
        QCOMPARE(m_server.requests().size(), 1 + 6);
        QCOMPARE(task(0).received, 1000);
        m_server.at("/cut.mp4").cutAfter = {};
        m_downloads->resume(task().id);
        QTRY_VERIFY(task().is<Finished>());
        m_downloads->clearFinished();
        QVERIFY(m_downloads->tasks().isEmpty());
        QCOMPARE(contentOf(folder() + "/cut.mp4"), m_film);
    }

    void waitsAsItIsTold()
    {
        m_server.serve("/film.mp4",
                       {.body = "no", .status = 429, .headers = {{"Retry-After", "2"}}});
        start("/film.mp4");
        QTRY_COMPARE(task().status(), "The server asks to wait, next try in 2 s");
        start("/nowhere.mp4"); // of the same server
        QTRY_VERIFY(task().status().startsWith("The server asks to wait, next try in "));
        QCOMPARE(m_server.requests().size(), 1);
        m_downloads->cancel(task().id);
        m_server.serve("/film.mp4", {.body = m_film});
        QTRY_COMPARE(task().status(), "The server asks to wait, next try in 1 s");
        QTRY_VERIFY(task().is<Finished>());
        QCOMPARE(m_server.requests().size(), 2);
    }

    void someWaitForTheirTurn()
    {
        m_server.serve("/film.mp4", {.body = m_film, .silentAfter = 1000});
        m_server.serve("/second.mp4", {.body = m_film});
        for (int i = 0; i < 4; ++i)
            start("/film.mp4");
        for (const char *path : {"/a.mp4", "/b.mp4", "/second.mp4"})
            start(path);
        QCOMPARE(task(0).status(), "Waiting");
        QCOMPARE(QFileInfo(task(2).dest).fileName(), "second.mp4"); // behind those before it
        m_downloads->move(task(2).id, 0);
        m_downloads->move(task(2).id, 100);
        QCOMPARE(QFileInfo(task(6).dest).fileName(), "b.mp4");
        m_downloads->pause(task(6).id);
        QVERIFY(task(6).is<Paused>());
        QTRY_COMPARE(m_server.requests().size(), 4);
        m_downloads->cancel(task(2).id); // which ran: its place is free
        QTRY_VERIFY(task(0).is<Finished>());
        QTRY_COMPARE(task(1).status(), "Failed: HTTP 404");
        QVERIFY(task(5).is<Paused>());
        QCOMPARE(m_server.requests().size(), 6);
    }

    void aFullDiskHoldsIt()
    {
        bool full = true;
        m_options.transfer.write = [&](int file, const void *bytes, size_t count, off_t at) {
            errno = ENOSPC;
            return full && at + off_t(count) > 1000 ? -1 : pwrite(file, bytes, count, at);
        };
        open();
        start("/film.mp4");
        QTRY_COMPARE(task().status(), "The disk is full. Make room, then try again.");
        QVERIFY(task().canRetry());
        full = false;
        m_downloads->resume(task().id);
        QTRY_VERIFY(task().is<Finished>());
        QCOMPARE(contentOf(task().dest), m_film);
    }

    void goesOnAfterTheProgramsEnd()
    {
        startHanging();
        startHanging();
        m_downloads->pause(task(0).id);
        QTRY_VERIFY(task(0).is<Paused>());
        start("/nowhere.mp4");
        QTRY_VERIFY(task(0).is<Failed>());
        const QList<DownloadTask> before = m_downloads->tasks();
        const QString stray = PartFile::pathIn(folder(), "of-nobody");
        QVERIFY(QFile::copy(PartFile::pathIn(folder(), nameOf(task(1))), stray));
        const QString oldFolder = folder();
        m_settings->setDownloadsPath(m_folder.filePath("elsewhere"));
        m_server.at("/film.mp4").silentAfter = {};
        m_server.forgetRequests();
        open();
        QCOMPARE(m_downloads->tasks().size(), 3);
        QCOMPARE(task(0), before[0]);
        QCOMPARE(task(1), before[1]);
        QTRY_VERIFY(task(2).is<Finished>());
        QCOMPARE(contentOf(task(2).dest), m_film);
        QCOMPARE(m_server.requests().size(), 1);
        QCOMPARE(m_server.requests()[0].headers.value("range"),
                 "bytes=" + QByteArray::number(m_film.size() / 3 - 65'536) + "-");
        QTRY_VERIFY(!QFile::exists(stray));
        m_downloads->resume(task(1).id);
        QTRY_VERIFY(task(1).is<Finished>());
        m_settings->setDownloadsPath(oldFolder);
        open();
        QVERIFY(task(1).is<Finished>() && task(2).is<Finished>());
    }

    void checksWhatTheCatalogueSays()
    {
        const auto checksum = [](const QByteArray &body) {
            return Checksum{QCryptographicHash::Md5,
                            QCryptographicHash::hash(body, QCryptographicHash::Md5)};
        };
        const QUrl url = m_server.url("/film.mp4");
        QVERIFY(!m_downloads->start("T", url, {}, {"item", checksum("another film")}));
        QVERIFY(!m_downloads->start("T", url, {}, {"item", checksum(m_film)}));
        QTRY_VERIFY(task(0).is<Finished>() && task(1).is<Failed>());
        QVERIFY(task(0).status().endsWith("Checked"));
        QCOMPARE(task(1).status(), "Failed: Damaged on the way");
        QVERIFY(!QFile::exists(task(1).dest));
    }

    void pausesAndGoesOn()
    {
        startHanging();
        m_downloads->pause(task().id);
        m_downloads->pause(task().id);
        QTRY_VERIFY(task().is<Paused>());
        m_downloads->clearFinished();
        m_server.at("/film.mp4").silentAfter = {};
        m_downloads->resume(task().id);
        QTRY_VERIFY(task().is<Finished>());
        QCOMPARE(contentOf(task().dest), m_film);
    }

    void forgetsWhatIsCancelled()
    {
        startHanging();
        startHanging();
        QCOMPARE(task().dest, folder() + "/film 1.mp4");
        m_downloads->pause(task(1).id);
        QTRY_VERIFY(task(1).is<Paused>());
        m_downloads->cancel(task(1).id);
        m_downloads->cancel(task(0).id);
        QVERIFY(m_downloads->tasks().isEmpty());
        QTRY_VERIFY(entries().isEmpty());
        QTRY_COMPARE(m_server.openRequests(), 0);
    }

    void aStormOfButtonsEndsWell()
    {
        m_server.serve(
            "/film.mp4",
            {.body = m_film, .etag = "\"1\"", .ranges = true, .bytesPerSecond = 3'000'000});
        start("/film.mp4");
        const QUuid id = task().id;
        for (int i = 0; i < 60; ++i) {
            if (i % 3 == 0)
                m_downloads->pause(id);
            if (i % 3 == 1 || i % 7 == 0)
                m_downloads->resume(id);
            QTest::qWait(i % 5);
        }
        m_downloads->resume(id);
        QTRY_VERIFY(task().is<Finished>());
        QCOMPARE(contentOf(task().dest), m_film);
        QCOMPARE(entries(), QStringList{"film.mp4"});
    }

    void listsSavedVideos()
    {
        QDir().mkpath(folder() + "/folder.mp4");
        for (const char *name :
             {"a.MP4", "b.txt", ".hidden.mp4", "c.webm", "mp4", "folder.mp4/d.mp4"}) {
            QFile file(folder() + "/" + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("123");
        }
        // Whoever opens one of these waits for ever.
        const QString pipe = folder() + "/pipe.mp4";
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(QFile::link(pipe, folder() + "/link to a pipe.mp4"));
        QVERIFY(QFile::link("/dev/zero", folder() + "/link to a device.mp4"));
        m_downloads->refreshSaved();
        QTRY_COMPARE(m_downloads->saved().size(), 2);
        QStringList names;
        for (const SavedFile &file : m_downloads->saved()) {
            names.append(file.url.fileName());
            QCOMPARE(file.size, 3);
            QVERIFY(file.added.secsTo(QDateTime::currentDateTimeUtc()) < 600);
        }
        names.sort();
        QCOMPARE(names, QStringList({"a.MP4", "c.webm"}));
        m_settings->setDownloadsPath(folder() + "/nowhere");
        m_downloads->refreshSaved();
        QTRY_VERIFY(m_downloads->saved().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDownloadManager)
#include "tst_downloadmanager.moc"
