// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "testlib/FaultServer.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

#include <sys/socket.h>

namespace tavelo {

namespace {

using Answer = FaultServer::Answer;
using Framing = FaultServer::Framing;
using Request = FaultServer::Request;

/// On a socket that has brought its request.
constexpr const char *hasAsked = "hasAsked";

constexpr const char *lastChunk = "0\r\n\r\n";
constexpr qint64 chunkBytes = 64 * 1024;
constexpr qint64 mostBuffered = 4 * chunkBytes;

Request parsedRequest(const QByteArray &head)
{
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.first().trimmed().split(' ');
    Request request{words.value(0), words.value(1), {}};
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    return request;
}

struct ByteRange
{
    qint64 first = 0;
    qint64 last = -1;
    bool satisfiable() const { return first <= last; }
};

bool meets(const QByteArray &condition, const Answer &answer)
{
    return condition.isEmpty() || condition == answer.etag ||
           answer.headers.contains({QByteArrayLiteral("Last-Modified"), condition});
}

// The one range that is asked for; absent when the whole body is to be sent.
std::optional<ByteRange> rangeFor(const Request &request, const Answer &answer)
{
    const QByteArray text = request.headers.value("range");
    if (answer.status != 200 || !answer.ranges || !text.startsWith("bytes=") ||
        !meets(request.headers.value("if-range"), answer))
        return {};
    const QList<QByteArray> ends = text.sliced(6).split('-');
    const qint64 size = answer.body.size();
    if (ends.value(0).isEmpty())
        return ByteRange{std::max(size - ends.value(1).toLongLong(), qint64(0)), size - 1};
    const qint64 last = ends.value(1).isEmpty() ? size - 1 : ends.value(1).toLongLong();
    return ByteRange{ends.value(0).toLongLong(), std::min(last, size - 1)};
}

// Makes of the answer what this request is sent of it.
void applyRange(const Request &request, Answer &answer)
{
    const auto range = rangeFor(request, answer);
    if (!range)
        return;
    const QByteArray size = QByteArray::number(answer.body.size());
    if (!range->satisfiable()) {
        answer.status = 416;
        answer.headers.append({"Content-Range", "bytes */" + size});
        answer.body.clear();
        return;
    }
    answer.status = 206;
    answer.headers.append({"Content-Range", "bytes " + QByteArray::number(range->first) + '-' +
                                                QByteArray::number(range->last) + '/' + size});
    answer.body = answer.body.sliced(range->first, range->last - range->first + 1);
    for (auto *place : {&answer.cutAfter, &answer.silentAfter}) {
        if (*place)
            *place = std::max<qint64>(**place - range->first, 0);
    }
}

QByteArray headOf(const Answer &answer)
{
    QByteArray head =
        "HTTP/1.1 " + QByteArray::number(answer.status) + " Scripted\r\nConnection: close\r\n";
    if (answer.framing == Framing::Length)
        head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    if (answer.framing == Framing::Chunked)
        head += "Transfer-Encoding: chunked\r\n";
    if (answer.ranges)
        head += "Accept-Ranges: bytes\r\n";
    if (!answer.etag.isEmpty())
        head += "ETag: " + answer.etag + "\r\n";
    for (const auto &[name, value] : answer.headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

} // namespace

/// One request and its answer; ends with its socket.
class FaultServer::Connection : public QObject
{
public:
    Connection(FaultServer *server, QTcpSocket *socket)
        : QObject(socket)
        , m_server(server)
        , m_socket(socket)
    {
        connect(socket, &QTcpSocket::readyRead, this, &Connection::read);
        connect(socket, &QTcpSocket::bytesWritten, this, &Connection::pump);
        connect(&m_tick, &QTimer::timeout, this, &Connection::pump);
    }

private:
    void read()
    {
        m_received += m_socket->readAll();
        const qsizetype end = m_received.indexOf("\r\n\r\n");
        if (end < 0 || m_answer)
            return;
        const Request request = parsedRequest(m_received.first(end));
        m_answer = m_server->answerTo(request);
        m_socket->setProperty(hasAsked, true);
        connect(m_socket, &QTcpSocket::disconnected, m_server,
                [server = m_server] { --server->m_openRequests; });
        applyRange(request, *m_answer);
        if (!m_answer->silent)
            QTimer::singleShot(m_answer->delay, this, &Connection::start);
    }

    void start()
    {
        const qint64 size = m_answer->body.size();
        m_end = std::min(m_answer->cutAfter.value_or(size), m_answer->silentAfter.value_or(size));
        m_end = std::min(m_end, size);
        m_started = true;
        m_clock.start();
        if (m_answer->bytesPerSecond > 0)
            m_tick.start(10);
        m_socket->write(headOf(*m_answer));
        if (size == 0 && m_answer->framing == Framing::Chunked)
            m_socket->write(lastChunk);
        pump();
    }

    void pump()
    {
        if (!m_started)
            return;
        while (m_sent < m_end && m_socket->bytesToWrite() < mostBuffered) {
            const qint64 count = std::min({chunkBytes, m_end - m_sent, allowance()});
            if (count <= 0)
                return;
            m_sent += count; // before the write, which may come back here
            writeBlock(m_answer->body.sliced(m_sent - count, count));
        }
        if (m_sent == m_end && !m_answer->silentAfter)
            hangUp();
    }

    void writeBlock(const QByteArray &bytes)
    {
        if (m_answer->framing != Framing::Chunked)
            return static_cast<void>(m_socket->write(bytes));
        const bool cut = m_answer->cutAfter && m_sent == m_end;
        const bool inside =
            cut && m_sent < m_answer->body.size(); // a chunk that lacks its last byte
        m_socket->write(QByteArray::number(bytes.size() + inside, 16) + "\r\n" + bytes +
                        (inside ? "" : "\r\n"));
        if (m_sent == m_answer->body.size() && !cut)
            m_socket->write(lastChunk);
    }

    qint64 allowance() const
    {
        return m_answer->bytesPerSecond > 0
                   ? m_clock.elapsed() * m_answer->bytesPerSecond / 1000 - m_sent
                   : chunkBytes;
    }

    void hangUp()
    {
        if (!m_answer->reset)
            return m_socket->disconnectFromHost(); // once everything is written
        if (m_socket->bytesToWrite() > 0)
            return;
        const linger none{1, 0};
        setsockopt(static_cast<int>(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
                   sizeof none);
        m_socket->abort();
    }

    FaultServer *m_server;
    QTcpSocket *m_socket;
    QByteArray m_received;
    std::optional<Answer> m_answer;
    QTimer m_tick;
    QElapsedTimer m_clock;
    bool m_started = false;
    qint64 m_sent = 0;
    qint64 m_end = 0;
};

FaultServer::FaultServer()
{
    setListening(true);
    m_port = m_server.serverPort();
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            new Connection(this, socket);
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

FaultServer::~FaultServer() = default;

QString FaultServer::base() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
}

QUrl FaultServer::url(const QByteArray &path) const
{
    return QUrl(base() + QString::fromLatin1(path), QUrl::StrictMode);
}

void FaultServer::redirect(const QByteArray &path, const QByteArray &location, int status)
{
    serve(path, {.status = status, .headers = {{"Location", location}}});
}

FaultServer::Answer &FaultServer::at(const QByteArray &path)
{
    Q_ASSERT(m_answers.contains(path));
    return m_answers[path];
}

void FaultServer::setListening(bool listening)
{
    if (listening == m_server.isListening())
        return;
    if (!listening) {
        m_server.close();
        for (QTcpSocket *socket : m_server.findChildren<QTcpSocket *>()) {
            if (!socket->property(hasAsked).toBool())
                socket->abort();
        }
        // A port that is bound and not listened on refuses, and nobody else can have it meanwhile.
        m_keepsPort = std::make_unique<QTcpSocket>();
        m_keepsPort->bind(QHostAddress::LocalHost, m_port, QAbstractSocket::ReuseAddressHint);
        return;
    }
    m_keepsPort.reset();
    if (!m_server.listen(QHostAddress::LocalHost, m_port))
        qFatal("No port to listen on: %s", qPrintable(m_server.errorString()));
}

FaultServer::Answer FaultServer::answerTo(const Request &request)
{
    m_requests.append(request);
    ++m_openRequests;
    Q_EMIT requested();
    const QByteArray path = request.target.split('?').first();
    if (request.headers.contains("range") && m_rangeAnswers.contains(path))
        return m_rangeAnswers[path];
    return m_answers.value(path, Answer{.body = "not here", .status = 404});
}

} // namespace tavelo
