// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/TorrentResult.h"
#include "ui/TorrentSort.h"

#include <array>

namespace tavelo {

/// A search result with what it is filtered and sorted by, made once and read often.
struct TorrentRow
{
    TorrentResult result = {};
    QString id = {}; // one torrent's is the same in every answer
    QString quality = {};
    QString format = {};
    /// By TorrentSort::Key. Texts are places in their own order; equal ones share a place.
    std::array<qint64, TorrentSort::keyCount> keys = {};

    // What its cells say; a dash stands for what is not known.
    QString titleText() const;
    QString sizeText() const;
    QString seedsText() const;
    QString peersText() const;
    QString sourceText() const;
    /// Of a catalogue item, the line below its title; empty for others.
    QString licenceText() const;
    /// The whole row in one line, but for the title.
    QString spokenText() const;
};

/// The rows of one answer, in its order.
struct TorrentRows
{
    QList<TorrentRow> rows = {};
    QStringList sources = {}; // every name that any row bears, ascending

    /// Takes tens of milliseconds for ten thousand results: not for the main thread.
    static TorrentRows of(const QList<TorrentResult> &results);
};

} // namespace tavelo
