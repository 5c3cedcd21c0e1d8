// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/DownloadRecord.h"

#include "platform/http/WebAddress.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

namespace tavelo {

namespace {

constexpr QLatin1String recordsKey("downloads");
constexpr QLatin1String foldersKey("folders");
constexpr QLatin1String idKey("id");
constexpr QLatin1String titleKey("title");
constexpr QLatin1String itemKey("item");
constexpr QLatin1String urlKey("url");
constexpr QLatin1String destinationKey("destination");
constexpr QLatin1String receivedKey("received");
constexpr QLatin1String expectedKey("expected");
constexpr QLatin1String md5Key("md5");
constexpr QLatin1String sha1Key("sha1");
constexpr QLatin1String partKey("part");
constexpr QLatin1String stateKey("state");
constexpr QLatin1String messageKey("message");
constexpr QLatin1String startedOverKey("startedOver");

constexpr QLatin1String pausedText("paused");
constexpr QLatin1String heldText("held");
constexpr QLatin1String finishedText("finished");
constexpr QLatin1String checkedText("checked");
constexpr QLatin1String failedText("failed");
constexpr QLatin1String underwayText("underway");

QLatin1String hashKey(const Checksum &checksum)
{
    return checksum.algorithm == QCryptographicHash::Md5 ? md5Key : sha1Key;
}

void putState(QJsonObject &object, const DownloadTask &task)
{
    QLatin1String text = underwayText;
    if (task.is<DownloadTask::Paused>()) {
        text = pausedText;
    } else if (const auto *held = std::get_if<DownloadTask::Held>(&task.state)) {
        text = heldText;
        object.insert(messageKey, held->reason);
    } else if (const auto *finished = std::get_if<DownloadTask::Finished>(&task.state)) {
        text = finished->checked ? checkedText : finishedText;
    } else if (const auto *failed = std::get_if<DownloadTask::Failed>(&task.state)) {
        text = failedText;
        object.insert(messageKey, failed->message);
    }
    object.insert(stateKey, text);
}

DownloadTask::State stateOf(const QJsonObject &object)
{
    const QString text = object.value(stateKey).toString();
    const QString message = object.value(messageKey).toString();
    if (text == pausedText)
        return DownloadTask::Paused{};
    if (text == heldText)
        return DownloadTask::Held{message};
    if (text == finishedText || text == checkedText)
        return DownloadTask::Finished{text == checkedText};
    if (text == failedText)
        return DownloadTask::Failed{message};
    return DownloadTask::Waiting{};
}

QJsonObject objectOf(const DownloadRecord &record)
{
    const DownloadTask &task = record.task;
    QJsonObject object{{idKey, task.id.toString(QUuid::WithoutBraces)},
                       {titleKey, task.title},
                       {itemKey, task.item},
                       {urlKey, task.url.toString(QUrl::FullyEncoded)},
                       {destinationKey, task.dest},
                       {receivedKey, task.received},
                       {expectedKey, task.expected},
                       {startedOverKey, task.startedOver},
                       {partKey, record.part.toJson()}};
    if (record.checksum.isKnown())
        object.insert(hashKey(record.checksum),
                      QString::fromLatin1(record.checksum.digest.toHex()));
    putState(object, task);
    return object;
}

Checksum checksumOf(const QJsonObject &object)
{
    const auto of = [&](QCryptographicHash::Algorithm algorithm, QLatin1String key) {
        return Checksum::ofHex(algorithm, object.value(key).toString().toLatin1());
    };
    const Checksum md5 = of(QCryptographicHash::Md5, md5Key);
    return md5.isKnown() ? md5 : of(QCryptographicHash::Sha1, sha1Key);
}

std::optional<DownloadRecord> recordOf(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    DownloadRecord record;
    DownloadTask &task = record.task;
    task.id = QUuid::fromString(object.value(idKey).toString());
    task.title = object.value(titleKey).toString();
    task.item = object.value(itemKey).toString();
    task.url = QUrl(object.value(urlKey).toString(), QUrl::StrictMode);
    task.dest = object.value(destinationKey).toString();
    task.received = Json::integer(object.value(receivedKey)).value_or(0);
    task.expected = Json::integer(object.value(expectedKey)).value_or(0);
    task.startedOver = object.value(startedOverKey).toBool();
    task.state = stateOf(object);
    record.checksum = checksumOf(object);
    const auto part = PartState::fromJson(object.value(partKey).toObject());
    if (task.id.isNull() || !isWebAddress(task.url) || !QDir::isAbsolutePath(task.dest) || !part)
        return {};
    record.part = *part;
    return record;
}

} // namespace

QByteArray DownloadList::toJson() const
{
    QJsonArray array;
    for (const DownloadRecord &record : records)
        array.append(objectOf(record));
    return QJsonDocument(
               QJsonObject{{recordsKey, array}, {foldersKey, QJsonArray::fromStringList(folders)}})
        .toJson(QJsonDocument::Compact);
}

std::optional<DownloadList> DownloadList::fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    if (!object.value(recordsKey).isArray())
        return {};
    DownloadList list;
    const QJsonArray array = object.value(recordsKey).toArray();
    for (const QJsonValue value : array) {
        if (const auto record = recordOf(value))
            list.records.append(*record);
        else
            ++list.damaged;
    }
    const QJsonArray folders = object.value(foldersKey).toArray();
    for (const QJsonValue folder : folders)
        list.folders.append(folder.toString());
    return list;
}

} // namespace tavelo
