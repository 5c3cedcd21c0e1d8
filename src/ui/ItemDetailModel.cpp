// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/ItemDetailModel.h"

#include "catalogue/OrvellaProvider.h"

#include <QPointer>

namespace tavelo {

ItemDetailModel::ItemDetailModel(QObject *parent)
    : QObject(parent)
{}

ItemDetailModel::~ItemDetailModel()
{
    m_stop.request_stop();
}

QVariant ItemDetailModel::details() const
{
    return m_details ? QVariant::fromValue(*m_details) : QVariant::fromValue(nullptr);
}

void ItemDetailModel::setItem(const QVariant &item)
{
    m_stop.request_stop();
    m_stop = {};
    m_item = item;
    Q_EMIT itemChanged();
    if (item.canConvert<MediaItem>())
        load(item.value<MediaItem>().id);
    else
        publish({}, {});
}

QCoro::Task<> ItemDetailModel::load(QString id)
{
    const QPointer<ItemDetailModel> self(this);
    const std::stop_token stop = m_stop.get_token();
    publish({}, {});
    const Result<ArchiveDetails> details = co_await OrvellaProvider::details(id, stop);
    if (!self || stop.stop_requested())
        co_return;
    if (details)
        publish(*details, {});
    else
        publish({}, DisplayText::message(details.error().text));
}

void ItemDetailModel::publish(std::optional<ArchiveDetails> details, const QString &error)
{
    m_details = std::move(details);
    m_error = error;
    Q_EMIT detailsChanged();
    Q_EMIT errorChanged();
}

} // namespace tavelo
