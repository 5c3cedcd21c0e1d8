// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Mp4Made.h"
#include "platform/media/film/KeptFilm.h"
#include "platform/media/film/Mp4Index.h"
#include "platform/media/film/Mp4Layout.h"
#include "testlib/Table.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <cmath>
#include <limits>

using namespace tavelo;

namespace {

using Span = std::optional<ByteSpan>;

QByteArray clip(const QString &name)
{
    QFile file(TAVELO_CLIPS "/" + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Holds the first `count` bytes of a file.
HeldBytes firstOf(const QByteArray &file, qint64 count)
{
    return [=](qint64 offset, qint64 wanted) -> std::optional<QByteArray> {
        if (offset + wanted > count)
            return {};
        return file.mid(offset, wanted);
    };
}

struct Packet
{
    bool isPicture = false;
    int stream = 0;
    double shown = 0;
    double decoded = 0;
    bool isKey = false;
    ByteSpan place;
};

QList<Packet> packetsOf(const QString &name)
{
    QProcess probe;
    probe.start("ffprobe",
                {"-v", "error", "-show_packets", "-of", "json", TAVELO_CLIPS "/" + name});
    probe.waitForFinished();
    QList<Packet> packets;
    const auto document = QJsonDocument::fromJson(probe.readAllStandardOutput());
    for (const QJsonValue &json : document["packets"].toArray()) {
        const auto decimal = [&](const char *key) { return json[QLatin1String(key)].toString(); };
        const qint64 place = decimal("pos").toLongLong();
        packets << Packet{json["codec_type"].toString() == "video",
                          json["stream_index"].toInt(),
                          decimal("pts_time").toDouble(),
                          decimal("dts_time").toDouble(),
                          decimal("flags").startsWith('K'),
                          {place, place + decimal("size").toLongLong()}};
    }
    return packets;
}

QList<Packet> ofStream(const QList<Packet> &packets, int stream)
{
    QList<Packet> own;
    std::ranges::copy_if(packets, std::back_inserter(own),
                         [=](const Packet &packet) { return packet.stream == stream; });
    return own;
}

/// What is needed of these packets, one by one, as another reader of the file lists them.
ByteSpan spanOf(const QList<Packet> &packets, double from, double until)
{
    ByteSpan all{std::numeric_limits<qint64>::max(), 0};
    double start = from;
    for (const bool pictures : {true, false}) {
        for (int stream = 0; stream < 3; ++stream) {
            const auto own = ofStream(packets, stream);
            if (own.isEmpty() || own.first().isPicture != pictures)
                continue;
            qsizetype first = 0;
            for (qsizetype i = 0; i < own.size(); ++i) {
                if (pictures ? own[i].isKey && own[i].shown <= from : own[i].decoded <= start)
                    first = i;
            }
            if (pictures)
                start = own[first].decoded;
            for (qsizetype i = first; i < own.size(); ++i) {
                if (i > first && own[i].decoded > until)
                    break;
                all.first = std::min(all.first, own[i].place.first);
                all.end = std::max(all.end, own[i].place.end);
            }
        }
    }
    return all;
}

const QByteArray claim = mp4::number(quint32(0xffffffff));

/// A handmade film of ten pictures, one a second, two in each chunk, the sixth of them a key frame
/// besides the first.
struct Tables
{
    QByteArray sizes = mp4::table("stsz", {0, 10, 10, 20, 30, 40, 50, 60, 15, 25, 35, 45});
    QByteArray places = mp4::table("stco", {5, 1000, 1100, 1200, 1300, 1400});
    QByteArray chunks = mp4::table("stsc", {1, 1, 2, 1});
    QByteArray times = mp4::table("stts", {1, 10, 100});
    QByteArray keys = mp4::table("stss", {2, 1, 6});
    QByteArray delays = {};
    QByteArray edits = {};
    QByteArray clock = mp4::table("mdhd", {0, 0, 100, 1000, 0});
    QByteArray fragments = {};

    QByteArray trak(quint32 flags = 0) const
    {
        using namespace mp4;
        const QByteArray stbl = box("stbl", times + keys + delays + chunks + sizes + places);
        const QByteArray hdlr = table("hdlr", {0, 0x76696465, 0, 0, 0});
        const QByteArray mdia = box("mdia", clock + hdlr + box("minf", stbl));
        return box("trak", box("tkhd", numbers({flags})) + box("edts", edits) + mdia);
    }
    QByteArray moov(const QByteArray &tracks) const
    {
        return mp4::box("moov", mp4::table("mvhd", {0, 0, 1000, 10000, 0}) + tracks + fragments);
    }
    QByteArray moov() const { return moov(trak()); }
};

} // namespace

Q_DECLARE_METATYPE(Tables)

class FilmIndexTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theHeadsTellWhereThePartsLie_data()
    {
        using namespace mp4;
        const auto add = columns<QByteArray, Span, Span, Span>("file", "index", "media", "missing");
        const QByteArray ftyp = box("ftyp", QByteArray(8, 'a'));
        const QByteArray moov = box("moov", QByteArray(20, 'm'));
        const QByteArray mdat = box("mdat", QByteArray(100, 'd'));
        const QByteArray hole = number(quint32(8)) + "wide";
        add("index first", ftyp + moov + mdat, ByteSpan{16, 44}, ByteSpan{52, 152}, {});
        add("index last", ftyp + mdat + moov, ByteSpan{124, 152}, ByteSpan{24, 124}, {});
        add("without a type, with holes", hole + box("mdat", {}) + mdat + box("free", "xy") + moov,
            ByteSpan{134, 162}, ByteSpan{24, 124}, {});
        add("64 bits", ftyp + longBox("mdat", QByteArray(100, 'd')) + longBox("moov", "index"),
            ByteSpan{132, 153}, ByteSpan{32, 132}, {});
        add("to the end", ftyp + moov + numbers({0}) + "mdat" + QByteArray(100, 'd'),
            ByteSpan{16, 44}, ByteSpan{52, 152}, {});
        add("not such a file", box("RIFF", "data") + moov + mdat, {}, {}, {});
        add("text", "<!DOCTYPE html><html></html>", {}, {}, {});
        add("nothing", "", {}, {}, {});
        add("smaller than its head", ftyp + numbers({7}) + "moov" + mdat, {}, {}, {});
        add("larger than the file", ftyp + moov + numbers({101}) + "mdat" + QByteArray(92, 'd'),
            ByteSpan{16, 44}, {}, {});
        add("64 bits below zero", ftyp + numbers({1}) + "moov" + QByteArray(8, '\xff') + mdat, {},
            {}, {});
        add("64 bits cut", ftyp + numbers({1}) + "moov" + "1234", {}, {}, {});
        add("too many boxes", ftyp + hole.repeated(63) + moov + mdat, {}, {}, {});
        add("many boxes", ftyp + hole.repeated(61) + moov + mdat, ByteSpan{504, 532},
            ByteSpan{540, 640}, {});
        add("a giant index", ftyp + box("moov", QByteArray(Mp4Layout::maxIndexBytes, 'm')) + mdat,
            {}, {}, {});
    }
    void theHeadsTellWhereThePartsLie()
    {
        QFETCH(QByteArray, file);
        QFETCH(Span, index);
        QFETCH(Span, media);
        QFETCH(Span, missing);
        const auto found = Mp4Layout::of(file.size(), firstOf(file, file.size()));
        QCOMPARE(found, (Mp4Layout{index, media, missing}));
    }

    void fewRequestsFindTheIndex_data()
    {
        const auto add = columns<QString, qint64, int>("name", "held", "requests");
        add("first", "counted.mp4", 65536, 0);
        add("first, nothing held", "counted.mp4", 0, 3);
        add("last", "short.mp4", 4096, 1);
        add("last, nothing held", "short.mp4", 0, 3);
        add("of QuickTime", "heavy.mov", 16384, 1);
    }
    void fewRequestsFindTheIndex()
    {
        QFETCH(QString, name);
        QFETCH(qint64, held);
        const QByteArray film = clip(name);
        QList<ByteSpan> spans{{0, held}};
        const auto holds = [&](qint64 offset, qint64 count) -> std::optional<QByteArray> {
            for (const ByteSpan &span : spans) {
                if (span.contains(offset) && offset + count <= span.end)
                    return film.mid(offset, count);
            }
            return {};
        };
        int requests = 0;
        auto layout = Mp4Layout::of(film.size(), holds);
        for (; layout.missing && requests < 10; ++requests) {
            spans << *layout.missing;
            layout = Mp4Layout::of(film.size(), holds);
        }
        QTEST(requests, "requests");
        const qint64 type = film.indexOf("moov");
        QCOMPARE(layout.index->first, type - 4);
        QCOMPARE(layout.index->size(), qFromBigEndian<quint32>(film.data() + type - 4));
        QCOMPARE(layout.media->first, film.indexOf("mdat") + 4);
    }

    void theTablesTellWhatASecondNeeds_data()
    {
        // Sound without compression is listed in packets by one, by samples in the other.
        const auto add = columns<QString, qint64>("name", "grain");
        add("delayed pictures, two sounds", "counted.mp4", 0);
        add("index last", "short.mp4", 0);
        add("many chunks", "long.mp4", 0);
        add("sound without compression", "heavy.mov", 4096);
    }
    void theTablesTellWhatASecondNeeds()
    {
        QFETCH(QString, name);
        QFETCH(qint64, grain);
        const QByteArray film = clip(name);
        const auto packets = packetsOf(name);
        QVERIFY(packets.size() > 100);
        const auto layout = Mp4Layout::of(film.size(), firstOf(film, film.size()));
        const auto index = Mp4Index::parse(film.mid(layout.index->first, layout.index->size()));
        QVERIFY(index);
        QVERIFY(std::abs(index->duration() - packets.last().shown) < 0.2);
        for (double from = 0; from < index->duration() + 5; from += 0.373) {
            const ByteSpan found = index->bytesFor(from, from + 0.71);
            const ByteSpan expected = spanOf(packets, from, from + 0.71);
            const QString text = QString("at %1: %2-%3, not %4-%5")
                                     .arg(from)
                                     .arg(found.first)
                                     .arg(found.end)
                                     .arg(expected.first)
                                     .arg(expected.end);
            QVERIFY2(std::abs(found.first - expected.first) <= grain, qPrintable(text));
            QVERIFY2(std::abs(found.end - expected.end) <= grain, qPrintable(text));
        }
    }

    void everyFormOfTheTablesIsRead_data()
    {
        using namespace mp4;
        const auto add = columns<Tables, ByteSpan>("tables", "span"); // of 6 to 7.5 seconds
        add("plain", {}, {1250, 1340});
        add("places of 64 bits",
            {.places = box("co64", numbers({0, 5, 0, 1000, 0, 1100, 1, 1200, 1, 1300, 0, 1400}))},
            {0x100000000 + 1250, 0x100000000 + 1340});
        const QByteArray words = QByteArray::fromHex("000a0014001e00280032003c000f00190023002d");
        add("sizes of 16 bits", {.sizes = box("stz2", numbers({0, 16, 10}) + words)}, {1250, 1340});
        const QByteArray bytes = QByteArray::fromHex("0a141e28323c0f19232d");
        add("of 8", {.sizes = box("stz2", numbers({0, 8, 10}) + bytes)}, {1250, 1340});
        const QByteArray halves = QByteArray::fromHex("123456789a");
        add("of 4", {.sizes = box("stz2", numbers({0, 4, 10}) + halves)}, {1205, 1315});
        add("of all alike", {.sizes = table("stsz", {10, 10})}, {1210, 1320});
        add("chunks of several lengths", {.chunks = table("stsc", {2, 1, 1, 1, 2, 3, 1})},
            {1250, 1325});
        add("places that go back", {.places = table("stco", {5, 1400, 1300, 1200, 1100, 1000})},
            {1100, 1310});
        add("two speeds", {.times = table("stts", {2, 5, 100, 5, 50})}, {1250, 1480});
        add("delayed pictures", {.delays = table("ctts", {1, 10, 150})}, {1000, 1340});
        add("every picture a key frame", {.keys = {}}, {1300, 1340});
        add("a beginning cut off", {.edits = table("elst", {1, 8000, 200, 0x10000})}, {1250, 1480});
        add("a pause in front",
            {.edits = table("elst", {2, 2000, 0xffffffff, 0x10000, 8000, 0, 0x10000})},
            {1000, 1310});
        const QByteArray wide = numbers({0x1000000, 1, 0, 8000, 0, 200, 0x10000});
        add("cut off, with 64 bits", {.edits = box("elst", wide)}, {1250, 1480});
        const QByteArray clock = numbers({0x1000000, 0, 0, 0, 0, 50, 0, 1000, 0});
        add("a clock of 64 bits", {.clock = box("mdhd", clock)}, {1000, 1170});
    }
    void everyFormOfTheTablesIsRead()
    {
        QFETCH(Tables, tables);
        const auto index = Mp4Index::parse(tables.moov());
        QVERIFY(index);
        QTEST(index->bytesFor(6, 7.5), "span");
    }

    void picturesThatAreNotShownDoNotCount()
    {
        const Tables chapters{.places = mp4::table("stco", {5, 1, 2, 3, 4, 5})};
        const Tables film;
        const ByteSpan shown{1250, 1340};
        QCOMPARE(Mp4Index::parse(film.moov(chapters.trak() + film.trak(7)))->bytesFor(6, 7.5),
                 shown);
        QVERIFY(Mp4Index::parse(film.moov(chapters.trak(1) + film.trak(1)))->bytesFor(6, 7.5) !=
                shown);
    }

    void littleMediaIsKeptOfHeavyFilms_data()
    {
        // The bytes of one picture; the film is left at the ninth.
        const auto add = columns<quint32, qint64, ByteSpan>("each", "heldFrom", "kept");
        add("all", 400'000, 0, {1000, 4'001'000});
        add("from the key frame before", 500'000, 0, {2'501'000, 5'001'000});
        add("not all that is needed", 1'000'000, 0,
            {5'001'000, 5'001'000 + KeptFilm::maxMediaBytes});
        add("what is held", 100'000, 501'000, {501'000, 1'001'000});
        add("what is held since", 100'000, 600'000, {501'000, 1'001'000});
    }
    void littleMediaIsKeptOfHeavyFilms()
    {
        QFETCH(quint32, each);
        QFETCH(qint64, heldFrom);
        const auto isHeld = [=](const ByteSpan &span) { return span.first >= heldFrom; };
        const auto place = [=](quint32 chunk) { return 1000 + chunk * 2 * each; };
        const Tables heavy{
            .sizes = mp4::table("stsz", {each, 10}),
            .places = mp4::table("stco", {5, place(0), place(1), place(2), place(3), place(4)})};
        const auto index = Mp4Index::parse(heavy.moov());
        QVERIFY(index);
        QTEST(KeptFilm::mediaAround(*index, 8, isHeld), "kept");
    }

    void falseTablesAreRefused_data()
    {
        using namespace mp4;
        const auto add = columns<Tables>("tables");
        const QByteArray none = numbers({0});
        add("more sizes than there are", {.sizes = box("stsz", none + none + claim + "1234")});
        add("more small sizes", {.sizes = box("stz2", none + numbers({4}) + claim + "1234")});
        add("sizes of no bits", {.sizes = box("stz2", numbers({0, 0, 1}) + "1234")});
        add("more places", {.places = box("stco", none + claim + "1234")});
        add("more wide places", {.places = table("co64", {2, 0, 1000, 0})});
        add("more chunks", {.chunks = box("stsc", none + claim)});
        add("more times", {.times = box("stts", none + claim)});
        add("more delays", {.delays = box("ctts", none + claim)});
        add("more key frames", {.keys = box("stss", none + claim)});
        add("more edits", {.edits = box("elst", none + claim)});
        add("chunks that go back", {.chunks = table("stsc", {2, 1, 2, 1, 1, 2, 1})});
        add("chunks from nowhere", {.chunks = table("stsc", {1, 0, 2, 1})});
        add("no sizes", {.sizes = {}});
        add("a clock that stands", {.clock = table("mdhd", {0, 0, 0, 1000, 0})});
        add("a clock cut", {.clock = table("mdhd", {0, 0, 100})});
        add("film in pieces",
            {.edits = table("elst", {2, 4000, 100, 0x10000, 4000, 700, 0x10000})});
        add("fragments", {.fragments = box("mvex", {})});
    }
    void falseTablesAreRefused()
    {
        QFETCH(Tables, tables);
        QVERIFY(!Mp4Index::parse(tables.moov()));
    }

    void hugeClaimsCostNothing()
    {
        using namespace mp4;
        const QByteArray none = numbers({0});
        const Tables huge{.sizes = box("stsz", none + claim + claim),
                          .places = box("co64", numbers({0, 5}) + claim.repeated(10)),
                          .chunks = box("stsc", numbers({0, 1, 1}) + claim + claim),
                          .times = box("stts", numbers({0, 100'000}) + claim.repeated(200'000)),
                          .keys = box("stss", numbers({0, 2, 1}) + claim),
                          .delays = box("ctts", numbers({0, 100'000}) + claim.repeated(200'000))};
        const auto index = Mp4Index::parse(huge.moov());
        QVERIFY(index);
        QElapsedTimer clock;
        clock.start();
        const double never = std::numeric_limits<double>::infinity();
        for (const double from : {0.0, -1.0, 1e9, 1e300, never, std::nan("")}) {
            const ByteSpan span = index->bytesFor(from, never);
            QVERIFY(span.first >= 0 && span.first <= span.end);
        }
        QVERIFY(clock.elapsed() < 500);
    }
};

QTEST_GUILESS_MAIN(FilmIndexTest)
#include "tst_filmindex.moc"
