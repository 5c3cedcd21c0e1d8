// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Seconds.h"
#include "torrent/InfoHash.h"
#include "torrent/TorrentMetadata.h"

#include <benchmark/benchmark.h>
#include <libtorrent/torrent_info.hpp>
#include <openssl/evp.h>

using namespace tavelo;

namespace {

QByteArray text(const QByteArray &bytes)
{
    return QByteArray::number(bytes.size()) + ":" + bytes;
}

// A season's worth of paths; `pieceBytes` are the hashes of the pieces, 20 bytes each.
QByteArray torrentOf(int files, qsizetype pieceBytes)
{
    constexpr qint64 pieceLength = 16 * 1024 * 1024;
    const qint64 length = pieceLength * (pieceBytes / 20) / files;
    QByteArray list;
    for (int i = 0; i < files; ++i) {
        const QByteArray number = QByteArray::number(i);
        list += "d6:lengthi" + QByteArray::number(length) + "e4:pathl" +
                text("Season " + QByteArray::number(i / 1000)) +
                text("The Lighthouse Keepers " + number + " 1080p.mkv") + "ee";
    }
    return "d" + text("announce") + text("udp://tracker.example:80/announce") + text("info") +
           "d5:filesl" + list + "e4:name" + text("The Lighthouse Keepers") + "12:piece lengthi" +
           QByteArray::number(pieceLength) + "e6:pieces" + text(QByteArray(pieceBytes, 'h')) + "ee";
}

// Turn by turn with the reference library on the same bytes, so that both meet the same machine.
void parseTorrent(benchmark::State &state)
{
    const QByteArray data = torrentOf(int(state.range(0)), state.range(1));
    // Its limits are below the largest of these files.
    lt::load_torrent_limits limits;
    limits.max_buffer_size = 64'000'000;
    limits.max_decode_tokens = 10'000'000;
    double ours = 0;
    double theirs = 0;
    for ([[maybe_unused]] auto turn : state) {
        theirs += secondsOf([&] {
            return lt::torrent_info(lt::span<const char>(data.data(), data.size()), limits,
                                    lt::from_span)
                .num_files();
        });
        const double seconds =
            secondsOf([&] { return TorrentMetadata::parseTorrent(data)->files.size(); });
        state.SetIterationTime(seconds);
        ours += seconds;
    }
    state.counters["libtorrent_ms"] = theirs / double(state.iterations()) * 1e3;
    state.counters["ratio"] = ours / theirs; // the aim is 0.5
}

// The hash of the metainfo against the cryptographic library's bare rate.
void infoHash(benchmark::State &state)
{
    const QByteArray data(state.range(0), 'h');
    double ours = 0;
    double bare = 0;
    for ([[maybe_unused]] auto turn : state) {
        uchar digest[20];
        bare += secondsOf([&] {
            return EVP_Digest(data.data(), size_t(data.size()), digest, nullptr, EVP_sha1(),
                              nullptr);
        });
        const double seconds = secondsOf([&] { return infoHashOf(data); });
        state.SetIterationTime(seconds);
        ours += seconds;
    }
    state.counters["MB/s"] = double(data.size()) * double(state.iterations()) / ours / 1e6;
    state.counters["share_of_libcrypto"] = bare / ours; // the aim is 0.9
}

} // namespace

BENCHMARK(parseTorrent)
    ->Args({1, 20'000})
    ->Args({1'000, 20'000})
    ->Args({50'000, 1'000'000})
    ->Args({1, 10'000'000})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(infoHash)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
