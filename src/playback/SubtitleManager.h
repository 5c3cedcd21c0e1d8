// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "playback/SubtitleCue.h"
#include "playback/SubtitleTrack.h"

#include <QCoroTask>
#include <QObject>
#include <QVariant>

#include <optional>
#include <stop_token>

namespace tavelo {

/// The subtitles of what is playing: the tracks to choose from, the chosen one, and its text at the
/// current time. A load that another choice has superseded publishes nothing. Main thread only;
/// files are read and parsed on the thread pool.
class SubtitleManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<tavelo::SubtitleTrack> tracks READ tracks NOTIFY tracksChanged)
    Q_PROPERTY(QVariant selected READ selectedVariant NOTIFY selectedChanged)
    Q_PROPERTY(QString currentText READ currentTextOrEmpty NOTIFY currentTextChanged)
    Q_PROPERTY(QString error READ errorText NOTIFY errorChanged)

public:
    explicit SubtitleManager(QObject *parent = nullptr);
    ~SubtitleManager() override;

    QList<SubtitleTrack> tracks() const { return m_tracks; }
    const std::optional<SubtitleTrack> &selected() const { return m_selected; } // absent: off
    const std::optional<QString> &currentText() const { return m_currentText; }
    const std::optional<QString> &error() const { return m_error; } // of the last load
    QList<SubtitleCue> cues() const { return m_cues; }

    // The same for QML: absent reads as null or as the empty text.
    QVariant selectedVariant() const;
    QString currentTextOrEmpty() const { return m_currentText.value_or(QString()); }
    QString errorText() const { return m_error.value_or(QString()); }

    /// For another film, or none: other tracks, subtitles off.
    void reset(const QList<SubtitleTrack> &tracks);
    /// Tracks that were found after the film's start: before those that the user added.
    void offer(const QList<SubtitleTrack> &tracks);
    /// Loads a track, also the one that is chosen already; absent turns subtitles off.
    void select(const std::optional<SubtitleTrack> &track);
    Q_INVOKABLE void selectTrack(const tavelo::SubtitleTrack &track) { select(track); }
    Q_INVOKABLE void selectOff() { select({}); }
    Q_INVOKABLE bool isSelected(const tavelo::SubtitleTrack &track) const
    {
        return m_selected == track;
    }
    /// Chooses a file of the user's, listed at the end unless it is listed already.
    Q_INVOKABLE void addLocal(const QUrl &file);
    /// Shows the first cue, in the file's order, whose bounds include `time` (seconds).
    void update(double time);

Q_SIGNALS:
    void tracksChanged();
    void selectedChanged();
    void currentTextChanged();
    void errorChanged();

private:
    QCoro::Task<> load(SubtitleTrack track, std::stop_token stop);
    void clear(const std::optional<SubtitleTrack> &selected);
    void setTracks(const QList<SubtitleTrack> &tracks);
    void setError(const std::optional<QString> &text);

    QList<SubtitleTrack> m_tracks;
    std::optional<SubtitleTrack> m_selected;
    std::optional<QString> m_currentText;
    std::optional<QString> m_error;
    QList<SubtitleCue> m_cues;
    std::stop_source m_load;
};

} // namespace tavelo
