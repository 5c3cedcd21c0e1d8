// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Seconds.h"
#include "playback/SubtitleManager.h"
#include "playback/SubtitleParser.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTime>

#include <benchmark/benchmark.h>

extern "C" {
#include <libavformat/avformat.h>
}

using namespace tavelo;

namespace {

constexpr int cueCount = 10'000;

// A cue each second, with two lines, markup and the settings of real files.
QByteArray fileOf(const char *format)
{
    const bool vtt = qstrcmp(format, "webvtt") == 0;
    QByteArray file = vtt ? "WEBVTT\n\n" : "";
    const QLatin1String pattern(vtt ? "HH:mm:ss.zzz" : "HH:mm:ss,zzz");
    for (int i = 0; i < cueCount; ++i) {
        const QTime start = QTime(0, 0).addSecs(i);
        file += QByteArray::number(i + 1) + '\n' + start.toString(QString(pattern)).toLatin1() +
                " --> " + start.addMSecs(900).toString(QString(pattern)).toLatin1() +
                (vtt ? " align:start position:10%\n" : "\n") +
                "<i>The lamp was lit at dusk,</i>\n"
                "and nobody came to put it out: café no. " +
                QByteArray::number(i) + "\n\n";
    }
    return file;
}

struct Source
{
    const QByteArray &file;
    qsizetype at = 0;

    static int read(void *opaque, uint8_t *buffer, int size)
    {
        auto *self = static_cast<Source *>(opaque);
        const auto count = std::min<qsizetype>(size, self->file.size() - self->at);
        if (count == 0)
            return AVERROR_EOF;
        memcpy(buffer, self->file.constData() + self->at, size_t(count));
        self->at += count;
        return int(count);
    }
};

// FFmpeg's demuxer on the same bytes, every cue read.
int demuxed(const QByteArray &file, const char *format)
{
    constexpr int bufferSize = 64 * 1024;
    Source source{file};
    AVIOContext *io = avio_alloc_context(static_cast<unsigned char *>(av_malloc(bufferSize)),
                                         bufferSize, 0, &source, Source::read, nullptr, nullptr);
    AVFormatContext *context = avformat_alloc_context();
    context->pb = io;
    int count = 0;
    if (avformat_open_input(&context, nullptr, av_find_input_format(format), nullptr) == 0) {
        AVPacket *packet = av_packet_alloc();
        for (; av_read_frame(context, packet) == 0; av_packet_unref(packet))
            ++count;
        av_packet_free(&packet);
        avformat_close_input(&context);
    }
    av_freep(&io->buffer);
    avio_context_free(&io);
    return count;
}

void parseCues(benchmark::State &state, const char *format)
{
    const QByteArray file = fileOf(format);
    if (demuxed(file, format) != cueCount ||
        SubtitleParser::parse(SubtitleParser::decoded(file)).size() != cueCount)
        return state.SkipWithError("The cues are not all read.");
    double ours = 0;
    double theirs = 0;
    for ([[maybe_unused]] auto turn : state) {
        theirs += secondsOf([&] { return demuxed(file, format); });
        const double seconds =
            secondsOf([&] { return SubtitleParser::parse(SubtitleParser::decoded(file)); });
        state.SetIterationTime(seconds);
        ours += seconds;
    }
    state.counters["ffmpeg_ms"] = theirs / double(state.iterations()) * 1e3;
    state.counters["times_faster"] = theirs / ours; // the aim is 5
}

// Files as large as the program reads, in which every line ends in CR LF.
void parseLineEnds(benchmark::State &state, const char *part)
{
    constexpr qsizetype size = 16'000'000;
    const QByteArray file = QByteArray(part).repeated(size / qstrlen(part));
    double seconds = 0;
    for ([[maybe_unused]] auto turn : state) {
        const double once =
            secondsOf([&] { return SubtitleParser::parse(SubtitleParser::decoded(file)); });
        state.SetIterationTime(once);
        seconds += once;
    }
    // the aim is 100
    state.counters["MB/s"] = double(file.size()) * double(state.iterations()) / seconds / 1e6;
}

// What each tick of the player costs, where the cue is the last one.
void lookUp(benchmark::State &state)
{
    constexpr double limit = 20e-6;
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("film.srt")));
    if (!file.open(QIODevice::WriteOnly))
        return state.SkipWithError("The file cannot be written.");
    file.write(fileOf("srt"));
    file.close();
    SubtitleManager subtitles;
    subtitles.addLocal(QUrl::fromLocalFile(file.fileName()));
    while (subtitles.cues().isEmpty())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    double ours = 0;
    for ([[maybe_unused]] auto turn : state) {
        const double seconds = secondsOf([&] {
            subtitles.update(cueCount - 0.5);
            subtitles.update(cueCount + 1);
            return 0;
        });
        state.SetIterationTime(seconds / 2);
        ours += seconds / 2;
    }
    state.counters["of_the_limit"] = ours / double(state.iterations()) / limit;
}

} // namespace

BENCHMARK_CAPTURE(parseCues, srt, "srt")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parseCues, webvtt, "webvtt")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parseLineEnds, srt,
                  "1\r\n00:00:01,000 --> 00:00:02,000\r\n<i>The lamp was lit at dusk,</i>\r\n"
                  "and nobody came to put it out.\r\n\r\n")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parseLineEnds, line_ends_alone, "\r\n")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(lookUp)->UseManualTime()->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    av_log_set_level(AV_LOG_ERROR);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
