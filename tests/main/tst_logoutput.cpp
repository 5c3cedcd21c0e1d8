// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/LogOutput.h"
#include "platform/Log.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace tavelo;

class tst_LogOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void option()
    {
        QStringList arguments{"a.torrent", "--log=http,engine", "--logs", "b.torrent"};
        QCOMPARE(LogOutput::takeOption(arguments), (QStringList{"http", "engine"}));
        QCOMPARE(arguments, (QStringList{"a.torrent", "--logs", "b.torrent"}));
        QVERIFY(!LogOutput::takeOption(arguments));
        arguments.append("--log");
        QCOMPARE(LogOutput::takeOption(arguments), QStringList{"*"});
    }

    /// Lines of several threads come whole; the newest are there, and no more than is allowed.
    void file()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("cache/tavelo.log");
        const auto content = [](const QString &name) {
            QFile file(name);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        const auto before = qInstallMessageHandler(nullptr);
        const auto restore = qScopeGuard([before] { qInstallMessageHandler(before); });
        constexpr qint64 most = 20'000;
        LogOutput::start({"http"}, folder.filePath("cache"), most);
        const auto write = [] {
            for (int i = 1; i <= 500; ++i)
                qCInfo(logHttp, "line %d of it", i);
            qCInfo(logSearch, "not asked for");
        };
        std::thread other(write);
        write();
        other.join();
        const QString previous = folder.filePath("cache/tavelo.previous.log");
        QVERIFY(content(path).endsWith("line 500 of it\n"));
        QVERIFY(content(previous).size() > most / 4);
        QVERIFY(content(path).size() + content(previous).size() <= most);
        for (const QByteArray &line : (content(previous) + content(path)).trimmed().split('\n'))
            QVERIFY2(line.contains(" tavelo.http line ") && line.endsWith(" of it"),
                     line.constData());
        QVERIFY(QDir(folder.filePath("cache")).removeRecursively());
        QDir().mkpath(folder.filePath("cache"));
        qCInfo(logHttp, "after the cache was cleared");
        QVERIFY(content(path).endsWith("after the cache was cleared\n"));
    }
};

QTEST_GUILESS_MAIN(tst_LogOutput)
#include "tst_logoutput.moc"
