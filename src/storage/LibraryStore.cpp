// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/LibraryStore.h"

#include "storage/SettingsStore.h"

#include <algorithm>
#include <cmath>

namespace tavelo {

namespace {

constexpr qint64 maxFileBytes = 64LL * 1024 * 1024;

auto hasKey(const QString &key)
{
    return [normal = key.normalized(QString::NormalizationForm_C)](const HistoryEntry &entry) {
        return entry.key.normalized(QString::NormalizationForm_C) == normal;
    };
}

} // namespace

LibraryStore::LibraryStore(QObject *parent)
    : QObject(parent)
    , m_file(SettingsStore::appSupport() + QLatin1String("/history.json"),
             {.name = tr("The watch history"),
              .maxBytes = maxFileBytes,
              .read = [this](const QByteArray &json) { return take(json); },
              .snapshot = [this] { return [history = m_history] { return toJson(history); }; }})
{
    m_file.read();
}

bool LibraryStore::take(const QByteArray &json)
{
    const auto stored = historyFromJson(json);
    if (!stored)
        return false;
    const QList<HistoryEntry> mine = m_history;
    for (const HistoryEntry &entry : stored->whole) {
        if (std::ranges::none_of(mine, hasKey(entry.key)))
            m_history.append(entry);
    }
    Q_EMIT historyChanged();
    if (stored->damaged > 0) {
        m_file.keepAside(json);
        m_file.save();
    }
    return true;
}

QList<HistoryEntry> LibraryStore::continueWatching() const
{
    QList<HistoryEntry> underway;
    std::ranges::copy_if(m_history, std::back_inserter(underway), &HistoryEntry::isUnderway);
    return underway;
}

std::optional<HistoryEntry> LibraryStore::entryFor(const QString &key) const
{
    const auto found = std::ranges::find_if(m_history, hasKey(key));
    return found == m_history.end() ? std::nullopt : std::optional(*found);
}

void LibraryStore::record(const HistoryEntry &entry)
{
    if (!std::isfinite(entry.position) || !std::isfinite(entry.duration))
        return;
    QList<HistoryEntry> history = m_history;
    history.removeIf(hasKey(entry.key));
    history.prepend(entry);
    if (history.size() > maxEntries)
        history.resize(maxEntries);
    setHistory(history);
}

void LibraryStore::updateProgress(const QString &key, double position, double duration)
{
    QList<HistoryEntry> history = m_history;
    const auto found = std::ranges::find_if(history, hasKey(key));
    if (found == history.end() || !std::isfinite(position) || !std::isfinite(duration))
        return;
    found->position = position;
    if (duration > 0)
        found->duration = duration;
    setHistory(history);
}

void LibraryStore::remove(const QString &key)
{
    QList<HistoryEntry> history = m_history;
    history.removeIf(hasKey(key));
    setHistory(history);
}

void LibraryStore::clear()
{
    setHistory({});
}

void LibraryStore::setHistory(const QList<HistoryEntry> &history)
{
    m_history = history;
    m_file.save();
    Q_EMIT historyChanged();
}

} // namespace tavelo
