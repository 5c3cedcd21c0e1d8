// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"
#include "platform/Json.h"

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One film of the watch history.
struct HistoryEntry
{
    Q_GADGET
    Q_PROPERTY(QString key MEMBER key CONSTANT)
    Q_PROPERTY(QString title READ shownTitle CONSTANT)
    Q_PROPERTY(bool isLocal MEMBER isLocal CONSTANT)
    Q_PROPERTY(QUrl thumbnailURL READ thumbnailURL CONSTANT)
    Q_PROPERTY(double position MEMBER position CONSTANT)
    Q_PROPERTY(double duration MEMBER duration CONSTANT)
    Q_PROPERTY(double progress READ progress CONSTANT)
    Q_PROPERTY(QDateTime lastPlayed MEMBER lastPlayed CONSTANT)
    Q_PROPERTY(bool isUnderway READ isUnderway CONSTANT)

public:
    QString key;    // what was played; one entry a key
    QString itemID; // the catalogue's identifier; "local" for a file of the downloads folder
    QString title;
    QString source; // a path when local, else an address
    bool isLocal = false;
    std::optional<QString> thumbnail; // address of a picture
    double position = 0;              // seconds, as last reported
    double duration = 0;              // seconds; 0: not known
    QDateTime lastPlayed;             // when it was last recorded, UTC

    /// Neither just begun nor nearly done: worth going on with.
    bool isUnderway() const
    {
        return position > 10 && (duration <= 0 || position < 0.95 * duration);
    }

    QString shownTitle() const { return DisplayText::name(title); } // for the screens
    /// The part of it that was watched, 0 to 1; negative where the duration is not known.
    double progress() const;
    /// `thumbnail` where that is a URL, else an empty one.
    QUrl thumbnailURL() const;

    bool operator==(const HistoryEntry &) const = default;
};

/// The history file's content (RFC 8259): a compact array of objects with the fields' names as
/// keys, dates as seconds since 2001-01-01 UTC, and no "thumbnail" where there is none. Its numbers
/// are finite, as JSON can say no other.
QByteArray toJson(const QList<HistoryEntry> &history);
/// An entry is damaged when it lacks a key, but "thumbnail", or holds what is no value for it.
/// Absent when this is no list, or one of damaged entries only.
std::optional<Json::Entries<HistoryEntry>> historyFromJson(const QByteArray &json);

} // namespace tavelo
