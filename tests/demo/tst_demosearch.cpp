// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "catalogue/FetchData.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"
#include "search/ProviderRegistry.h"
#include "search/SearchAggregator.h"
#include "testlib/Awaited.h"
#include "torrent/TorrentMetadata.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

QString stateOf(const ProviderStatus &status)
{
    if (const auto *failed = std::get_if<ProviderStatus::Failed>(&status.state))
        return status.name + ": " + failed->message;
    const bool answered = std::holds_alternative<ProviderStatus::Ok>(status.state);
    return status.name + (answered ? "" : "…");
}

} // namespace

/// The whole search, from the settings to merged rows, on the demo's services.
class TestDemoSearch : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    DemoServer m_services{QString()};

    ProviderConfig indexer(const QString &name, const QString &key) const
    {
        return ProviderConfig::create(name, ProviderKind::Torznab,
                                      m_services.baseUrl() + "/torznab/" + name + "/api", key);
    }

private Q_SLOTS:
    void initTestCase()
    {
        StandardFolders::relocate(m_folder.path());
        const QString base = m_services.baseUrl();
        ServiceHosts::replace({.archive = base, .apibay = base, .yts = base});
    }

    void findsTheSameFilmEverywhere()
    {
        SettingsStore settings;
        ProviderRegistry registry(settings);
        for (const QString name : {"slow", "broken", "reel"})
            registry.add(indexer(name, "demo-key"));
        registry.add(indexer("reel", "wrong"));
        SearchAggregator aggregator;
        aggregator.search("the", registry.enabledProviders());

        const auto states = [&] {
            QStringList texts;
            for (const ProviderStatus &status : aggregator.statuses())
                texts.append(stateOf(status));
            return texts.join(", ");
        };
        QTRY_COMPARE(states(), "Orvella, YTS, ApiBay, slow…, broken: HTTP 503, reel, "
                               "reel: Invalid API Key");
        QTRY_VERIFY(!aggregator.results().isEmpty());
        QVERIFY(aggregator.isSearching());
        QTRY_VERIFY_WITH_TIMEOUT(!aggregator.isSearching(), 15'000);

        QSet<QString> sources;
        QSet<QString> keys;
        qsizetype shared = 0;
        for (const TorrentResult &result : aggregator.results()) {
            const QString key = result.infoHash.value_or(result.id);
            QVERIFY2(!keys.contains(key), qPrintable(key));
            keys.insert(key);
            shared += result.sources.size() > 1;
            for (const QString &source : result.sources)
                sources.insert(source);
        }
        QCOMPARE(sources, QSet<QString>({"Orvella", "YTS", "ApiBay", "slow", "reel"}));
        QVERIFY(shared > 0);
    }

    void itsTorrentsAreWhatTheRowsSay()
    {
        SearchAggregator aggregator;
        aggregator.search("", {}); // blank: nothing to wait for
        QVERIFY(!aggregator.isSearching());
        aggregator.search("a", {makeProvider(indexer("reel", "demo-key"))});
        QTRY_VERIFY(!aggregator.isSearching());
        int inspected = 0;
        for (const TorrentResult &result : aggregator.results()) {
            if (result.magnet) {
                const auto magnet = TorrentMetadata::parseMagnet(*result.magnet);
                QVERIFY(magnet);
                QVERIFY(!result.infoHash || magnet->infoHash == *result.infoHash);
            }
            if (!result.torrentURL)
                continue;
            const auto file = awaited(fetchData(*result.torrentURL, 10s));
            QVERIFY(file);
            const auto torrent = TorrentMetadata::parseTorrent(*file);
            if (!torrent)
                continue; // some links lead to pages
            QVERIFY(!result.infoHash || torrent->infoHash == *result.infoHash);
            QVERIFY(!result.size || torrent->totalSize() == *result.size);
            ++inspected;
        }
        QVERIFY(inspected > 0);
    }
};

QTEST_GUILESS_MAIN(TestDemoSearch)
#include "tst_demosearch.moc"
