// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "platform/desktop/MediaSession.h"
#include "platform/desktop/Notifier.h"
#include "platform/desktop/SleepGuard.h"

#include <QSet>
#include <QTimer>

#include <functional>

class QWindow;

namespace tavelo {

/// What a good citizen of the desktop does: media keys and player controls, no sleep while a film
/// plays, a message when a download is finished while the window is not in front.
class DesktopManners : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this. `comeForward` brings the window to the front.
    DesktopManners(AppState &state, QWindow &window, std::function<void()> comeForward,
                   const QDBusConnection &bus);

private:
    void heed();
    void play(bool wanted);
    void publish();
    void tellOfDownloads();
    void showDownloads();

    VideoPlayerManager &player() const { return *m_state.playback()->player(); }

    AppState &m_state;
    QWindow &m_window;
    std::function<void()> m_comeForward;
    MediaSession m_session;
    SleepGuard m_sleep;
    Notifier m_notifier;
    QTimer m_publishing;
    QSet<QUuid> m_finished;
};

} // namespace tavelo
