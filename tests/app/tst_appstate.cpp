// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/AppState.h"
#include "app/Suggestions.h"
#include "platform/ServiceHosts.h"
#include "testlib/FaultServer.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace tavelo;

namespace {

const QByteArray searchPath = "/advancedsearch.php";

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
    FaultServer m_server;
    std::unique_ptr<AppState> m_state;

private Q_SLOTS:
    void initTestCase() { ServiceHosts::replace({.archive = m_server.base()}); }

    void init()
    {
        m_server.forgetRequests();
        m_server.setListening(true);
        m_state = std::make_unique<AppState>([] { return nullptr; });
    }

    void startsOnHomeWithNothing()
    {
        QCOMPARE(m_state->section(), SidebarSection::Home);
        QVERIFY(m_state->featured().isEmpty() && m_state->popular().isEmpty());
        QVERIFY(!m_state->selectedItem() && !m_state->notice() && !m_state->showPlayer());
        QVERIFY(m_state->suggestions().isEmpty());
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
        const ArchiveFile file{"dir/film.mp4", {}, {}, QUrl("http://127.0.0.1:1/")};
        m_state->play(file, item);
        QVERIFY(!m_state->selectedItem());
        QVERIFY(m_state->showPlayer());
        QCOMPARE(m_state->playback()->nowPlaying()->key, QStringLiteral("abc|dir/film.mp4"));
        m_state->playback()->stopPlayback();
        QCOMPARE(m_state->playback()->nowPlaying(), std::nullopt);
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
        QTest::addColumn<QStringList>("subjects");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("counted without regard to case and blanks")
            << QStringList{"Sci-Fi", "Horror", "horror ", "\tHORROR"}
            << QStringList{"horror", "sci-fi"};
        QTest::newRow("3 to 23 characters")
            << QStringList{"ab", "abc", QString(23, 'x'), QString(24, 'y')}
            << QStringList{"abc", QString(23, 'x')};
        QTest::newRow("line breaks are not trimmed") << QStringList{"ab\n"} << QStringList{"ab\n"};
        QTest::newRow("at most ten, the first seen first")
            << QString("aaa bbb ccc ddd eee fff ggg hhh iii jjj kkk kkk").split(' ')
            << QString("kkk aaa bbb ccc ddd eee fff ggg hhh iii").split(' ');
    }

    void suggestions()
    {
        QFETCH(QStringList, subjects);
        QTEST(suggestionsFrom({itemWith({}), itemWith(subjects)}), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_AppState)
#include "tst_appstate.moc"
