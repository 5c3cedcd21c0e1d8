// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveParser.h"

#include "catalogue/Text.h"
#include "platform/http/ServiceHosts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <QStringTokenizer>

#include <algorithm>

namespace tavelo::ArchiveParser {

namespace {

constexpr qsizetype mostSubjects = 100;
constexpr qsizetype mostNodes = 4;
constexpr qsizetype mostServers = 16; // that are looked at
constexpr qsizetype mostDirCharacters = 1024;

std::optional<QString> firstOf(const QJsonObject &object, const char *key)
{
    auto text = first(object.value(QLatin1String(key)));
    return text ? std::optional(Text::bounded(*text)) : std::nullopt;
}

/// For what names something: cut short it would name something else. Absent when it is too long.
std::optional<QString> nameOf(const QJsonObject &object, const char *key)
{
    auto text = first(object.value(QLatin1String(key)));
    return text && Text::bounded(*text).size() == text->size() ? text : std::nullopt;
}

std::optional<QString> summaryOf(const QJsonObject &object)
{
    const auto plain = Fmt::stripHTML(first(object.value(QLatin1String("description"))));
    return plain ? std::optional(Text::bounded(*plain)) : std::nullopt;
}

/// Absent unless every element is an object.
std::optional<QJsonArray> objects(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    const bool all =
        value.isArray() && std::ranges::all_of(array, [](QJsonValue v) { return v.isObject(); });
    return all ? std::optional(array) : std::nullopt;
}

/// Of a list the first, and none unless every element is a text.
QStringList subjectsOf(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    if (!std::ranges::all_of(array, [](QJsonValue each) { return each.isString(); }))
        return {};
    QStringList list;
    for (qsizetype i = 0; i < std::min(array.size(), mostSubjects); ++i)
        list.append(Text::bounded(array.at(i).toString()));
    return list;
}

std::optional<MediaItem> searchItem(const QJsonObject &document)
{
    const auto id = nameOf(document, "identifier");
    if (!id)
        return {};
    const QJsonValue subject = document.value(QLatin1String("subject"));
    return MediaItem{
        .id = *id,
        .title = firstOf(document, "title").value_or(*id),
        .year = firstOf(document, "year"),
        .summary = summaryOf(document),
        .creator = firstOf(document, "creator"),
        .subjects = subject.isString() ? QStringList{Text::bounded(subject.toString())}
                                       : subjectsOf(subject),
        .downloads = Text::integer(firstOf(document, "downloads").value_or(QString())).value_or(0),
        .licenseURL = firstOf(document, "licenseurl"),
    };
}

QStringList detailSubjects(const QJsonValue &subject)
{
    if (!subject.isString())
        return subjectsOf(subject);
    const QString text = subject.toString();
    QStringList pieces;
    for (const QStringView piece : QStringTokenizer(text, u';')) {
        if (pieces.size() == mostSubjects)
            break;
        pieces.append(Text::bounded(Text::trimmedOfBlanks(piece).toString()));
    }
    return pieces;
}

std::optional<QString> detailYear(const QJsonObject &metadata)
{
    if (const auto year = firstOf(metadata, "year"))
        return year;
    const auto date = firstOf(metadata, "date");
    return date ? std::optional(date->left(4)) : std::nullopt;
}

/// The list of an item's files holds itself, and can say nothing true of its own bytes.
Checksum checksumOf(const QJsonObject &object, const QString &name)
{
    if (name.endsWith(QLatin1String("_files.xml")))
        return {};
    const auto of = [&](QCryptographicHash::Algorithm algorithm, const char *key) {
        return Checksum::ofHex(algorithm, object.value(QLatin1String(key)).toString().toLatin1());
    };
    const Checksum md5 = of(QCryptographicHash::Md5, "md5");
    return md5.isKnown() ? md5 : of(QCryptographicHash::Sha1, "sha1");
}

/// `itemRoot`: a URL.
std::optional<ArchiveFile> file(const QJsonObject &object, const QString &itemRoot)
{
    const auto name = nameOf(object, "name");
    if (!name)
        return {};
    ArchiveFile file{.name = *name,
                     .format = firstOf(object, "format").value_or(QString()),
                     .size = Text::integer(firstOf(object, "size").value_or(QString())),
                     .checksum = checksumOf(object, *name),
                     .itemRoot = itemRoot};
    // What is percent-encoded makes a URL; to make it of every file takes longer than all the rest.
    const bool addressed = file.name.isValidUtf16() || file.url().isValid();
    return addressed ? std::optional(std::move(file)) : std::nullopt;
}

/// A host's name or number, in front of its port, if any.
bool isHost(const QString &name)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(
        QStringLiteral("(?=[^:]{1,253}(:|$))([a-z0-9]([a-z0-9-]{0,61}[a-z0-9])?\\.)+"
                       "[a-z0-9]([a-z0-9-]{0,61}[a-z0-9])?(:[1-9][0-9]{0,4})?")));
    return form.match(name).hasMatch();
}

