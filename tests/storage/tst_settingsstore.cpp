// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/StandardFolders.h"
#include "storage/SettingsStore.h"
#include "testlib/Table.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

Q_DECLARE_METATYPE(PreferenceValue)

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
    void cleanup() { QVERIFY(QDir(StandardFolders::configuration()).removeRecursively()); }

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
        settings.file().flush();
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
        stored.file().flush();
        const SettingsStore settings;
        QCOMPARE(settings.cachePath(), StandardFolders::support() + "/Cache");
        QCOMPARE(settings.cacheLimitMB(), 1024);
        QCOMPARE(settings.autoCleanDays(), 14);
        QVERIFY(settings.gridView());
        QCOMPARE(namesOf(settings.providers()), defaultNames);
    }

    void leavesOutDamagedProvidersOnly_data()
    {
        // value: undefined: the key is missing
        const auto row = columns<QString, QJsonValue, bool>("key", "value", "readable");
        row("as written", "name", QJsonValue("N"), true);
        row("id in small letters", "id", QJsonValue("3f2504e0-4f89-41d3-9a0c-0305e82c3301"), true);
        row("another key", "more", QJsonValue(1), true);
        row("kind in capitals", "kind", QJsonValue("Torznab"), false);
        row("id in braces", "id", QJsonValue("{3F2504E0-4F89-41D3-9A0C-0305E82C3301}"), false);
        row("no id", "id", QJsonValue("7"), false);
        row("switch as a number", "enabled", QJsonValue(1), false);
        for (const char *key : {"id", "name", "kind", "baseURL", "apiKey", "enabled"}) {
            QTest::addRow("%s missing", key) << key << QJsonValue(QJsonValue::Undefined) << false;
            QTest::addRow("%s null", key) << key << QJsonValue() << false;
        }
    }
    void leavesOutDamagedProvidersOnly()
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
        QVERIFY(read);
        QTEST(read->damaged == 0, "readable");
        QCOMPARE(read->whole.size(), 2 - read->damaged);
        QVERIFY(read->whole.first() == read->whole.last());
        QVERIFY(!providersFromJson(whole));
        QCOMPARE(toJson(providersFromJson("[" + whole + "]")->whole),
                 "[" + QJsonDocument::fromJson(whole).toJson(QJsonDocument::Compact) + "]");
    }

    void losesNoProviderToADamagedOne_data()
    {
        const auto mine =
            ProviderConfig::create("Mine", ProviderKind::Torznab, "http://h/api", "k&y");
        const QByteArray list = toJson({mine});
        const auto row = columns<PreferenceValue, QStringList>("stored", "names");
        row("unknown kind", QByteArray(list).replace("]", ",{\"kind\":\"new\"}]"), {"Mine"});
        row("torn list", list.chopped(1), defaultNames);
        row("no bytes", QString("[]"), defaultNames);
    }
    void losesNoProviderToADamagedOne()
    {
        QFETCH(PreferenceValue, stored);
        QFETCH(QStringList, names);
        Preferences(preferencesFile()).set("providers", stored);
        const auto fileOf = [](const QString &path) {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        const QByteArray before = fileOf(preferencesFile());
        const QString aside = StandardFolders::configuration() + "/preferences.unreadable-%1.json";
        QList<ProviderConfig> providers;
        {
            SettingsStore settings;
            QSignalSpy troubled(&settings.file(), &KeptFile::troubled);
            providers = settings.providers();
            QCOMPARE(namesOf(providers), names);
            QTRY_COMPARE(troubled.size(), 1);
            QCOMPARE(troubled.first().first(),
                     "The settings held parts that could not be read. The file as it was is kept "
                     "as " +
                         aside.arg(1) + '.');
        }
        QCOMPARE(fileOf(aside.arg(1)), before);
        QCOMPARE(SettingsStore().providers(), providers);
        QVERIFY(!QFile::exists(aside.arg(2)));
    }

    void acceptsEntriesWithAHost_data()
    {
        const auto row = columns<QString, QString, bool>("name", "baseURL", "accepted");
        row("plain", "N", "http://localhost:9117/api", true);
        row("a space for a name", " ", "https://h", true);
        row("no name", "", "https://h", false);
        row("no scheme", "N", "localhost:9117", false);
        row("no host", "N", "http://", false);
        row("no URL", "N", "http://a b/", false);
        row("nothing", "N", "", false);
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
