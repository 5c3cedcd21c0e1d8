// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/ProviderStatus.h"

#include <QObject>

namespace tavelo {

/// One provider's part in a search, as a screen shows it.
struct ProviderChip
{
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(bool failed MEMBER failed CONSTANT)

public:
    QString id = {};
    QString text = {};
    QString symbol = {}; // empty while the answer is awaited
    bool failed = false;

    static ProviderChip of(const ProviderStatus &status);

    bool operator==(const ProviderChip &) const = default;
};

} // namespace tavelo
