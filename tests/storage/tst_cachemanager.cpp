// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/FetchData.h"
#include "loopback/HttpService.h"
#include "platform/files/StandardFolders.h"
#include "platform/media/film/FilmMemory.h"
#include "storage/CacheCleaning.h"
#include "storage/CacheManager.h"
#include "storage/CacheTag.h"
#include "testlib/Awaited.h"
#include "testlib/Table.h"

#include <QDir>
#include <QDirIterator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <sys/stat.h>

#include <thread>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

const QByteArray signature = "Signature: 8a477f597d28d172789f06886806bc55";
const QByteArray ourTag = signature + "\n# Tavelo keeps here what may be thrown away.\n";
const QString noDownloads = "/nowhere";
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

void makeTag(const QString &folder, const QByteArray &content = ourTag)
{
    QFile file(folder + "/CACHEDIR.TAG");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    QVERIFY(file.flush());
    QVERIFY(file.setFileTime(now.addDays(-400), QFileDevice::FileModificationTime));
}

// A folder that is ours already.
CacheFolder ours(const QString &folder, const QString &downloads = noDownloads)
{
    makeTag(folder);
    return *CacheFolder::inUse(folder, downloads);
}

qint64 sizeOf(const QString &folder)
{
    return FolderWalk::directorySize(OpenFolder(folder));
}

