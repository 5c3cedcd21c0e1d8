// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Tour.h"

#include <QTest>

namespace tavelo {

namespace {

constexpr int patience = 20'000; // milliseconds
constexpr int tooltip = 700;     // milliseconds until one shows

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

bool Tour::startDownload(const QString &title, const QString &id)
{
    DownloadManager *downloads = m_demo->application().state().downloads();
    downloads->start(title, QUrl(m_demo->services().baseUrl() + filmPath(id)), {});
    const auto isDone = [downloads] {
        const DownloadTask task = downloads->tasks().constFirst();
        return !task.isDownloading() || task.progress() > 0.3;
    };
    return expect(QTest::qWaitFor(isDone, patience), "a download's progress");
}

bool Tour::downloads()
{
    DemoServer &services = m_demo->services();
    if (!startDownload(QStringLiteral("Dusk over Kestrel Ridge"),
                       QStringLiteral("dusk_over_kestrel_ridge")))
        return false;
    services.setFaults({.below = "/download/", .status = 404});
    if (!startDownload(QStringLiteral("A Film That Is Not There"), QStringLiteral("gone")))
        return false;
    services.setFaults({.below = "/download/", .bytesPerSecond = 300'000});
    const QString lanterns = QStringLiteral("The Lantern Makers");
    if (!startDownload(lanterns, QStringLiteral("the_lantern_makers")) ||
        !expect(m_ui.click(QStringLiteral("Pause ") + lanterns), "a download's pause"))
        return false;
    if (!startDownload(QStringLiteral("Neon Alibi"), QStringLiteral("neon_alibi")))
        return false;
    shoot("downloads");
    m_ui.hover(QStringLiteral("Cancel / remove Neon Alibi"));
    QTest::qWait(tooltip);
    shoot("downloads-tooltip");
    m_ui.key(Qt::Key_Down);
    m_ui.key(Qt::Key_Down);
    shoot("downloads-keyboard");
    services.setFaults({});
    m_ui.click(QStringLiteral("Cancel / remove Neon Alibi"));
    m_ui.click(QStringLiteral("Cancel / remove ") + lanterns);
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
