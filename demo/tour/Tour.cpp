// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Tour.h"

#include <QTest>

#include <cstdio>

namespace tavelo {

namespace {

/// Until what moves after a change of screen has come to rest; nothing here moves for longer.
constexpr int settled = 400; // milliseconds

} // namespace

Tour::Tour(DemoApplication *demo, const QDir &folder, const QSize &size)
    : m_demo(demo)
    , m_folder(folder)
    , m_ui(demo->application().window())
{
    m_folder.mkpath(QStringLiteral("."));
    m_ui.resize(size);
}

bool Tour::expect(bool came, const char *what) const
{
    if (!came) {
        std::fprintf(stderr, "Not seen: %s\n", what);
        m_ui.picture().save(m_folder.filePath(QStringLiteral("not-seen.png")));
    }
    return came;
}

void Tour::shoot(const char *name)
{
    QTest::qWait(settled);
    const QString file = QStringLiteral("%1-%2.png")
                             .arg(++m_shots, 2, 10, QLatin1Char('0'))
                             .arg(QLatin1String(name));
    m_ui.picture().save(m_folder.filePath(file));
    std::printf("%s\n", qPrintable(m_folder.filePath(file)));
}

bool Tour::walk()
{
    return home() && discover() && search() && itemSheets() && player() && brokenFilm() &&
           silentServer() && torrentSearch() && torrentResults() && torrentInspector() &&
           manage() && homeLater();
}

bool Tour::home()
{
    if (!expect(m_ui.waitFor(QStringLiteral("Retry")), "the failed Home with Retry"))
        return false;
    shoot("home-error");
    m_demo->services().setFaults({.latency = 1500});
    m_ui.click(QStringLiteral("Retry"));
    if (!expect(m_ui.waitFor(QStringLiteral("Loading catalog…")), "the loading Home"))
        return false;
    shoot("home-loading");
    m_demo->services().setFaults({});
    if (!expect(m_ui.waitFor(QStringLiteral("Featured Public-Domain Films")), "the featured shelf"))
        return false;
    QTest::qWait(3 * settled); // posters
    m_ui.move({4, 4});
    shoot("home");
    m_ui.hover(QStringLiteral("Neon Alibi"));
    shoot("home-hover");
    for (int i = 0; i < 2; ++i)
        m_ui.key(Qt::Key_Tab);
    shoot("home-keyboard");
    return true;
}

bool Tour::discover()
{
    m_ui.click(QStringLiteral("Discover"));
    if (!expect(m_ui.waitFor(QStringLiteral("Northern Lights")), "the first collection"))
        return false;
    QTest::qWait(2 * settled); // posters
    shoot("discover-grid");
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Down})
        m_ui.key(key);
    shoot("discover-keyboard");
    m_ui.key(Qt::Key_Home); // brings the title's row back
    QTest::qWait(settled);
    m_ui.click(QStringLiteral("List"));
    QTest::qWait(2 * settled);
    shoot("discover-list");
    m_ui.click(QStringLiteral("Grid"));
    m_demo->services().setFaults({.below = "/advancedsearch.php", .status = 503});
    m_ui.click(QStringLiteral("Film Noir"));
    const QString nothing =
        QStringLiteral("Pick a collection to browse real Orvella catalog entries.");
    if (!expect(m_ui.waitFor(nothing), "a collection that does not come"))
        return false;
    shoot("discover-failed");
    m_demo->services().setFaults({});
    m_ui.click(QStringLiteral("Feature Films"));
    return true;
}

bool Tour::search()
{
    m_ui.click(QStringLiteral("Search"));
    shoot("search-hint");
    m_ui.click(QStringLiteral("Search Orvella films, documentaries, shorts…"));
    m_ui.key(Qt::Key_A, Qt::ControlModifier);
    for (const Qt::Key key : {Qt::Key_D, Qt::Key_R, Qt::Key_A, Qt::Key_M, Qt::Key_A})
        m_ui.key(key);
    m_demo->services().setFaults({.below = "/advancedsearch.php", .latency = 1000});
    m_ui.key(Qt::Key_Return);
    shoot("search-searching");
    m_demo->services().setFaults({});
    if (!expect(m_ui.waitFor(QStringLiteral("Dusk over Kestrel Ridge")), "what was found"))
        return false;
    QTest::qWait(2 * settled); // posters
    shoot("search-results");
    m_demo->services().setFaults({.below = "/advancedsearch.php", .status = 503});
    m_ui.key(Qt::Key_Return, Qt::ControlModifier);
    if (!expect(m_ui.waitFor(QStringLiteral("Search failed: HTTP 503")), "a search that fails"))
        return false;
    shoot("search-failed");
    m_demo->services().setFaults({});
    return m_ui.click(QStringLiteral("Home"));
}

