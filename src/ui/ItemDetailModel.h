// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ArchiveDetails.h"

#include <QCoroTask>
#include <QObject>
#include <QtQmlIntegration>

#include <optional>
#include <stop_token>

namespace tavelo {

/// What the service says about the files of one item. Asks as soon as it is given the item; ends
/// with its screen, and the request with it.
class ItemDetailModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariant item READ item WRITE setItem NOTIFY itemChanged)
    Q_PROPERTY(QVariant details READ details NOTIFY detailsChanged)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)

public:
    explicit ItemDetailModel(QObject *parent = nullptr);
    ~ItemDetailModel() override;

    QVariant item() const { return m_item; }
    void setItem(const QVariant &item);       // a MediaItem; anything else is none
    QVariant details() const;                 // an ArchiveDetails; null until loaded
    QString error() const { return m_error; } // for the screen; empty: none

Q_SIGNALS:
    void itemChanged();
    void detailsChanged();
    void errorChanged();

private:
    QCoro::Task<> load(QString id);
    void publish(std::optional<ArchiveDetails> details, const QString &error);

    QVariant m_item;
    std::optional<ArchiveDetails> m_details;
    QString m_error;
    std::stop_source m_stop;
};

} // namespace tavelo
