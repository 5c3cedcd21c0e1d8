// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

class QLocalSocket;

namespace tavelo {

/// Lets one program run for a user and a configuration, and takes to it what others were started
/// with. The one that holds a lock is it; the lock of a program that has died is free. It listens
/// on a socket that only its user can open.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Role {
        First,  // this is the one
        Second, // the first has taken the call over
        Silent, // there is a first, and it does not answer
    };

    struct Call
    {
        QStringList addresses;
        QString activationToken; // the desktop's leave to come forward; empty: none
    };

    /// `folder` is where the lock and the socket lie: the user's alone. Empty: there is no such
    /// place, and every program is a first one that nobody calls.
    SingleInstance(const QString &folder, const QString &configuration, QObject *parent = nullptr);

    /// Becomes the first, or hands `call` to it. Waits for an answer, but not for ever.
    Role claim(const Call &call);

Q_SIGNALS:
    /// Another start has handed this over.
    void called(const tavelo::SingleInstance::Call &call);

private:
    void listen();
    void receive(QLocalSocket *socket);
    bool handOver(const QByteArray &message) const;

    QString m_socketPath;
    QLockFile m_lock;
    QLocalServer m_server;
};

} // namespace tavelo
