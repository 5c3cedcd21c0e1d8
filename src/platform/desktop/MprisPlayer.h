// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QVariantMap>

namespace tavelo {

class MediaSession;

/// org.mpris.MediaPlayer2.Player: the film that plays. Times on the bus are in microseconds.
class MprisPlayer : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(double MinimumRate READ minimumRate CONSTANT)
    Q_PROPERTY(double MaximumRate READ maximumRate CONSTANT)
    Q_PROPERTY(bool CanGoNext READ no CONSTANT)
    Q_PROPERTY(bool CanGoPrevious READ no CONSTANT)
    Q_PROPERTY(bool CanPlay READ canPlay)
    Q_PROPERTY(bool CanPause READ canPlay)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ yes CONSTANT)

public:
    explicit MprisPlayer(MediaSession &session);

    QString playbackStatus() const;
    double rate() const;
    void setRate(double rate); // 0: pause
    QVariantMap metadata() const;
    double volume() const;
    void setVolume(double volume);
    qlonglong position() const;
    double minimumRate() const { return 0.5; }
    double maximumRate() const { return 2; }
    bool no() const { return false; }
    bool yes() const { return true; }
    bool canPlay() const;
    bool canSeek() const;

public Q_SLOTS:
    void Next() {}
    void Previous() {}
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong Offset);
    /// Ignored for another film than the one that plays, and out of its bounds.
    void SetPosition(const QDBusObjectPath &TrackId, qlonglong Position);
    void OpenUri(const QString &Uri) { Q_UNUSED(Uri) }

Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    QVariant value(const char *name) const;

    MediaSession &m_session;
};

} // namespace tavelo
