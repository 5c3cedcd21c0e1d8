// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/ResponseCache.h"

#include <QBuffer>

#include <memory>

namespace tavelo {

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
    return response ? response->metaData : m_disk.metaData(url);
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
