// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/FetchData.h"
#include "platform/FolderWalk.h"
#include "platform/StandardFolders.h"
#include "storage/CacheCleaning.h"
#include "storage/CacheManager.h"
#include "testlib/Awaited.h"
#include "testlib/FaultServer.h"
#include "testlib/Table.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

const QDateTime now = QDateTime::currentDateTimeUtc();

void makeFile(const QString &path, qint64 bytes, double daysOld = 0)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(bytes, 'x'));
    QVERIFY(file.flush());
    QVERIFY(file.setFileTime(now.addMSecs(qint64(-daysOld * 86'400'000)),
                             QFileDevice::FileModificationTime));
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator all(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QFileInfo info(all.next());
        if (!info.isDir() || info.isSymLink())
            files.append(QDir(folder).relativeFilePath(info.filePath()));
    }
    files.sort();
    return files;
}

} // namespace

class TestCacheManager : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    int m_count = 0;

    // A folder of its own for each test.
    QString fresh()
    {
        const QString path = m_folder.filePath(QString("test %1").arg(++m_count));
        QDir().mkpath(path);
        return path;
    }

private Q_SLOTS:
    void initTestCase() { StandardFolders::relocate(m_folder.path()); }

    void measuresFilesOnly()
    {
        const QString cache = fresh();
        QCOMPARE(FolderWalk::directorySize(cache), 0);
        makeFile(cache + "/a", 10'000);
        makeFile(cache + "/deep/er/.hidden", 5000);
        makeFile(cache + "/film.bundle/part", 1);
        QDir().mkpath(cache + "/empty");
        const QString outside = fresh();
        makeFile(outside + "/big", 1'000'000);
        QVERIFY(QFile::link(outside, cache + "/folder link"));
        QVERIFY(QFile::link(outside + "/big", cache + "/file link"));
        QVERIFY(QFile::link(cache, cache + "/deep/loop"));
        qint64 expected = 0;
        for (const char *name : {"/a", "/deep/er/.hidden", "/film.bundle/part"}) {
            struct stat facts;
            QCOMPARE(stat(qPrintable(cache + name), &facts), 0);
            expected += facts.st_blocks * 512;
        }
        QVERIFY(expected > 0);
        QCOMPARE(FolderWalk::directorySize(cache), expected);
        QCOMPARE(FolderWalk::directorySize(cache + "/nowhere"), 0);
        QVERIFY(FolderWalk::freeSpace(cache + "/not/yet") > 0);
        QVERIFY(FolderWalk::freeSpace("/") > 0);
    }

    void cleansByAgeThenBySize_data()
    {
        const auto row = columns<qint64, qint64, QStringList>("days", "limit", "left");
        const QStringList all{".hidden", "URLCache/new", "folder/old", "folder/older", "newest"};
        row("nothing to do", 0LL, 1'000'000LL, all);
        row("too old", 14LL, 1'000'000LL, {"URLCache/new", "folder/old", "newest"});
        row("too much", 0LL, 3 * 8192LL, {"URLCache/new", "folder/old", "newest"});
        row("both", 15LL, 8192LL, {"newest"});
        row("just fits", 0LL, 5 * 8192LL, all);
        row("nothing may stay", 0LL, 0LL, {});
    }
    void cleansByAgeThenBySize()
    {
        QFETCH(qint64, days);
        QFETCH(qint64, limit);
        const QString cache = fresh();
        makeFile(cache + "/newest", 8192);
        makeFile(cache + "/URLCache/new", 8192, 1);
        makeFile(cache + "/folder/old", 8192, 13);
        makeFile(cache + "/folder/older", 8192, 15.1);
        makeFile(cache + "/.hidden", 8192, 20);
        const QString outside = fresh();
        makeFile(outside + "/old", 8192, 400);
        cleanCache(cache, days, limit, now);
        QTEST(filesBelow(cache), "left");
        QVERIFY(QDir(cache + "/folder").exists());
    }

    void neverFollowsALinkOut()
    {
        const QString cache = fresh();
        const QString outside = fresh();
        makeFile(outside + "/old", 8192, 400);
        QVERIFY(QFile::link(outside, cache + "/link"));
        cleanCache(cache, 1, 0, now);
        FolderWalk::removeEntries(cache, "URLCache");
        QCOMPARE(filesBelow(outside), QStringList{"old"});
        QVERIFY(QDir(cache).isEmpty());
    }

    void keepsOnlyTheNamedEntry()
    {
        const QString cache = fresh();
        for (const char *path : {"/URLCache/a/b", "/.URLCache", "/urlcache/x",
                                 "/Torrents/t.torrent", "/other/URLCache/x", "/plain"})
            makeFile(cache + path, 1);
        FolderWalk::removeEntries(cache, "URLCache");
        QCOMPARE(filesBelow(cache), QStringList{"URLCache/a/b"});
        QCOMPARE(QDir(cache).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{"URLCache"});
    }

    void worksForTheProgram()
    {
        SettingsStore settings;
        settings.setCachePath(fresh());
        settings.setCacheLimitMB(1);
        makeFile(settings.cachePath() + "/old", 700'000, 2);
        makeFile(settings.cachePath() + "/new", 700'000, 1);
        CacheManager cache(settings);
        QCOMPARE(cache.usedBytes(), 0);
        QTRY_COMPARE(filesBelow(settings.cachePath()), QStringList{"new"});
        QTRY_COMPARE(cache.usedBytes(), FolderWalk::directorySize(settings.cachePath()));
        QVERIFY(cache.freeBytes() > 0);

        // The store of responses follows the folder, and is emptied but kept.
        FaultServer server;
        server.serve("/x", {.body = "kept", .headers = {{"Cache-Control", "max-age=3600"}}});
        settings.setCachePath(fresh());
        cache.configureURLCache();
        QVERIFY(awaited(fetchData(server.url("/x"), 10s)));
        QTRY_COMPARE(filesBelow(settings.cachePath() + "/URLCache").size(), 1);
        const auto torrents = cache.torrentDir();
        QVERIFY(torrents);
        QVERIFY(QDir(*torrents).exists());
        makeFile(*torrents + "/t.torrent", 100);
        cache.clear();
        QTRY_COMPARE(filesBelow(settings.cachePath()), QStringList{});
        QVERIFY(QDir(settings.cachePath() + "/URLCache").exists());
        QVERIFY(awaited(fetchData(server.url("/x"), 10s)));
        QCOMPARE(server.requests().size(), 2);

        settings.setCachePath("/dev/null/no");
        QVERIFY(!cache.torrentDir());
        cache.refresh();
        QTRY_COMPARE(cache.usedBytes(), 0);
    }
};

QTEST_GUILESS_MAIN(TestCacheManager)
#include "tst_cachemanager.moc"
