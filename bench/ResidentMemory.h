// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

namespace tavelo {

/// MB (10^6 bytes) of a process, shared pages by their share (proc_pid_smaps(5)); 0 when it is
/// gone.
inline double proportionalSetSize(const QString &process = QStringLiteral("self"))
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("Pss:"))
            return line.simplified().split(' ').value(1).toDouble() * 1024 / 1e6;
    }
    return 0;
}

} // namespace tavelo
