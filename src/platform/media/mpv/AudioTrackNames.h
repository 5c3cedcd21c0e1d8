// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

namespace tavelo {

/// What a file says of one of its audio tracks.
struct AudioTrackInfo
{
    QString title;    // empty: none
    QString language; // ISO 639 code or BCP 47 tag; empty or "und": unknown
    int channels = 0; // 0: unknown
};

/// Menu names for the tracks of one item, in their order: the title, else the language in English,
/// else "Track n". Where two would read the same, the channel layout is added, and where that does
/// not tell them apart either, the track's number.
QList<QString> audioTrackNames(const QList<AudioTrackInfo> &tracks);

} // namespace tavelo
