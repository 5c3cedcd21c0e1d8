// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ProviderKind.h"
#include "platform/Json.h"

#include <QList>
#include <QMetaType>
#include <QUuid>

namespace tavelo {

/// One entry of the user's list of search providers.
struct ProviderConfig
{
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(bool enabled MEMBER enabled CONSTANT)

public:
    QUuid id = {};     // never changes
    QString name = {}; // shown, and the source that this provider's results name
    ProviderKind kind = ProviderKind::Orvella;
    QString baseURL = {}; // as typed; for Torznab the complete address of the endpoint
    QString apiKey = {};  // empty: none; only Torznab sends it
    bool enabled = true;

    /// The entry that a user adds: as typed, enabled, under a new id.
    static ProviderConfig create(const QString &name, ProviderKind kind, const QString &baseURL,
                                 const QString &apiKey = {});
    /// Whether an entry may be added: it has a name, and its address is a URL with a host.
    static bool accepts(const QString &name, const QString &baseURL);

    bool operator==(const ProviderConfig &) const = default;
};

/// A list of providers as JSON (RFC 8259): an array of objects with exactly the six fields' names
/// as keys, ids in upper case.
QByteArray toJson(const QList<ProviderConfig> &providers);
/// An entry is damaged when it lacks a key or holds what is no value for it. Absent when this is no
/// list, or one of damaged entries only.
std::optional<Json::Entries<ProviderConfig>> providersFromJson(const QByteArray &json);

} // namespace tavelo
