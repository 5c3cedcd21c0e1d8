// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/TorrentSearchProvider.h"
#include "storage/SettingsStore.h"

namespace tavelo {

/// Edits the list of providers in the settings, and makes providers of its entries. Main thread
/// only.
class ProviderRegistry : public QObject
{
    Q_OBJECT

public:
    /// `settings` must outlive this.
    explicit ProviderRegistry(SettingsStore &settings, QObject *parent = nullptr);

    /// One for each enabled entry, in list order, with a copy of it.
    TorrentSearchProviders enabledProviders() const;

    void add(const ProviderConfig &config);
    /// Every entry of that id.
    Q_INVOKABLE void remove(const QUuid &id);
    /// The first entry of that id, if there is one.
    Q_INVOKABLE void setEnabled(const QUuid &id, bool on);

Q_SIGNALS:
    /// After each of the three, whether or not it changed anything.
    void changed();

private:
    SettingsStore &m_settings;
};

} // namespace tavelo
