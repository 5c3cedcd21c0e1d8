// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One film over HTTP on 127.0.0.1, with faults that are exact to the byte. One connection a
/// request. Everything may be changed between two requests.
class FilmServer : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QByteArray path;
        QHash<QByteArray, QByteArray> headers; // names in lower case
    };

    explicit FilmServer(QByteArray film);

    QUrl url() const;
    const QList<Request> &requests() const { return m_requests; }
    qsizetype size() const { return m_film.size(); }

    // How requests are answered from now on.
    int status = 0;      // other than 0: this status and no film
    bool ranges = true;  // false: Range is ignored
    bool answers = true; // false: takes requests and stays silent
    QByteArray etag = "\"first\"";
    QByteArray redirectTo;          // path that /film leads to
    std::optional<qint64> dropAt;   // film offset at which the connection is closed
    std::optional<qint64> silentAt; // film offset after which nothing more comes

    /// Refuses connections, or takes them again on the same port.
    void setListening(bool listening);

private:
    void serve(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const Request &request);
    void sendFilm(QTcpSocket *socket, qint64 from, bool partial);

    QByteArray m_film;
    QTcpServer m_server;
    quint16 m_port = 0;
    QList<Request> m_requests;
};

} // namespace tavelo
