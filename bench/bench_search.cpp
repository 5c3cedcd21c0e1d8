// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Seconds.h"
#include "search/MergeResults.h"
#include "search/TorznabParser.h"

#include <QCryptographicHash>

#include <benchmark/benchmark.h>

using namespace tavelo;

namespace {

QString hashOf(int number)
{
    const auto digest =
        QCryptographicHash::hash(QByteArray::number(number), QCryptographicHash::Sha1);
    return QString::fromLatin1(digest.toHex());
}

// From five providers; the later four repeat three in eight of the first, 30 % of all.
QList<TorrentResult> resultsOf(int count)
{
    const int each = count / 5;
    QList<TorrentResult> results;
    for (int i = 0; i < count; ++i) {
        const bool again = i % each % 8 < 3;
        TorrentResult result;
        result.infoHash = hashOf(again ? i % each : i);
        result.id = *result.infoHash;
        result.title = QStringLiteral("The Lighthouse Keepers %1 1080p BluRay x264").arg(i);
        result.seeders = i % 97;
        result.sources = {QStringLiteral("Provider %1").arg(i / each)};
        result.magnet = QLatin1String("magnet:?xt=urn%3Abtih%3A") + result.id;
        results.append(result);
    }
    return results;
}

void merge(benchmark::State &state)
{
    const QList<TorrentResult> results = resultsOf(int(state.range(0)));
    qsizetype merged = 0;
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(merged = mergeResults(results).size());
    state.counters["merged"] = double(merged);
    state.counters["limit_ms"] = 8;
}

QByteArray feedOf(int count)
{
    QByteArray items;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        const QByteArray hash = hashOf(i).toLatin1();
        items += "<item><title>The Lighthouse Keepers " + number +
                 " 1080p &amp; more</title><guid>https://indexer.example/" + number +
                 "</guid><link>https://indexer.example/dl/" + number +
                 "</link><comments>https://indexer.example/c/" + number +
                 "</comments><pubDate>Wed, 17 May 2017 20:36:06 +0000</pubDate><size>73400" +
                 number + "</size><description>Two keepers wait for the lamp.</description>" +
                 "<enclosure url=\"https://indexer.example/t/" + number +
                 ".torrent\" length=\"0\" type=\"application/x-bittorrent\"/>" +
                 "<torznab:attr name=\"category\" value=\"2000\"/>" +
                 "<torznab:attr name=\"seeders\" value=\"12\"/>" +
                 "<torznab:attr name=\"peers\" value=\"30\"/>" +
                 "<torznab:attr name=\"infohash\" value=\"" + hash + "\"/>" +
                 "<torznab:attr name=\"magneturl\" value=\"magnet:?xt=urn:btih:" + hash +
                 "\"/></item>\n";
    }
    return "<?xml version=\"1.0\"?><rss xmlns:torznab=\"http://torznab.com/schemas/2015/feed\">"
           "<channel>" +
           items + "</channel></rss>";
}

qsizetype tokensIn(const QByteArray &body)
{
    QXmlStreamReader reader(body);
    reader.setNamespaceProcessing(false);
    qsizetype tokens = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        ++tokens;
    }
    return tokens;
}

// Turn by turn with the XML reader alone on the same bytes.
void parseTorznab(benchmark::State &state)
{
    const QByteArray body = feedOf(int(state.range(0)));
    double all = 0;
    double xmlAlone = 0;
    for ([[maybe_unused]] auto turn : state) {
        xmlAlone += secondsOf([&] { return tokensIn(body); });
        const double seconds =
            secondsOf([&] { return TorznabParser(QStringLiteral("S")).parse(body)->size(); });
        state.SetIterationTime(seconds);
        all += seconds;
    }
    const double bytes = double(body.size()) * double(state.iterations());
    state.counters["MB/s"] = bytes / all / 1e6;
    state.counters["xml_MB/s"] = bytes / xmlAlone / 1e6;
    state.counters["xml_share"] = xmlAlone / all; // 1: nothing is spent beyond the XML
}

} // namespace

BENCHMARK(merge)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(parseTorznab)->Arg(5'000)->UseManualTime()->Unit(benchmark::kMillisecond);
