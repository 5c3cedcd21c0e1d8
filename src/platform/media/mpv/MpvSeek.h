// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/MediaPlayer.h"

#include <cstdint>
#include <utility>

namespace tavelo {

/// Follows the newest seek through libmpv's three answers: the command's reply, the event that says
/// it is being carried out, and the one that says that playback goes on from there. Older seeks
/// give the same events, but always before the newer one's reply.
class MpvSeek
{
public:
    bool isPending() const { return m_stage != Stage::None; }
    /// What libmpv does now is the newest seek's, or there is none.
    bool isPassedOn() const { return m_stage == Stage::None || m_stage == Stage::Started; }
    std::uint64_t number() const { return m_number; } // of the newest

    /// Ends a seek that is still under way as not finished. Gives the new one's number.
    std::uint64_t begin(MediaPlayer::SeekDone done)
    {
        end(false);
        m_stage = Stage::Sent;
        m_done = std::move(done);
        return ++m_number;
    }

    /// False when the newest seek was refused, and thus is over.
    bool replied(std::uint64_t number, int error)
    {
        if (m_stage != Stage::Sent || number != m_number)
            return true;
        m_stage = Stage::Accepted;
        if (error < 0)
            end(false);
        return error >= 0;
    }

    void started()
    {
        if (m_stage == Stage::Accepted)
            m_stage = Stage::Started;
    }

    void end(bool finished)
    {
        m_stage = Stage::None;
        if (const auto done = std::exchange(m_done, {}))
            done(finished);
    }

private:
    enum class Stage { None, Sent, Accepted, Started };

    Stage m_stage = Stage::None;
    std::uint64_t m_number = 0;
    MediaPlayer::SeekDone m_done;
};

} // namespace tavelo
