// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpService.h"
#include "platform/http/CurlFetch.h"
#include "transfers/Transfer.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QUuid>

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

inline Checksum checksumOf(const QByteArray &bytes, QCryptographicHash::Algorithm algorithm)
{
    return {algorithm, QCryptographicHash::hash(bytes, algorithm)};
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

/// One transfer, and all that it tells.
struct TransferRun
{
    std::unique_ptr<Transfer> transfer;
    TransferProgress last = {};
    int reports = 0;
    int ends = 0;
    int lateCalls = 0; // after the end
    TransferEnd end = {};

    TransferRun(Fetch &fetch, const TransferRequest &request, const TransferOptions &options)
        : transfer(std::make_unique<Transfer>(fetch, request, options))
    {
        QObject::connect(transfer.get(), &Transfer::progressed,
                         [this](const TransferProgress &progress) {
                             last = progress;
                             ++reports;
                             lateCalls += ends;
                         });
        QObject::connect(transfer.get(), &Transfer::ended, [this](const TransferEnd &how) {
            end = how;
            lateCalls += ends++;
        });
    }
    Q_DISABLE_COPY_MOVE(TransferRun)

    /// Whether `condition` holds within 10 s. It is asked again after each signal.
    bool wait(const std::function<bool()> &condition) const
    {
        QEventLoop loop;
        QTimer::singleShot(10'000, &loop, &QEventLoop::quit);
        const auto look = [&] {
            if (condition())
                loop.quit();
        };
        QObject::connect(transfer.get(), &Transfer::progressed, &loop, look);
        QObject::connect(transfer.get(), &Transfer::ended, &loop, look);
        if (!condition())
            loop.exec();
        return condition();
    }
    bool waitEnd() const
    {
        return wait([this] { return ends > 0; });
    }
    bool waitReceived(qint64 bytes) const
    {
        return wait([&] { return last.received >= bytes; });
    }
};

/// A server with one film, a fetch, and an empty folder.
struct TransferScene
{
    const QByteArray path = "/film.mp4";
    QTemporaryDir dir = {};
    HttpService server = {};
    CurlFetch fetch;
    TransferOptions options = {};
    Checksum checksum = {};
    QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);

    TransferScene() { serve(film()); }

    QString target() const { return dir.filePath("film.mp4"); }
    HttpService::Answer &answer() { return server.at(path); }
    void serve(const QByteArray &body)
    {
        server.serve(path, {.body = body, .etag = "\"first\"", .ranges = true});
    }

    TransferRequest request(const PartState &part = {}) const
    {
        return {server.url(path), target(), name, part, checksum};
    }
    std::unique_ptr<TransferRun> start(const PartState &part = {})
    {
        return std::make_unique<TransferRun>(fetch, request(part), options);
    }

    QStringList files() const
    {
        return QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QString part() const { return PartFile::pathIn(dir.path(), name); }

    /// What a transfer leaves that is stopped after exactly `offset` bytes.
    PartState pausedAt(qint64 offset)
    {
        answer().silentAfter = offset;
        const auto run = start();
        const bool there = run->waitReceived(offset);
        run->transfer->stop();
        const bool ended = run->waitEnd();
        answer().silentAfter.reset();
        return there && ended && run->end.part.done.bytes() == offset ? run->end.part : PartState();
    }
};

} // namespace tavelo
