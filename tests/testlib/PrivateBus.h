// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace tavelo {

/// A message bus of the test's own, without the machine's services, which it would start.
class PrivateBus
{
public:
    ~PrivateBus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    bool start()
    {
        QFile configuration(m_folder.filePath("bus.conf"));
        if (!configuration.open(QIODevice::WriteOnly))
            return false;
        configuration.write("<busconfig><type>session</type><listen>" + address().toUtf8() +
                            "</listen><policy context='default'><allow own='*'/>"
                            "<allow send_destination='*'/><allow receive_sender='*'/></policy>"
                            "</busconfig>");
        configuration.close();
        m_daemon.start("dbus-daemon", {"--nofork", "--print-address",
                                       "--config-file=" + configuration.fileName()});
        return m_daemon.waitForReadyRead();
    }

    QString address() const { return "unix:path=" + m_folder.filePath("bus"); }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
};

} // namespace tavelo
