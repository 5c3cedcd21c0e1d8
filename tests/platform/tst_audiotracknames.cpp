// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/AudioTrackNames.h"
#include "testlib/Table.h"

#include <QTest>

using namespace tavelo;

Q_DECLARE_METATYPE(QList<AudioTrackInfo>)

class tst_AudioTrackNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data()
    {
        const auto row = columns<QList<AudioTrackInfo>, QStringList>("tracks", "expected");
        using Tracks = QList<AudioTrackInfo>;
        row("title before language", Tracks{{"Director's commentary", "eng", 2}, {"", "fra", 2}},
            {"Director's commentary", "French"});
        row("two- and three-letter codes, tags, capitals",
            Tracks{{"", "de", 2}, {"", "pt-BR", 2}, {"", "ENG", 2}, {"", "ger", 2}},
            {"German (Track 1)", "Portuguese", "English", "German (Track 4)"});
        row("nothing known", Tracks{{"", "und", 0}, {"  ", "", 0}}, {"Track 1", "Track 2"});
        row("layout only where it tells two apart",
            Tracks{{"", "eng", 2}, {"", "eng", 6}, {"", "ita", 6}},
            {"English (Stereo)", "English (5.1)", "Italian"});
        row("layout and then number", Tracks{{"", "eng", 2}, {"", "eng", 6}, {"", "eng", 2}},
            {"English (Stereo) (Track 1)", "English (5.1)", "English (Stereo) (Track 3)"});
        row("layout known of one", Tracks{{"", "eng", 0}, {"", "eng", 3}},
            {"English", "English (3 channels)"});
    }

    void names()
    {
        QFETCH(QList<AudioTrackInfo>, tracks);
        QTEST(audioTrackNames(tracks), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_AudioTrackNames)
#include "tst_audiotracknames.moc"
