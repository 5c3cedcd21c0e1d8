// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/MediaPlayer.h"

#include <QElapsedTimer>
#include <QTest>

namespace tavelo {

/// Writes down what a player tells, and waits for things to come.
class PlayerProbe
{
public:
    explicit PlayerProbe(MediaPlayer *player)
        : m_player(player)
    {
        QObject::connect(player, &MediaPlayer::timeTicked, [this](double t) { ticks.append(t); });
        QObject::connect(player, &MediaPlayer::playedToEnd, [this] { ++ends; });
        QObject::connect(player, &MediaPlayer::timeControlStatusChanged,
                         [this] { statuses.append(m_player->timeControlStatus()); });
    }

    bool waitReady() const { return waitStatus(ItemStatus::Ready); }
    bool waitFailed(int milliseconds = 10'000) const
    {
        return waitStatus(ItemStatus::Failed, milliseconds);
    }
    bool waitPlaying() const
    {
        return QTest::qWaitFor(
            [this] { return m_player->timeControlStatus() == TimeControlStatus::Playing; }, 10'000);
    }
    bool waitEnd(int milliseconds = 20'000) const
    {
        return QTest::qWaitFor([this] { return ends > 0; }, milliseconds);
    }
    /// Waits until the item has been played up to `seconds`.
    bool waitTime(double seconds) const
    {
        return QTest::qWaitFor([&] { return !ticks.isEmpty() && ticks.last() >= seconds; }, 20'000);
    }
    /// True when the seek came to its end as carried out.
    bool seek(double seconds) const
    {
        int outcome = -1;
        m_player->seek(seconds, [&](bool finished) { outcome = finished ? 1 : 0; });
        return QTest::qWaitFor([&] { return outcome >= 0; }, 10'000) && outcome == 1;
    }

    QList<double> ticks;
    QList<TimeControlStatus> statuses;
    int ends = 0;

private:
    bool waitStatus(ItemStatus status, int milliseconds = 10'000) const
    {
        return QTest::qWaitFor([&] { return m_player->itemStatus() == status; }, milliseconds);
    }

    MediaPlayer *m_player;
};

} // namespace tavelo
