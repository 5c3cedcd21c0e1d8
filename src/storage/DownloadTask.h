// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>
#include <QUuid>

#include <variant>

namespace tavelo {

/// One download of this run.
struct DownloadTask
{
    struct Downloading
    {
        bool operator==(const Downloading &) const = default;
    };
    struct Paused
    {
        bool operator==(const Paused &) const = default;
    };
    struct Finished
    {
        bool operator==(const Finished &) const = default;
    };
    struct Failed
    {
        QString message;
        bool operator==(const Failed &) const = default;
    };
    using State = std::variant<Downloading, Paused, Finished, Failed>;

    QUuid id;
    QString title; // the catalogue item's
    QUrl url;
    QString dest;        // path of the finished file
    qint64 received = 0; // bytes
    qint64 expected = 0; // bytes; 0: not known
    State state = Downloading{};

    template <typename T>
    bool is() const
    {
        return std::holds_alternative<T>(state);
    }

    bool operator==(const DownloadTask &) const = default;
};

} // namespace tavelo
