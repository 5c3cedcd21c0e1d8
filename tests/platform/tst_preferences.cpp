// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Preferences.h"
#include "testlib/Table.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace tavelo;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

class TestPreferences : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    const QString m_file = m_folder.filePath("deep/er/preferences.json");

private Q_SLOTS:
    void cleanup() { QVERIFY(QDir(m_folder.filePath("deep")).removeRecursively()); }

    void keepsTypesApartAndValuesExactly()
    {
        const QList<PreferenceValue> values{QString(),
                                            QString(u"12 \"ü\" \u2028 true"_qs),
                                            QString("{\"base64\":\"AAAA\"}"),
                                            qint64(0),
                                            std::numeric_limits<qint64>::max(),
                                            std::numeric_limits<qint64>::min(),
                                            true,
                                            false,
                                            QByteArray(),
                                            QByteArray("\0\xFF{}", 4)};
        {
            Preferences stored(m_file);
            for (qsizetype i = 0; i < values.size(); ++i)
                stored.set(QString::number(i), values.at(i));
        }
        const Preferences read(m_file);
        for (qsizetype i = 0; i < values.size(); ++i) {
            const QString key = QString::number(i);
            const auto compare = [&](const auto &value, size_t index) {
                QCOMPARE(value.has_value(), values.at(i).index() == index);
                if (value)
                    QVERIFY(PreferenceValue(*value) == values.at(i));
            };
            compare(read.string(key), 0);
            compare(read.integer(key), 1);
            compare(read.boolean(key), 2);
            compare(read.bytes(key), 3);
        }
    }

    void startsEmptyWithABadFile_data()
    {
        const auto row = columns<QByteArray>("content");
        row("empty", QByteArray());
        row("torn", "{\"n\": 5, \"s\": \"hal");
        row("list", "[1]");
        row("text", "[General]\nn=5\n");
        row("other forms",
            R"({"n":1.5,"s":null,"b":[true],"d":{"base64":"%"},)"
            R"("e":{"base64":"AA==","x":1},"f":{"base64":5},"g":9223372036854775808})");
    }
    void startsEmptyWithABadFile()
    {
        QFETCH(QByteArray, content);
        Preferences(m_file).set("makes the folder", true);
        write(m_file, content);
        Preferences preferences(m_file);
        for (const char *key : {"n", "s", "b", "d", "e", "f", "g", "makes the folder"}) {
            QVERIFY2(!preferences.integer(key) && !preferences.string(key) &&
                         !preferences.boolean(key) && !preferences.bytes(key),
                     key);
        }
        preferences.set("new", qint64(7));
        preferences.file().flush();
        QCOMPARE(Preferences(m_file).integer("new"), 7);
        // What was there is there still: beside, or under its own names.
        const QByteArray aside =
            contentOf(m_folder.filePath("deep/er/preferences.unreadable-1.json"));
        QVERIFY(aside == content || contentOf(m_file).contains("1.5"));
    }

    void neverWaitsForAPipe()
    {
        const QString pipe = m_folder.filePath("pipe");
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        QVERIFY(!Preferences(pipe).string("x"));
    }

    void writesWhereALinkLeads()
    {
        const QString kept = m_folder.filePath("kept.json");
        Preferences(kept).set("n", qint64(1));
        QVERIFY(QDir().mkpath(m_folder.filePath("deep/er")));
        QVERIFY(QFile::link(kept, m_file));
        Preferences(m_file).set("n", qint64(2));
        QVERIFY(QFileInfo(m_file).isSymLink());
        QCOMPARE(Preferences(kept).integer("n"), 2);
        QVERIFY(QFile::exists(kept + ".previous"));
    }

    void keepsTheOldFileWhenItCannotWrite()
    {
        Preferences(m_file).set("n", qint64(1));
        const QByteArray before = contentOf(m_file);
        {
            // A folder that is a file stands for any that cannot be written.
            Preferences blocked(m_file + "/below.json");
            blocked.set("n", qint64(2));
            QCOMPARE(blocked.integer("n"), 2);
        }
        QCOMPARE(contentOf(m_file), before);
        QCOMPARE(QFile(m_file).permissions() & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }
};

QTEST_GUILESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
