// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>

namespace tavelo {

struct TorrentRow;

/// Which search results are shown.
struct TorrentFilter
{
    QString resolution = any(); // a row's quality, or any
    QString format = any();
    int maxSizeGB = 0; // in units of 2^30 bytes; 0: no limit
    QSet<QString> hiddenSources = {};

    static QString any() { return QStringLiteral("Any"); }

    /// A row without a size passes every limit; one whose sources are not all hidden stays.
    bool accepts(const TorrentRow &row) const;
};

} // namespace tavelo
