// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Seconds.h"
#include "catalogue/ArchiveParser.h"

#include <QJsonDocument>

#include <benchmark/benchmark.h>

#include <malloc.h>

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

// A description of one piece of markup again and again.
void stripHTML(benchmark::State &state, const char *piece)
{
    const QString text = QString::fromLatin1(piece).repeated(16'000'000 / qstrlen(piece));
    double seconds = 0;
    for ([[maybe_unused]] auto turn : state) {
        const double once = secondsOf([&] { return Fmt::stripHTML(text); });
        state.SetIterationTime(once);
        seconds += once;
    }
    // the aim is 100
    state.counters["MB/s"] = double(text.size()) * double(state.iterations()) / seconds / 1e6;
}

double heapMegabytes()
{
    const auto heap = mallinfo2();
    return double(heap.uordblks + heap.hblkhd) / 1e6;
}

// An answer of 4 MB that lists as many files as it can, of an item with a long identifier.
void parseDetails(benchmark::State &state)
{
    const QString id(static_cast<qsizetype>(state.range(0)), QLatin1Char('i'));
    const QByteArray file = R"({"name":"a"},)";
    const QByteArray body = R"({"metadata":{},"files":[)" + file.repeated(4'000'000 / file.size()) +
                            R"({"name":"a"}]})";
    double held = 0;
    for ([[maybe_unused]] auto turn : state) {
        const double before = heapMegabytes();
        const auto details = ArchiveParser::parseDetails(body, id);
        held = heapMegabytes() - before;
        benchmark::DoNotOptimize(details);
    }
    state.counters["held_MB"] = held;
}

} // namespace

BENCHMARK_CAPTURE(stripHTML, text, "A keeper and his daughter wait for the lamp to be lit. ")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stripHTML, entities, "&amp;")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stripHTML, markup, "<p>A &amp; B<br/>&quot;C&quot; &nbsp;</p>")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(parseDetails)->Arg(20)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(parseSearch)->Arg(60)->Arg(10'000)->UseManualTime()->Unit(benchmark::kMillisecond);