/// The hosts that have the item, the preferred one first.
QStringList nodesOf(const QJsonObject &root)
{
    QStringList nodes;
    const auto take = [&](const QJsonValue &value) {
        const QString name = value.toString();
        if (nodes.size() < mostNodes && isHost(name) && !nodes.contains(name))
            nodes.append(name);
    };
    take(root.value(QLatin1String("server")));
    const QJsonArray workable = root.value(QLatin1String("workable_servers")).toArray();
    for (qsizetype i = 0; i < std::min(workable.size(), mostServers); ++i)
        take(workable.at(i));
    return nodes;
}

/// The item's folder on its nodes, encoded, between slashes; absent when it cannot be one.
std::optional<QString> nodePath(const QJsonObject &root)
{
    const QString dir = root.value(QLatin1String("dir")).toString();
    if (!dir.startsWith(QLatin1Char('/')) || dir.size() > mostDirCharacters || !dir.isValidUtf16())
        return {};
    QString path(QLatin1Char('/'));
    for (const QStringView piece : QStringTokenizer(dir, u'/', Qt::SkipEmptyParts)) {
        if (piece == QLatin1String(".") || piece == QLatin1String(".."))
            return {};
        path += Text::pathEncoded(piece.toString()) + QLatin1Char('/');
    }
    return path;
}

QStringList nodeRoots(const QJsonObject &root)
{
    const auto path = nodePath(root);
    if (!path)
        return {};
    const QString scheme =
        ServiceHosts::current().archive.section(QLatin1String("://"), 0, 0) + QLatin1String("://");
    QStringList roots;
    for (const QString &node : nodesOf(root)) {
        if (QUrl(scheme + node, QUrl::StrictMode).isValid())
            roots.append(scheme + node + *path);
    }
    return roots;
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
        .summary = summaryOf(metadata),
        .creator = firstOf(metadata, "creator"),
        .subjects = detailSubjects(metadata.value(QLatin1String("subject"))),
        .downloads = 0,
        .licenseURL = firstOf(metadata, "licenseurl"),
    };
    details.restricted = firstOf(metadata, "access-restricted-item") == QStringLiteral("true");
    const QString itemRoot = ServiceHosts::current().archive + QLatin1String("/download/") +
                             Text::pathEncoded(id) + QLatin1Char('/');
    if (!QUrl(itemRoot, QUrl::StrictMode).isValid())
        return details;
    for (const QJsonValue &entry :
         objects(root.value(QLatin1String("files"))).value_or(QJsonArray())) {
        if (auto one = file(entry.toObject(), itemRoot))
            details.files.append(*std::move(one));
    }
    sortByPreference(details.files);
    details.nodeRoots = nodeRoots(root);
    return details;
}

} // namespace tavelo::ArchiveParser