bool Tour::openItem(const QString &title)
{
    for (const MediaItem &item : m_demo->application().state().popular()) {
        if (item.title == title)
            m_demo->application().state().selectItem(item);
    }
    return expect(m_ui.waitGone(QStringLiteral("Inspecting files…")), "an item's files");
}

bool Tour::itemSheets()
{
    m_demo->services().setFaults({.below = "/metadata/", .latency = 1500});
    const bool opened = m_ui.click(QStringLiteral("Neon Alibi")) &&
                        m_ui.waitFor(QStringLiteral("Inspecting files…"));
    if (!expect(opened, "the item sheet at its loading"))
        return false;
    shoot("item-loading");
    m_demo->services().setFaults({});
    if (!expect(m_ui.waitGone(QStringLiteral("Inspecting files…")), "the item's files"))
        return false;
    shoot("item");
    m_ui.key(Qt::Key_Escape);

    for (const auto &[title, name] : {std::pair{"The Lantern Makers", "item-subtitles"},
                                      std::pair{"Harbour at Low Tide", "item-other-formats"},
                                      std::pair{"Only in Theora", "item-no-stream"},
                                      std::pair{"Stills from a Lost Film", "item-no-video"},
                                      std::pair{"المنارة", "item-rtl"}}) {
        if (!openItem(QString::fromUtf8(title)))
            return false;
        shoot(name);
        m_ui.key(Qt::Key_Escape);
    }
    m_demo->services().setFaults({.below = "/metadata/", .status = 503});
    if (!openItem(QStringLiteral("The Carpet Hour")))
        return false;
    shoot("item-error");
    m_demo->services().setFaults({});
    m_ui.key(Qt::Key_Escape);
    return true;
}

