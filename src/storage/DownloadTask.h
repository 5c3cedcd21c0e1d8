// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"

#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <algorithm>
#include <variant>

namespace tavelo {

/// One download of this run.
struct DownloadTask
{
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id CONSTANT)
    Q_PROPERTY(QString title READ shownTitle CONSTANT)
    Q_PROPERTY(double progress READ progress CONSTANT)
    Q_PROPERTY(bool isDownloading READ isDownloading CONSTANT)
    Q_PROPERTY(bool isPaused READ isPaused CONSTANT)
    Q_PROPERTY(bool isFinished READ isFinished CONSTANT)

public:
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
    bool isDownloading() const { return is<Downloading>(); }
    bool isPaused() const { return is<Paused>(); }
    bool isFinished() const { return is<Finished>(); }

    /// How much of it is here: 0 to 1, and 0 while its size is not known.
    double progress() const
    {
        return expected < 1 ? 0 : std::clamp(double(received) / double(expected), 0.0, 1.0);
    }

    QString shownTitle() const { return DisplayText::name(title); } // for the screens

    bool operator==(const DownloadTask &) const = default;
};

} // namespace tavelo
