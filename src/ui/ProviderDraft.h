// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/ProviderRegistry.h"

#include <QVariant>
#include <QtQmlIntegration>

namespace tavelo {

/// A provider that the user is about to add. Texts stay as typed.
class ProviderDraft : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER m_name NOTIFY edited)
    /// A kind's stored text; any other is not taken.
    Q_PROPERTY(QString kind READ kind WRITE setKind NOTIFY edited)
    Q_PROPERTY(QString url MEMBER m_url NOTIFY edited)
    Q_PROPERTY(QString key MEMBER m_key NOTIFY edited)
    Q_PROPERTY(bool acceptable READ acceptable NOTIFY edited)
    /// All kinds in order, as { text, value }.
    Q_PROPERTY(QVariantList kinds READ kinds CONSTANT)

public:
    using QObject::QObject;

    QString kind() const { return rawValue(m_kind); }
    void setKind(const QString &kind);
    bool acceptable() const { return ProviderConfig::accepts(m_name, m_url); }
    static QVariantList kinds();

    /// False, and nothing added, when it is not acceptable.
    Q_INVOKABLE bool addTo(tavelo::ProviderRegistry *registry) const;

Q_SIGNALS:
    void edited();

private:
    QString m_name;
    ProviderKind m_kind = ProviderKind::Torznab;
    QString m_url;
    QString m_key;
};

} // namespace tavelo
