// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QUrl>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace tavelo {

class HttpStreamFetcher;

/// A film's bytes over HTTP, read by the engine's demuxer thread while the network thread fills a
/// window of them. Broken connections are taken up again where they broke, for as long as nobody
/// gives up; the known end of the film is the only end of the stream.
class HttpStream : public std::enable_shared_from_this<HttpStream>
{
public:
    static constexpr qint64 windowAhead = 4LL * 1024 * 1024; // bytes kept ready before the reader
    static constexpr qint64 windowBehind = 1024LL * 1024;    // bytes kept for short ways back

    static std::shared_ptr<HttpStream> open(const QUrl &url);
    ~HttpStream();

    // The reader's side; `read`, `seek` and `size` block, one thread at a time.
    qint64 read(char *to, qint64 most);        // 0 at the film's end, -1 failed or cancelled
    std::optional<qint64> seek(qint64 offset); // absent: the stream is over
    std::optional<qint64> size();              // absent: unknown
    void cancel();                             // any thread; ends every wait for good

    // The player's side, any thread.
    /// Text of the failure that ended the stream; empty while it goes on.
    QString error() const;
    /// Milliseconds that the reader has now been waiting without a single byte; 0 when it is not.
    qint64 starvedFor() const;
    void fail(const QString &text);

    // The fetcher's side, on the network thread.
    void opened(std::optional<qint64> size, bool ranges);
    /// Bytes at the window's end. `generation` tells whom they were fetched for.
    void append(const QByteArray &bytes, int generation);
    void ended(int generation); // the end of a film of unknown size
    bool isFull() const;

private:
    HttpStream() = default;
    bool over() const { return m_cancelled || !m_error.isEmpty(); }
    qint64 windowEnd() const { return m_windowStart + m_window.size(); }
    bool atEnd() const;
    void trim();
    void requestFrom(qint64 offset);

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    QByteArray m_window;
    qint64 m_windowStart = 0; // film offset of the window's first byte
    qint64 m_position = 0;    // film offset of the next byte read
    int m_generation = 0;     // of the fetch that may append
    std::optional<qint64> m_size;
    bool m_opened = false;
    bool m_ranges = false;
    bool m_ended = false;
    bool m_cancelled = false;
    QString m_error;
    QElapsedTimer m_starving; // valid while a read waits; restarted by every byte

    HttpStreamFetcher *m_fetcher = nullptr; // lives on the network thread
};

} // namespace tavelo
