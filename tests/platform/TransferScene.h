// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TransferSession.h"
#include "testlib/FaultServer.h"
#include "testlib/TransferProbe.h"

#include <QDebug>
#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cerrno>

namespace tavelo {

inline QByteArray randomBytes(qsizetype size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

inline const QByteArray &film()
{
    static const QByteArray bytes = randomBytes(200'000, 1);
    return bytes;
}

inline QByteArray contentsOf(const QString &file)
{
    QFile read(file);
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
}

/// A disk with room for `room` bytes of a file.
inline PartFile::Write fullAfter(off_t room)
{
    return [room](int file, const void *bytes, size_t count, off_t at) -> ssize_t {
        if (at < room)
            return pwrite(file, bytes, std::min(count, static_cast<size_t>(room - at)), at);
        errno = ENOSPC;
        return -1;
    };
}

/// A session, its client, a server with one film, and an empty folder.
struct TransferScene
{
    const QByteArray path = "/film.mp4";
    QTemporaryDir dir = {};
    FaultServer server = {};
    TransferProbe probe = {};
    std::unique_ptr<TransferSession> session;

    explicit TransferScene(TransferOptions options = {})
        : session(std::make_unique<TransferSession>(probe, std::move(options)))
    {
        serve(film());
    }

    QString folder() const { return dir.path(); }
    QString target() const { return dir.filePath("film.mp4"); }
    FaultServer::Answer &answer() { return server.at(path); }

    void serve(const QByteArray &body)
    {
        server.serve(path, {.body = body, .etag = "\"first\"", .ranges = true});
    }

    TransferRequest request(const QByteArray &token = {}) const
    {
        return {server.url(path), folder(), target(), token};
    }

    TransferId start(const QByteArray &token = {}) { return session->start(request(token)); }

    QStringList files() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    /// The one file in the folder.
    QString part() const { return dir.filePath(files().value(0)); }

    /// The token of a transfer that was paused after exactly `offset` bytes.
    QByteArray pausedAt(qint64 offset)
    {
        answer().silentAfter = offset;
        const TransferId id = start();
        const bool there = probe.waitReceived(id, offset);
        session->pause(id);
        const bool ended = probe.waitEnd(id);
        answer().silentAfter.reset();
        const auto record = probe.of(id);
        return there && ended && record.received == offset ? record.token : QByteArray();
    }

    /// Whether the transfer has ended once and for all, and the folder holds just `expected`.
    bool isOver(TransferId id, const QStringList &expected) const
    {
        const auto record = probe.of(id);
        if (record.ends == 1 && record.lateCalls == 0 && files() == expected)
            return true;
        qWarning() << "ends:" << record.ends << "late:" << record.lateCalls << files();
        return false;
    }
};

} // namespace tavelo
