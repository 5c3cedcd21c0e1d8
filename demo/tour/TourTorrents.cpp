// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Tour.h"

#include <QTest>

namespace tavelo {

void Tour::type(const QString &name, const QString &text)
{
    m_ui.click(name);
    for (const QChar letter : text)
        m_ui.key(static_cast<Qt::Key>(letter.toUpper().unicode()));
}

void Tour::addIndexers()
{
    const QString base = m_demo->services().baseUrl();
    ProviderRegistry *registry = m_demo->application().state().registry();
    for (const QString &name :
         {QStringLiteral("reel"), QStringLiteral("slow"), QStringLiteral("broken")}) {
        registry->add(
            ProviderConfig::create(name, ProviderKind::Torznab,
                                   base + QLatin1String("/torznab/") + name + QLatin1String("/api"),
                                   QStringLiteral("demo-key")));
    }
}

bool Tour::torrentSearch()
{
    AppState &state = m_demo->application().state();
    if (!expect(m_ui.click(QStringLiteral("Torrent Search")), "the torrent search"))
        return false;
    const auto providers = state.settings()->providers();
    for (const ProviderConfig &config : providers)
        state.registry()->setEnabled(config.id, false);
    shoot("torrents-no-providers");
    state.settings()->setProviders(providers);
    shoot("torrents-hint");
    addIndexers();
    m_demo->services().setFaults({.latency = 1500});
    type(QStringLiteral("Search title or keywords across enabled providers…"),
         QStringLiteral("the"));
    m_ui.key(Qt::Key_Return);
    if (!expect(m_ui.waitFor(QStringLiteral("Searching…")), "a search that runs"))
        return false;
    shoot("torrents-searching");
    m_demo->services().setFaults({});
    return true;
}

bool Tour::torrentResults()
{
    const SearchAggregator *aggregator = m_demo->application().state().aggregator();
    if (!expect(m_ui.waitFor(QStringLiteral("broken: HTTP 503")), "a provider that failed"))
        return false;
    shoot("torrents-results-coming");
    const bool ended = QTest::qWaitFor([=] { return !aggregator->isSearching(); }, 20'000);
    if (!expect(ended, "the end of the search"))
        return false;
    shoot("torrents-results");
    m_ui.click(QStringLiteral("Seeds")); // the unseeded first
    shoot("torrents-catalogue-items");
    m_ui.click(QStringLiteral("Sources"));
    shoot("torrents-sources");
    m_ui.key(Qt::Key_Escape);
    m_ui.click(QStringLiteral("Resolution"));
    shoot("torrents-resolutions");
    if (!expect(m_ui.click(QStringLiteral("1080p")), "a resolution to choose"))
        return false;
    m_ui.click(QStringLiteral("Title"));
    if (!expect(m_ui.tabTo(QStringLiteral("Results")), "the table"))
        return false;
    m_ui.key(Qt::Key_Down);
    m_ui.key(Qt::Key_Return);
    shoot("torrents-row-menu");
    return true;
}

bool Tour::torrentInspector()
{
    if (!expect(m_ui.click(QStringLiteral("Inspect Magnet")) &&
                    m_ui.waitFor(QStringLiteral("Copy Magnet")),
                "the inspector of a magnet link"))
        return false;
    shoot("inspector-magnet");
    m_ui.key(Qt::Key_Escape);
    for (const TorrentResult &result : m_demo->application().state().aggregator()->results()) {
        if (!result.torrentURL || !result.sources.contains(QStringLiteral("YTS")))
            continue;
        m_demo->application().state().inspectTorrentURL(*result.torrentURL);
        break;
    }
    if (!expect(m_ui.waitFor(QStringLiteral("Reveal")), "the inspector of a file"))
        return false;
    shoot("inspector-file");
    m_ui.key(Qt::Key_Escape);
    return expect(m_ui.click(QStringLiteral("Home")), "the way back to Home");
}

} // namespace tavelo
