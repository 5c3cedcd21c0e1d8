// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ProviderConfig.h"

/// Texts for the screen, without the keys that people paste into a provider's address.
namespace tavelo::KeyMask {

/// The address, which need not be a URL, with "•••" for its user and password, each value of its
/// query, its fragment, and each folder that looks like a key.
QString address(const QString &text);

/// `text` with "•••" wherever it holds the entry's key, or a value of its address's query; not for
/// values of fewer than six characters.
QString message(QString text, const ProviderConfig &config);

} // namespace tavelo::KeyMask
