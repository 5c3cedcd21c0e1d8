// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "catalogue/ProviderConfig.h"
#include "platform/PreferenceValues.h"

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray file = fuzzInput(data, size);
    const PreferenceValues values = PreferencesFormat::decoded(file);
    require(PreferencesFormat::decoded(PreferencesFormat::encoded(values)) == values);
    if (const auto providers = providersFromJson(file))
        require(providersFromJson(toJson(*providers)) == providers);
    return 0;
}
