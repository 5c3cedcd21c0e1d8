// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Tour.h"

#include <QTest>

namespace tavelo {

namespace {

constexpr int patience = 20'000;   // milliseconds
constexpr int tooltip = 700;       // milliseconds until one shows
constexpr int someProgress = 3000; // milliseconds

QString filmPath(const QString &id)
{
    return QStringLiteral("/download/%1/%1.mp4").arg(id);
}

} // namespace

bool Tour::manage()
{
    return emptyShelves() && downloads() && library() && settings() && providerEditor();
}

bool Tour::emptyShelves()
{
    AppState &state = m_demo->application().state();
    QDir(state.settings()->downloadsPath()).removeRecursively();
    state.downloads()->clearFinished();
    state.library()->clear();
    const bool empty = m_ui.click(QStringLiteral("Library")) &&
                       m_ui.waitFor(QStringLiteral("Nothing watched yet."));
    if (!expect(empty, "the empty library"))
        return false;
    m_ui.move({4, 4});
    shoot("library-empty");
    const bool none = m_ui.click(QStringLiteral("Downloads")) &&
                      m_ui.waitFor(QStringLiteral("No active downloads."));
    if (!expect(none, "no downloads"))
        return false;
    m_ui.move({4, 4});
    shoot("downloads-empty");
    return true;
}

bool Tour::startDownload(const QString &title, const QString &id, const Checksum &checksum)
{
    DownloadManager *downloads = m_demo->application().state().downloads();
    const QUrl url(m_demo->services().baseUrl() + filmPath(id));
    if (const auto refusal = downloads->start(title, url, {}, {id, checksum}))
        return expect(false, qPrintable(*refusal));
    const auto hasState = [&] {
        for (const DownloadTask &task : downloads->tasks()) {
            if (task.title == title)
                return !task.isDownloading() || task.secondsLeft.has_value();
        }
        return false;
    };
    return expect(QTest::qWaitFor(hasState, patience), "how a download goes");
}

bool Tour::downloads()
{
    return downloadsThatEnded() && downloadsUnderway() && downloadsMoved() && downloadHeldUp();
}

bool Tour::downloadsThatEnded()
{
    AppState &state = m_demo->application().state();
    if (!openItem(QStringLiteral("Neon Alibi")) ||
        !m_ui.click(QStringLiteral("Save to Downloads")) ||
        !expect(m_ui.waitFor(QStringLiteral("Play Neon Alibi")), "a saved film"))
        return false;
    const Checksum ofAnother{QCryptographicHash::Md5, QByteArray(16, 'x')};
    if (!startDownload(QStringLiteral("Dusk over Kestrel Ridge"),
                       QStringLiteral("dusk_over_kestrel_ridge"), ofAnother) ||
        !expect(QTest::qWaitFor(
                    [&] { return state.downloads()->tasks().constFirst().isTroubled(); }, patience),
                "a damaged download"))
        return false;
    m_demo->services().setFaults({.below = "/download/", .status = 404});
    if (!startDownload(QStringLiteral("A Film That Is Not There"), QStringLiteral("gone")))
        return false;
    m_ui.move({4, 4});
    shoot("downloads-ended");
    const QString saved = state.downloads()->tasks().constLast().status();
    m_ui.hover(QStringLiteral("Show in Folder: Neon Alibi"));
    QTest::qWait(tooltip);
    shoot("downloads-folder");
    if (!expect(m_ui.hoverOver(saved), "the words of what was checked"))
        return false;
    QTest::qWait(tooltip);
    shoot("downloads-checked");
    return true;
}

bool Tour::downloadsUnderway()
{
    DemoServer &services = m_demo->services();
    services.setFaults({.below = "/download/", .bytesPerSecond = 240'000});
    const QString lanterns = QStringLiteral("The Lantern Makers");
    if (!startDownload(lanterns, QStringLiteral("the_lantern_makers")) ||
        !expect(m_ui.click(QStringLiteral("Pause ") + lanterns), "a download's pause"))
        return false;
    struct Slow
    {
        const char *title;
        const char *id;
        qint64 speed; // bytes a second
    };
    for (const Slow &film : {Slow{"The Carpet Hour", "the_carpet_hour", 20'000},
                             Slow{"Test Card Waltz", "test_card_waltz", 90'000},
                             Slow{"Colony Seven Does Not Answer", "colony_seven", 180'000},
                             Slow{"Northern Lights", "northern_lights_1931", 320'000},
                             Slow{"The Weaver and the Loom", "the_weaver_and_the_loom", 1},
                             Slow{"Down the Seahorse Valley", "down_the_seahorse_valley", 1}}) {
        services.setFaults({.below = "/download/", .bytesPerSecond = film.speed});
        if (!startDownload(QString::fromLatin1(film.title), QString::fromLatin1(film.id)))
            return false;
    }
    QTest::qWait(someProgress);
    m_ui.move({4, 4});
    shoot("downloads");
    m_ui.hover(QStringLiteral("Cancel / remove Northern Lights"));
    QTest::qWait(tooltip);
    shoot("downloads-tooltip");
    return true;
}

bool Tour::downloadsMoved()
{
    DownloadManager *downloads = m_demo->application().state().downloads();
    for (qsizetype row = 0; row < downloads->tasks().size(); ++row)
        m_ui.key(Qt::Key_Up);
    m_ui.key(Qt::Key_Down);
    shoot("downloads-keyboard");
    m_ui.key(Qt::Key_Down, Qt::AltModifier);
    shoot("downloads-moved");
    constexpr int gripInside = 38;
    constexpr int twoRows = 150;
    if (!expect(m_ui.drag(QStringLiteral("Northern Lights"), gripInside, twoRows), "a row's grip"))
        return false;
    shoot("downloads-dragged");
    m_ui.release();
    m_ui.key(Qt::Key_End);
    m_ui.move({4, 4});
    shoot("downloads-bottom");
    const QList<DownloadTask> tasks = downloads->tasks();
    for (const DownloadTask &task : tasks) {
        if (task.isUnderway())
            downloads->cancel(task.id);
    }
    return true;
}

bool Tour::downloadHeldUp()
{
    m_demo->services().setFaults({.below = "/download/", .status = 429, .retryAfter = 20});
    if (!startDownload(QStringLiteral("Harbour at Low Tide"),
                       QStringLiteral("harbour_at_low_tide")))
        return false;
    shoot("downloads-asked-to-wait");
    m_demo->services().setFaults({});
    m_ui.click(QStringLiteral("Cancel / remove Harbour at Low Tide"));
    m_demo->application().state().downloads()->clearFinished();
    return true;
}

bool Tour::library()
{
    LibraryStore *library = m_demo->application().state().library();
    const QDateTime day({2025, 3, 1}, {20, 15}, Qt::UTC);
    for (int film = 12; film > 0; --film) {
        const double position = film % 3 == 0 ? 5 : film * 271;
        library->record({QString::number(film),
                         QStringLiteral("film"),
                         QStringLiteral("The Surveyor's Notebook, Reel %1").arg(film),
                         QStringLiteral("http://127.0.0.1/film.mp4"),
                         false,
                         {},
                         position,
                         4980,
                         day.addDays(-9 * film)});
    }
    const QString remove = QStringLiteral("Remove The Surveyor's Notebook, Reel 1 from history");
    const bool filled = m_ui.click(QStringLiteral("Library")) && m_ui.waitFor(remove);
    if (!expect(filled, "the filled library"))
        return false;
    m_ui.move({4, 4});
    shoot("library");
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Right})
        m_ui.key(key);
    shoot("library-keyboard");
    return true;
}

bool Tour::settings()
{
    if (!expect(m_ui.click(QStringLiteral("Settings")) &&
                    m_ui.waitFor(QStringLiteral("Metadata Providers")),
                "the settings"))
        return false;
    m_ui.move({4, 4});
    shoot("settings");
    m_ui.key(Qt::Key_Tab);
    shoot("settings-keyboard");
    m_ui.key(Qt::Key_End);
    shoot("settings-bottom");
    m_ui.key(Qt::Key_Home);
    return true;
}

bool Tour::providerEditor()
{
    if (!expect(m_ui.click(QStringLiteral("Add Provider…")) &&
                    m_ui.waitFor(QStringLiteral("API key (optional)")),
                "the provider editor"))
        return false;
    shoot("provider-editor");
    m_ui.click(QStringLiteral("Type"));
    shoot("provider-editor-types");
    m_ui.key(Qt::Key_Escape);
    QTest::qWait(tooltip); // the menu fades
    m_ui.click(QStringLiteral("Name"));
    m_ui.type(QStringLiteral("Attic"));
    m_ui.key(Qt::Key_Tab);
    m_ui.key(Qt::Key_Tab);
    m_ui.type(QStringLiteral("http://127.0.0.1:9117/torznab/api"));
    m_ui.key(Qt::Key_Tab);
    m_ui.type(QStringLiteral("secret"));
    shoot("provider-editor-filled");
    m_ui.key(Qt::Key_Escape);
    return m_ui.click(QStringLiteral("Home"));
}

} // namespace tavelo
