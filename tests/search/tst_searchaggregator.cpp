// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"
#include "search/ProviderRegistry.h"
#include "search/SearchAggregator.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

QByteArray rows(const QByteArrayList &firstDigits)
{
    QByteArrayList all;
    for (const QByteArray &digit : firstDigits)
        all.append(R"({"name":")" + digit + R"(","info_hash":")" + digit + QByteArray(39, '1') +
                   R"(","seeders":"1"})");
    return "[" + all.join(',') + "]";
}

/// Answers before it is waited for.
class AtOnce : public TorrentSearchProvider
{
public:
    explicit AtOnce(const TorrentResults &answer)
        : TorrentSearchProvider({.name = "at once"})
        , m_answer(answer)
    {}
    QCoro::Task<TorrentResults> search(QString, std::stop_token) const override
    {
        co_return m_answer;
    }

private:
    TorrentResults m_answer;
};

std::shared_ptr<const TorrentSearchProvider> atOnce(const QString &title)
{
    TorrentResult result;
    result.id = result.title = title;
    result.sources = QStringList{"at once"};
    return std::make_shared<AtOnce>(QList<TorrentResult>{result});
}

} // namespace

class TestSearchAggregator : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    HttpService m_server;
    SearchAggregator m_aggregator;

    // An ApiBay at a folder of the server, which answers as told.
    std::shared_ptr<const TorrentSearchProvider> provider(const QByteArray &name,
                                                          const HttpService::Answer &answer)
    {
        m_server.serve("/" + name + "/q.php", answer);
        return makeProvider(
            ProviderConfig::create(name, ProviderKind::ApiBay, m_server.base() + "/" + name));
    }

    QString states() const
    {
        QStringList texts;
        for (const ProviderStatus &status : m_aggregator.statuses()) {
            if (const auto *ok = std::get_if<ProviderStatus::Ok>(&status.state))
                texts.append(QString("%1 %2").arg(status.name).arg(ok->count));
            else if (const auto *failed = std::get_if<ProviderStatus::Failed>(&status.state))
                texts.append(status.name + ": " + failed->message);
            else
                texts.append(status.name + "…");
        }
        return texts.join(", ");
    }

    QStringList titles() const
    {
        QStringList texts;
        for (const TorrentResult &result : m_aggregator.results())
            texts.append(result.title + " from " + result.sourceSort());
        return texts;
    }

