// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "storage/HistoryEntry.h"
#include "transfers/SavedFile.h"

#include <QLocale>
#include <QObject>
#include <QVariant>
#include <QtQmlIntegration>

namespace tavelo {

/// The library as one list of rows, so that a long history costs what is seen of it. A row is a map
/// with an "id" and a "kind": "heading" and "note" have a "title"; "saved" and "entry" also have
/// the "action" that plays the "film" (a SavedFile or a HistoryEntry), and, where there is one, a
/// "size", the "time" watched, and the "date".
class LibraryRows : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE static QVariantList of(const QList<tavelo::SavedFile> &saved,
                                       const QList<tavelo::HistoryEntry> &history);

    /// The day as the locale writes it at length, without the weekday.
    static QString dayText(const QDate &day, const QLocale &locale);
};

} // namespace tavelo
