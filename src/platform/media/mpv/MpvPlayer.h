// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/MediaPlayer.h"
#include "platform/media/mpv/MpvCore.h"
#include "platform/media/mpv/MpvNodes.h"
#include "platform/media/mpv/MpvSeek.h"

#include <QTimer>

#include <atomic>
#include <optional>

struct mpv_event;
struct mpv_event_command;
struct mpv_event_end_file;
struct mpv_event_property;

namespace tavelo {

class FilmSource;
class FilmStream;
class MpvRenderer;

/// The libmpv engine. libmpv's events are taken on the main thread, in batches; signals follow once
/// a batch is through, so that nobody sees a state that holds for half a batch.
class MpvPlayer : public MediaPlayer
{
    Q_OBJECT

public:
    /// `films` must outlive this.
    MpvPlayer(std::shared_ptr<MpvCore> core, FilmSource &films);
    ~MpvPlayer() override;

    void load(const QUrl &url, double startAt) override;
    void clear() override;
    bool hasItem() const override { return m_hasItem; }

    void play() override;
    void pause() override;
    void setDefaultRate(float rate) override { m_defaultRate = rate; }
    void setRate(float rate) override { m_core->set("speed", static_cast<double>(rate)); }
    void setVolume(float volume) override;
    void setMuted(bool muted) override { m_core->set("mute", muted); }
    void setVideoGravity(VideoGravity gravity) override;
    void seek(double seconds, SeekDone done) override;

    ItemStatus itemStatus() const override { return m_status; }
    QString itemError() const override { return m_error; }
    QString trouble() const override { return m_trouble; }
    bool goesOnTrying() const override { return m_lost.has_value(); }
    TimeControlStatus timeControlStatus() const override { return m_timeControl; }
    bool hasArrived() const override { return m_hasItem && !m_target; }
    double currentTime() const override { return m_time; }
    double duration() const override { return m_duration; }
    QList<TimeRange> loadedRanges() const override;
    QList<AudioTrack> audioTracks() const override { return m_audio.tracks; }
    qint64 selectedAudioTrack() const override { return m_audio.selected; }
    void selectAudioTrack(qint64 id) override;
    std::shared_ptr<VideoRenderer> renderer() override;

private:
    /// What libmpv is asked to tell of; travels as the number of its answers.
    enum class Property {
        Time = 1,
        Duration,
        CoreIdle,
        EndReached,
        Seekable,
        Cache,
        Tracks,
        VideoChoice
    };

    void observe();
    void open();
    void videoChosen(bool wanted);
    void sendStart();
    void sendSeek();
    void drain();
    void handle(const mpv_event &event);
    void commandReplied(const mpv_event &event);
    void propertyReplied(const mpv_event &event);
    void loadReplied(std::uint64_t reply, int error, const mpv_event_command &result);
    void propertyChanged(Property id, const mpv_event_property &property);
    void tracksChanged(const mpv_node &trackList);
    void fileLoaded(double duration);
    void fileEnded(const mpv_event_end_file &end);
    void restarted();
    void arrive();
    void reachedEnd();
    void failItem(const QString &text);
    void resetItem();
    void applyPause();
    void publish();
    void tellTime();
    void tick();
    void followStream();
    void reload();
    void loseStream();
    void regainStream();
    void loseForGood();
    void setTrouble(const QString &text);
    TimeControlStatus computeTimeControl() const;

    std::shared_ptr<MpvCore> m_core;
    std::shared_ptr<MpvRenderer> m_renderer;
    FilmSource &m_films;
    std::shared_ptr<FilmStream> m_stream; // of a network item
    std::atomic_bool m_drainQueued = false;
    QTimer m_ticker;
    QTimer m_screenWait;

    std::uint64_t m_loadSerial = 0;
    qint64 m_entry = -1; // libmpv's id of our item; -1 until it told us
    bool m_entryStarted = false;
    bool m_hasItem = false;
    bool m_wantsToPlay = false;
    bool m_isFile = false;
    QUrl m_url;
    QByteArray m_address;     // for libmpv, while the item waits to be opened
    QByteArray m_aid;         // the audio track that is wanted, as libmpv names it
    bool m_hasScreen = false; // somebody draws the picture
    float m_defaultRate = 1;
    MpvSeek m_seek;

    ItemStatus m_status = ItemStatus::Unknown;
    QString m_error;
    QString m_trouble;
    std::optional<ItemStatus> m_lost; // the status before its server fell silent
    TimeControlStatus m_timeControl = TimeControlStatus::Paused;
    double m_time = 0;
    std::optional<double> m_target; // seconds; where it was told to go, until it has arrived
    double m_duration = 0;
    QList<TimeRange> m_ranges;
    MpvNodes::AudioTracks m_audio;
    bool m_idle = true;   // libmpv is not moving on
    bool m_atEnd = false; // on the last frame
    bool m_seekable = true;

    bool m_failing = false; // told with the next batch
    bool m_statusDirty = false;
    bool m_audioDirty = false;
    bool m_endDirty = false;
    bool m_tickDue = false;
};

} // namespace tavelo
