// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QTimer>
#include <QUrl>
#include <QtQmlIntegration>

#include <array>
#include <chrono>

namespace tavelo {

/// Under which of PosterProvider's addresses a poster finds its picture. One that was not reached
/// is asked for again: after each of `delays` while the poster is on the screen, and whenever the
/// poster is shown again. One that there is none of is not.
class PosterSource : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *frame READ frame WRITE setFrame NOTIFY frameChanged REQUIRED)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(int radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(bool missing READ isMissing WRITE setMissing NOTIFY missingChanged)
    Q_PROPERTY(QUrl source READ source NOTIFY sourceChanged)
    Q_PROPERTY(bool askedAgain READ askedAgain NOTIFY sourceChanged)

public:
    static constexpr std::array<std::chrono::milliseconds, 3> delays{
        std::chrono::seconds(2), std::chrono::seconds(8), std::chrono::seconds(30)};

    explicit PosterSource(QObject *parent = nullptr);
    ~PosterSource() override;

    QQuickItem *frame() const { return m_frame; } // the poster itself
    void setFrame(QQuickItem *frame);
    QUrl url() const { return m_url; } // empty: none
    void setUrl(const QUrl &url);
    int radius() const { return m_radius; } // of the corners, in pixels
    void setRadius(int radius);
    /// The picture at `source` is an empty one.
    bool isMissing() const { return m_missing; }
    void setMissing(bool missing);

    QUrl source() const; // empty: there is nothing to ask for
    /// `source` is not the first one for this `url`.
    bool askedAgain() const { return m_askedAgain; }

Q_SIGNALS:
    void frameChanged();
    void urlChanged();
    void radiusChanged();
    void missingChanged();
    void sourceChanged();

private:
    bool isWorthAsking() const;
    bool isInView() const;
    void shownOrHidden();
    void waitForNext();
    void waited();
    void askAgain();

    QPointer<QQuickItem> m_frame;
    QUrl m_url;
    int m_radius = 0;
    int m_attempt = 0;
    std::size_t m_waits = 0; // since it was shown
    bool m_missing = false;
    bool m_askedAgain = false;
    QTimer m_timer;
};

} // namespace tavelo
