// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoCatalogue.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>

namespace tavelo {

namespace {

QJsonObject metadataOf(const QJsonObject &item)
{
    return item.value(QLatin1String("metadata")).toObject();
}

/// A field as one lower-case text, whatever its type.
QString flatText(const QJsonValue &value)
{
    if (!value.isArray())
        return value.toVariant().toString().toLower();
    QString text;
    for (const QJsonValue &one : value.toArray())
        text += flatText(one) + QLatin1Char(' ');
    return text;
}

/// By decoded names: the brackets in "fl[]" travel encoded.
QStringList valuesOf(const QUrlQuery &query, const char *name)
{
    QStringList values;
    for (const auto &[key, value] : query.queryItems(QUrl::FullyDecoded)) {
        if (key == QLatin1String(name))
            values.append(value);
    }
    return values;
}

bool hasAllWords(const QString &text, const QStringList &words)
{
    return std::ranges::all_of(words, [&](const QString &word) { return text.contains(word); });
}

/// The words in `title:(…)`; all of them must stand in one of three fields.
bool matchesText(const QJsonObject &item, const QString &query)
{
    static const QRegularExpression clause(QStringLiteral("title:\\(([^)]*)\\)"));
    const auto match = clause.match(query);
    if (!match.hasMatch())
        return true;
    const QStringList words = match.captured(1).toLower().split(QStringLiteral(" and "));
    const QJsonObject metadata = metadataOf(item);
    return std::ranges::any_of(std::array{"title", "description", "subject"}, [&](const char *key) {
        return hasAllWords(flatText(metadata.value(QLatin1String(key))), words);
    });
}

bool matchesCollection(const QJsonObject &item, const QString &query)
{
    static const QRegularExpression clause(QStringLiteral("collection:\\(([^)]*)\\)"));
    const auto match = clause.match(query);
    return !match.hasMatch() ||
           item.value(QLatin1String("collection")).toArray().contains(match.captured(1));
}

bool matches(const QJsonObject &item, const QString &query)
{
    const bool restricted = metadataOf(item).contains(QLatin1String("access-restricted-item"));
    const bool hidden = restricted && query.contains(QLatin1String("-access-restricted-item:true"));
    return !hidden && matchesText(item, query) && matchesCollection(item, query);
}

QJsonObject document(const QJsonObject &item, const QStringList &fields)
{
    QJsonObject found = metadataOf(item);
    found.insert(QLatin1String("downloads"), item.value(QLatin1String("downloads")));
    for (const QString &key : found.keys()) {
        if (!fields.contains(key))
            found.remove(key);
    }
    return found;
}

} // namespace

DemoCatalogue::DemoCatalogue(QString filmsFolder)
    : m_filmsFolder(std::move(filmsFolder))
{
    QFile file(QStringLiteral(":/demo/catalogue.json"));
    if (file.open(QIODevice::ReadOnly))
        m_items = QJsonDocument::fromJson(file.readAll())
                      .object()
                      .value(QLatin1String("items"))
                      .toArray();
}

QByteArray DemoCatalogue::search(const QUrlQuery &query) const
{
    const QString q = valuesOf(query, "q").value(0);
    const QString sort = valuesOf(query, "sort[]").value(0);
    const QStringList fields = valuesOf(query, "fl[]");
    const int rows = valuesOf(query, "rows").value(0).toInt();
    const int start = (std::max(valuesOf(query, "page").value(0).toInt(), 1) - 1) * rows;

    QList<QJsonObject> found;
    for (const QJsonValue &item : m_items) {
        if (matches(item.toObject(), q))
            found.append(item.toObject());
    }
    const QString key = sort.section(QLatin1Char(' '), 0, 0);
    std::ranges::stable_sort(found, std::ranges::greater(),
                             [&](const QJsonObject &item) { return item.value(key).toInteger(); });
    QJsonArray documents;
    for (const QJsonObject &item : found.mid(start, rows))
        documents.append(document(item, fields));
    const QJsonObject response{{QStringLiteral("numFound"), found.size()},
                               {QStringLiteral("start"), start},
                               {QStringLiteral("docs"), documents}};
    return QJsonDocument(QJsonObject{{QStringLiteral("response"), response}})
        .toJson(QJsonDocument::Compact);
}

QByteArray DemoCatalogue::metadata(const QString &id) const
{
    const auto found = item(id);
    if (!found)
        return "{}";
    QJsonArray files;
    for (const QJsonValue &value : found->value(QLatin1String("files")).toArray()) {
        QJsonObject file = value.toObject();
        const QString film = file.take(QLatin1String("film")).toString();
        file.insert(QLatin1String("source"), QStringLiteral("derivative"));
        file.insert(QLatin1String("size"), QString::number(QFileInfo(pathOf(film)).size()));
        files.append(file);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("metadata"), metadataOf(*found)},
                                     {QStringLiteral("files"), files},
                                     {QStringLiteral("files_count"), files.size()}})
        .toJson(QJsonDocument::Compact);
}

std::optional<QString> DemoCatalogue::filePath(const QString &id, const QString &name) const
{
    const QJsonObject found = item(id).value_or(QJsonObject());
    for (const QJsonValue &file : found.value(QLatin1String("files")).toArray()) {
        if (file[QLatin1String("name")].toString() == name)
            return pathOf(file[QLatin1String("film")].toString());
    }
    return {};
}

std::optional<QString> DemoCatalogue::posterPath(const QString &id) const
{
    const auto found = item(id);
    if (!found)
        return {};
    return pathOf(found->value(QLatin1String("poster")).toString() + QLatin1String(".jpg"));
}

std::optional<QJsonObject> DemoCatalogue::item(const QString &id) const
{
    for (const QJsonValue &value : m_items) {
        const QJsonObject one = value.toObject();
        if (metadataOf(one).value(QLatin1String("identifier")).toString() == id)
            return one;
    }
    return {};
}

QString DemoCatalogue::pathOf(const QString &film) const
{
    const bool isText =
        film.endsWith(QLatin1String(".srt")) || film.endsWith(QLatin1String(".vtt"));
    return (isText ? QStringLiteral(":/demo/subtitles/") : m_filmsFolder + QLatin1Char('/')) + film;
}

} // namespace tavelo
