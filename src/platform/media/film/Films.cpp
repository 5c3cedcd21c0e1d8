// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Films.h"

#include "platform/media/film/Film.h"
#include "platform/media/film/FilmMemory.h"
#include "platform/media/film/FilmReader.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <utility>

namespace tavelo {

namespace {

/// Of so many films is known what is held of them.
constexpr std::size_t mostFilms = 8;

} // namespace

Films &Films::shared()
{
    static QPointer<Films> films;
    if (!films)
        films = new Films(Fetch::shared(), QCoreApplication::instance());
    return *films;
}

Films::Films(Fetch &fetch, QObject *parent)
    : QObject(parent)
    , m_fetch(fetch)
{}

Films::~Films()
{
    for (const Entry &entry : m_films)
        entry.film->retire();
}

Films::Entry &Films::entryOf(const QUrl &url)
{
    const auto known = std::ranges::find(
        m_films, url, [](const Entry &entry) -> const QUrl & { return entry.film->url(); });
    if (known != m_films.end()) {
        std::rotate(m_films.begin(), known, known + 1);
        return m_films.front();
    }
    const FilmNumber number{++m_numbers};
    auto keeper = [self = QPointer(this)](Film &film, double seconds) {
        if (self && QThread::currentThread() == self->thread())
            self->keep(film, seconds);
    };
    m_films.insert(m_films.begin(),
                   {Film::create(url, m_fetch, new FilmState(m_cache, number), std::move(keeper))});
    forgetOldest();
    recall(url);
    return m_films.front();
}

void Films::forgetOldest()
{
    const auto isOfUse = [](const Entry &entry) {
        return !entry.isRecalled || entry.film.use_count() > 1;
    };
    while (m_films.size() > mostFilms && !isOfUse(m_films.back()))
        m_films.pop_back();
}

void Films::recall(const QUrl &url)
{
    FilmMemory::shared().load(url).then(this, [this, url](const std::optional<KeptFilm> &kept) {
        const auto entry = std::ranges::find(
            m_films, url, [](const Entry &each) -> const QUrl & { return each.film->url(); });
        if (entry == m_films.end())
            return;
        if (kept)
            entry->film->state().recall(*kept);
        entry->isRecalled = true;
        for (const auto &call : std::exchange(entry->waiting, {}))
            call();
    });
}

void Films::whenRecalled(Entry &entry, std::function<void()> call)
{
    if (entry.isRecalled)
        call();
    else
        entry.waiting.append(std::move(call));
}

void Films::keep(Film &film, double seconds)
{
    auto kept = film.state().keptFrom(seconds);
    if (!kept)
        return;
    kept->key = KeptFilm::keyOf(film.url());
    FilmMemory::shared().store(*std::move(kept));
}

std::shared_ptr<FilmStream> Films::open(const QUrl &url, double startAt)
{
    Entry &entry = entryOf(url);
    const auto film = entry.film;
    if (film->state().isOutdated())
        FilmMemory::shared().drop(url);
    film->state().clearFailure();
    m_fetch.tryAgain(url);
    auto reader = std::make_shared<FilmReader>(film, startAt);
    whenRecalled(entry, [film, reader] { film->attach(reader); });
    return reader;
}

void Films::prepare(const FilmPreparation &preparation)
{
    Entry &entry = entryOf(preparation.url);
    const auto film = entry.film;
    if (const auto other = m_prepared.lock(); other && other != film)
        other->stopPreparing();
    m_prepared = film;
    whenRecalled(entry, [film, preparation] {
        film->setAlternatives(preparation.alternatives);
        film->prepare(preparation.startAt, preparation.mostBytes);
    });
}

void Films::stopPreparing()
{
    if (const auto film = m_prepared.lock())
        whenRecalled(entryOf(film->url()), [film] { film->stopPreparing(); });
    m_prepared.reset();
}

} // namespace tavelo
