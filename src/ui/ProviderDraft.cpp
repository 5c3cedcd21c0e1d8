// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/ProviderDraft.h"

namespace tavelo {

void ProviderDraft::setKind(const QString &kind)
{
    m_kind = providerKindFrom(kind).value_or(m_kind);
    Q_EMIT edited();
}

QVariantList ProviderDraft::kinds()
{
    QVariantList kinds;
    for (const ProviderKind kind : allProviderKinds)
        kinds.append(QVariantMap{{QStringLiteral("text"), label(kind)},
                                 {QStringLiteral("value"), rawValue(kind)}});
    return kinds;
}

bool ProviderDraft::addTo(ProviderRegistry *registry) const
{
    if (!registry || !acceptable())
        return false;
    registry->add(ProviderConfig::create(m_name, m_kind, m_url, m_key));
    return true;
}

} // namespace tavelo
