// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QTimer>

namespace tavelo {

namespace {

using namespace std::chrono_literals;

constexpr int maxMessageBytes = 1024 * 1024;
constexpr auto patience = 5s; // of a second start with the first, which may be starting itself
constexpr auto stallLimit = 5s;
constexpr int connectWait = 200; // milliseconds
constexpr int lockWait = 50;     // milliseconds
const QByteArray answer("taken\n");
const QString addressesKey = QStringLiteral("addresses");
const QString tokenKey = QStringLiteral("activationToken");

QString pathIn(const QString &folder, const QString &configuration)
{
    if (folder.isEmpty())
        return {};
    const QByteArray digest = QCryptographicHash::hash(QDir::cleanPath(configuration).toUtf8(),
                                                       QCryptographicHash::Sha256);
    return folder + QLatin1String("/tavelo-") + QString::fromLatin1(digest.toHex().first(16));
}

// One line of JSON, which holds no line break of its own.
QByteArray encoded(const SingleInstance::Call &call)
{
    const QJsonObject object{{addressesKey, QJsonArray::fromStringList(call.addresses)},
                             {tokenKey, call.activationToken}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<SingleInstance::Call> decoded(const QByteArray &line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    const QJsonValue addresses = document.object().value(addressesKey);
    if (!addresses.isArray())
        return std::nullopt;
    SingleInstance::Call call;
    const QJsonArray list = addresses.toArray();
    for (const QJsonValue address : list)
        call.addresses.append(address.toString());
    call.activationToken = document.object().value(tokenKey).toString();
    return call;
}

} // namespace

SingleInstance::SingleInstance(const QString &folder, const QString &configuration, QObject *parent)
    : QObject(parent)
    , m_socketPath(pathIn(folder, configuration))
    , m_lock(m_socketPath + QLatin1String(".lock"))
{
    m_lock.setStaleLockTime(0); // it is held for as long as the program runs
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection())
            receive(socket);
    });
}

SingleInstance::Role SingleInstance::claim(const Call &call)
{
    if (m_socketPath.isEmpty())
        return Role::First;
    const QByteArray message = encoded(call);
    const QDeadlineTimer deadline(patience);
    do {
        if (m_lock.tryLock(lockWait)) {
            listen();
            return Role::First;
        }
        if (m_lock.error() != QLockFile::LockFailedError)
            return Role::First; // no lock can be had here
        if (handOver(message))
            return Role::Second;
    } while (!deadline.hasExpired());
    return Role::Silent;
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(m_socketPath); // of one that died
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server.listen(m_socketPath))
        qWarning("Other starts cannot reach this one: %s", qUtf8Printable(m_server.errorString()));
}

void SingleInstance::receive(QLocalSocket *socket)
{
    socket->setReadBufferSize(maxMessageBytes);
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QTimer::singleShot(stallLimit, socket, [socket] { socket->abort(); });
    const auto read = [this, socket] {
        if (!socket->canReadLine()) {
            if (socket->bytesAvailable() >= maxMessageBytes)
                socket->abort();
            return;
        }
        const auto call = decoded(socket->readLine());
        if (!call)
            return socket->abort();
        socket->write(answer);
        socket->disconnectFromServer();
        Q_EMIT called(*call);
    };
    connect(socket, &QLocalSocket::readyRead, this, read);
    read();
}

bool SingleInstance::handOver(const QByteArray &message) const
{
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    if (!socket.waitForConnected(connectWait))
        return false;
    socket.write(message);
    const QDeadlineTimer deadline(patience);
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return false;
    }
    return socket.readLine() == answer;
}

} // namespace tavelo
