// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "catalogue/ProviderConfig.h"
#include "platform/PreferenceValues.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray file = fuzzInput(data, size);
    for (const QJsonValue &json : QJsonDocument::fromJson(file).object()) {
        const auto value = preferenceFromJson(json);
        require(!value || preferenceFromJson(toJson(*value)) == value);
    }
    if (const auto providers = providersFromJson(file)) {
        const auto again = providersFromJson(toJson(providers->whole));
        require(again && again->whole == providers->whole && again->damaged == 0);
    }
    return 0;
}
