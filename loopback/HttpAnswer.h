// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonDocument>
#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace tavelo {

/// What a service answers. Byte counts are places in the whole body, also where a range is sent.
struct HttpAnswer
{
    using Headers = QList<std::pair<QByteArray, QByteArray>>;

    /// How the end of a body is told.
    enum class Framing { Length, Chunked, Close };

    /// A body that is made piece by piece while it is sent.
    struct Source
    {
        qint64 size = 0;
        /// Exactly `count` bytes from `offset` on; fewer break the connection off.
        std::function<QByteArray(qint64 offset, qint64 count)> bytes;

        /// Bytes that tell from which place of which body they come, at any size.
        static Source pattern(qint64 size, quint32 seed = 0);
    };

    QByteArray body = {};
    int status = 200;
    Headers headers = {};
    QByteArray etag = {};
    Framing framing = Framing::Length;
    bool ranges = false;                       // Range and If-Range (tag or date) are understood
    bool silent = false;                       // the request is taken and never answered
    std::chrono::milliseconds delay{0};        // before the first byte
    qint64 bytesPerSecond = 0;                 // 0: as fast as it goes
    std::optional<qint64> cutAfter = {};       // then the connection ends
    bool reset = false;                        // it ends by RST instead of FIN
    std::optional<qint64> silentAfter = {};    // then nothing more comes
    std::optional<Source> source = {};         // in place of `body`
    std::function<QByteArray()> slowBody = {}; // makes `body`, on the thread pool
    QByteArray contentRange = {};              // in place of the true header's value
    bool close = false; // the connection ends with the answer, whatever the client would like

    qint64 size() const { return source ? source->size : body.size(); }

    /// As headers write it.
    static QByteArray date(const QDateTime &time);

    static HttpAnswer text(int status, const QByteArray &body, const QByteArray &type);
    static HttpAnswer json(const QJsonDocument &document);
    static HttpAnswer notFound() { return text(404, "Not here.", "text/plain"); }
    /// With ranges and both validators; 404 when there is no such file.
    static HttpAnswer ofFile(const QString &path);
};

} // namespace tavelo
