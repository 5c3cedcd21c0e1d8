// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ProviderConfig.h"

#include "catalogue/Text.h"

#include <QUrl>

namespace tavelo {

namespace {

constexpr QLatin1String idKey("id");
constexpr QLatin1String nameKey("name");
constexpr QLatin1String kindKey("kind");
constexpr QLatin1String baseURLKey("baseURL");
constexpr QLatin1String apiKeyKey("apiKey");
constexpr QLatin1String enabledKey("enabled");

QString canonical(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

// The 36 characters of RFC 4122, in any letter case; QUuid itself reads more forms.
std::optional<QUuid> uuidFrom(const QString &text)
{
    const QUuid id = QUuid::fromString(text);
    return canonical(id) == text.toUpper() ? std::optional(id) : std::nullopt;
}

QJsonObject objectOf(const ProviderConfig &config)
{
    return {{idKey, canonical(config.id)},    {nameKey, config.name},
            {kindKey, rawValue(config.kind)}, {baseURLKey, config.baseURL},
            {apiKeyKey, config.apiKey},       {enabledKey, config.enabled}};
}

std::optional<ProviderConfig> configFrom(const QJsonObject &object)
{
    for (const QLatin1String key : {idKey, nameKey, kindKey, baseURLKey, apiKeyKey}) {
        if (!object.value(key).isString())
            return {};
    }
    const auto id = uuidFrom(object.value(idKey).toString());
    const auto kind = providerKindFrom(object.value(kindKey).toString());
    if (!id || !kind || !object.value(enabledKey).isBool())
        return {};
    return ProviderConfig{*id,
                          object.value(nameKey).toString(),
                          *kind,
                          object.value(baseURLKey).toString(),
                          object.value(apiKeyKey).toString(),
                          object.value(enabledKey).toBool()};
}

} // namespace

ProviderConfig ProviderConfig::create(const QString &name, ProviderKind kind,
                                      const QString &baseURL, const QString &apiKey)
{
    return {QUuid::createUuid(), name, kind, baseURL, apiKey, true};
}

bool ProviderConfig::accepts(const QString &name, const QString &baseURL)
{
    const auto url = Text::url(baseURL);
    return !name.isEmpty() && url && !url->host().isEmpty();
}

QByteArray toJson(const QList<ProviderConfig> &providers)
{
    QJsonArray array;
    for (const ProviderConfig &config : providers)
        array.append(objectOf(config));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<Json::Entries<ProviderConfig>> providersFromJson(const QByteArray &json)
{
    return Json::entriesOf(json, configFrom);
}

} // namespace tavelo
