// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

namespace tavelo {

/// Where the services are.
struct ServiceHosts
{
    // Scheme, host and, if any, port; no path.
    QString archive = QStringLiteral("https://archive.org");
    QString apibay = QStringLiteral("https://apibay.org");
    QString yts = QStringLiteral("https://yts.gg");
    /// Announce addresses (BEP 15) that every magnet link of ours names. Never contacted by us.
    QStringList trackers{QStringLiteral("udp://tracker.opentrackr.org:1337/announce"),
                         QStringLiteral("udp://open.stealth.si:80/announce"),
                         QStringLiteral("udp://tracker.torrent.eu.org:451/announce")};
    /// Authorities, in PEM, that are trusted besides the system's: of services that have no
    /// certificate of the public ones.
    QByteArray certificates = {};

    static const ServiceHosts &current();
    /// Puts other services in place of the public ones. Once, before anything else runs.
    static void replace(const ServiceHosts &hosts);
};

} // namespace tavelo
