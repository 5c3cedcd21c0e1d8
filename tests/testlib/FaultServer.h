// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>
#include <utility>

namespace tavelo {

/// An HTTP service on 127.0.0.1 whose faults are exact to the byte. One request a connection.
class FaultServer : public QObject
{
    Q_OBJECT

public:
    using Headers = QList<std::pair<QByteArray, QByteArray>>;

    struct Request
    {
        QByteArray method;
        QByteArray target;                     // path and query as they came
        QHash<QByteArray, QByteArray> headers; // names in lower case
    };

    /// How the end of a body is told.
    enum class Framing { Length, Chunked, Close };

    /// What a path answers. Byte counts are places in the whole body, also where a range is sent.
    struct Answer
    {
        QByteArray body = {};
        int status = 200;
        Headers headers = {};
        QByteArray etag = {};
        Framing framing = Framing::Length;
        bool ranges = false;                    // Range and If-Range (tag or date) are understood
        bool silent = false;                    // the request is taken and never answered
        std::chrono::milliseconds delay{0};     // before the first byte
        qint64 bytesPerSecond = 0;              // 0: as fast as it goes
        std::optional<qint64> cutAfter = {};    // then the connection ends
        bool reset = false;                     // it ends by RST instead of FIN
        std::optional<qint64> silentAfter = {}; // then nothing more comes
    };

    FaultServer();
    ~FaultServer() override;

    QString base() const; // "http://127.0.0.1:1234"
    QUrl url(const QByteArray &path) const;

    /// What requests for `path` (encoded, without its query) get from now on; others get a 404.
    void serve(const QByteArray &path, Answer answer) { m_answers[path] = std::move(answer); }
    /// What those of them get instead that ask for a range.
    void serveRange(const QByteArray &path, Answer answer)
    {
        m_rangeAnswers[path] = std::move(answer);
    }
    void redirect(const QByteArray &path, const QByteArray &location, int status = 301);
    /// To change a thing or two about what is served; must be served already.
    Answer &at(const QByteArray &path);

    /// Refuses connections, or takes them again on the same port. Requests on their way are not
    /// touched; connections that a client opened ahead of need are closed.
    void setListening(bool listening);

    const QList<Request> &requests() const { return m_requests; }
    void forgetRequests() { m_requests.clear(); }
    /// Requests whose connection is still there. A client may hold idle ones besides.
    int openRequests() const { return m_openRequests; }

Q_SIGNALS:
    void requested(); // before the answer is looked up

private:
    class Connection;

    Answer answerTo(const Request &request);

    quint16 m_port = 0;
    std::unique_ptr<QTcpSocket> m_keepsPort;
    QHash<QByteArray, Answer> m_answers;
    QHash<QByteArray, Answer> m_rangeAnswers;
    QList<Request> m_requests;
    int m_openRequests = 0;
    QTcpServer m_server; // goes first, with the connections that still know the rest
};

} // namespace tavelo
