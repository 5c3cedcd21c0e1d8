// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"

#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <algorithm>
#include <optional>
#include <variant>

namespace tavelo {

/// One download, as the screens show it.
struct DownloadTask
{
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id CONSTANT)
    Q_PROPERTY(QString title READ shownTitle CONSTANT)
    Q_PROPERTY(QUrl file READ file CONSTANT)
    Q_PROPERTY(double progress READ progress CONSTANT)
    Q_PROPERTY(QString status READ status CONSTANT)
    Q_PROPERTY(QString tip READ tip CONSTANT)
    Q_PROPERTY(bool isWaiting READ isWaiting CONSTANT)
    Q_PROPERTY(bool isDownloading READ isDownloading CONSTANT)
    Q_PROPERTY(bool isPaused READ isPaused CONSTANT)
    Q_PROPERTY(bool isChecking READ isChecking CONSTANT)
    Q_PROPERTY(bool isFinished READ isFinished CONSTANT)
    Q_PROPERTY(bool isUnderway READ isUnderway CONSTANT)
    Q_PROPERTY(bool isTroubled READ isTroubled CONSTANT)
    Q_PROPERTY(bool canPause READ canPause CONSTANT)
    Q_PROPERTY(bool canRetry READ canRetry CONSTANT)

public:
    /// For its turn: only some downloads run at a time.
    struct Waiting
    {
        bool operator==(const Waiting &) const = default;
    };
    struct Downloading
    {
        bool operator==(const Downloading &) const = default;
    };
    /// Goes on by itself.
    struct Retrying
    {
        QString reason; // a sentence
        int secondsLeft = 0;
        bool operator==(const Retrying &) const = default;
    };
    struct Paused
    {
        bool operator==(const Paused &) const = default;
    };
    /// Something here keeps it from going on, until the user has seen to that and tries again.
    struct Held
    {
        QString reason; // a sentence
        bool operator==(const Held &) const = default;
    };
    /// All bytes are here; they are compared with what the catalogue says of them.
    struct Checking
    {
        bool operator==(const Checking &) const = default;
    };
    struct Finished
    {
        bool checked = false; // its bytes are those that the catalogue says
        bool operator==(const Finished &) const = default;
    };
    struct Failed
    {
        QString message;
        bool operator==(const Failed &) const = default;
    };
    using State =
        std::variant<Waiting, Downloading, Retrying, Paused, Held, Checking, Finished, Failed>;

    QUuid id;
    QString title; // the catalogue item's
    QString item;  // its identifier; empty: not known
    QUrl url;
    QString dest;                           // path of the finished file
    qint64 received = 0;                    // bytes
    qint64 expected = 0;                    // bytes; 0: not known
    qint64 speed = 0;                       // bytes a second, smoothed; 0: not known
    std::optional<qint64> secondsLeft = {}; // while downloading
    bool startedOver = false;               // because the file had changed on the server
    State state = Waiting{};

    template <typename T>
    bool is() const
    {
        return std::holds_alternative<T>(state);
    }
    bool isWaiting() const { return is<Waiting>(); }
    bool isDownloading() const { return is<Downloading>(); }
    bool isPaused() const { return is<Paused>(); }
    bool isChecking() const { return is<Checking>(); }
    bool isFinished() const { return is<Finished>(); }
    /// Neither finished nor given up: its progress means something.
    bool isUnderway() const { return !is<Finished>() && !is<Failed>(); }
    /// Its status tells of a trouble.
    bool isTroubled() const { return is<Failed>() || is<Held>(); }

    bool canPause() const { return is<Waiting>() || is<Downloading>() || is<Retrying>(); }
    /// By DownloadManager::resume, as what is paused.
    bool canRetry() const { return isTroubled() || is<Retrying>(); }

    /// How much of it is here: 0 to 1, and 0 while its size is not known.
    double progress() const
    {
        return expected < 1 ? 0 : std::clamp(double(received) / double(expected), 0.0, 1.0);
    }

    /// What `dest` is the path of.
    QUrl file() const { return QUrl::fromLocalFile(dest); }

    /// For the screens: how far it is and how fast, where it went, or what keeps it.
    QString status() const;
    /// What stands behind the status; empty when nothing does.
    QString tip() const;
    QString shownTitle() const { return DisplayText::name(title); }

    bool operator==(const DownloadTask &) const = default;
};

} // namespace tavelo
