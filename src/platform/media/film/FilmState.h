// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/BodyVersion.h"
#include "platform/http/Fetch.h"
#include "platform/media/film/KeptFilm.h"
#include "platform/media/film/Mp4Index.h"
#include "platform/media/film/SliceCache.h"

#include <QCoreApplication>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace tavelo {

/// What is known of a film and held of its bytes: where those who fetch it, who read it, and who
/// keep it for the next time meet. Any thread.
class FilmState
{
    Q_DECLARE_TR_FUNCTIONS(FilmState)

public:
    using Clock = std::chrono::steady_clock;

    /// What an answer is good for.
    enum class Verdict {
        Part,      // the span that was asked for
        Whole,     // all of the film, from its first byte
        WrongPart, // other bytes than were asked for
        Changed,   // of another version of the film
    };

    FilmState(std::shared_ptr<SliceCache> cache, FilmNumber number);

    // Those who fetch.
    Verdict judge(const FetchHead &head, qint64 asked);
    /// False when the film is known to have other bytes there.
    bool take(qint64 place, const char *bytes, qint64 count);
    /// A film of unknown size ends at `size`.
    void endsAt(qint64 size);
    void fail(const QString &text);
    /// What is held turned out to be of another version; it is let go, and so is what is known.
    void outdate();
    /// Why nothing comes: empty when nothing is wrong any more. `waitsUntil`: the server wants to
    /// be left alone until then; the epoch: it does not.
    void setTrouble(const QString &text, Clock::time_point waitsUntil);
    /// `where` it lies, of bytes that are held.
    void setIndex(std::shared_ptr<const Mp4Index> index, const ByteSpan &where);
    /// What was kept of it: to be confirmed by the first answer.
    void recall(const KeptFilm &kept);
    /// For a new try, which after a failure finds another version, maybe.
    void clearFailure();

    // Everybody.
    bool isOpened() const;    // an answer has told what it is, or an earlier time did
    bool isConfirmed() const; // an answer of this time has
    bool takesRanges() const; // false: every answer is the whole film
    bool isOutdated() const;
    std::optional<qint64> size() const; // bytes; absent: not known
    BodyVersion version() const;
    QString error() const; // empty: none
    Clock::time_point lastByte() const { return m_lastByte; }
    QString trouble() const;
    /// What the server asks for, for the viewer; empty: nothing.
    QString wish() const;
    std::shared_ptr<const Mp4Index> index() const; // null: not known
    qint64 heldUpTo(qint64 place, qint64 end) const
    {
        return m_cache->heldUpTo(m_number, place, end);
    }
    std::optional<QByteArray> bytesOf(const ByteSpan &span) const
    {
        return m_cache->bytesOf(m_number, span);
    }
    /// What shows the film again from `seconds` on; absent when too little is known of it.
    std::optional<KeptFilm> keptFrom(double seconds) const;

    // Those who read.
    qint64 read(qint64 place, char *to, qint64 most) const
    {
        return m_cache->read(m_number, place, to, most);
    }
    /// Blocks until `holds`, which is looked at whenever something has changed.
    void wait(const std::function<bool()> &holds) const;
    void wake() { changed(); }

private:
    std::optional<KeptFilm::Piece> pieceOf(ByteSpan span) const;
    void changed();

    const std::shared_ptr<SliceCache> m_cache;
    const FilmNumber m_number;
    mutable std::mutex m_mutex;
    std::atomic<quint32> m_changes = 0;
    std::atomic<Clock::time_point> m_lastByte{};
    bool m_opened = false;
    bool m_confirmed = false;
    bool m_ranges = true;
    bool m_outdated = false;
    std::optional<qint64> m_size;
    BodyVersion m_version;
    QString m_error;
    QString m_trouble;
    Clock::time_point m_waitsUntil{};
    std::shared_ptr<const Mp4Index> m_index;
    QList<KeptFilm::Piece> m_essential; // head and index, which the cache may have let go by now
};

} // namespace tavelo
