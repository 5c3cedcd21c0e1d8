// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/FilmSource.h"
#include "platform/media/mpv/MpvPlayer.h"

#include <utility>

// How patient it is with a film's server.

namespace tavelo {

using namespace std::chrono_literals;

namespace {

/// A picture that stands still for so long without a byte has failed, for the time being.
constexpr auto starvationLimit = 30s;
constexpr auto troubleLimit = 3s; // until the viewer is told
constexpr auto backAgain = 1s;    // since the last byte

} // namespace

void MpvPlayer::followStream()
{
    if (m_stream->isOutdated())
        return reload();
    const bool waits = m_timeControl == TimeControlStatus::Waiting || m_lost;
    const auto starved = waits ? m_stream->starvedFor() : 0ms;
    if (m_lost && !m_stream->error().isEmpty())
        return loseForGood();
    if (m_lost && starved < backAgain)
        return regainStream();
    if (!m_lost && starved > starvationLimit)
        return loseStream();
    const QString wish = m_stream->wish();
    setTrouble(starved < troubleLimit ? QString() : wish.isEmpty() ? tr("Reconnecting…") : wish);
}

/// What was kept of an earlier time led to another film than the server's.
void MpvPlayer::reload()
{
    const QByteArray aid = m_aid;
    load(QUrl(m_url), m_target.value_or(m_time));
    m_aid = aid;
}

/// The stream goes on trying, and so the film goes on when the server is back.
void MpvPlayer::loseStream()
{
    const QString reason = m_stream->trouble();
    const ItemStatus before = m_status;
    setTrouble({});
    failItem(reason.isEmpty() ? tr("The server stopped answering.") : reason);
    m_lost = before;
    m_ticker.start();
}

void MpvPlayer::loseForGood()
{
    m_lost.reset();
    m_ticker.stop();
    m_error = m_stream->error();
    m_statusDirty = true;
}

void MpvPlayer::regainStream()
{
    m_status = *std::exchange(m_lost, {});
    m_error.clear();
    m_statusDirty = true;
}

void MpvPlayer::setTrouble(const QString &text)
{
    if (std::exchange(m_trouble, text) != text)
        Q_EMIT troubleChanged();
}

} // namespace tavelo
