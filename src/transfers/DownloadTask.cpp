// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/DownloadTask.h"

#include "catalogue/Fmt.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tavelo {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("DownloadTask", text);
}

template <typename... Visitors>
struct Overloaded : Visitors...
{
    using Visitors::operator()...;
};

QString joined(const QStringList &parts)
{
    return parts.join(QStringLiteral(" · "));
}

QString sizesOf(const DownloadTask &task)
{
    const auto expected = task.expected < 1 ? std::nullopt : std::optional(task.expected);
    return tr("%1 of %2").arg(Fmt::byteCount(task.received), Fmt::byteCount(expected));
}

QString timeLeft(qint64 seconds)
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    if (seconds < minute)
        return tr("%1 s left").arg(seconds);
    if (seconds < hour)
        return tr("%1 min left").arg((seconds + minute / 2) / minute);
    return tr("%1 h %2 min left").arg(seconds / hour).arg(seconds % hour / minute);
}

QString progressOf(const DownloadTask &task)
{
    QStringList parts{sizesOf(task)};
    if (task.startedOver)
        parts.append(tr("started over, for the file had changed"));
    if (task.speed > 0)
        parts.append(Fmt::byteCount(task.speed) + QStringLiteral("/s"));
    if (task.secondsLeft)
        parts.append(timeLeft(*task.secondsLeft));
    return joined(parts);
}

} // namespace

QString DownloadTask::status() const
{
    const Overloaded text{
        [this](const Waiting &) {
            return received > 0 ? joined({tr("Waiting"), sizesOf(*this)}) : tr("Waiting");
        },
        [this](const Downloading &) { return progressOf(*this); },
        [](const Retrying &retry) {
            QString reason = retry.reason;
            if (reason.endsWith(QLatin1Char('.')))
                reason.chop(1);
            return tr("%1, next try in %2 s").arg(reason, QString::number(retry.secondsLeft));
        },
        [this](const Paused &) {
            return joined({sizesOf(*this), tr("paused")});
        },
        [](const Held &held) { return held.reason; },
        [](const Checking &) { return tr("Checking"); },
        [this](const Finished &finished) {
            const QString saved =
                tr("Saved to %1").arg(QDir::toNativeSeparators(QFileInfo(dest).path()));
            return finished.checked ? joined({saved, tr("Checked")}) : saved;
        },
        [](const Failed &failed) { return tr("Failed: %1").arg(failed.message); }};
    return std::visit(text, state);
}

QString DownloadTask::tip() const
{
    const auto *finished = std::get_if<Finished>(&state);
    return finished && finished->checked ? tr("Every byte is as the catalogue's checksum says.")
                                         : QString();
}

} // namespace tavelo