// Until all that a cache manager has begun is done.
void settle()
{
    for (int turn = 0; turn < 4; ++turn) {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
}

// What each file holds and each link leads to.
QMap<QString, QByteArray> contentBelow(const QString &folder)
{
    QMap<QString, QByteArray> content;
    for (const QString &name : filesBelow(folder)) {
        QFile file(folder + '/' + name);
        const QString target = QFileInfo(file).symLinkTarget();
        if (target.isEmpty() && !file.open(QIODevice::ReadOnly))
            continue;
        content.insert(name, target.isEmpty() ? file.readAll() : "-> " + target.toUtf8());
    }
    return content;
}

// A folder as a user has it, with all that a clean-up might take for its own.
void makeHome(const QString &home, const QString &outside)
{
    for (const char *path : {"/Documents/letter.txt", "/.ssh/id", "/Videos/TaveloApp/film.mp4",
                             "/URLCache/data8/0/notes.d", "/Torrents/mine.torrent", "/plain"})
        makeFile(home + path, 3'000'000, 400);
    makeFile(outside + "/far.txt", 3'000'000, 400);
    QVERIFY(QFile::link(outside, home + "/Documents/elsewhere"));
    QVERIFY(QFile::link(outside + "/far.txt", home + "/far.txt"));
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
        QCOMPARE(sizeOf(cache), 0);
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
        QCOMPARE(sizeOf(cache), expected);
        QCOMPARE(sizeOf(cache + "/nowhere"), 0);
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
        cleanCache(ours(cache), days, limit, now);
        QStringList files = filesBelow(cache);
        QVERIFY(files.removeOne("CACHEDIR.TAG"));
        QTEST(files, "left");
        QVERIFY(QDir(cache + "/folder").exists());
    }

    void staysInsideOfItAndOutOfTheDownloads()
    {
        const QString cache = fresh();
        const QString outside = fresh();
        for (const char *path : {"/URLCache/a/b", "/.URLCache", "/urlcache/x", "/old",
                                 "/Torrents/t.torrent", "/other/URLCache/x", "/deep/films/reel/f"})
            makeFile(cache + path, 8192, 400);
        makeFile(outside + "/old", 8192, 400);
        QVERIFY(QFile::link(outside, cache + "/link"));
        QVERIFY(QFile::link(outside + "/old", cache + "/deep/link"));
        QVERIFY(QFile::link(cache + "/deep", outside + "/way"));
        const CacheFolder folder = ours(cache, outside + "/way/films/");
        const auto beforeOutside = contentBelow(outside);

        const auto counted = FolderWalk::directorySize(folder.folder(), folder.spared());
        QCOMPARE(counted, sizeOf(cache) - sizeOf(cache + "/deep/films"));
        cleanCache(folder, 1, 0, now);
        const QStringList left{"CACHEDIR.TAG", "deep/films/reel/f", "deep/link", "link"};
        QCOMPARE(filesBelow(cache), left);
        makeFile(cache + "/URLCache/a/b", 1);
        makeFile(cache + "/other/new", 1);
        clearCache(folder, "URLCache");
        QCOMPARE(filesBelow(cache),
                 QStringList({"CACHEDIR.TAG", "URLCache/a/b", "deep/films/reel/f"}));
        QVERIFY(!QDir(cache + "/other").exists());

        // A folder that is exchanged for a link between the walk and the removal.
        QVERIFY(QFile::link(outside, cache + "/swapped"));
        QVERIFY(!FolderWalk::removeFile(folder.folder(), "swapped/old", {}));
        QVERIFY(FolderWalk::removeFile(folder.folder(), "gone/old", {}));
        QVERIFY(contentBelow(outside) == beforeOutside);
    }

    void takesOnlyAFolderThatIsFree_data()
    {
        // has: what is in it, and which it is; taken: from it on, or why it is not
        const auto row = columns<QString, QString>("has", "taken");
        row("empty", "", "");
        row("ours", "tag documents", "");
        row("documents", "documents", "/Tavelo Cache");
        row("another program's", "tag of another", "/Tavelo Cache");
        row("our tag cut short", "tag cut short", "/Tavelo Cache");
        row("chosen before", "documents subfolder", "/Tavelo Cache");
        row("downloads", "downloads", "/Tavelo Cache");
        row("downloads, and ours", "downloads tag", "/Tavelo Cache");
        row("its place is taken", "documents taken", "it holds other files");
        row("its place is a link", "documents link", "Not a directory");
        row("its place has the downloads", "documents films", "it holds other files");
        row("support", "support documents", "/Tavelo Cache");
        row("support, still empty", "support", "Tavelo keeps its own data there");
        row("support, and ours", "support tag", "Tavelo keeps its own data there");
        row("above support, and ours", "above tag", "Tavelo keeps its own data there");
        row("the default one", "default documents", "");
        row("nothing can be made there", "proc", "No such file or directory");
        row("no folder", "nothing", "Not a directory");
    }
    void takesOnlyAFolderThatIsFree()
    {
        QFETCH(QString, has);
        QFETCH(QString, taken);
        const QString outside = fresh();
        const QString folder = has.contains("support") ? SettingsStore::appSupport()
                               : has.contains("above")
                                   ? QFileInfo(SettingsStore::appSupport()).path()
                               : has.contains("default") ? SettingsStore::defaultCachePath()
                               : has == "proc"           ? "/proc/self"
                               : has == "nothing"        ? "/dev/null/no"
                                                         : fresh();
        if (has.contains("documents"))
            makeFile(folder + "/Documents/letter", 100);
        if (has.contains("tag"))
            makeTag(folder, has.endsWith("another") ? signature + "\n# Another's cache of Tavelo\n"
                            : has.endsWith("cut short") ? ourTag.chopped(2)
                                                        : ourTag);
        const QString place = folder + "/Tavelo Cache";
        if (has.endsWith("subfolder") || has.endsWith("films"))
            QVERIFY(QDir().mkpath(place));
        if (has.endsWith("subfolder"))
            makeTag(place);
        if (has.endsWith("taken"))
            makeFile(place + "/letter", 100);
        if (has.endsWith("link"))
            QVERIFY(QFile::link(outside, place));
        QVERIFY(QFile::link(folder, outside + "/way"));
        const QString downloads = has.contains("downloads") ? outside + "/way/"
                                  : has.endsWith("films")   ? place
                                                            : noDownloads;
        const auto before = contentBelow(has == "proc" ? outside : folder);

        const auto chosen = CacheFolder::choose(folder + '/', downloads);
        const bool isTaken = taken.isEmpty() || taken.startsWith('/');
        QCOMPARE(bool(chosen), isTaken);
        if (isTaken) {
            QCOMPARE(*chosen, folder + taken);
            QCOMPARE(CacheFolder::standing(*chosen, downloads), CacheFolder::Standing::Ours);
            QFile tag(*chosen + "/CACHEDIR.TAG");
            QVERIFY(tag.open(QIODevice::ReadOnly));
            QVERIFY(tag.readAll().startsWith(ourTag));
        } else {
            QCOMPARE(chosen.error().text.section(": ", 1), taken + '.');
        }
        const auto after = contentBelow(has == "proc" ? outside : folder);
        for (auto one = before.cbegin(); one != before.cend(); ++one)
            QCOMPARE(after.value(one.key()), one.value());
        if (has.contains("above"))
            QFile::remove(folder + "/CACHEDIR.TAG");
        QDir(SettingsStore::appSupport()).removeRecursively();
        QDir().mkpath(SettingsStore::appSupport());
    }

    void twoProgramsTakeTheSame()
    {
        for (int round = 0; round < 100; ++round) {
            const QString folder = fresh();
            QString taken[2];
            std::thread other([&] { taken[0] = *CacheFolder::choose(folder, noDownloads); });
            taken[1] = *CacheFolder::choose(folder, noDownloads);
            other.join();
            QCOMPARE(taken[0], folder);
            QCOMPARE(taken[1], folder);
        }
    }

    void aMissingDiskIsNotReplaced()
    {
        const QString disk = fresh() + "/disk";
        SettingsStore settings;
        settings.setCachePath(disk + "/cache");
        CacheManager cache(settings);
        for (const QString &there : {disk, settings.cachePath()}) {
            settle();
            QVERIFY(cache.folderProblem().startsWith("No cache was found in this folder"));
            QCOMPARE(*cache.torrentDir(), SettingsStore::defaultCachePath() + "/Torrents");
            cache.clear();
            settle();
            QVERIFY(!QDir(there).exists() || QDir(there).isEmpty());
            QVERIFY(QDir().mkpath(there));
            cache.refresh();
        }
        makeTag(settings.cachePath());
        cache.refresh();
        settle();
        QCOMPARE(cache.folderProblem(), "");
        QCOMPARE(*cache.torrentDir(), settings.cachePath() + "/Torrents");
    }

    void leavesAFolderOfOthersAlone_data()
    {
        // made: of the home, what there is besides; downloads: where they are, of the home
        const auto row = columns<QString, QString>("made", "downloads");
        row("a home", "", "Videos/TaveloApp");
        row("another program's cache", "its tag", "Videos/TaveloApp");
        row("a tag that is a link", "a link", "Videos/TaveloApp");
        row("the downloads folder", "our tag", "Videos/..");
        row("the support folder", "our tag in support", "Videos/TaveloApp");
    }
    void leavesAFolderOfOthersAlone()
    {
        QFETCH(QString, made);
        QFETCH(QString, downloads);
        const bool inSupport = made == "our tag in support";
        const QString home = inSupport ? SettingsStore::appSupport() : fresh();
        const QString outside = fresh();
        makeHome(home, outside);
        if (inSupport)
            makeFile(home + "/history.json", 100, 400);
        if (!made.isEmpty())
            makeTag(made == "a link" ? outside : home,
                    made == "its tag" ? signature + "\n# Another's\n" : ourTag);
        if (made == "a link")
            QVERIFY(QFile::link(outside + "/CACHEDIR.TAG", home + "/CACHEDIR.TAG"));
        QDir(SettingsStore::defaultCachePath()).removeRecursively();
        const auto before = contentBelow(home);
        const auto beforeOutside = contentBelow(outside);

        HttpService server;
        server.serve("/x", {.body = "kept", .headers = {{"Cache-Control", "max-age=3600"}}});
        SettingsStore settings;
        settings.setCachePath(home);
        settings.setDownloadsPath(home + '/' + downloads);
        settings.setCacheLimitMB(1);
        for (int start = 0; start < 3; ++start) {
            CacheManager cache(settings);
            settle();
            QSignalSpy measured(&cache, &CacheManager::usedBytesChanged);
            QVERIFY(awaited(fetchData(server.url("/x"), 10s)));
            QVERIFY(cache.torrentDir());
            cache.enforce();
            QTRY_COMPARE(measured.size(), 1);
            cache.clear();
            QTRY_COMPARE(measured.size(), 2);
            QCOMPARE(cache.folderProblem(),
                     "This folder holds other files. Choose the cache folder again.");
        }
        auto after = contentBelow(home);
        after.remove("Cache/CACHEDIR.TAG"); // that of the default one, in the support folder
        QCOMPARE(after.keys(), before.keys());
        QVERIFY(after == before);
        QVERIFY(contentBelow(outside) == beforeOutside);
        QVERIFY(!QDir(home + "/URLCache/prepared").exists());
        QFile::remove(home + "/CACHEDIR.TAG");
    }

    void worksForTheProgram()
    {
        SettingsStore settings;
        settings.setDownloadsPath(noDownloads);
        settings.setCachePath(ours(fresh()).path());
        settings.setCacheLimitMB(1);
        makeFile(settings.cachePath() + "/old", 700'000, 2);
        makeFile(settings.cachePath() + "/new", 700'000, 1);
        CacheManager cache(settings);
        QCOMPARE(cache.usedBytes(), 0);
        QTRY_COMPARE(filesBelow(settings.cachePath()), QStringList({"CACHEDIR.TAG", "new"}));
        QTRY_COMPARE(cache.usedBytes(), sizeOf(settings.cachePath()));
        QVERIFY(cache.freeBytes() > 0);

        // The store of responses follows the folder, and is emptied but kept.
        HttpService server;
        server.serve("/x", {.body = "kept", .headers = {{"Cache-Control", "max-age=3600"}}});
        settings.setCachePath(ours(fresh()).path());
        cache.configureURLCache();
        QVERIFY(awaited(fetchData(server.url("/x"), 10s)));
        QTRY_COMPARE(filesBelow(settings.cachePath() + "/URLCache").size(), 1);
        auto &films = FilmMemory::shared();
        const KeptFilm film{.key = KeptFilm::keyOf(server.url("/film")),
                            .version = {.total = 1'000'000},
                            .pieces = {{0, QByteArray(100'000, 'f')}}};
        films.store(film).waitForFinished();
        QCOMPARE(QDir(settings.cachePath() + "/films").count(), 3u);
        cache.refresh();
        QTRY_COMPARE(cache.usedBytes(), sizeOf(settings.cachePath()));
        QVERIFY(cache.usedBytes() > 100'000);
        const auto torrents = cache.torrentDir();
        QVERIFY(torrents);
        QVERIFY(QDir(*torrents).exists());
        makeFile(*torrents + "/t.torrent", 100);
        cache.clear();
        QTRY_COMPARE(filesBelow(settings.cachePath()), QStringList{"CACHEDIR.TAG"});
        QVERIFY(QDir(settings.cachePath() + "/URLCache").exists());
        QVERIFY(awaited(fetchData(server.url("/x"), 10s)));
        QCOMPARE(server.requests().size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestCacheManager)
#include "tst_cachemanager.moc"
