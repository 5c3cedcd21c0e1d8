// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

namespace tavelo {

/// One request of a Fetch; never used twice by it.
enum class FetchId : quint64 {};

/// Who goes first to a host that has no connection to spare: in this order.
enum class FetchUrgency { Film, Probe, Download };

/// A part of a body, by the places of its first and last byte.
struct FetchRange
{
    qint64 first = 0;
    qint64 last = -1; // -1: whatever is the last

    bool operator==(const FetchRange &) const = default;
};

/// What is asked for: one GET over HTTP/1.1, whose redirects are followed, five at most and never
/// from https to http.
struct FetchRequest
{
    QUrl url; // http or https
    std::optional<FetchRange> range = {};
    QByteArray ifRange = {}; // goes with a range (RFC 9110, 13.1.5); empty: none
    bool headOnly = false;   // a HEAD
    FetchUrgency urgency = FetchUrgency::Download;
    /// How long the server may bring nothing, also while connecting.
    std::chrono::milliseconds silenceLimit{30'000};
};

/// The head of a final answer. A field that it lacks is empty.
struct FetchHead
{
    int status = 0;
    QUrl url = {};      // what answered, after redirects
    qint64 length = -1; // bytes of the answer's body; -1: not told
    QByteArray entityTag = {};
    QByteArray lastModified = {};
    QByteArray date = {};
    QByteArray contentRange = {};
};

/// How a request ended. Without an error the answer's body has come whole, whatever its status.
struct FetchEnd
{
    /// Transport, TimedOut, Cancelled (also when the receiver wanted no more), or BadUrl.
    std::optional<Error> error = {};
    std::optional<FetchHead> head = {};
    /// For how long the host is left alone, because it asks for that (429 or 503) or refuses
    /// connections; 0: it may be asked again at once. Requests made meanwhile wait by themselves.
    std::chrono::milliseconds pause{0};
};

/// Whoever a request is made for. Called on the fetch's thread, one call at a time: never block.
class FetchReceiver
{
public:
    enum class Take {
        More,
        Later, // the same bytes are offered again after Fetch::resume; for downloads only: the
               // connection is held meanwhile, and what has arrived of it stays in memory
        Stop,  // the request ends, and its connection, too
    };

    virtual ~FetchReceiver() = default;

    /// It has not begun yet because its host is left alone for that long; told once for each time.
    virtual void heldBack(std::chrono::milliseconds) {}
    /// It is sent on to that address.
    virtual void redirected(const QUrl &) {}
    /// Before the body's first byte. False when the body is not wanted.
    virtual bool headArrived(const FetchHead &head) = 0;
    virtual Take bytesArrived(const char *bytes, qint64 count) = 0;
    /// The last call, exactly once a request.
    virtual void ended(const FetchEnd &end) = 0;
};

/// Fetches long bodies, all on one thread of its own, with kept connections and one budget for each
/// host. Every operation may be called on any thread, also from a receiver, and returns at once.
class Fetch
{
public:
    /// The one of the process. Created on first use, on the main thread. Ends every request when
    /// the application object goes, before its children do; what is asked for later is dropped.
    static Fetch &shared();

    virtual ~Fetch() = default;

    virtual FetchId start(FetchRequest request, std::shared_ptr<FetchReceiver> receiver) = 0;
    /// Ends it with ErrorKind::Cancelled; nothing happens when it is over.
    virtual void cancel(FetchId id) = 0;
    /// Offers again what the receiver has put off.
    virtual void resume(FetchId id) = 0;
    /// Opens a connection for whoever comes next, unless one is kept or on its way. When the server
    /// closes it before anyone has come, it is opened once more, and then no more.
    virtual void connectAhead(const QUrl &url) = 0;
    /// The user asks for it: a host that could not be reached may be asked again at once. One that
    /// said how long it wants to be left alone is.
    virtual void tryAgain(const QUrl &url) = 0;
    /// While a film waits for bytes, all downloads together take little of the line.
    virtual void favourFilm(bool shortOfBytes) = 0;
};

} // namespace tavelo
