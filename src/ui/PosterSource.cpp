// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterSource.h"

#include "ui/PosterBook.h"
#include "ui/PosterProvider.h"

#include <QQuickWindow>

namespace tavelo {

PosterSource::PosterSource(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PosterSource::waited);
}

PosterSource::~PosterSource() = default;

void PosterSource::setFrame(QQuickItem *frame)
{
    if (m_frame == frame)
        return;
    if (m_frame)
        m_frame->disconnect(this);
    m_frame = frame;
    if (m_frame)
        connect(m_frame, &QQuickItem::visibleChanged, this, &PosterSource::shownOrHidden);
    waitForNext();
    Q_EMIT frameChanged();
}

void PosterSource::setUrl(const QUrl &url)
{
    if (m_url == url)
        return;
    m_url = url;
    m_attempt = PosterBook::shared().attempt(url);
    m_waits = 0;
    m_askedAgain = false;
    Q_EMIT urlChanged();
    Q_EMIT sourceChanged();
    waitForNext();
}

void PosterSource::setRadius(int radius)
{
    if (m_radius == radius)
        return;
    m_radius = radius;
    Q_EMIT radiusChanged();
    Q_EMIT sourceChanged();
}

void PosterSource::setMissing(bool missing)
{
    if (m_missing == missing)
        return;
    m_missing = missing;
    waitForNext();
    Q_EMIT missingChanged();
}

QUrl PosterSource::source() const
{
    if (m_url.isEmpty() || PosterBook::shared().hasNone(m_url))
        return {};
    return PosterProvider::sourceFor(m_url, m_radius, m_attempt);
}

bool PosterSource::isWorthAsking() const
{
    return m_missing && m_frame && m_frame->isVisible() && !PosterBook::shared().hasNone(m_url);
}

bool PosterSource::isInView() const
{
    const QQuickWindow *window = m_frame ? m_frame->window() : nullptr;
    return window &&
           m_frame->mapRectToScene(m_frame->boundingRect()).intersects(QRectF({}, window->size()));
}

void PosterSource::shownOrHidden()
{
    m_waits = 0;
    if (isWorthAsking())
        askAgain();
    else
        m_timer.stop();
}

void PosterSource::waitForNext()
{
    if (isWorthAsking() && m_waits < delays.size())
        m_timer.start(delays[m_waits]);
    else
        m_timer.stop();
}

void PosterSource::waited()
{
    if (!isInView())
        return waitForNext(); // as long again, for it may be scrolled there
    ++m_waits;
    askAgain();
}

void PosterSource::askAgain()
{
    m_attempt = PosterBook::shared().attemptAfter(m_url, m_attempt);
    m_askedAgain = true;
    Q_EMIT sourceChanged();
    waitForNext(); // the toolkit may know at once that this picture is missing, too
}

} // namespace tavelo
