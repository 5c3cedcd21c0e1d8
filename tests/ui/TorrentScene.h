// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Program.h"

#include <QCoroFuture>
#include <QPromise>
#include <QTest>

// A torrent search whose answers come when the test says so.

namespace tavelo {

/// Answers when it is told to.
class HeldProvider : public TorrentSearchProvider
{
public:
    explicit HeldProvider(const QString &name)
        : TorrentSearchProvider(ProviderConfig::create(name, ProviderKind::ApiBay, "http://none"))
    {
        m_promise->start();
    }

    QCoro::Task<TorrentResults> search(QString, std::stop_token) const override
    {
        const auto promise = m_promise;
        co_return co_await promise->future();
    }

    void answer(const QList<TorrentResult> &results) const
    {
        m_promise->addResult(TorrentResults(results));
        m_promise->finish();
    }

private:
    std::shared_ptr<QPromise<TorrentResults>> m_promise =
        std::make_shared<QPromise<TorrentResults>>();
};

/// "Reel 0", the best seeded, "Reel 1", …
inline QList<TorrentResult> reels(int count, const QString &source = "A")
{
    QList<TorrentResult> results;
    for (int i = 0; i < count; ++i) {
        TorrentResult result;
        result.id = source + QString::number(i);
        result.title = QStringLiteral("Reel %1").arg(i);
        result.sources = {source};
        result.seeders = 100'000 - i;
        results.append(result);
    }
    return results;
}

inline bool showSection(Program &program)
{
    return program.show() && program.click("Torrent Search") &&
           QTest::qWaitFor([&] { return program.control("Open .torrent…") != nullptr; });
}

/// Shows the section with what a search found.
inline bool showResults(Program &program, const QList<TorrentResult> &results)
{
    if (!showSection(program))
        return false;
    const auto provider = std::make_shared<HeldProvider>("A");
    program.state().aggregator()->search("reel", {provider});
    provider->answer(results);
    return QTest::qWaitFor([&] {
        return program.text(QStringLiteral("%1 of %1 results").arg(results.size())) != nullptr;
    });
}

inline QObject *results(const Program &program)
{
    return program.item("ResultTable")->property("results").value<QObject *>();
}

inline int currentRow(const Program &program)
{
    return results(program)->property("currentRow").toInt();
}

} // namespace tavelo
