// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentActions.h"

#include "ui/Clipboard.h"

namespace tavelo {

void TorrentActions::setApp(AppState *app)
{
    m_app = app;
    Q_EMIT appChanged();
}

void TorrentActions::setResult(const QVariant &result)
{
    m_result = result.value<TorrentResult>();
    Q_EMIT resultChanged();
}

QVariantList TorrentActions::choices() const
{
    QVariantList choices;
    for (const TorrentAction action : actionsFor(m_result)) {
        choices.append(QVariantMap{{QStringLiteral("text"), titleOf(action)},
                                   {QStringLiteral("value"), static_cast<int>(action)}});
    }
    return choices;
}

void TorrentActions::perform(int value) const
{
    const auto action = static_cast<TorrentAction>(value);
    if (m_app && actionsFor(m_result).contains(action))
        performOn(action, *m_app);
}

void TorrentActions::performOn(TorrentAction action, AppState &app) const
{
    using enum TorrentAction;
    switch (action) {
    case Details:
        return app.selectItem(catalogueItem(m_result));
    case InspectMagnet:
        return app.inspectMagnet(*m_result.magnet);
    case OpenMagnet:
        return app.openMagnet(*m_result.magnet);
    case CopyMagnet:
        return Clipboard().setText(*m_result.magnet);
    case InspectFile:
        return app.inspectTorrentURL(*m_result.torrentURL);
    case OpenPage:
        return app.openWebPage(*m_result.pageURL);
    case CopyHash:
        return Clipboard().setText(*m_result.infoHash);
    }
}

} // namespace tavelo
