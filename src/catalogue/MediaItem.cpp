// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/MediaItem.h"

#include "catalogue/Text.h"
#include "platform/DisplayText.h"
#include "platform/http/ServiceHosts.h"

#include <QJsonArray>

#include <algorithm>

namespace tavelo {

namespace {

QUrl itemURL(const char *folder, const QString &id)
{
    const QString root = ServiceHosts::current().archive;
    const QUrl url(root + QLatin1String(folder) + Text::pathEncoded(id), QUrl::StrictMode);
    return url.isValid() ? url : QUrl(root);
}

constexpr qsizetype shownSubjects = 6;

struct OptionalField
{
    const char *key;
    std::optional<QString> MediaItem::*member;
};

constexpr OptionalField optionalFields[] = {{"year", &MediaItem::year},
                                            {"summary", &MediaItem::summary},
                                            {"creator", &MediaItem::creator},
                                            {"licenseURL", &MediaItem::licenseURL}};

} // namespace

QUrl MediaItem::thumbnailURL() const
{
    return itemURL("/services/img/", id);
}

QUrl MediaItem::pageURL() const
{
    return itemURL("/details/", id);
}

QUrl MediaItem::licenseLink() const
{
    const QUrl url(licenseURL.value_or(QString()), QUrl::StrictMode);
    const bool isWeb =
        url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && isWeb && !url.host().isEmpty() ? url : QUrl();
}

QString MediaItem::titleText() const
{
    return DisplayText::name(title);
}

QString MediaItem::yearText() const
{
    return DisplayText::name(year.value_or(QString()));
}

QString MediaItem::summaryText() const
{
    return DisplayText::body(summary.value_or(QString()));
}

QString MediaItem::extractText() const
{
    return DisplayText::extract(summary.value_or(QString()));
}

QString MediaItem::licenseText() const
{
    return DisplayText::name(licenseURL.value_or(QString()));
}

QString MediaItem::subjectsText() const
{
    QStringList shown = subjects.first(std::min<qsizetype>(subjects.size(), shownSubjects));
    std::ranges::transform(shown, shown.begin(), DisplayText::name);
    return shown.join(QStringLiteral(" • "));
}

QString MediaItem::credits() const
{
    QStringList parts{yearText(), DisplayText::name(creator.value_or(QString()))};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" · "));
}

QJsonObject MediaItem::toJson() const
{
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("title"), title},
                       {QStringLiteral("subjects"), QJsonArray::fromStringList(subjects)},
                       {QStringLiteral("downloads"), downloads}};
    for (const OptionalField &field : optionalFields) {
        if (const auto &text = this->*field.member)
            object.insert(QLatin1String(field.key), *text);
    }
    return object;
}

std::optional<MediaItem> MediaItem::fromJson(const QJsonObject &object)
{
    const QJsonValue id = object.value(QLatin1String("id"));
    const QJsonValue title = object.value(QLatin1String("title"));
    const QJsonValue subjects = object.value(QLatin1String("subjects"));
    const QJsonValue downloads = object.value(QLatin1String("downloads"));
    if (!id.isString() || !title.isString() || !subjects.isArray() || !downloads.isDouble())
        return {};
    MediaItem item;
    item.id = id.toString();
    item.title = title.toString();
    item.downloads = downloads.toInteger();
    for (const QJsonValue &subject : subjects.toArray()) {
        if (!subject.isString())
            return {};
        item.subjects.append(subject.toString());
    }
    for (const OptionalField &field : optionalFields) {
        if (const QJsonValue text = object.value(QLatin1String(field.key)); text.isString())
            item.*field.member = text.toString();
    }
    return item;
}

} // namespace tavelo
