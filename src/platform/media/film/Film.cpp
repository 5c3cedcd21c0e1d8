// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Film.h"

#include "platform/http/HostBudget.h"
#include "platform/http/NetworkThread.h"
#include "platform/media/film/FilmReader.h"
#include "platform/media/film/SliceReceiver.h"

#include <algorithm>
#include <limits>
#include <utility>

// What is asked for, and when. What becomes of it is in FilmAnswers.cpp, and what is done when it
// does not get on in FilmRescue.cpp.

namespace tavelo {

using namespace std::chrono_literals;

namespace {

constexpr auto tickInterval = 250ms;
constexpr auto silenceLimit = 20s; // then a request is given up
constexpr auto waitThatIsHunger = 300ms;
constexpr auto hungerLasts = 10s;
constexpr qint64 wholeAhead = 8LL * 1024 * 1024;

} // namespace

std::shared_ptr<Film> Film::create(const QUrl &url, Fetch &fetch, FilmState *state, Keeper keeper)
{
    auto *film = new Film(url, fetch, state, std::move(keeper));
    NetworkThread &thread = NetworkThread::shared();
    film->moveToThread(&thread);
    // In that thread: a timer may be stopped nowhere else.
    connect(&thread, &QThread::finished, &film->m_ticker, &QTimer::stop);
    return {film, [](Film *last) {
                // Its thread may have ended with the application.
                const QThread *its = last->thread();
                if (its && its != QThread::currentThread() && its->isRunning())
                    last->deleteLater();
                else
                    delete last;
            }};
}

Film::Film(const QUrl &url, Fetch &fetch, FilmState *state, Keeper keeper)
    : m_fetch(fetch)
    , m_state(state)
    , m_keeper(std::move(keeper))
    , m_nodes(url)
    , m_wants(*state)
    , m_ticker(this)
{
    m_ticker.setInterval(tickInterval);
    connect(&m_ticker, &QTimer::timeout, this, &Film::tick);
}

Film::~Film() = default;

void Film::attach(const std::shared_ptr<FilmReader> &reader)
{
    post([this, weak = std::weak_ptr(reader)] {
        m_readers.push_back(weak);
        m_wants.stopPreparing();
        m_isRecalled = m_isRecalled || m_state->isOpened();
        m_retryAt = {};
        m_failures = 0;
        m_countsView = true;
        look();
    });
}

void Film::setAlternatives(const QList<QUrl> &urls)
{
    post([this, urls] { m_nodes.setAlternatives(urls); });
}

void Film::prepare(double startAt, qint64 mostBytes)
{
    post([this, startAt, mostBytes] {
        if (readings().empty())
            m_wants.prepare(startAt, mostBytes);
        look();
    });
}

void Film::stopPreparing()
{
    post([this] {
        m_wants.stopPreparing();
        look();
    });
}

void Film::retire()
{
    // It ends on the thread of whoever retires it: its own may end before it gets to that.
    const auto end = [this, heir = QThread::currentThread()] {
        m_isRetired = true;
        rest();
        m_state->fail(tr("The film was closed."));
        if (thread() == QThread::currentThread())
            moveToThread(heir);
    };
    if (thread() && thread()->isRunning())
        QMetaObject::invokeMethod(this, end, Qt::BlockingQueuedConnection);
    else
        end();
}

void Film::demand()
{
    if (!m_isToLook.exchange(true))
        post([this] { look(); });
}

std::vector<FilmWants::Reading> Film::readings() const
{
    std::vector<FilmWants::Reading> all;
    for (const auto &weak : m_readers) {
        if (const auto reader = weak.lock(); reader && !reader->isOver())
            all.push_back({reader->place(), reader->waitsFor() > 0ms, reader->expected(),
                           reader->expectations()});
    }
    return all;
}

/// Asks for what is wanted and not on its way.
void Film::look()
{
    m_isToLook = false;
    if (m_isRetired)
        return;
    const auto reading = readings();
    if (reading.empty() && !m_wants.isPreparing())
        return rest();
    if (!m_ticker.isActive())
        m_ticker.start();
    followWholeFilm();
    if (!mayAsk())
        return;
    for (;;) {
        updateWants(reading);
        const auto span = nextSpan();
        const bool hasRoom = static_cast<int>(m_slices.size()) < mostSlices();
        const auto urgent = [this] { return m_wants.list().front().span.first; };
        if (!span || (!hasRoom && !(isLeftOut(urgent()) && makeRoom(urgent()))))
            break;
        start(*span);
    }
    if (reading.empty() && m_slices.empty() && Clock::now() >= m_retryAt)
        m_ticker.stop(); // it is prepared
}

/// Nobody wants the film. What is on its way is let go, with its connections where need be.
void Film::rest()
{
    m_ticker.stop();
    m_readers.clear();
    for (const auto &slice : m_slices)
        letGo(*slice);
    m_slices.clear();
    favourFilm(false);
}

bool Film::mayAsk() const
{
    return m_state->error().isEmpty() && Clock::now() >= m_retryAt;
}

void Film::updateWants(const std::vector<FilmWants::Reading> &reading)
{
    const auto update = [&] {
        m_wants.update(reading, m_speed.median(), m_hungryUntil > Clock::now());
    };
    update();
    if (readIndex())
        update();
}

/// True when it has just become known.
bool Film::readIndex()
{
    const auto &span = m_wants.index();
    if (!span || m_wants.isIndexRead())
        return false;
    if (const auto bytes = m_state->bytesOf(*span)) {
        m_wants.indexIsRead();
        if (auto index = Mp4Index::parse(*bytes))
            m_state->setIndex(std::make_shared<const Mp4Index>(*std::move(index)), *span);
    }
    return m_wants.isIndexRead();
}

/// All connections take turns: one that rests is slow again when it is wanted.
int Film::mostSlices() const
{
    const bool knowsWhere = m_state->isConfirmed() || m_nodes.current() == Slice::Address::Node;
    return knowsWhere && m_state->takesRanges() ? HostBudget::mostForFilms : 1;
}

std::optional<ByteSpan> Film::nextSpan() const
{
    for (const Want &want : m_wants.list()) {
        if (const ByteSpan missing = missingIn(want); !missing.isEmpty())
            return missing;
    }
    return {};
}

/// The first part of it that is neither held nor on its way, in whole blocks.
ByteSpan Film::missingIn(const Want &want) const
{
    qint64 place = want.span.first;
    for (;;) {
        place = m_state->heldUpTo(place, want.span.end);
        if (place >= want.span.end)
            return {};
        qint64 upTo = 0;
        if (!isOnItsWay(place, upTo))
            break;
        place = upTo;
    }
    const qint64 block = place - place % SliceCache::blockBytes;
    if (m_state->heldUpTo(block, place) < place)
        place = block; // a block is filled from its start on
    qint64 end = place - place % SliceCache::blockBytes + SliceCache::blockBytes;
    const qint64 most = want.isShared ? shareOf(want) : want.most;
    const qint64 last = std::min(want.span.end, place + most);
    qint64 upTo = 0;
    while (end < last && m_state->heldUpTo(end, end + 1) == end && !isOnItsWay(end, upTo))
        end += SliceCache::blockBytes;
    return {place, std::min(end, m_state->size().value_or(end))};
}

/// What one connection brings, if all of them are through at the same time with this and with what
/// they are at.
qint64 Film::shareOf(const Want &want) const
{
    qint64 bytes = 0;
    qint64 upTo = 0;
    for (qint64 place = want.span.first; place < want.span.end; place += SliceCache::blockBytes) {
        if (m_state->heldUpTo(place, place + 1) == place && !isOnItsWay(place, upTo))
            bytes += SliceCache::blockBytes;
    }
    for (const auto &slice : m_slices)
        bytes += slice->rest().size();
    const qint64 share = bytes / HostBudget::mostForFilms + SliceCache::blockBytes;
    return std::min(std::clamp(share - share % SliceCache::blockBytes, FilmWants::leastSlice,
                               FilmWants::mostSlice),
                    want.most);
}

/// Whether the byte at `place`, of which nothing is held, is not on its way either.
bool Film::isLeftOut(qint64 place) const
{
    qint64 upTo = 0;
    return m_state->heldUpTo(place, place + 1) == place && !isOnItsWay(place, upTo);
}

bool Film::isOnItsWay(qint64 place, qint64 &upTo) const
{
    for (const auto &slice : m_slices) {
        const qint64 end = slice->isWhole ? std::numeric_limits<qint64>::max() : slice->span.end;
        if (place >= slice->next && place < end) {
            upTo = end;
            return true;
        }
    }
    return false;
}

void Film::start(const ByteSpan &span)
{
    const auto address = m_countsView ? Slice::Address::Item : m_nodes.current();
    const auto slice = std::make_shared<Slice>(withOverlap(span, address), address);
    ++m_started;
    m_wants.asked(span.size());
    send(slice);
}

void Film::send(const std::shared_ptr<Slice> &slice)
{
    const bool isRead = !m_readers.empty();
    const bool counts =
        isRead && slice->address == Slice::Address::Item && std::exchange(m_countsView, false);
    FetchRequest request{.url = m_nodes.url(slice->address, counts),
                         .range = FetchRange{slice->span.first, slice->span.end - 1},
                         .urgency = isRead ? FetchUrgency::Film : FetchUrgency::Probe,
                         .silenceLimit = silenceLimit};
    slice->counts = counts;
    slice->turn = m_nodes.turn();
    m_slices.push_back(slice);
    slice->id = m_fetch.start(std::move(request),
                              std::make_shared<SliceReceiver>(shared_from_this(), slice));
}

void Film::tick()
{
    const auto now = Clock::now();
    bool isShort = false;
    for (const auto &weak : m_readers) {
        const auto reader = weak.lock();
        isShort = isShort || (reader && reader->waitsFor() > waitThatIsHunger);
    }
    if (isShort && m_state->isConfirmed())
        m_hungryUntil = now + hungerLasts;
    favourFilm(isShort);
    for (const auto &slice : Slices(m_slices)) {
        if (std::ranges::find(m_slices, slice) != m_slices.end()) // nobody made room of it
            helpOut(*slice);
    }
    look();
}

/// A server without ranges sends all that lies before what is wanted; a way back begins anew.
void Film::followWholeFilm()
{
    const auto whole =
        std::ranges::find_if(m_slices, [](const auto &s) { return s->isWhole.load(); });
    if (whole == m_slices.end())
        return;
    const auto all = readings();
    qint64 furthest = 0;
    bool wantsBack = false;
    for (const FilmWants::Reading &one : all) {
        furthest = std::max(furthest, one.place);
        wantsBack = wantsBack || (one.isWaiting && one.place < (*whole)->next &&
                                  m_state->heldUpTo(one.place, one.place + 1) == one.place);
    }
    m_wholeUpTo = furthest + wholeAhead;
    if (wantsBack) {
        letGo(**whole);
        m_slices.erase(whole);
    } else if ((*whole)->isPutOff && (*whole)->next <= m_wholeUpTo) {
        m_fetch.resume((*whole)->id);
    }
}

void Film::letGo(const Slice &slice)
{
    m_fetch.cancel(slice.id);
    if (slice.isWhole)
        m_hasWhole = false;
}

void Film::favourFilm(bool isShort)
{
    if (std::exchange(m_isShort, isShort) != isShort)
        m_fetch.favourFilm(isShort);
}

} // namespace tavelo
