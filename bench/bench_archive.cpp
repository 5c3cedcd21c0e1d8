// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Seconds.h"
#include "catalogue/ArchiveParser.h"

#include <QJsonDocument>

#include <benchmark/benchmark.h>

using namespace tavelo;

namespace {

// Documents as the service writes them: about 700 bytes each, with markup and mixed types.
QByteArray pageOf(int count)
{
    QByteArray documents;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        documents += i > 0 ? "," : "";
        documents += R"({"identifier":"reel-)" + number + R"(","title":"Reel number )" + number +
                     R"(","year":)" + QByteArray::number(1920 + i % 60) +
                     R"(,"creator":["Northlight Pictures"],"downloads":)" + number +
                     R"(,"subject":["drama","harbour","silent film"],"licenseurl":)" +
                     R"("http://creativecommons.org/publicdomain/mark/1.0/","description":"<p>)" +
                     QByteArray("A keeper &amp; his daughter wait for the lamp to be lit.<br/>")
                         .repeated(7) +
                     R"(</p>"})";
    }
    return R"({"response":{"numFound":1,"start":0,"docs":[)" + documents + "]}}";
}

// Turn by turn with the JSON parser alone on the same bytes, so that both meet the same machine.
void parseSearch(benchmark::State &state)
{
    const QByteArray body = pageOf(static_cast<int>(state.range(0)));
    double all = 0;
    double jsonAlone = 0;
    for ([[maybe_unused]] auto turn : state) {
        jsonAlone += secondsOf([&] { return QJsonDocument::fromJson(body); });
        const double seconds = secondsOf([&] { return ArchiveParser::parseSearch(body); });
        state.SetIterationTime(seconds);
        all += seconds;
    }
    const double bytes = static_cast<double>(body.size()) * static_cast<double>(state.iterations());
    state.counters["MB/s"] = bytes / all / 1e6;
    state.counters["json_MB/s"] = bytes / jsonAlone / 1e6;
    state.counters["json_share"] = jsonAlone / all; // 1: nothing is spent beyond the JSON
}

} // namespace

BENCHMARK(parseSearch)->Arg(60)->Arg(10'000)->UseManualTime()->Unit(benchmark::kMillisecond);
