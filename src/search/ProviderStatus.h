// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

#include <variant>

namespace tavelo {

/// How far one provider is with the current search.
struct ProviderStatus
{
    struct Ok
    {
        qsizetype count = 0; // results of this provider, before merging
        bool operator==(const Ok &) const = default;
    };
    struct Failed
    {
        QString message;
        bool operator==(const Failed &) const = default;
    };
    struct Pending
    {
        bool operator==(const Pending &) const = default;
    };
    using State = std::variant<Ok, Failed, Pending>;

    QUuid id; // the entry's
    QString name;
    State state = Pending{};

    bool operator==(const ProviderStatus &) const = default;
};

} // namespace tavelo
