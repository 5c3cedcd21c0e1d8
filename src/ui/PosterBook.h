// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QUrl>

namespace tavelo {

/// What is known of pictures that did not come, for as long as the program runs. Main thread only.
class PosterBook
{
public:
    static PosterBook &shared();

    /// How often the address has been asked for again.
    int attempt(const QUrl &url) const { return m_entries.value(url.toEncoded()).attempt; }
    /// The attempt that comes after `failed`: where another poster has begun one, that.
    int attemptAfter(const QUrl &url, int failed);

    /// There is no picture to be had, however often it is asked for.
    bool hasNone(const QUrl &url) const { return m_entries.value(url.toEncoded()).none; }
    void setNone(const QUrl &url) { m_entries[url.toEncoded()].none = true; }

private:
    struct Entry
    {
        int attempt = 0;
        bool none = false;
    };

    QHash<QByteArray, Entry> m_entries;
};

} // namespace tavelo
