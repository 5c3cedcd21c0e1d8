// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "app/AppState.h"
#include "catalogue/OrvellaProvider.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"
#include "platform/media/MediaEngine.h"
#include "testlib/Awaited.h"
#include "testlib/FakeWorkspace.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

constexpr int patience = 30'000; // milliseconds
constexpr int subtitleCount = 3;

} // namespace

/// The road of a film through the whole program but its window, on the demo's services.
class TestWatching : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QStringList m_handed;
    const QString films = QCoreApplication::applicationDirPath() + "/../demo-films";
    DemoServer m_services{films};
    std::unique_ptr<AppState> m_state;

    VideoPlayerManager &player() { return *m_state->playback()->player(); }
    double time() { return player().currentTime(); }
    double kept() const // what is on disk
    {
        m_state->library()->file().flush();
        const auto entries = LibraryStore().history();
        return entries.isEmpty() ? -1 : entries.first().position;
    }

    void start()
    {
        m_state.reset();
        m_state = std::make_unique<AppState>([] { return MediaEngine::create({.headless = true}); },
                                             std::make_unique<FakeWorkspace>(m_handed));
    }

    /// Searches for the film, looks at its item and plays what the item sheet would.
    void playFound(const QString &words)
    {
        m_state->searchFor(words);
        QTRY_VERIFY_WITH_TIMEOUT(!m_state->searchResults().isEmpty(), patience);
        const MediaItem item = m_state->searchResults().first();
        m_state->selectItem(item);
        const auto details = awaited(OrvellaProvider::details(item.id));
        QVERIFY(details && !details->playable().isEmpty());
        m_state->play(details->playable().first(), item, details->subtitles());
        QVERIFY(m_state->showPlayer() && !m_state->selectedItem());
        QTRY_VERIFY_WITH_TIMEOUT(player().duration() > 0, patience);
    }

private Q_SLOTS:
    void initTestCase()
    {
        StandardFolders::relocate(m_folder.path());
        ServiceHosts::replace({.archive = m_services.baseUrl()});
    }

    void init()
    {
        start();
        m_state->library()->clear();
    }

    void searchPlayStopResume()
    {
        playFound("lantern makers");
        SubtitleManager &subtitles = *m_state->playback()->subtitles();
        QCOMPARE(subtitles.tracks().size(), subtitleCount);
        const auto tracks = subtitles.tracks();
        subtitles.select(*std::ranges::find_if(
            tracks, [](const SubtitleTrack &track) { return track.name.contains(".en."); }));
        QTRY_COMPARE_WITH_TIMEOUT(subtitles.currentText(), "Then we burn the letters.", patience);
        QTRY_VERIFY_WITH_TIMEOUT(time() > 12, patience);
        const double stopped = time();
        m_state->playback()->stopPlayback();
        QVERIFY2(qAbs(kept() - stopped) < 0.6, qPrintable(QString::number(kept())));

        start(); // another day
        m_state->resume(m_state->recentlyViewed().first());
        QCOMPARE(time(), kept());
        QTRY_VERIFY_WITH_TIMEOUT(time() > stopped + 1, patience);
        QVERIFY(m_state->playback()->subtitles()->tracks().isEmpty());
        QVERIFY(!player().error());
        m_state->playback()->stopPlayback();
        QVERIFY(kept() > stopped + 1);
    }

    void savedFilm()
    {
        const QString film = m_state->settings()->downloadsPath() + "/Northern.mp4";
        QDir().mkpath(m_state->settings()->downloadsPath());
        QVERIFY(QFile::copy(TAVELO_CLIPS "/long.mp4", film));
        QFile subtitles(m_state->settings()->downloadsPath() + "/Northern.de.vtt");
        QVERIFY(subtitles.open(QIODevice::WriteOnly));
        subtitles.write("WEBVTT\n\n00:30.000 --> 00:50.000\nGrün\n");
        subtitles.close();
        m_state->downloads()->refreshSaved();
        QTRY_COMPARE(m_state->downloads()->saved().size(), 1);
        m_state->playLocal(m_state->downloads()->saved().first());
        QTRY_VERIFY_WITH_TIMEOUT(player().duration() > 0, patience);
        player().seek(30);
        m_state->playback()->stopPlayback();
        QCOMPARE(kept(), 30);

        m_state->resume(m_state->library()->history().first());
        SubtitleManager &shown = *m_state->playback()->subtitles();
        QTRY_COMPARE(shown.tracks().size(), 1);
        shown.select(shown.tracks().first());
        QTRY_COMPARE_WITH_TIMEOUT(shown.currentText(), "Grün", patience);
        QTRY_VERIFY_WITH_TIMEOUT(time() > 31, patience);
        QVERIFY(m_state->recentlyViewed().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestWatching)
#include "tst_watching.moc"
