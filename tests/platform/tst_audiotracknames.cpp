// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/mpv/AudioTrackNames.h"

#include <QTest>

using namespace tavelo;

Q_DECLARE_METATYPE(QList<AudioTrackInfo>)

class tst_AudioTrackNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data()
    {
        QTest::addColumn<QList<AudioTrackInfo>>("tracks");
        QTest::addColumn<QStringList>("expected");
        using Tracks = QList<AudioTrackInfo>;
        QTest::newRow("title before language")
            << Tracks{{"Director's commentary", "eng", 2}, {"", "fra", 2}}
            << QStringList{"Director's commentary", "French"};
        QTest::newRow("two- and three-letter codes, tags, capitals")
            << Tracks{{"", "de", 2}, {"", "pt-BR", 2}, {"", "ENG", 2}, {"", "ger", 2}}
            << QStringList{"German (Track 1)", "Portuguese", "English", "German (Track 4)"};
        QTest::newRow("nothing known")
            << Tracks{{"", "und", 0}, {"  ", "", 0}} << QStringList{"Track 1", "Track 2"};
        QTest::newRow("layout only where it tells two apart")
            << Tracks{{"", "eng", 2}, {"", "eng", 6}, {"", "ita", 6}}
            << QStringList{"English (Stereo)", "English (5.1)", "Italian"};
        QTest::newRow("layout and then number")
            << Tracks{{"", "eng", 2}, {"", "eng", 6}, {"", "eng", 2}}
            << QStringList{"English (Stereo) (Track 1)", "English (5.1)",
                           "English (Stereo) (Track 3)"};
        QTest::newRow("layout known of one") << Tracks{{"", "eng", 0}, {"", "eng", 3}}
                                             << QStringList{"English", "English (3 channels)"};
    }

    void names()
    {
        QFETCH(QList<AudioTrackInfo>, tracks);
        QTEST(audioTrackNames(tracks), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_AudioTrackNames)
#include "tst_audiotracknames.moc"
