// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/ResponseCache.h"

#include <QBuffer>
#include <QDateTime>

#include <algorithm>
#include <memory>

namespace tavelo {

namespace {

const QByteArray cacheControl = "cache-control";

bool isFresh(const QNetworkCacheMetaData &metaData)
{
    const QDateTime expires = metaData.expirationDate();
    return expires.isValid() && expires > QDateTime::currentDateTimeUtc();
}

bool hasValidator(const QNetworkCacheMetaData &metaData)
{
    return std::ranges::any_of(metaData.rawHeaders(), [](const auto &header) {
        const QByteArray name = header.first.toLower();
        return name == "etag" || name == "last-modified";
    });
}

// So that the network library asks the server, and takes a 5xx for an answer: by itself it would
// show the old response in its place.
QNetworkCacheMetaData toBeRevalidated(QNetworkCacheMetaData metaData)
{
    QNetworkCacheMetaData::RawHeaderList headers = metaData.rawHeaders();
    headers.removeIf([](const auto &header) { return header.first.toLower() == cacheControl; });
    headers.append({cacheControl, "must-revalidate"});
    metaData.setRawHeaders(headers);
    return metaData;
}

} // namespace

ResponseCache::ResponseCache(QObject *parent)
    : QAbstractNetworkCache(parent)
    , m_disk(this)
    , m_memory(memoryBytes)
{
    m_disk.setMaximumCacheSize(diskBytes);
}

void ResponseCache::setFolder(const QString &folder)
{
    m_memory.clear();
    m_disk.setCacheDirectory(folder);
}

QNetworkCacheMetaData ResponseCache::metaData(const QUrl &url)
{
    const Response *response = m_memory.object(url);
    const QNetworkCacheMetaData found = response ? response->metaData : m_disk.metaData(url);
    return !found.isValid() || isFresh(found) ? found : toBeRevalidated(found);
}

void ResponseCache::updateMetaData(const QNetworkCacheMetaData &metaData)
{
    m_memory.remove(metaData.url());
    m_disk.updateMetaData(metaData);
}

QIODevice *ResponseCache::data(const QUrl &url)
{
    const Response *response = m_memory.object(url);
    QByteArray body = response ? response->body : QByteArray();
    if (!response) {
        const QNetworkCacheMetaData metaData = m_disk.metaData(url);
        const std::unique_ptr<QIODevice> file(m_disk.data(url));
        if (!file)
            return nullptr;
        body = file->readAll();
        m_memory.insert(url, new Response{metaData, body}, body.size());
    }
    auto *device = new QBuffer; // the caller's
    device->setData(body);
    device->open(QIODevice::ReadOnly);
    return device;
}

bool ResponseCache::remove(const QUrl &url)
{
    m_memory.remove(url);
    return m_disk.remove(url);
}

qint64 ResponseCache::cacheSize() const
{
    return m_disk.cacheSize();
}

QIODevice *ResponseCache::prepare(const QNetworkCacheMetaData &metaData)
{
    m_memory.remove(metaData.url());
    if (!isFresh(metaData) && !hasValidator(metaData)) {
        m_disk.remove(metaData.url());
        return nullptr; // it could never be used
    }
    return m_disk.prepare(metaData);
}

void ResponseCache::insert(QIODevice *device)
{
    m_disk.insert(device);
}

void ResponseCache::clear()
{
    m_memory.clear();
    m_disk.clear();
}

} // namespace tavelo