private Q_SLOTS:
    void initTestCase()
    {
        StandardFolders::relocate(m_folder.path());
        ServiceHosts::replace({.archive = m_server.base()});
    }
    void cleanup()
    {
        m_aggregator.search("end", {});
        QTRY_VERIFY(!m_aggregator.isSearching());
        QTRY_COMPARE(m_server.openRequests(), 0);
        m_server.forgetRequests();
    }

    void showsEachAnswerAsItArrives()
    {
        m_aggregator.search("  two words\n",
                            {provider("last", {.body = rows({"a", "b"}), .delay = 300ms}),
                             provider("never", {.silent = true}), provider("down", {.status = 503}),
                             provider("first", {.body = rows({"b", "c"})})});
        QCOMPARE(m_aggregator.lastQuery(), "two words");
        QVERIFY(m_aggregator.isSearching());
        QVERIFY(m_aggregator.results().isEmpty());
        QCOMPARE(states(), "last…, never…, down…, first…");
        QTRY_COMPARE(states(), "last…, never…, down: HTTP 503, first 2");
        QTRY_COMPARE(titles(), QStringList({"b from first", "c from first"}));
        // Now in the providers' order, and the same torrent once.
        QTRY_COMPARE(titles(), QStringList({"a from last", "b from first, last", "c from first"}));
        QCOMPARE(states(), "last 2, never…, down: HTTP 503, first 2");
        QVERIFY(m_aggregator.isSearching());
        for (const HttpService::Request &request : m_server.requests())
            QVERIFY(request.target.endsWith("q.php?q=two%20words&cat=200"));
    }

    void failsEachForItself()
    {
        const auto nowhere =
            makeProvider(ProviderConfig::create("nowhere", ProviderKind::Yts, "no address"));
        m_aggregator.search("x",
                            {provider("page", {.body = "<html>"}), provider("odd", {.body = "{}"}),
                             nowhere, provider("cut", {.body = rows({"a"}), .cutAfter = 5}),
                             provider("good", {.body = rows({"a"})})});
        QTRY_VERIFY(!m_aggregator.isSearching());
        QVERIFY(states().contains("odd: Empty response, nowhere: Invalid URL, cut: "));
        QVERIFY(states().endsWith("good 1"));
        QCOMPARE(titles(), QStringList{"a from good"});
        for (const ProviderStatus &status : m_aggregator.statuses().first(4))
            QVERIFY(!std::get<ProviderStatus::Failed>(status.state).message.isEmpty());
    }

    void namesNoKey()
    {
        m_server.serve("/api", {.body = "<error description='No key k&amp;y 123, %2Fold-key, "
                                        "no /old-key here'/>"});
        const auto torznab = makeProvider(ProviderConfig::create(
            "T", ProviderKind::Torznab, m_server.base() + "/api?apikey=%2Fold-key", "k&y 123"));
        m_aggregator.search("x", {torznab});
        QTRY_VERIFY(!m_aggregator.isSearching());
        QCOMPARE(states(), "T: No key •••, •••, no ••• here");
    }

    void saysWhenTimeIsUp()
    {
        m_aggregator.search("x", {std::make_shared<AtOnce>(
                                     Error{ErrorKind::TimedOut, "in the library's words", 0})});
        QCOMPARE(states(), "at once: Timed out");
        QTRY_VERIFY(!m_aggregator.isSearching());
    }

    void asksMoreThanSixOfOneHostAtOnce()
    {
        TorrentSearchProviders providers;
        for (int i = 0; i < 12; ++i)
            providers.append(provider("hangs" + QByteArray::number(i), {.silent = true}));
        providers.append(provider("good", {.body = rows({"a"})}));
        m_aggregator.search("x", providers);
        QTRY_COMPARE(titles(), QStringList{"a from good"});
        QCOMPARE(m_server.requests().size(), 13);
    }

    void aNewerSearchClosesTheOlder()
    {
        const TorrentSearchProviders slow{
            provider("hangs", {.silent = true}),
            provider("drips", {.body = rows({"a"}), .silentAfter = 9})};
        m_aggregator.search("older", slow);
        QTRY_COMPARE(m_server.openRequests(), 2);
        QSignalSpy changes(&m_aggregator, &SearchAggregator::resultsChanged);
        m_aggregator.search("newer", {provider("good", {.body = rows({"b"})})});
        QCOMPARE(states(), "good…");
        QTRY_VERIFY(!m_aggregator.isSearching());
        QTRY_COMPARE(m_server.openRequests(), 0);
        QCOMPARE(titles(), QStringList{"b from good"});
        QCOMPARE(changes.size(), 2); // emptied, filled
        QCOMPARE(states(), "good 1");
    }

    void publishesNothingOfASupersededAnswer()
    {
        // The older search's answer is mostly being merged still when the newer one starts.
        m_aggregator.search("older", {atOnce("old")});
        QSignalSpy changes(&m_aggregator, &SearchAggregator::resultsChanged);
        m_aggregator.search("newer", {atOnce("new")});
        QTRY_VERIFY(!m_aggregator.isSearching());
        QCOMPARE(titles(), QStringList{"new from at once"});
        QCOMPARE(changes.size(), 2); // emptied, filled
    }

    void aSearchFromWithinAChangeIsTheNewerOne()
    {
        for (const auto change :
             {&SearchAggregator::lastQueryChanged, &SearchAggregator::statusesChanged,
              &SearchAggregator::resultsChanged}) {
            QSignalSpy ends(&m_aggregator, &SearchAggregator::isSearchingChanged);
            int heard = 0;
            QObject listener;
            connect(&m_aggregator, change, &listener, [&] {
                if (++heard == 2)
                    m_aggregator.search("inner", {atOnce("in")});
            });
            m_aggregator.search("outer", {atOnce("out"), provider("hangs", {.silent = true})});
            if (heard < 2)
                m_aggregator.search("outer", {provider("hangs", {.silent = true})});
            QTRY_VERIFY(heard >= 2 && !m_aggregator.isSearching());
            QCOMPARE(m_aggregator.lastQuery(), "inner");
            QCOMPARE(titles(), QStringList{"in from at once"});
            QCOMPARE(states(), "at once 1");
        }
    }

    void aBlankSearchChangesNothing()
    {
        m_aggregator.search("x", {provider("hangs", {.silent = true})});
        QTRY_COMPARE(m_server.openRequests(), 1);
        m_aggregator.search(" \n", {});
        QVERIFY(m_aggregator.isSearching());
        QCOMPARE(m_aggregator.lastQuery(), "x");
        QCOMPARE(states(), "hangs…");
        m_aggregator.search("y", {atOnce("after")});
        QTRY_COMPARE(m_server.openRequests(), 0);
        QTRY_COMPARE(titles(), QStringList{"after from at once"});
    }

    void endsWithItsOwner()
    {
        {
            SearchAggregator leaving;
            leaving.search("x", {provider("hangs", {.silent = true})});
            QTRY_COMPARE(m_server.openRequests(), 1);
        }
        QTRY_COMPARE(m_server.openRequests(), 0);
    }

    void askedTwiceAnswersTwice()
    {
        const auto twice = provider("twice", {.body = rows({"a"})});
        m_aggregator.search("x", {twice, twice});
        QTRY_VERIFY(!m_aggregator.isSearching());
        QCOMPARE(states(), "twice 1, twice 1");
        QCOMPARE(titles(), QStringList{"a from twice"});
    }

    void aHugeAnswerHoldsNobodyUp()
    {
        QByteArray huge = rows({"a"}).chopped(1);
        huge += QByteArray(60 * 1024 * 1024, ' ') + "]";
        m_aggregator.search(
            "x", {provider("huge", {.body = huge}), provider("good", {.body = rows({"b"})})});
        QTRY_COMPARE(states(), "huge…, good 1");
        QTRY_COMPARE_WITH_TIMEOUT(states(), "huge 1, good 1", 60'000);
        QTRY_VERIFY(!m_aggregator.isSearching());
    }

    void asksTheCatalogueToo()
    {
        m_server.serve("/advancedsearch.php",
                       {.body = R"({"response":{"docs":[{"identifier":"i","title":"T","year":1950,)"
                                R"("licenseurl":"http:\/\/l"}]}})"});
        ProviderConfig config = ProviderConfig::create("O", ProviderKind::Orvella, "unused");
        m_aggregator.search("x", {makeProvider(config)});
        QTRY_VERIFY(!m_aggregator.isSearching());
        QCOMPARE(states(), "O 1");
        const TorrentResult result = m_aggregator.results().at(0);
        QCOMPARE(result.id, "archive:i");
        QCOMPARE(result.archiveID, "i");
        QCOMPARE(result.year, "1950");
        QCOMPARE(result.license, "http://l");
        QCOMPARE(result.pageURL, QUrl(m_server.base() + "/details/i"));
        const QByteArray target = m_server.requests().at(0).target;
        QVERIFY(target.contains("rows=30") && target.contains("=downloads%20desc"));
        m_server.serve("/advancedsearch.php", {.silent = true});
        m_aggregator.search("x", {makeProvider(config)});
        QTRY_COMPARE(m_server.openRequests(), 1);
        m_aggregator.search("y", {});
        QTRY_COMPARE(m_server.openRequests(), 0);
    }

    void theRegistryEditsTheSettings()
    {
        SettingsStore settings;
        ProviderRegistry registry(settings);
        QSignalSpy changed(&registry, &ProviderRegistry::changed);
        const auto namesAsked = [&] {
            QStringList names;
            for (const auto &enabled : registry.enabledProviders())
                names.append(enabled->config().name);
            return names;
        };
        ProviderConfig added =
            ProviderConfig::create("Mine", ProviderKind::Torznab, "http://h/api");
        registry.add(added);
        QCOMPARE(namesAsked(), QStringList({"Orvella", "YTS", "ApiBay", "Mine"}));
        registry.setEnabled(settings.providers().at(1).id, false);
        registry.setEnabled(QUuid::createUuid(), false);
        QCOMPARE(namesAsked(), QStringList({"Orvella", "ApiBay", "Mine"}));
        registry.add(added);
        registry.remove(added.id);
        QCOMPARE(namesAsked(), QStringList({"Orvella", "ApiBay"}));
        QCOMPARE(changed.size(), 5);
        settings.file().flush();
        QCOMPARE(SettingsStore().providers(), settings.providers());
    }
};

QTEST_GUILESS_MAIN(TestSearchAggregator)
#include "tst_searchaggregator.moc"
