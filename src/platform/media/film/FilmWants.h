// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/ByteSpan.h"
#include "platform/media/film/FilmState.h"

#include <optional>
#include <vector>

namespace tavelo {

/// Bytes that are wanted, and how many of them one request shall bring at most.
struct Want
{
    ByteSpan span;
    qint64 most = 0;
    /// All of it is waited for: it is shared out so that all connections are through with it at the
    /// same time.
    bool isShared = false;
};

/// What is wanted of a film next, and in which order. Knows nothing of requests.
class FilmWants
{
public:
    static constexpr qint64 leastSlice = 64LL * 1024;
    static constexpr qint64 mostSlice = 2048LL * 1024;

    /// Somebody who reads.
    struct Reading
    {
        qint64 place = 0;
        bool isWaiting = false;
        double expected = 0; // seconds: where the viewer goes
        int expectation = 0; // grows with each way there
    };

    explicit FilmWants(const FilmState &state)
        : m_state(state)
    {}

    void prepare(double startAt, qint64 mostBytes);
    void stopPreparing() { m_preparing = false; }
    bool isPreparing() const { return m_preparing; }
    /// So much has been asked for while it was prepared.
    void asked(qint64 bytes) { m_allowance -= bytes; }

    /// Looks at what is held by now.
    void update(const std::vector<Reading> &readings, std::optional<qint64> speed, bool isHungry);
    /// The most urgent one first.
    const std::vector<Want> &list() const { return m_list; }
    /// Where the index lies; absent: not known, or there is none.
    const std::optional<ByteSpan> &index() const { return m_index; }
    void forgetIndex();
    /// It has been held, and read as far as it can be.
    void indexIsRead() { m_isIndexRead = true; }
    bool isIndexRead() const { return m_isIndexRead; }

private:
    void findIndex();
    void wantIndex(bool fromTheStart);
    void wantPicture(const Reading &reading);
    bool isOfPicture(const Reading &reading);
    ByteSpan pictureAt(double seconds);
    void wantReading(const Reading &reading);
    void wantPrepared();
    /// Where the pictures begin, or probably do; absent: not known.
    std::optional<qint64> mediaStart() const;
    bool holds(const ByteSpan &span) const;
    void want(ByteSpan span, qint64 most);
    void wantAll(const ByteSpan &span);

    const FilmState &m_state;
    std::optional<ByteSpan> m_index;
    std::optional<ByteSpan> m_media;   // what the pictures lie in
    std::optional<ByteSpan> m_missing; // to find the index
    bool m_isIndexRead = false;
    int m_shown = 0;   // the last expectation whose picture was held, and
    int m_arrived = 0; // where it was read
    bool m_preparing = false;
    double m_startAt = 0;                                 // seconds
    qint64 m_allowance = 0;                               // bytes that may still be asked for
    qint64 m_slice = 0;                                   // bytes of an ordinary slice
    std::optional<std::pair<double, ByteSpan>> m_picture; // found last, and at which second
    std::vector<Want> m_list;
};

} // namespace tavelo
