// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo {

/// Where the services are: scheme, host and, if any, port of each; no path.
struct ServiceHosts
{
    QString archive = QStringLiteral("https://archive.org");

    static const ServiceHosts &current();
    /// Puts other services in place of the public ones. Once, before anything else runs.
    static void replace(const ServiceHosts &hosts);
};

} // namespace tavelo
