// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/AppState.h"
#include "app/Suggestions.h"
#include "loopback/HttpService.h"
#include "platform/files/FileContent.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"
#include "testlib/FakeWorkspace.h"
#include "testlib/Table.h"

#include <QDir>
#include <QDirIterator>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

const QByteArray searchPath = "/advancedsearch.php";
const QString fooHash = "3d894ea380484ec8825768372dc9f5457c041cfa"; // of the torrents named "foo"

QByteArray page(const QList<QByteArray> &ids)
{
    QByteArray documents;
    for (const QByteArray &id : ids)
        documents +=
            (documents.isEmpty() ? "{\"identifier\":\"" : ",{\"identifier\":\"") + id + "\"}";
    return "{\"response\":{\"docs\":[" + documents + "]}}";
}

MediaItem itemWith(const QStringList &subjects)
{
    MediaItem item;
    item.subjects = subjects;
    return item;
}

} // namespace

class tst_AppState : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    HttpService m_server;
    QStringList m_handed;
    std::unique_ptr<AppState> m_state;

private Q_SLOTS:
    void initTestCase()
    {
        ServiceHosts::replace({.archive = m_server.base()});
        StandardFolders::relocate(m_folder.path());
    }

    void init()
    {
        m_server.forgetRequests();
        m_server.setListening(true);
        m_state = std::make_unique<AppState>([] { return nullptr; },
                                             std::make_unique<FakeWorkspace>(m_handed));
        m_handed.clear();
        m_state->library()->clear();
    }

    void startsOnHomeWithNothing()
    {
        QCOMPARE(m_state->section(), SidebarSection::Home);
        QVERIFY(m_state->featured().isEmpty() && m_state->popular().isEmpty());
        QVERIFY(!m_state->selectedItem() && !m_state->notice() && !m_state->showPlayer());
        QVERIFY(m_state->suggestions().isEmpty());
    }

    void tellsOfBothDamagedFiles()
    {
        m_state.reset();
        for (const QString &file : {StandardFolders::support() + "/history.json",
                                    StandardFolders::configuration() + "/preferences.json"})
            QVERIFY(FileContent::replace(file, "torn"));
        m_state = std::make_unique<AppState>([] { return nullptr; },
                                             std::make_unique<FakeWorkspace>(m_handed));
        QTRY_VERIFY(m_state->noticeText().contains("/history.unreadable-1.json"));
        QTRY_VERIFY(m_state->noticeText().contains("/preferences.unreadable-1.json"));
    }

    void homeLoadsBothShelvesOnce()
    {
        m_server.serve(searchPath, {.body = page({"one", "two"})});
        m_state->loadHome();
        QVERIFY(m_state->homeLoading());
        QTRY_VERIFY(!m_state->homeLoading());
        QCOMPARE(m_state->featured().size(), 2);
        QCOMPARE(m_state->popular().size(), 2);
        QCOMPARE(m_server.requests().size(), 2);
        QByteArray targets;
        for (const auto &request : m_server.requests())
            targets += request.target + '\n';
        QVERIFY(targets.contains("sort%5B%5D=downloads%20desc&rows=24&page=1"));
        QVERIFY(targets.contains("sort%5B%5D=week%20desc&rows=24&page=1"));
        QVERIFY(targets.contains("collection:(feature_films)"));

        m_state->loadHome();
        QVERIFY(!m_state->homeLoading());
        QCOMPARE(m_server.requests().size(), 2);
    }

    void homeTellsOfItsFailureAndTriesAgain()
    {
        m_server.serve(searchPath, {.status = 503});
        m_state->loadHome();
        QTRY_VERIFY(!m_state->homeLoading());
        QCOMPARE(m_state->homeError(), std::optional<QString>("HTTP 503"));
        m_server.serve(searchPath, {.body = page({"one"})});
        m_state->loadHome();
        QCOMPARE(m_state->homeError(), std::nullopt);
        QTRY_VERIFY(!m_state->homeLoading());
        QCOMPARE(m_state->popular().size(), 1);
    }

    void homeWithoutAnyService()
    {
        m_server.setListening(false);
        m_state->loadHome();
        QTRY_VERIFY(!m_state->homeLoading());
        QCOMPARE(m_state->homeError(), std::optional<QString>("Connection refused"));
    }

    void stateThatGoesDuringALoad()
    {
        m_server.serve(searchPath, {.body = page({"one"}), .delay = std::chrono::milliseconds(50)});
        m_state->loadHome();
        m_state->searchFor("noir");
        QTRY_COMPARE(m_server.requests().size(), 3);
        m_state.reset();
        QTRY_COMPARE(m_server.openRequests(), 0); // the answers find nobody, and nothing breaks
    }

    void searchGoesToItsSection()
    {
        m_server.serve(searchPath, {.body = page({"one", "two", "three"})});
        m_state->searchFor("noir");
        QCOMPARE(m_state->searchQuery(), QStringLiteral("noir"));
        QCOMPARE(m_state->section(), SidebarSection::Search);
        QVERIFY(m_state->searching() && m_state->searchResults().isEmpty());
        QTRY_VERIFY(!m_state->searching());
        QCOMPARE(m_state->searchResults().size(), 3);

        m_server.serve(searchPath, {.status = 500});
        m_state->runSearch();
        QTRY_VERIFY(!m_state->searching());
        QCOMPARE(m_state->searchError(), std::optional<QString>("HTTP 500"));
        QVERIFY(m_state->searchResults().isEmpty());
    }

    void blankSearchAsksNothing()
    {
        m_state->setSearchQuery(" \n\t ");
        m_state->runSearch();
        QVERIFY(!m_state->searching());
        QCOMPARE(m_server.requests().size(), 0);
    }

    void playLeavesTheSheetForThePlayer()
    {
        MediaItem item;
        item.id = "abc";
        item.title = "A Film";
        m_state->selectItem(item);
        const ArchiveFile file{"dir/film.mp4", {}, {}, {}, "http://127.0.0.1:1/"};
        m_state->play(file, item, {});
        QVERIFY(!m_state->selectedItem());
        QVERIFY(m_state->showPlayer());
        QCOMPARE(m_state->playback()->nowPlaying()->key, QStringLiteral("abc|dir/film.mp4"));
        m_state->playback()->stopPlayback();
        QCOMPARE(m_state->playback()->nowPlaying(), std::nullopt);
    }

    void goesOnWithWhatWasPlayed()
    {
        QVERIFY(m_state->recentlyViewed().isEmpty());
        for (int i = 0; i < 25; ++i) {
            HistoryEntry entry;
            entry.key = QString("film %1").arg(i);
            entry.itemID = "abc";
            entry.source = "http://127.0.0.1:1/";
            entry.isLocal = i % 5 == 4;
            m_state->library()->record(entry);
        }
        QCOMPARE(m_state->recentlyViewed().size(), 20);
        QCOMPARE(m_state->recentlyViewed().at(0).key, "film 23");
        m_state->selectItem(itemWith({}));
        m_state->resume(m_state->recentlyViewed().at(3));
        QVERIFY(m_state->showPlayer() && m_state->selectedItem());
        QCOMPARE(m_state->playback()->nowPlaying()->key, "abc|film 20");

        HistoryEntry lost;
        lost.key = "abc|lost";
        m_state->setShowPlayer(false);
        for (const bool local : {false, true}) {
            lost.isLocal = local;
            m_state->resume(lost);
            QVERIFY2(!m_state->showPlayer(), "another film's player is shown");
            QCOMPARE(m_state->notice(), "The watch history holds no address for this film.");
            m_state->clearNotice();
        }
    }

    void loadsACollection()
    {
        const Collection collection = Collection::all().at(1);
        m_server.serve(searchPath, {.body = page({"one", "two"})});
        m_state->loadCollection(collection);
        QVERIFY(m_state->discoverLoading());
        QVERIFY(m_state->collection() == collection);
        QTRY_VERIFY(!m_state->discoverLoading());
        QCOMPARE(m_state->discoverResults().size(), 2);
        QVERIFY(m_server.requests().at(0).target.contains("rows=60"));
        m_server.serve(searchPath, {.status = 500});
        m_state->loadCollection(collection);
        QTRY_VERIFY(!m_state->discoverLoading());
        QVERIFY(m_state->discoverResults().isEmpty() && !m_state->notice());
    }

    void downloadGoesToItsSection()
    {
        m_server.serve("/film.mp4", {.body = "a film"});
        const QString root = m_server.base() + "/";
        m_state->selectItem(itemWith({}));
        m_state->download({"film.mp4", {}, std::numeric_limits<qint64>::max(), {}, root},
                          itemWith({}));
        QVERIFY(m_state->notice()->startsWith("Not enough free disk space for "));
        QVERIFY(m_state->selectedItem());
        QCOMPARE(m_state->section(), SidebarSection::Home);
        m_state->download({"film.mp4", {}, 6, {}, root}, itemWith({}));
        QVERIFY(!m_state->selectedItem());
        QCOMPARE(m_state->section(), SidebarSection::Downloads);
        QTRY_COMPARE(m_state->downloads()->saved().size(), 1);
    }

    void inspectsMagnets()
    {
        m_state->inspectMagnet("magnet:?xt=urn:btih:" + QString(40, 'a') + "&dn=T");
        QCOMPARE(m_state->inspector()->name, "T");
        m_state->inspectMagnet("http://h/?xt=urn:btih:" + QString(40, 'a'));
        QCOMPARE(*m_state->notice(), "That doesn't look like a valid magnet link.");
        QCOMPARE(m_state->inspector()->name, "T");
    }

    void inspectsRemoteTorrents_data()
    {
        // copy: in the folder of its hash; notice: empty: it is shown
        const auto row =
            columns<QByteArray, QByteArray, QString, QString>("path", "body", "copy", "notice");
        const QByteArray torrent = "d4:infod6:lengthi5e4:name3:fooee";
        const QString failed = "Couldn't read torrent: ";
        row("plain", "/abc/abc_archive.torrent", torrent, "abc_archive.torrent", "");
        row("another extension", "/x/y.z.php", torrent, "y.z.torrent", "");
        row("out of the folder", "/x/..%2F..%2F..%2Fup.torrent", torrent, ".._.._.._up.torrent",
            "");
        row("no name", "/", torrent, "_.torrent", "");
        row("nothing but an extension", "/.torrent", torrent, fooHash + ".torrent", "");
        row("longer than a file's name", "/" + QByteArray(300, 'x'), torrent, fooHash + ".torrent",
            "");
        row("no torrent", "/page", "<html>", "", failed + "Not a valid .torrent file");
        row("not there", "/nowhere", QByteArray(), "", failed + "HTTP 404");
    }
    void inspectsRemoteTorrents()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, body);
        QFETCH(QString, copy);
        QFETCH(QString, notice);
        if (!body.isEmpty())
            m_server.serve(path, {.body = body});
        QUrl url = m_server.url(path);
        url.setQuery("download=1/2");
        m_state->inspectTorrentURL(url);
        QTRY_VERIFY(m_state->inspector() || m_state->notice());
        QCOMPARE(m_state->notice().value_or(QString()), notice);
        QDir folder(*m_state->cache()->torrentDir());
        QCOMPARE(folder.isEmpty(), !notice.isEmpty());
        if (notice.isEmpty()) {
            const QString kept = folder.filePath(fooHash + "/" + copy);
            QCOMPARE(m_state->inspector()->fileURL, QUrl::fromLocalFile(kept));
            QCOMPARE(FileContent::read(kept, 1'000), body);
        }
        QVERIFY(folder.removeRecursively());
    }

    void copiesOfOneNameAreKeptApart()
    {
        m_server.serve("/a/download", {.body = "d4:infod6:lengthi5e4:name3:fooee"});
        m_server.serve("/b/download", {.body = "d4:infod6:lengthi5e4:name3:baree"});
        QList<QUrl> copies;
        for (const char *path : {"/a/download", "/b/download"}) {
            m_state->clearInspector();
            m_state->inspectTorrentURL(m_server.url(path));
            QTRY_VERIFY(m_state->inspector());
            copies.append(*m_state->inspector()->fileURL);
        }
        m_state->clearInspector();
        m_state->inspectTorrentFile(copies.first());
        QTRY_VERIFY(m_state->inspector());
        QCOMPARE(m_state->inspector()->name, "foo");
        QVERIFY(QDir(*m_state->cache()->torrentDir()).removeRecursively());
    }

    void fetchedTorrentsStayOutOfTheResponseCache()
    {
        m_server.serve("/a.torrent", {.body = "d4:infod6:lengthi5e4:name3:fooee",
                                      .headers = {{"Cache-Control", "max-age=3600"}}});
        m_state->inspectTorrentURL(m_server.url("/a.torrent?key=s3cret"));
        QTRY_VERIFY(m_state->inspector());
        QDirIterator files(m_state->settings()->cachePath(), QDir::Files,
                           QDirIterator::Subdirectories);
        int count = 0;
        for (; files.hasNext(); ++count)
            QVERIFY(!FileContent::read(files.next(), 1'000'000).contains("s3cret"));
        QCOMPARE(count, 2); // the copy, and the tag of the folder
        QVERIFY(QDir(*m_state->cache()->torrentDir()).removeRecursively());
    }

    void takesAMagnetInPlaceOfATorrent_data()
    {
        const auto row = columns<QByteArray, QString, QString>("location", "magnet", "notice");
        const QString link = "magnet:?xt=urn:btih:" + QString(40, 'a') + "&dn=a%2Db";
        const QString failed = "Couldn't read torrent: The server redirects to ";
        row("a magnet link", link.toLatin1(), link, "");
        row("none that is valid", "magnet:?dn=x", "", failed + "a magnet link that is not valid.");
        row("a file", "file:///x.torrent", "", failed + "an address that is not on the web.");
    }
    void takesAMagnetInPlaceOfATorrent()
    {
        QFETCH(QByteArray, location);
        m_server.redirect("/dl", "/dl2", 302);
        m_server.redirect("/dl2", location, 302);
        m_state->inspectTorrentURL(m_server.url("/dl"));
        QTRY_VERIFY(m_state->inspector() || m_state->notice());
        QTEST(m_state->inspector() ? m_state->inspector()->magnet : QString(), "magnet");
        QTEST(m_state->notice().value_or(QString()), "notice");
    }

    void inspectsLocalTorrents()
    {
        const QString path = m_folder.filePath("Some.TORRENT");
        const QUrl file = QUrl::fromLocalFile(path);
        m_state->inspectTorrentFile(file);
        QTRY_VERIFY(m_state->notice());
        QVERIFY(m_state->notice()->startsWith("Couldn't read torrent: "));
        QVERIFY(FileContent::replace(path, "d4:infod6:lengthi5e4:name3:fooee"));
        m_state->inspectTorrentFile(file);
        QTRY_VERIFY(m_state->inspector());
        QCOMPARE(m_state->inspector()->name, "foo");
        QCOMPARE(m_state->inspector()->fileURL, file);
    }

    void handsOverToOtherApplications_data()
    {
        const auto row = columns<QString, QString, QString>("address", "handed", "notice");
        const QString none = "No app on this Mac is registered to open %1. "
                             "Install a BitTorrent client to use it.";
        row("magnet", "magnet:?dn=a%2Db", "open magnet:?dn=a%2Db", "");
        row("file", "file:///a.torrent", "open file:///a.torrent", "");
        row("cannot be started", "magnet:broken", "", "Cannot be started");
        row("no application", "magnet:none", "", none.arg("magnet links"));
        row("capitals", "MAGNET:none", "", none.arg(".torrent files"));
        row("no scheme", "none", "", none.arg(".torrent files"));
    }
    void handsOverToOtherApplications()
    {
        QFETCH(QString, address);
        m_state->openExternally(address);
        QTRY_VERIFY(!m_handed.isEmpty() || m_state->notice());
        QTEST(m_handed.join('\n'), "handed");
        QTEST(m_state->notice().value_or(QString()), "notice");
    }

    void sections()
    {
        for (const SidebarSection section : allSidebarSections)
            QCOMPARE(sidebarSectionFrom(rawValue(section)), std::optional(section));
        QCOMPARE(sidebarSectionFrom(u"home"), std::nullopt);
        m_state->setSectionName("Library");
        m_state->setSectionName(QString());
        QCOMPARE(m_state->section(), SidebarSection::Home);
    }

    void suggestions_data()
    {
        const auto row = columns<QStringList, QStringList>("subjects", "expected");
        row("counted without regard to case and blanks",
            {"Sci-Fi", "Horror", "horror ", "\tHORROR"}, {"horror", "sci-fi"});
        row("3 to 23 characters", {"ab", "abc", QString(23, 'x'), QString(24, 'y')},
            {"abc", QString(23, 'x')});
        row("line breaks are not trimmed", {"ab\n"}, {"ab\n"});
        row("at most ten, the first seen first",
            QString("aaa bbb ccc ddd eee fff ggg hhh iii jjj kkk kkk").split(' '),
            QString("kkk aaa bbb ccc ddd eee fff ggg hhh iii").split(' '));
    }

    void suggestions()
    {
        QFETCH(QStringList, subjects);
        QTEST(suggestionsFrom({itemWith({}), itemWith(subjects)}), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_AppState)
#include "tst_appstate.moc"
