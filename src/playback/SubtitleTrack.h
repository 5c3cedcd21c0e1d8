// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"

#include <QList>
#include <QMetaType>
#include <QUrl>

namespace tavelo {

/// A subtitle file that can be chosen.
struct SubtitleTrack
{
    Q_GADGET
    Q_PROPERTY(QString name READ shownName CONSTANT)
    Q_PROPERTY(QUrl url MEMBER url CONSTANT)

public:
    QString name; // the file's, extension included
    QUrl url;     // a file's or a web address

    QString shownName() const { return DisplayText::name(name); } // for the screens

    bool operator==(const SubtitleTrack &) const = default;
};

/// The SRT and VTT files beside a film whose names begin with its name, in the folder's order; none
/// when the folder cannot be read. For background threads.
QList<SubtitleTrack> siblingSubtitles(const QUrl &film);

} // namespace tavelo
