// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/DesktopManners.h"

#include "platform/DisplayText.h"

#include <QWindow>

namespace tavelo {

namespace {

/// For other programs, which lay it out.
QString shortTitle(const QString &title)
{
    return DisplayText::shortened(title, {.characters = 500});
}

} // namespace

DesktopManners::DesktopManners(AppState &state, QWindow &window, std::function<void()> comeForward,
                               const QDBusConnection &bus)
    : m_state(state)
    , m_window(window)
    , m_comeForward(std::move(comeForward))
    , m_sleep(bus)
    , m_notifier(bus)
{
    m_session.start(bus);
    heed();
    // One film's change comes in several signals; what holds after the last of them is told.
    m_publishing.setSingleShot(true);
    connect(&m_publishing, &QTimer::timeout, this, &DesktopManners::publish);
    const auto republish = [this] { m_publishing.start(); };
    connect(state.playback(), &PlaybackCoordinator::nowPlayingChanged, this, republish);
    connect(&player(), &VideoPlayerManager::isPlayingChanged, this, republish);
    connect(&player(), &VideoPlayerManager::durationChanged, this, republish);
    connect(&player(), &VideoPlayerManager::rateChanged, this, republish);
    connect(&player(), &VideoPlayerManager::volumeChanged, this, republish);
    connect(&player(), &VideoPlayerManager::isMutedChanged, this, republish);
    connect(&player(), &VideoPlayerManager::currentTimeChanged, &m_session,
            &MediaSession::setPosition);
    for (const DownloadTask &task : state.downloads()->tasks()) {
        if (task.isFinished())
            m_finished.insert(task.id); // in an earlier run, which told of it
    }
    connect(state.downloads(), &DownloadManager::tasksChanged, this,
            &DesktopManners::tellOfDownloads);
    connect(&m_notifier, &Notifier::activated, this, &DesktopManners::showDownloads);
    publish();
}

void DesktopManners::heed()
{
    connect(&m_session, &MediaSession::raiseAsked, this, m_comeForward);
    connect(&m_session, &MediaSession::quitAsked, &m_window, &QWindow::close);
    connect(&m_session, &MediaSession::playAsked, this, [this] { play(true); });
    connect(&m_session, &MediaSession::pauseAsked, this, [this] { play(false); });
    connect(&m_session, &MediaSession::toggleAsked, this, [this] { play(!player().isPlaying()); });
    connect(&m_session, &MediaSession::stopAsked, &m_state, &AppState::closePlayer);
    connect(&m_session, &MediaSession::seekAsked, &player(), &VideoPlayerManager::seek);
    connect(&m_session, &MediaSession::rateAsked, this,
            [this](double rate) { player().setRate(float(rate)); });
    connect(&m_session, &MediaSession::volumeAsked, this,
            [this](double volume) { player().chooseVolume(float(volume)); });
}

void DesktopManners::play(bool wanted)
{
    if (m_state.playback()->nowPlaying() && player().isPlaying() != wanted)
        player().toggle();
}

void DesktopManners::publish()
{
    const auto &film = m_state.playback()->nowPlaying();
    MediaSessionState state;
    if (film) {
        state.key = film->key;
        state.title = shortTitle(film->title);
        state.poster = film->thumbnail;
    }
    state.duration = player().duration();
    state.playing = film && player().isPlaying();
    state.rate = double(player().rate());
    state.volume = player().isMuted() ? 0 : double(player().volume());
    m_session.publish(state);
    m_sleep.keepAwake(state.playing, QStringLiteral("A film plays"));
}

void DesktopManners::tellOfDownloads()
{
    QSet<QUuid> finished;
    for (const DownloadTask &task : m_state.downloads()->tasks()) {
        if (!task.is<DownloadTask::Finished>())
            continue;
        finished.insert(task.id);
        if (!m_finished.contains(task.id) && !m_window.isActive())
            m_notifier.show(tr("Download finished"), shortTitle(task.title));
    }
    m_finished = std::move(finished);
}

void DesktopManners::showDownloads()
{
    m_state.setSection(SidebarSection::Downloads);
    m_state.setShowPlayer(false);
    m_comeForward();
}

} // namespace tavelo
