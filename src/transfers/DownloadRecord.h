// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Checksum.h"
#include "platform/Json.h"
#include "transfers/DownloadTask.h"
#include "transfers/PartState.h"

namespace tavelo {

/// What is kept of a download beyond the end of the program.
struct DownloadRecord
{
    DownloadTask task = {};
    Checksum checksum = {};
    PartState part = {};

    bool operator==(const DownloadRecord &) const = default;
};

/// All that is kept.
struct DownloadList
{
    QList<DownloadRecord> records = {};
    QStringList folders = {}; // in which parts may lie, also such as nobody knows of any more
    qsizetype damaged = 0;    // records that could not be read

    QByteArray toJson() const;
    /// What was underway comes back as waiting. Absent for what is no such list at all.
    static std::optional<DownloadList> fromJson(const QByteArray &json);
};

} // namespace tavelo
