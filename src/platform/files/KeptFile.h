// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <optional>

namespace tavelo {

/// A small file of what the user has built up, which must not be lost. The state before the last
/// one lies beside it (".previous") and is read when the newer is damaged or gone. What cannot be
/// understood is put aside under a name of its own (NAME.unreadable-1.json); what cannot be opened
/// is not touched for as long as that lasts. Written on a thread of its own, one state after the
/// other, at most once a second: only the newest counts. A state that could not be written is tried
/// again at the next change and at the end. Main thread only.
class KeptFile : public QObject
{
    Q_OBJECT

public:
    /// Makes the content; runs on another thread.
    using Encoder = std::function<QByteArray()>;

    /// Whose state it is. The functions are called on the main thread.
    struct Owner
    {
        QString name; // as a sentence begins: "The watch history"
        qint64 maxBytes = 0;
        /// Takes a content in; what the owner holds already stands. False: it cannot be understood.
        std::function<bool(const QByteArray &)> read;
        std::function<Encoder()> snapshot; // of the state as it is now
    };

    KeptFile(const QString &path, Owner owner);
    /// Flushes.
    ~KeptFile() override;

    /// Reads the file once; the owner calls this when it can take the content in.
    void read();
    /// The state has changed: writes it soon.
    void save();
    /// Writes what is not written yet without the wait between two states.
    void hurry();
    /// The same, and waits until it is on disk or has failed.
    void flush();
    /// Keeps `content`, which is what was read, under a name of its own and tells of it: the owner
    /// leaves parts out.
    void keepAside(const QByteArray &content);

    /// There is something that cannot be read now, and is left alone.
    bool isClosed() const { return m_closed; }

    static QString previousOf(const QString &path) { return path + QLatin1String(".previous"); }

Q_SIGNALS:
    /// Something that the user should know, once; not before the event loop runs.
    void troubled(const QString &text);

private:
    enum class Found { Nothing, Whole, Damaged, Closed };

    Found take(const QString &path);
    void recover(Found newest);
    std::optional<QString> putAside(const QString &path) const;
    QString freeName() const;
    void keepCopy(const QByteArray &content, const QString &text);
    void close(const QString &reason);
    void schedule();
    void begin();
    void settle();
    void finish();
    void tell(const QString &text);

    const QString m_path;
    const Owner m_owner;
    QString m_reason;      // why take() found something closed
    bool m_closed = false; // there is something that could not be read: it is not overwritten
    bool m_toldClosed = false;
    bool m_reading = false;
    bool m_dirty = false;       // changed since the last write began
    bool m_failed = false;      // the last write did
    QElapsedTimer m_sinceWrite; // since the last one began; invalid: do not wait
    QTimer m_wait;
    std::optional<QFuture<std::optional<Error>>> m_writing;
    QFutureWatcher<std::optional<Error>> m_watcher;
    QThreadPool m_writer; // one thread, never behind other work
};

} // namespace tavelo
