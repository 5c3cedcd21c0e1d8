// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "playback/SubtitleManager.h"

#include "catalogue/FetchData.h"
#include "platform/ThreadPool.h"
#include "platform/files/FileContent.h"
#include "playback/SubtitleParser.h"

#include <QCoroFuture>

#include <algorithm>

namespace tavelo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 maxFileBytes = 64LL * 1024 * 1024;

QCoro::Task<Result<QByteArray>> contentOf(QUrl url, std::stop_token stop)
{
    if (!url.isLocalFile())
        co_return co_await fetchData(url, 20s, std::move(stop));
    const auto read =
        runOnPool([path = url.toLocalFile()] { return FileContent::load(path, maxFileBytes); });
    co_return co_await read;
}

} // namespace

SubtitleManager::SubtitleManager(QObject *parent)
    : QObject(parent)
{}

SubtitleManager::~SubtitleManager()
{
    m_load.request_stop();
}

QVariant SubtitleManager::selectedVariant() const
{
    return m_selected ? QVariant::fromValue(*m_selected) : QVariant::fromValue(nullptr);
}

void SubtitleManager::reset(const QList<SubtitleTrack> &tracks)
{
    m_load.request_stop();
    setTracks(tracks);
    clear({});
}

void SubtitleManager::offer(const QList<SubtitleTrack> &tracks)
{
    QList<SubtitleTrack> all = tracks;
    for (const SubtitleTrack &track : std::as_const(m_tracks)) {
        if (!all.contains(track))
            all.append(track);
    }
    setTracks(all);
}

void SubtitleManager::select(const std::optional<SubtitleTrack> &track)
{
    m_load.request_stop();
    m_load = std::stop_source();
    const std::stop_token stop = m_load.get_token();
    clear(track);
    // Whoever hears of the change may choose another.
    if (track && !stop.stop_requested())
        load(*track, stop);
}

void SubtitleManager::addLocal(const QUrl &file)
{
    const SubtitleTrack track{file.fileName(), file};
    if (!m_tracks.contains(track))
        setTracks(m_tracks + QList<SubtitleTrack>{track});
    select(track);
}

void SubtitleManager::update(double time)
{
    const auto cue = std::ranges::find_if(
        m_cues, [time](const SubtitleCue &each) { return each.start <= time && each.end >= time; });
    std::optional<QString> text;
    if (cue != m_cues.end())
        text = cue->text;
    if (text == m_currentText)
        return;
    m_currentText = text;
    Q_EMIT currentTextChanged();
}

QCoro::Task<> SubtitleManager::load(SubtitleTrack track, std::stop_token stop)
{
    const auto content = co_await contentOf(track.url, stop);
    // Our end requests the stop, too.
    if (stop.stop_requested())
        co_return;
    if (!content) {
        setError(QStringLiteral("Subtitles failed: ") + content.error().text);
        co_return;
    }
    const auto parsed = runOnPool(
        [bytes = *content] { return SubtitleParser::parse(SubtitleParser::decoded(bytes)); });
    const QList<SubtitleCue> cues = co_await parsed;
    if (stop.stop_requested())
        co_return;
    m_cues = cues;
    if (cues.isEmpty())
        setError(QStringLiteral("No subtitle cues found in ") + track.shownName());
}

void SubtitleManager::clear(const std::optional<SubtitleTrack> &selected)
{
    m_cues.clear();
    m_selected = selected;
    m_currentText.reset();
    m_error.reset();
    Q_EMIT selectedChanged();
    Q_EMIT currentTextChanged();
    Q_EMIT errorChanged();
}

void SubtitleManager::setTracks(const QList<SubtitleTrack> &tracks)
{
    m_tracks = tracks;
    Q_EMIT tracksChanged();
}

void SubtitleManager::setError(const std::optional<QString> &text)
{
    m_error = text;
    Q_EMIT errorChanged();
}

} // namespace tavelo
