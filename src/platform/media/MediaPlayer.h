// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

namespace tavelo {

class VideoRenderer;

/// A stretch of the media, in seconds from its start.
struct TimeRange
{
    double start = 0;
    double end = 0;

    bool operator==(const TimeRange &) const = default;
};

/// One audible track of an item. `name` is fit for a menu and differs from its neighbours'.
struct AudioTrack
{
    Q_GADGET
    Q_PROPERTY(qint64 id MEMBER id CONSTANT)
    Q_PROPERTY(QString name READ shownName CONSTANT)

public:
    qint64 id = 0;
    QString name;

    QString shownName() const { return DisplayText::name(name); } // for the screens

    bool operator==(const AudioTrack &) const = default;
};

enum class ItemStatus { Unknown, Ready, Failed };
enum class TimeControlStatus { Paused, Waiting, Playing };

/// How the picture fills the space it is given.
enum class VideoGravity {
    ResizeAspect,     // whole picture visible, bars where the shapes differ
    ResizeAspectFill, // no bars, edges cut off
    Resize,           // no bars, distorted
};

/// A media engine: plays one item at a time. Main thread only. Nothing here blocks.
class MediaPlayer : public QObject
{
    Q_OBJECT

public:
    /// Told once: true when the seek was carried out, false when it or the item failed, or a newer
    /// seek, a load or a clear took its place. Never told after the player is gone.
    using SeekDone = std::function<void(bool finished)>;

    using QObject::QObject;

    /// Replaces the item. `url` is a file, http or https address; anything else fails the item.
    /// `startAt` (seconds) is exactly where the first picture comes from, none before it is shown.
    /// The pause state is kept, the choice of an audio track is not.
    virtual void load(const QUrl &url, double startAt = 0) = 0;
    /// Removes the item, if any.
    virtual void clear() = 0;
    virtual bool hasItem() const = 0;

    /// Plays at the default rate; from the start when the item has played to its end.
    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void setDefaultRate(float rate) = 0;
    /// The current rate; pitch is kept. Does not start a paused player.
    virtual void setRate(float rate) = 0;
    virtual void setVolume(float volume) = 0; // 0 to 1
    virtual void setMuted(bool muted) = 0;
    virtual void setVideoGravity(VideoGravity gravity) = 0;

    /// Goes to exactly `seconds`: the frame shown then is the one of that time. While the item is
    /// being opened it begins there instead.
    virtual void seek(double seconds, SeekDone done = {}) = 0;

    virtual ItemStatus itemStatus() const = 0;
    virtual QString itemError() const = 0; // empty unless the status is Failed
    /// What keeps the network from bringing more, and what is done about it; empty: nothing.
    virtual QString trouble() const = 0;
    /// Whether a failed item becomes what it was, without anybody's doing, once its server is back.
    virtual bool goesOnTrying() const = 0;
    virtual TimeControlStatus timeControlStatus() const = 0;
    /// False from a load or a seek until a frame of where it was told to go has been shown; an item
    /// that fails before stays without.
    virtual bool hasArrived() const = 0;
    /// In seconds: what was shown last, or where it was told to go until it has arrived there.
    virtual double currentTime() const = 0;
    virtual double duration() const = 0; // seconds; NaN while unknown or endless
    /// What can be played without waiting; the range being filled comes last.
    virtual QList<TimeRange> loadedRanges() const = 0;

    virtual QList<AudioTrack> audioTracks() const = 0; // known once the item is ready
    virtual qint64 selectedAudioTrack() const = 0;     // -1: none
    /// An item that is not ready yet starts with that track, or its own when it has no such track.
    virtual void selectAudioTrack(qint64 id) = 0;

    /// The engine's picture, for the one surface that shows it. Usable also after the player is
    /// gone (it then draws nothing).
    virtual std::shared_ptr<VideoRenderer> renderer() = 0;

Q_SIGNALS:
    /// Every 0.5 s while an item is played, when it stands still, and after every finished seek.
    void timeTicked(double seconds);
    /// Also when an item that has failed is given up, or goes on.
    void itemStatusChanged();
    void troubleChanged();
    void timeControlStatusChanged();
    void audioTracksChanged();
    /// The last frame of the item was reached. A broken connection or file is a failed item
    /// instead.
    void playedToEnd();
};

} // namespace tavelo
