// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/ConnectionSpeed.h"
#include "platform/media/film/FilmNodes.h"
#include "platform/media/film/FilmState.h"
#include "platform/media/film/FilmWants.h"
#include "platform/media/film/Slice.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace tavelo {

class FilmReader;

/// Fetches one film: in slices, of which few are asked for at a time and the next one only when it
/// is wanted, so that whatever the viewer does next finds a connection that is free. For as long as
/// somebody reads the film or it is being prepared; what it holds stays.
///
/// Works on the network thread. The operations above the line there are for any thread.
class Film : public QObject, public std::enable_shared_from_this<Film>
{
    Q_OBJECT

public:
    /// Keeps what the viewer saw at that second for the next time; any thread.
    using Keeper = std::function<void(Film &film, double seconds)>;

    /// Main thread. The last one to let go of it has it deleted on its own thread.
    static std::shared_ptr<Film> create(const QUrl &url, Fetch &fetch, FilmState *state,
                                        Keeper keeper);
    ~Film() override;

    const QUrl &url() const { return m_nodes.item(); }
    FilmState &state() { return *m_state; }
    const FilmState &state() const { return *m_state; }

    void attach(const std::shared_ptr<FilmReader> &reader);
    /// Other nodes that have it.
    void setAlternatives(const QList<QUrl> &urls);
    /// Fetches ahead what a start at `startAt` (seconds) needs, `mostBytes` at most.
    void prepare(double startAt, qint64 mostBytes);
    void stopPreparing();
    /// Ends it for all who read it, and blocks until nothing more is asked for.
    void retire();
    /// Something is wanted that may not be on its way.
    void demand();
    void keep(double seconds) { m_keeper(*this, seconds); }

    // The receivers' side.
    void answered(const QUrl &source);
    /// The service says that the film is there.
    void led(const QUrl &to, int turn);
    /// Once: one answer that is the whole film is enough.
    bool takesWhole() { return !m_hasWhole.exchange(true); }
    /// Of a server without ranges: up to where somebody wants it.
    qint64 wholeUpTo() const { return m_wholeUpTo; }
    void ended(const std::shared_ptr<Slice> &slice, const FetchEnd &end,
               std::optional<FilmState::Verdict> verdict);

    // ------------------------------------------------------------------------------------------

private:
    using Clock = Slice::Clock;
    using Slices = std::vector<std::shared_ptr<Slice>>;

    Film(const QUrl &url, Fetch &fetch, FilmState *state, Keeper keeper);

    /// Runs `call` on the film's thread, unless the film is gone by then.
    template <typename Call>
    void post(Call call)
    {
        QMetaObject::invokeMethod(this, std::move(call), Qt::QueuedConnection);
    }
    void look();
    void rest();
    void updateWants(const std::vector<FilmWants::Reading> &reading);
    bool readIndex();
    bool mayAsk() const;
    int mostSlices() const;
    std::optional<ByteSpan> nextSpan() const;
    ByteSpan missingIn(const Want &want) const;
    qint64 shareOf(const Want &want) const;
    bool isLeftOut(qint64 place) const;
    bool isOnItsWay(qint64 place, qint64 &upTo) const;
    bool makeRoom(qint64 place);
    void start(const ByteSpan &span);
    ByteSpan withOverlap(const ByteSpan &span, Slice::Address address) const;
    void startSecond(Slice &first, Slice::Address address);
    void send(const std::shared_ptr<Slice> &slice);
    void tick();
    void helpOut(Slice &slice);
    void followWholeFilm();
    void letGo(const Slice &slice);
    void favourFilm(bool isShort);
    void sliceEnded(const Slice &slice, const FetchEnd &end,
                    std::optional<FilmState::Verdict> verdict);
    void refused(const Slice &slice, int status);
    void outOfRange(const Slice &slice);
    void broken(const Slice &slice, const FetchEnd &end);
    void contradicted();
    void dropNeedless();
    std::vector<FilmWants::Reading> readings() const;

    Fetch &m_fetch;
    const std::unique_ptr<FilmState> m_state;
    const Keeper m_keeper;
    std::atomic_bool m_isToLook = false;
    std::atomic<qint64> m_wholeUpTo = 0;
    std::atomic_bool m_hasWhole = false;

    FilmNodes m_nodes;
    FilmWants m_wants;
    ConnectionSpeed m_speed;
    Slices m_slices; // on their way
    std::vector<std::weak_ptr<FilmReader>> m_readers;
    QTimer m_ticker;
    bool m_countsView = false; // the next request is the one that counts as a view
    bool m_isShort = false;
    bool m_isRetired = false;
    bool m_isRecalled = false; // something that is held is of an earlier time
    int m_failures = 0;        // since the last byte
    Clock::time_point m_retryAt{};
    Clock::time_point m_hungryUntil{};
    int m_started = 0; // slices, and
    int m_seconds = 0; // requests beside them
};

} // namespace tavelo
