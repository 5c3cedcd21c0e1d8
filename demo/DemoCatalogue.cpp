// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoCatalogue.h"

#include "DemoMetainfo.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <functional>

namespace tavelo {

namespace {

QJsonObject metadataOf(const QJsonObject &item)
{
    return item.value(QLatin1String("metadata")).toObject();
}

QString idOf(const QJsonObject &item)
{
    return metadataOf(item).value(QLatin1String("identifier")).toString();
}

QString torrentName(const QString &id)
{
    return id + QLatin1String("_archive.torrent");
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

/// The words in which a text is found: letters and digits, in lower case.
QStringList wordsOf(const QString &text)
{
    static const QRegularExpression between(QStringLiteral("[^\\p{L}\\p{N}]+"));
    return text.toLower().split(between, Qt::SkipEmptyParts);
}

/// One of the clauses `title:(…)`, `description:(…)`, `subject:(…)` must have all its words.
bool matchesText(const QJsonObject &item, const QString &query)
{
    static const QRegularExpression clause(
        QStringLiteral("(title|description|subject):\\(([^)]*)\\)"));
    bool asked = false;
    for (auto clauses = clause.globalMatch(query); clauses.hasNext(); asked = true) {
        const auto match = clauses.next();
        const QStringList words = match.captured(2).split(QStringLiteral(" AND "));
        const QStringList there = wordsOf(flatText(metadataOf(item).value(match.captured(1))));
        if (std::ranges::all_of(
                words, [&](const QString &word) { return there.contains(word.toLower()); }))
            return true;
    }
    return !asked;
}

/// A clause such as `collection:(…)`; true when the query has none for `key`.
bool matchesField(const QJsonValue &value, const QString &key, const QString &query)
{
    const QRegularExpression clause(key + QStringLiteral(":\\(([^)]*)\\)"));
    const auto match = clause.match(query);
    return !match.hasMatch() || value.toString() == match.captured(1) ||
           value.toArray().contains(match.captured(1));
}

bool matches(const QJsonObject &item, const QString &query)
{
    const QJsonObject metadata = metadataOf(item);
    const bool restricted = metadata.contains(QLatin1String("access-restricted-item"));
    const bool hidden = restricted && query.contains(QLatin1String("-access-restricted-item:true"));
    return !hidden && matchesText(item, query) &&
           matchesField(item.value(QLatin1String("collection")), QStringLiteral("collection"),
                        query) &&
           matchesField(metadata.value(QLatin1String("mediatype")), QStringLiteral("mediatype"),
                        query);
}

/// By "downloads desc" and the like; equal items keep their order.
void sortBy(QList<QJsonObject> &items, const QString &sort)
{
    const QString key = sort.section(QLatin1Char(' '), 0, 0);
    const auto number = [&](const QJsonObject &item) {
        return item.value(key).toVariant().toLongLong();
    };
    if (sort.endsWith(QLatin1String(" desc")))
        std::ranges::stable_sort(items, std::ranges::greater(), number);
    else
        std::ranges::stable_sort(items, std::ranges::less(), number);
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

/// The files with what is read off those on this machine: size, time and checksums.
QJsonArray withMeasures(const QList<QJsonObject> &files, const QStringList &paths,
                        FileHashes &hashes)
{
    QJsonArray measured;
    for (qsizetype i = 0; i < files.size(); ++i) {
        QJsonObject file = files[i];
        const QFileInfo info(paths[i]);
        file.insert(QLatin1String("size"), QString::number(info.size()));
        file.insert(QLatin1String("mtime"),
                    QString::number(info.lastModified().toSecsSinceEpoch()));
        const FileHashes::Hashes sums = hashes.of(paths[i]);
        file.insert(QLatin1String("md5"), sums.md5);
        file.insert(QLatin1String("sha1"), sums.sha1);
        measured.append(file);
    }
    return measured;
}

QByteArray described(QJsonObject document, QJsonArray files, const QJsonObject &torrent)
{
    qint64 bytes = 0;
    for (const QJsonValue &file : files)
        bytes += file[QLatin1String("size")].toString().toLongLong();
    files.append(torrent);
    document.insert(QLatin1String("files"), files);
    document.insert(QLatin1String("files_count"), files.size());
    document.insert(QLatin1String("item_size"), bytes);
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

} // namespace

DemoCatalogue::DemoCatalogue(QString filmsFolder)
    : m_filmsFolder(std::move(filmsFolder))
{
    QFile file(QStringLiteral(":/demo/catalogue.json"));
    if (file.open(QIODevice::ReadOnly)) {
        const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        m_items = root.value(QLatin1String("items")).toArray();
        m_lengths = root.value(QLatin1String("lengths")).toObject();
    }
}

QJsonObject DemoCatalogue::search(const QUrlQuery &query) const
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
    sortBy(found, sort);
    QJsonArray documents;
    for (const QJsonObject &item : found.mid(start, rows))
        documents.append(document(item, fields));
    const QJsonObject response{{QStringLiteral("numFound"), found.size()},
                               {QStringLiteral("start"), start},
                               {QStringLiteral("docs"), documents}};
    const QJsonObject header{{QStringLiteral("status"), 0},
                             {QStringLiteral("QTime"), 1},
                             {QStringLiteral("params"), QJsonObject{{QStringLiteral("q"), q}}}};
    return {{QStringLiteral("responseHeader"), header}, {QStringLiteral("response"), response}};
}

std::function<QByteArray()> DemoCatalogue::metadata(const QString &id, const QString &folder,
                                                    const QStringList &hosts) const
{
    const auto found = item(id);
    if (!found)
        return [] { return QByteArray("{}"); };
    QList<QJsonObject> files = filesOf(*found);
    QStringList paths;
    for (QJsonObject &file : files)
        paths.append(pathOf(file.take(QLatin1String("film")).toString()));
    const QJsonObject torrent{{QStringLiteral("name"), torrentName(id)},
                              {QStringLiteral("source"), QStringLiteral("metadata")},
                              {QStringLiteral("format"), QStringLiteral("Archive BitTorrent")},
                              {QStringLiteral("size"), QString::number(torrentOf(*found).size())}};
    QJsonObject metadata = metadataOf(*found);
    metadata.insert(QLatin1String("collection"), found->value(QLatin1String("collection")));
    const QJsonObject document{
        {QStringLiteral("metadata"), metadata},
        {QStringLiteral("d1"), hosts.first()},
        {QStringLiteral("d2"), hosts.last()},
        {QStringLiteral("server"), hosts.first()},
        {QStringLiteral("workable_servers"), QJsonArray::fromStringList(hosts)},
        {QStringLiteral("dir"), folder}};
    return [=, hashes = m_hashes] {
        return described(document, withMeasures(files, paths, *hashes), torrent);
    };
}

QList<QJsonObject> DemoCatalogue::filesOf(const QJsonObject &item) const
{
    QList<QJsonObject> files;
    for (const QJsonValue &value : item.value(QLatin1String("files")).toArray()) {
        QJsonObject file = value.toObject();
        const QJsonValue length = m_lengths.value(file.value(QLatin1String("film")).toString());
        if (length.isString())
            file.insert(QLatin1String("length"), length);
        file.insert(QLatin1String("source"),
                    QLatin1String(files.isEmpty() ? "original" : "derivative"));
        files.append(file);
    }
    return files + thumbnailsOf(item);
}

QList<QJsonObject> DemoCatalogue::thumbnailsOf(const QJsonObject &item) const
{
    QList<QJsonObject> thumbnails;
    const QString film = item[QLatin1String("files")][0][QLatin1String("name")].toString();
    const QString stem = film.section(QLatin1Char('.'), 0, -2);
    const QString picture = item.value(QLatin1String("poster")).toString();
    for (const QJsonValue &second : item.value(QLatin1String("thumbnails")).toArray()) {
        const QString place =
            QStringLiteral("_%1.jpg").arg(second.toInt(), 6, 10, QLatin1Char('0'));
        thumbnails.append(
            {{QStringLiteral("name"), idOf(item) + QLatin1String(".thumbs/") + stem + place},
             {QStringLiteral("format"), QStringLiteral("Thumbnail")},
             {QStringLiteral("source"), QStringLiteral("derivative")},
             {QStringLiteral("original"), film},
             {QStringLiteral("film"), picture + place}});
    }
    return thumbnails;
}

std::optional<QString> DemoCatalogue::filePath(const QString &id, const QString &name) const
{
    for (const QJsonObject &file : filesOf(item(id).value_or(QJsonObject()))) {
        if (file.value(QLatin1String("name")).toString() == name)
            return pathOf(file.value(QLatin1String("film")).toString());
    }
    return {};
}

std::optional<QByteArray> DemoCatalogue::torrent(const QString &id, const QString &name) const
{
    const auto found = item(id);
    return found && name == torrentName(id) ? std::optional(torrentOf(*found)) : std::nullopt;
}

QByteArray DemoCatalogue::torrentOf(const QJsonObject &item) const
{
    DemoMetainfo::Content content{.name = idOf(item), .single = false, .files = {}, .trackers = {}};
    for (const QJsonValue &file : item.value(QLatin1String("files")).toArray())
        content.files.append({file[QLatin1String("name")].toString(),
                              QFileInfo(pathOf(file[QLatin1String("film")].toString())).size()});
    return DemoMetainfo::of(content).file;
}

std::optional<QString> DemoCatalogue::posterPath(const QString &id) const
{
    const auto found = item(id);
    if (!found)
        return {};
    return pathOf(found->value(QLatin1String("poster")).toString() + QLatin1String(".jpg"));
}

std::optional<QString> DemoCatalogue::title(const QString &id) const
{
    const auto found = item(id);
    if (!found)
        return {};
    const QJsonValue title = metadataOf(*found).value(QLatin1String("title"));
    return title.isArray() ? title[0].toString() : title.toString();
}

std::optional<QJsonObject> DemoCatalogue::item(const QString &id) const
{
    for (const QJsonValue &value : m_items) {
        const QJsonObject one = value.toObject();
        if (idOf(one) == id)
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
