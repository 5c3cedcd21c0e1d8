// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/AudioTrackNames.h"

#include <QLocale>

namespace tavelo {

namespace {

QString languageName(const QString &code)
{
    const QString primary = code.section(QLatin1Char('-'), 0, 0).toLower();
    const auto language = QLocale::codeToLanguage(primary, QLocale::AnyLanguageCode);
    if (language == QLocale::AnyLanguage || language == QLocale::C)
        return {};
    return QLocale::languageToString(language);
}

QString channelLayout(int channels)
{
    switch (channels) {
    case 0:
        return {};
    case 1:
        return QStringLiteral("Mono");
    case 2:
        return QStringLiteral("Stereo");
    case 6:
        return QStringLiteral("5.1");
    case 8:
        return QStringLiteral("7.1");
    default:
        return QStringLiteral("%1 channels").arg(channels);
    }
}

QString trackNumber(qsizetype index)
{
    return QStringLiteral("Track %1").arg(index + 1);
}

QString plainName(const AudioTrackInfo &track, qsizetype index)
{
    if (const QString title = track.title.simplified(); !title.isEmpty())
        return title;
    const QString language = languageName(track.language);
    return language.isEmpty() ? trackNumber(index) : language;
}

/// `addition(i)` in brackets behind every name that stands more than once, where it tells it from
/// one of its like.
template <typename Addition>
void tellApart(QList<QString> &names, Addition addition)
{
    const QList<QString> before = names;
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QString text = addition(i);
        bool helps = false;
        for (qsizetype j = 0; j < names.size(); ++j)
            helps = helps || (before[j] == before[i] && addition(j) != text);
        if (helps && !text.isEmpty())
            names[i] = QStringLiteral("%1 (%2)").arg(before[i], text);
    }
}

} // namespace

QList<QString> audioTrackNames(const QList<AudioTrackInfo> &tracks)
{
    QList<QString> names;
    for (qsizetype i = 0; i < tracks.size(); ++i)
        names.append(plainName(tracks[i], i));
    tellApart(names, [&](qsizetype i) { return channelLayout(tracks[i].channels); });
    tellApart(names, trackNumber);
    return names;
}

} // namespace tavelo
