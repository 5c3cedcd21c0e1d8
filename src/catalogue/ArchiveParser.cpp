// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveParser.h"

#include "catalogue/Text.h"
#include "platform/ServiceHosts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>

namespace tavelo::ArchiveParser {

namespace {

std::optional<QString> firstOf(const QJsonObject &object, const char *key)
{
    return first(object.value(QLatin1String(key)));
}

/// Absent unless every element is an object.
std::optional<QJsonArray> objects(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    const bool all =
        value.isArray() && std::ranges::all_of(array, [](QJsonValue v) { return v.isObject(); });
    return all ? std::optional(array) : std::nullopt;
}

/// Empty unless every element is a text.
QStringList texts(const QJsonValue &value)
{
    QStringList list;
    for (const QJsonValue &element : value.toArray()) {
        if (!element.isString())
            return {};
        list.append(element.toString());
    }
    return list;
}

std::optional<MediaItem> searchItem(const QJsonObject &document)
{
    const auto id = firstOf(document, "identifier");
    if (!id)
        return {};
    const QJsonValue subject = document.value(QLatin1String("subject"));
    return MediaItem{
        .id = *id,
        .title = firstOf(document, "title").value_or(*id),
        .year = firstOf(document, "year"),
        .summary = Fmt::stripHTML(firstOf(document, "description")),
        .creator = firstOf(document, "creator"),
        .subjects = subject.isString() ? QStringList{subject.toString()} : texts(subject),
        .downloads = Text::integer(firstOf(document, "downloads").value_or(QString())).value_or(0),
        .licenseURL = firstOf(document, "licenseurl"),
    };
}

QStringList detailSubjects(const QJsonValue &subject)
{
    if (!subject.isString())
        return texts(subject);
    QStringList pieces = subject.toString().split(QLatin1Char(';'));
    for (QString &piece : pieces)
        piece = Text::trimmedOfBlanks(piece).toString();
    return pieces;
}

std::optional<QString> detailYear(const QJsonObject &metadata)
{
    if (const auto year = firstOf(metadata, "year"))
        return year;
    const auto date = firstOf(metadata, "date");
    return date ? std::optional(date->left(4)) : std::nullopt;
}

std::optional<ArchiveFile> file(const QJsonObject &object, const QString &itemRoot)
{
    const auto name = firstOf(object, "name");
    if (!name)
        return {};
    QStringList pieces = name->split(QLatin1Char('/'), Qt::SkipEmptyParts);
    std::ranges::transform(pieces, pieces.begin(), Text::pathEncoded);
    const QUrl url(itemRoot + pieces.join(QLatin1Char('/')), QUrl::StrictMode);
    if (!url.isValid())
        return {};
    return ArchiveFile{.name = *name,
                       .format = firstOf(object, "format").value_or(QString()),
                       .size = Text::integer(firstOf(object, "size").value_or(QString())),
                       .url = url};
}

bool isMP4Encode(const ArchiveFile &file)
{
    const QString format = file.format.toLower();
    return format.contains(QLatin1String("h.264")) || format == QLatin1String("mpeg4");
}

void sortByPreference(QList<ArchiveFile> &files)
{
    std::ranges::stable_sort(files, std::ranges::greater(), [](const ArchiveFile &file) {
        return std::pair(isMP4Encode(file), file.size.value_or(0));
    });
}

} // namespace

std::optional<QString> first(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array: {
        const QJsonArray array = value.toArray();
        return array.isEmpty() ? std::nullopt : first(array.first());
    }
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QJsonValue::Double: {
        const QVariant number = value.toVariant();
        return number.typeId() == QMetaType::LongLong
                   ? QString::number(number.toLongLong())
                   : QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    }
    default:
        return {};
    }
}

QList<MediaItem> parseSearch(const QByteArray &body)
{
    const QJsonObject response =
        QJsonDocument::fromJson(body).object().value(QLatin1String("response")).toObject();
    QList<MediaItem> items;
    for (const QJsonValue &document :
         objects(response.value(QLatin1String("docs"))).value_or(QJsonArray())) {
        if (auto item = searchItem(document.toObject()))
            items.append(*std::move(item));
    }
    return items;
}

std::optional<ArchiveDetails> parseDetails(const QByteArray &body, const QString &id)
{
    const QJsonObject root = QJsonDocument::fromJson(body).object();
    const QJsonValue member = root.value(QLatin1String("metadata"));
    if (!member.isObject())
        return {};
    const QJsonObject metadata = member.toObject();

    ArchiveDetails details;
    details.item = MediaItem{
        .id = id,
        .title = firstOf(metadata, "title").value_or(id),
        .year = detailYear(metadata),
        .summary = Fmt::stripHTML(firstOf(metadata, "description")),
        .creator = firstOf(metadata, "creator"),
        .subjects = detailSubjects(metadata.value(QLatin1String("subject"))),
        .downloads = 0,
        .licenseURL = firstOf(metadata, "licenseurl"),
    };
    details.restricted = firstOf(metadata, "access-restricted-item") == QStringLiteral("true");
    const QString itemRoot = ServiceHosts::current().archive + QLatin1String("/download/") +
                             Text::pathEncoded(id) + QLatin1Char('/');
    for (const QJsonValue &entry :
         objects(root.value(QLatin1String("files"))).value_or(QJsonArray())) {
        if (auto one = file(entry.toObject(), itemRoot))
            details.files.append(*std::move(one));
    }
    sortByPreference(details.files);
    return details;
}

} // namespace tavelo::ArchiveParser
