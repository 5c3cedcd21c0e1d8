// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/Foresight.h"

#include "platform/http/WebAddress.h"

#include <QPointer>

#include <chrono>

namespace tavelo {

namespace {

using namespace std::chrono_literals;

constexpr auto restTime = 300ms; // a pointer on its way across crosses a card in less

} // namespace

Foresight::Foresight(const PlaybackCoordinator &playback, Workspace &workspace, Films &films,
                     QObject *parent)
    : QObject(parent)
    , m_playback(playback)
    , m_workspace(workspace)
    , m_films(films)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(restTime);
    connect(&m_rest, &QTimer::timeout, this, &Foresight::restOnCard);
}

void Foresight::showItem(const ArchiveDetails &details)
{
    stop();
    m_item = details;
    const QList<ArchiveFile> films = details.playable();
    if (details.restricted || films.isEmpty())
        return;
    const auto start = m_playback.startOf(films.first(), details.item);
    prepare({.url = start.url,
             .startAt = start.at,
             .alternatives = details.alternatives(films.first())});
}

void Foresight::leaveItem()
{
    if (!m_item)
        return;
    m_item.reset();
    stop();
}

void Foresight::reachCard(const HistoryEntry &entry)
{
    if (m_item || entry.isLocal)
        return;
    m_card = entry;
    m_rest.start();
}

void Foresight::leaveCard(const HistoryEntry &entry)
{
    if (!m_card || m_card->key != entry.key)
        return;
    m_card.reset();
    stop();
}

void Foresight::restOnCard()
{
    if (const auto start = m_card ? m_playback.startOf(*m_card) : std::nullopt)
        prepare({.url = start->url, .startAt = start->at, .mostBytes = FilmPreparation::little});
}

void Foresight::handOver(const ArchiveFile &file)
{
    const QUrl url = file.url();
    if (m_item && url != m_prepared) {
        m_films.prepare({.url = url, .mostBytes = 0, .alternatives = m_item->alternatives(file)});
        m_prepared = url;
    }
    handOver(url);
}

void Foresight::handOver(const QUrl &url)
{
    if (url == m_prepared)
        m_prepared.clear(); // not to be stopped
    m_item.reset();
    m_card.reset();
    stop();
}

void Foresight::prepare(FilmPreparation preparation)
{
    if (isWebAddress(preparation.url))
        prepareFlow(std::move(preparation));
}

QCoro::Task<> Foresight::prepareFlow(FilmPreparation preparation)
{
    const QPointer<Foresight> self(this);
    const int turn = ++m_turn;
    const bool isMetered = co_await m_workspace.isLineMetered();
    if (!self || turn != m_turn)
        co_return;
    if (isMetered)
        preparation.mostBytes = 0; // only what is on disk, and where else the film is
    m_prepared = preparation.url;
    m_films.prepare(preparation);
}

void Foresight::stop()
{
    ++m_turn;
    m_rest.stop();
    if (!m_prepared.isEmpty())
        m_films.stopPreparing();
    m_prepared.clear();
}

} // namespace tavelo
