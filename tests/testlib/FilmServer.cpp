// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "testlib/FilmServer.h"

#include <algorithm>

namespace tavelo {

FilmServer::FilmServer(QByteArray film)
    : m_film(std::move(film))
{
    setListening(true);
    m_port = m_server.serverPort();
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

void FilmServer::setListening(bool listening)
{
    if (!listening)
        m_server.close();
    else if (!m_server.isListening())
        m_server.listen(QHostAddress::LocalHost, m_port);
}

QUrl FilmServer::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/film.mp4").arg(m_port));
}

void FilmServer::serve(QTcpSocket *socket)
{
    const QByteArray text = socket->peek(64 * 1024);
    const qsizetype end = text.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    socket->skip(end + 4);
    Request request;
    const QList<QByteArray> lines = text.first(end).split('\n');
    request.path = lines.first().split(' ').value(1);
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    m_requests.append(request);
    answer(socket, request);
}

void FilmServer::answer(QTcpSocket *socket, const Request &request)
{
    if (!answers)
        return;
    if (!redirectTo.isEmpty() && request.path != redirectTo) {
        socket->write("HTTP/1.1 302 Found\r\nContent-Length: 0\r\nConnection: close\r\nLocation: " +
                      redirectTo + "\r\n\r\n");
        return socket->disconnectFromHost();
    }
    if (status != 0) {
        socket->write("HTTP/1.1 " + QByteArray::number(status) +
                      " Fault\r\nContent-Length: 5\r\nConnection: close\r\n\r\nfault");
        return socket->disconnectFromHost();
    }
    const QByteArray range = request.headers.value("range");
    const bool partial = ranges && range.startsWith("bytes=");
    sendFilm(socket, partial ? range.sliced(6).split('-').first().toLongLong() : 0, partial);
}

void FilmServer::sendFilm(QTcpSocket *socket, qint64 from, bool partial)
{
    QByteArray head = partial ? "HTTP/1.1 206 Partial Content\r\n" : "HTTP/1.1 200 OK\r\n";
    head += "Content-Type: video/mp4\r\nConnection: close\r\nETag: " + etag +
            "\r\nContent-Length: " + QByteArray::number(m_film.size() - from) + "\r\n";
    if (partial)
        head += "Content-Range: bytes " + QByteArray::number(from) + '-' +
                QByteArray::number(m_film.size() - 1) + '/' + QByteArray::number(m_film.size()) +
                "\r\n";
    socket->write(head + "\r\n");
    const qint64 end = std::min(dropAt.value_or(m_film.size()), silentAt.value_or(m_film.size()));
    if (end > from)
        socket->write(m_film.sliced(from, end - from));
    if (!silentAt)
        socket->disconnectFromHost(); // once everything is written
}

} // namespace tavelo
