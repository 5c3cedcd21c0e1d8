// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/StandardFolders.h"
#include "storage/SettingsStore.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

QString preferencesFile()
{
    return StandardFolders::configuration() + "/preferences.json";
}

QStringList namesOf(const QList<ProviderConfig> &providers)
{
    QStringList names;
    for (const ProviderConfig &config : providers)
        names.append(config.name);
    return names;
}

const QStringList defaultNames{"Orvella", "YTS", "ApiBay"};

} // namespace

class TestSettingsStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase() { StandardFolders::relocate(m_folder.path()); }
    void cleanup() { QFile::remove(preferencesFile()); }

    void startsWithDefaultsAndWritesNothing()
    {
        const SettingsStore settings;
        QCOMPARE(settings.cachePath(), StandardFolders::support() + "/Cache");
        QCOMPARE(settings.downloadsPath(), StandardFolders::movies());
        QCOMPARE(settings.cacheLimitMB(), 1024);
        QCOMPARE(settings.autoCleanDays(), 14);
        QVERIFY(settings.gridView());
        QCOMPARE(namesOf(settings.providers()), defaultNames);
        for (const ProviderConfig &config : settings.providers()) {
            QVERIFY(config.enabled && config.apiKey.isEmpty() && !config.id.isNull());
            QVERIFY(ProviderConfig::accepts(config.name, config.baseURL));
        }
        QVERIFY(!QFile::exists(preferencesFile()));
        QVERIFY(QDir(SettingsStore::appSupport()).exists());
        QVERIFY(!QDir(settings.cachePath()).exists());
    }

    void remembersAndAnnouncesEveryAssignment()
    {
        const QList<ProviderConfig> providers{
            ProviderConfig::create("Ü \"1\"", ProviderKind::Torznab, "http://h:9117/api", "k&y"),
            ProviderConfig::create("Same", ProviderKind::ApiBay, ""),
            ProviderConfig::create("Same", ProviderKind::ApiBay, "")};
        {
            SettingsStore settings;
            QSignalSpy grid(&settings, &SettingsStore::gridViewChanged);
            settings.setCachePath("/c");
            settings.setDownloadsPath("/d");
            settings.setCacheLimitMB(1LL << 40);
            settings.setAutoCleanDays(0);
            settings.setGridView(false);
            settings.setGridView(false);
            settings.setProviders(providers);
            QCOMPARE(grid.size(), 2);
        }
        SettingsStore settings;
        QCOMPARE(settings.cachePath(), "/c");
        QCOMPARE(settings.downloadsPath(), "/d");
        QCOMPARE(settings.cacheLimitMB(), 1LL << 40);
        QCOMPARE(settings.autoCleanDays(), 0);
        QVERIFY(!settings.gridView());
        QCOMPARE(settings.providers(), providers);
        settings.setProviders({});
        QVERIFY(SettingsStore().providers().isEmpty());
    }

    void ignoresValuesOfAnotherType()
    {
        Preferences stored(preferencesFile());
        stored.set("cachePath", qint64(5));
        stored.set("cacheLimitMB", QString("2048"));
        stored.set("autoCleanDays", true);
        stored.set("gridView", qint64(0));
        stored.set("providers", QString("[]"));
        const SettingsStore settings;
        QCOMPARE(settings.cachePath(), StandardFolders::support() + "/Cache");
        QCOMPARE(settings.cacheLimitMB(), 1024);
        QCOMPARE(settings.autoCleanDays(), 14);
        QVERIFY(settings.gridView());
        QCOMPARE(namesOf(settings.providers()), defaultNames);
    }

    void readsOnlyWholeLists_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value"); // undefined: the key is missing
        QTest::addColumn<bool>("readable");
        QTest::newRow("as written") << "name" << QJsonValue("N") << true;
        QTest::newRow("id in small letters")
            << "id" << QJsonValue("3f2504e0-4f89-41d3-9a0c-0305e82c3301") << true;
        QTest::newRow("another key") << "more" << QJsonValue(1) << true;
        QTest::newRow("kind in capitals") << "kind" << QJsonValue("Torznab") << false;
        QTest::newRow("id in braces")
            << "id" << QJsonValue("{3F2504E0-4F89-41D3-9A0C-0305E82C3301}") << false;
        QTest::newRow("no id") << "id" << QJsonValue("7") << false;
        QTest::newRow("switch as a number") << "enabled" << QJsonValue(1) << false;
        for (const char *key : {"id", "name", "kind", "baseURL", "apiKey", "enabled"}) {
            QTest::addRow("%s missing", key) << key << QJsonValue(QJsonValue::Undefined) << false;
            QTest::addRow("%s null", key) << key << QJsonValue() << false;
        }
    }
    void readsOnlyWholeLists()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QJsonObject entry{{"id", "3F2504E0-4F89-41D3-9A0C-0305E82C3301"},
                          {"name", "N"},
                          {"kind", "torznab"},
                          {"baseURL", "http://h/api"},
                          {"apiKey", ""},
                          {"enabled", false}};
        const QByteArray whole = QJsonDocument(entry).toJson();
        entry.insert(key, value);
        const QByteArray changed = QJsonDocument(entry).toJson();
        const auto read = providersFromJson("[" + whole + "," + changed + "]");
        QTEST(read.has_value(), "readable");
        QVERIFY(!read || read->at(0) == read->at(1));
        QVERIFY(!providersFromJson(whole));
        QCOMPARE(toJson(*providersFromJson("[" + whole + "]")),
                 "[" + QJsonDocument::fromJson(whole).toJson(QJsonDocument::Compact) + "]");
    }

    void acceptsEntriesWithAHost_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("baseURL");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("plain") << "N"
                               << "http://localhost:9117/api" << true;
        QTest::newRow("a space for a name") << " "
                                            << "https://h" << true;
        QTest::newRow("no name") << ""
                                 << "https://h" << false;
        QTest::newRow("no scheme") << "N"
                                   << "localhost:9117" << false;
        QTest::newRow("no host") << "N"
                                 << "http://" << false;
        QTest::newRow("no URL") << "N"
                                << "http://a b/" << false;
        QTest::newRow("nothing") << "N"
                                 << "" << false;
    }
    void acceptsEntriesWithAHost()
    {
        QFETCH(QString, name);
        QFETCH(QString, baseURL);
        QTEST(ProviderConfig::accepts(name, baseURL), "accepted");
    }
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
