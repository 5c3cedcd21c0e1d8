// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "ui/TorrentAction.h"

#include <QPointer>
#include <QtQmlIntegration>

namespace tavelo {

/// The menu of one search result. It keeps the result: its row may show another by the time that
/// something is chosen.
class TorrentActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tavelo::AppState *app READ app WRITE setApp NOTIFY appChanged)
    Q_PROPERTY(QVariant result READ result WRITE setResult NOTIFY resultChanged)
    /// Of { text, value }.
    Q_PROPERTY(QVariantList choices READ choices NOTIFY resultChanged)

public:
    using QObject::QObject;

    AppState *app() const { return m_app; }
    void setApp(AppState *app);
    QVariant result() const { return QVariant::fromValue(m_result); }
    void setResult(const QVariant &result); // a TorrentResult; anything else: nothing can be done
    QVariantList choices() const;

    /// Does what the choice of that value says.
    Q_INVOKABLE void perform(int value) const;

Q_SIGNALS:
    void appChanged();
    void resultChanged();

private:
    void performOn(TorrentAction action, AppState &app) const;

    QPointer<AppState> m_app;
    TorrentResult m_result;
};

} // namespace tavelo
