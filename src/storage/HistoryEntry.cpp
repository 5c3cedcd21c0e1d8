// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/HistoryEntry.h"

#include "catalogue/Text.h"

#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace tavelo {

namespace {

constexpr QLatin1String isLocalKey("isLocal");
constexpr QLatin1String thumbnailKey("thumbnail");
constexpr QLatin1String lastPlayedKey("lastPlayed");

template <typename T>
struct Field
{
    QLatin1String key;
    T HistoryEntry::*member;
};

constexpr Field<QString> textFields[] = {{QLatin1String("key"), &HistoryEntry::key},
                                         {QLatin1String("itemID"), &HistoryEntry::itemID},
                                         {QLatin1String("title"), &HistoryEntry::title},
                                         {QLatin1String("source"), &HistoryEntry::source}};
constexpr Field<double> numberFields[] = {{QLatin1String("position"), &HistoryEntry::position},
                                          {QLatin1String("duration"), &HistoryEntry::duration}};

constexpr qint64 referenceMs = 978'307'200'000; // 2001-01-01 since 1970-01-01
constexpr double maxMs = 8.64e15;               // 100 million days: more than any calendar needs

double secondsOf(const QDateTime &date)
{
    return double(date.toMSecsSinceEpoch() - referenceMs) / 1000;
}

QDateTime dateOf(double seconds)
{
    const double ms = std::clamp(std::round(seconds * 1000), -maxMs, maxMs);
    return QDateTime::fromMSecsSinceEpoch(qint64(ms) + referenceMs, Qt::UTC);
}

QJsonObject objectOf(const HistoryEntry &entry)
{
    QJsonObject object{{isLocalKey, entry.isLocal}, {lastPlayedKey, secondsOf(entry.lastPlayed)}};
    for (const auto &field : textFields)
        object.insert(field.key, entry.*field.member);
    for (const auto &field : numberFields)
        object.insert(field.key, entry.*field.member);
    if (entry.thumbnail)
        object.insert(thumbnailKey, *entry.thumbnail);
    return object;
}

bool readThumbnail(const QJsonValue &value, HistoryEntry &entry)
{
    if (value.isString())
        entry.thumbnail = value.toString();
    return value.isString() || value.isNull() || value.isUndefined();
}

std::optional<HistoryEntry> entryFrom(const QJsonObject &object)
{
    HistoryEntry entry;
    for (const auto &field : textFields) {
        const QJsonValue value = object.value(field.key);
        if (!value.isString())
            return {};
        entry.*field.member = value.toString();
    }
    for (const auto &field : numberFields) {
        const QJsonValue value = object.value(field.key);
        if (!value.isDouble())
            return {};
        entry.*field.member = value.toDouble();
    }
    const QJsonValue isLocal = object.value(isLocalKey);
    const QJsonValue lastPlayed = object.value(lastPlayedKey);
    if (!isLocal.isBool() || !lastPlayed.isDouble() ||
        !readThumbnail(object.value(thumbnailKey), entry))
        return {};
    entry.isLocal = isLocal.toBool();
    entry.lastPlayed = dateOf(lastPlayed.toDouble());
    return entry;
}

} // namespace

double HistoryEntry::progress() const
{
    return duration > 0 ? std::clamp(position / duration, 0.0, 1.0) : -1;
}

QUrl HistoryEntry::thumbnailURL() const
{
    return Text::url(thumbnail.value_or(QString())).value_or(QUrl());
}

QByteArray toJson(const QList<HistoryEntry> &history)
{
    QJsonArray array;
    for (const HistoryEntry &entry : history)
        array.append(objectOf(entry));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<Json::Entries<HistoryEntry>> historyFromJson(const QByteArray &json)
{
    return Json::entriesOf(json, entryFrom);
}

} // namespace tavelo
