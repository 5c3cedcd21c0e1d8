// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "transfers/PartState.h"

#include <QFile>

namespace tavelo {

/// A small file in which a running transfer notes what it has written, for the case that the
/// process dies: what was written is in the system's memory then, and reaches the disk all the
/// same. After the system itself has gone down it says nothing, for it is never synchronised. Not
/// thread-safe.
class PartMarks
{
public:
    /// Where those of the download `name` lie.
    static QString pathOf(const QString &name);
    /// Absent when there are none, or they are of another run of the system.
    static std::optional<PartState> read(const QString &path);
    /// Removes those of all downloads but these.
    static void sweep(const QStringList &spared);

    explicit PartMarks(const QString &path);

    /// A failure only costs what has to be fetched again.
    void write(const PartState &state);

private:
    QFile m_file;
    qsizetype m_written = 0; // bytes, at most
};

} // namespace tavelo
