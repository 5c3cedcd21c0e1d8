// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One transfer of a session; never used twice by it.
enum class TransferId : quint64 {};

/// What is asked for.
struct TransferRequest
{
    QUrl url;                 // http or https
    QString folder;           // of the finished file; must be there
    QString description = {}; // the client's own text, handed back with every callback
    QByteArray token = {};    // of an earlier transfer of the same url to the same folder
};

/// What a callback is about.
struct TransferInfo
{
    TransferId id = {};
    QString description = {};
    int status = 0; // the final HTTP status; 0 until it is known
};

/// The client of a TransferSession, called on the session's thread, one call at a time. Every
/// transfer ends with exactly one `completed` or `paused`, and nothing is said of it afterwards.
class TransferDelegate
{
public:
    virtual ~TransferDelegate() = default;

    /// `received` counts from the file's first byte and falls back when a resumed transfer has to
    /// start over. `expected` is the whole file's size, -1 when the server does not tell.
    virtual void dataWritten(const TransferInfo &info, qint64 received, qint64 expected) = 0;

    /// An answer has arrived whole. With a 2xx status its body lies in `file`, to be moved away
    /// before this returns; it is removed afterwards. With another status `file` is empty.
    /// `completed` without an error follows at once.
    virtual void finished(const TransferInfo &info, const QString &file) = 0;

    /// Nothing of the transfer is left on disk. ErrorKind::Cancelled: by `cancel`; else TimedOut,
    /// Storage, BadUrl or Transport, with a text for the user.
    virtual void completed(const TransferInfo &info, const std::optional<Error> &error) = 0;

    /// By `pause`. Without a token nothing of the transfer is left on disk.
    virtual void paused(const TransferInfo &info, const QByteArray &token) = 0;
};

} // namespace tavelo
