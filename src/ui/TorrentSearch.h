// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "ui/ProviderChip.h"

#include <QPointer>
#include <QtQmlIntegration>

namespace tavelo {

/// What the torrent search screen says of the running or last search.
class TorrentSearch : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tavelo::AppState *app READ app WRITE setApp NOTIFY appChanged)
    Q_PROPERTY(bool unprovided READ unprovided NOTIFY providersChanged)
    Q_PROPERTY(QList<tavelo::ProviderChip> chips READ chips NOTIFY chipsChanged)
    Q_PROPERTY(bool hasResults READ hasResults NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    using QObject::QObject;

    AppState *app() const { return m_app; }
    void setApp(AppState *app); // once
    /// Whether no provider is enabled.
    bool unprovided() const;
    QList<ProviderChip> chips() const; // one a provider that was asked
    bool hasResults() const;
    /// What stands in the place of results while there are none.
    QString message() const;

    /// Asks the enabled providers. A blank text leaves everything as it is.
    Q_INVOKABLE void search(const QString &text);

Q_SIGNALS:
    void appChanged();
    void providersChanged();
    void chipsChanged();
    void changed();

private:
    QPointer<AppState> m_app;
};

} // namespace tavelo