bool Tour::waitPlaying(double seconds) const
{
    VideoPlayerManager *player = m_demo->application().state().playback()->player();
    return QTest::qWaitFor(
        [&] { return player->currentTime() >= seconds && !player->isBuffering(); }, 20'000);
}

bool Tour::player()
{
    if (!openItem(QStringLiteral("The Lantern Makers")) || !m_ui.click(QStringLiteral("Play")))
        return expect(false, "Play in the item sheet");
    shoot("player-opening");
    if (!expect(waitPlaying(2), "the film at two seconds"))
        return false;
    m_ui.move({300, 300});
    shoot("player");
    m_ui.key(Qt::Key_Right);
    if (!expect(waitPlaying(12), "the film ten seconds on"))
        return false;
    shoot("player-later");
    m_ui.move({320, 320});
    if (!expect(m_ui.click(QStringLiteral("Audio track")), "the audio menu"))
        return false;
    shoot("player-audio-menu");
    m_ui.key(Qt::Key_Escape);
    QTest::qWait(settled);
    m_ui.key(Qt::Key_Space);
    shoot("player-paused");
    if (!playerMenus())
        return false;
    if (!expect(m_ui.click(QStringLiteral("Back")), "the way back from the player"))
        return false;
    shoot("browsing-while-playing");
    m_demo->application().state().playback()->stopPlayback();
    return true;
}

bool Tour::playerMenus()
{
    const QString track = QStringLiteral("subtitles/The Lantern Makers.en.srt");
    if (!expect(m_ui.click(QStringLiteral("Subtitles")) && m_ui.click(track), "the subtitle menu"))
        return false;
    VideoPlayerManager *player = m_demo->application().state().playback()->player();
    player->seek(9);
    if (!expect(m_ui.waitFor(QStringLiteral("Then we burn the letters.")), "the subtitle"))
        return false;
    shoot("player-subtitles");
    m_demo->services().setFaults({.below = "/download/", .status = 503});
    m_ui.click(QStringLiteral("Subtitles"));
    m_ui.click(QStringLiteral("subtitles/The Lantern Makers.de.srt"));
    SubtitleManager *subtitles = m_demo->application().state().playback()->subtitles();
    if (!expect(QTest::qWaitFor([&] { return subtitles->error().has_value(); }, 10'000),
                "the subtitles' error"))
        return false;
    m_demo->services().setFaults({});
    m_ui.click(QStringLiteral("Subtitles"));
    shoot("player-subtitle-menu");
    m_ui.click(QStringLiteral("Choose File…"));
    shoot("player-subtitle-file");
    m_ui.key(Qt::Key_Escape);
    m_ui.key(Qt::Key_F10);
    shoot("menu");
    m_ui.key(Qt::Key_Escape);
    QTest::qWait(settled);
    return true;
}

bool Tour::brokenFilm()
{
    m_demo->services().setFaults({.below = "/download/", .status = 404});
    // One whose files no sheet has shown: nothing of it is held.
    const bool failed = openItem(QStringLiteral("The Carpet Hour")) &&
                        m_ui.click(QStringLiteral("Play")) && m_ui.waitFor(QStringLiteral("Retry"));
    if (!expect(failed, "the error panel"))
        return false;
    shoot("player-error");
    m_demo->services().setFaults({});
    m_ui.click(QStringLiteral("Retry"));
    if (!expect(waitPlaying(1), "the film after Retry"))
        return false;
    shoot("player-after-retry");
    m_demo->application().state().playback()->stopPlayback();
    return true;
}

/// The film stands still, and goes on by itself.
bool Tour::silentServer()
{
    DemoServer &services = m_demo->services();
    VideoPlayerManager *player = m_demo->application().state().playback()->player();
    services.setFaults({.below = "/download/", .bytesPerSecond = 150'000});
    if (!openItem(QStringLiteral("Northern Lights")) || !m_ui.click(QStringLiteral("Play")) ||
        !expect(waitPlaying(1), "a film from a slow server"))
        return false;
    services.setFaults({.below = "/download/", .silent = true});
    player->seek(150);
    if (!expect(m_ui.waitFor(QStringLiteral("Reconnecting…")), "what is waited for"))
        return false;
    shoot("player-reconnecting");
    m_ui.click(QStringLiteral("Back"));
    shoot("browsing-while-reconnecting");
    m_ui.click(QStringLiteral("Expand"));
    m_ui.move({300, 300});
    services.setFaults({.below = "/download/", .status = 429, .retryAfter = 20});
    const auto asksToWait = [&] { return player->trouble().contains(QStringLiteral("20 s")); };
    if (!expect(QTest::qWaitFor(asksToWait, 20'000), "the server's wish"))
        return false;
    shoot("player-asked-to-wait");
    if (!expect(QTest::qWaitFor([&] { return player->goesOnTrying(); }, 40'000),
                "the error panel of what may end by itself"))
        return false;
    shoot("player-error-going-on");
    services.setFaults({});
    const bool goesOn = QTest::qWaitFor([&] { return player->error() == std::nullopt; }, 40'000) &&
                        waitPlaying(151);
    m_demo->application().state().playback()->stopPlayback();
    return expect(goesOn, "the film, when its server is back");
}

bool Tour::homeLater()
{
    AppState &state = m_demo->application().state();
    double minutes = 3;
    for (const MediaItem &item : state.popular()) {
        HistoryEntry entry;
        entry.key = item.id + QLatin1String("|film.mp4");
        entry.itemID = item.id;
        entry.title = item.title;
        entry.thumbnail = item.thumbnailURL().toString();
        entry.position = (minutes += 5.1) * 60;
        entry.duration = minutes > 60 ? 0 : 4200;
        state.library()->record(entry);
    }
    if (!openItem(QStringLiteral("Neon Alibi")) ||
        !m_ui.click(QStringLiteral("Save to Downloads")) ||
        !QTest::qWaitFor([&] { return !state.downloads()->saved().isEmpty(); }, 20'000))
        return expect(false, "a saved film");
    m_ui.click(QStringLiteral("Home"));
    const bool came = m_ui.waitFor(QStringLiteral("Continue Watching"));
    QTest::qWait(2 * settled); // posters
    for (int i = 0; i < 9; ++i)
        m_ui.key(Qt::Key_Up);
    shoot("home-continue-watching");
    for (int i = 0; i < 9; ++i)
        m_ui.key(Qt::Key_Down);
    QTest::qWait(2 * settled);
    shoot("home-local-content");
    state.library()->clear();
    return expect(came, "the shelf of what was begun");
}

} // namespace tavelo
