// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QMetaType>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One entry of the catalogue: a film, an episode, a newsreel.
struct MediaItem
{
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString title READ titleText CONSTANT)
    Q_PROPERTY(QString year READ yearText CONSTANT)
    Q_PROPERTY(QString summary READ summaryText CONSTANT)
    Q_PROPERTY(QString extract READ extractText CONSTANT)
    Q_PROPERTY(QString credits READ credits CONSTANT)
    Q_PROPERTY(QString subjects READ subjectsText CONSTANT)
    Q_PROPERTY(qint64 downloads MEMBER downloads CONSTANT)
    Q_PROPERTY(QString license READ licenseText CONSTANT)
    Q_PROPERTY(QUrl licenseLink READ licenseLink CONSTANT)
    Q_PROPERTY(QUrl thumbnailURL READ thumbnailURL CONSTANT)
    Q_PROPERTY(QUrl pageURL READ pageURL CONSTANT)

public:
    QString id; // the service's identifier
    QString title;
    std::optional<QString> year; // as delivered, any text
    std::optional<QString> summary;
    std::optional<QString> creator;
    QStringList subjects;
    qint64 downloads = 0;
    std::optional<QString> licenseURL; // as delivered, any text

    /// Never invalid: the service's bare address where the identifier makes no URL.
    QUrl thumbnailURL() const;
    QUrl pageURL() const;
    /// `licenseURL` where that is a web address, else an empty URL.
    QUrl licenseLink() const;

    // For the screens, bounded: absent reads as the empty text.
    QString titleText() const;
    QString yearText() const;
    QString summaryText() const;
    QString extractText() const; // of the summary
    QString licenseText() const;
    /// The first six, with dots between them.
    QString subjectsText() const;
    /// "1948 · Halloran Pictures": of the two what there is.
    QString credits() const;

    QJsonObject toJson() const;
    /// Absent when "id", "title", "subjects" or "downloads" is missing or of another type.
    static std::optional<MediaItem> fromJson(const QJsonObject &object);

    bool operator==(const MediaItem &) const = default;
};

} // namespace tavelo
