// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

namespace tavelo {

/// A film's bytes as its demuxer reads them. The known end of the film is the only end of the
/// stream: a broken connection is taken up again for as long as nobody gives up.
class FilmStream
{
public:
    virtual ~FilmStream() = default;

    // The reader's side: these three block, one thread at a time.
    virtual qint64 read(char *to, qint64 most) = 0; // 0 at the film's end, -1 failed or ended
    virtual std::optional<qint64> seek(qint64 offset) = 0; // absent: the stream is over
    virtual std::optional<qint64> size() = 0;              // in bytes; absent: unknown

    // The player's side, any thread.
    virtual void cancel() = 0; // ends every wait for good
    /// The viewer goes to that place: what its picture needs is worth fetching at once.
    virtual void expect(double seconds) = 0;
    /// What the viewer sees now, so that it can be kept for the next time.
    virtual void shown(double seconds) = 0;
    /// Text of what ended the stream for good; empty while it goes on.
    virtual QString error() const = 0;
    /// The film is no longer the one of which something was kept: open it anew.
    virtual bool isOutdated() const = 0;
    /// Why no byte comes at the moment, for the viewer; empty when nothing is known to be wrong.
    virtual QString trouble() const = 0;
    /// What the server asks for meanwhile, such as to wait; empty: nothing.
    virtual QString wish() const = 0;
    /// How long the reader has now been waiting without a single byte; 0 when it is not.
    virtual std::chrono::milliseconds starvedFor() const = 0;
};

/// Where an engine gets the films that are not files.
class FilmSource
{
public:
    virtual ~FilmSource() = default;

    /// An http or https address, of a film that starts at `startAt` (seconds). Returns at once;
    /// main thread.
    virtual std::shared_ptr<FilmStream> open(const QUrl &url, double startAt) = 0;
};

} // namespace tavelo
