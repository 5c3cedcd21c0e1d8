// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/Fetch.h"
#include "platform/media/film/FilmState.h"
#include "platform/media/film/Slice.h"

#include <functional>

namespace tavelo {

class Film;

/// Takes what comes of a slice into the film, on the fetch's thread.
class SliceReceiver final : public FetchReceiver
{
public:
    SliceReceiver(std::shared_ptr<Film> film, std::shared_ptr<Slice> slice);

private:
    void redirected(const QUrl &to) override;
    bool headArrived(const FetchHead &head) override;
    Take bytesArrived(const char *bytes, qint64 count) override;
    void ended(const FetchEnd &end) override;

    const std::shared_ptr<Film> m_film;
    const std::shared_ptr<Slice> m_slice;
    std::optional<FilmState::Verdict> m_verdict;
    /// The first bytes of a film, or of its index, tell what else is to be fetched.
    qint64 m_untold = 64;
};

} // namespace tavelo
