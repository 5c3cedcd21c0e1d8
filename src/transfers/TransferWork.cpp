// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/TransferWork.h"

#include "platform/http/ContentRange.h"
#include "platform/http/ServiceHosts.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstring>
#include <utility>

namespace tavelo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 mebibyte = 1024LL * 1024;
constexpr qint64 overlapBytes = 64LL * 1024; // of what is there, fetched again to compare it
constexpr qint64 markBytes = mebibyte;
constexpr qint64 syncBytes = 8 * mebibyte;
constexpr auto syncPause = 1s; // between two synchronisations, at least
constexpr auto longestUnsynced = 5s;
constexpr auto longestWait = 100ms;
constexpr int mostStartsOver = 3;

QString tr(const char *text)
{
    return QCoreApplication::translate("Transfer", text);
}

bool mayBeTriedAgain(int status)
{
    return status == 500 || status == 502 || status == 504;
}

} // namespace

TransferWork::TransferWork(Fetch &fetch, const TransferRequest &request,
                           const TransferOptions &options, std::shared_ptr<TransferOrders> orders,
                           Report report)
    : m_fetch(fetch)
    , m_request(request)
    , m_options(options)
    , m_orders(std::move(orders))
    , m_report(std::move(report))
{}

TransferWork::~TransferWork() = default;

TransferEnd TransferWork::run()
{
    open();
    while (!m_end) {
        if (m_state.isWhole() && m_lines.empty()) {
            finish();
        } else {
            openLines();
            await();
        }
    }
    leave();
    return *std::move(m_end);
}

/// The last run ended between the file's new name and the note of it.
bool TransferWork::isSavedAlready() const
{
    const QFileInfo saved(m_request.destination);
    const QString part = PartFile::pathIn(saved.path(), m_request.name);
    return m_state.isWhole() && !QFileInfo::exists(part) && saved.isFile() &&
           saved.size() == m_state.version.total;
}

void TransferWork::open()
{
    const QString marks = PartMarks::pathOf(m_request.name);
    m_state = PartMarks::read(marks).value_or(m_request.part);
    if (isSavedAlready()) {
        end(TransferResult::Saved);
        m_end->isChecked = m_request.checksum.isKnown();
        return;
    }
    auto part = PartFile::open(
        PartFile::pathIn(QFileInfo(m_request.destination).path(), m_request.name), m_options.write);
    if (!part)
        return fail(part.error());
    m_part = *std::move(part);
    m_marks.emplace(marks);
    if (m_request.checksum.isKnown())
        m_hash = std::make_unique<BodyHash>(*m_part, m_request.checksum.algorithm);
    // Without anything to tell its version by, what is there would have to be believed.
    const bool canBeTold = !m_state.version.validator.isEmpty() || m_hash || m_state.isWhole();
    if (m_state.done.end() > m_part->size() || (m_state.sealed && !m_part->isUntouched()) ||
        !canBeTold)
        m_state = {};
    if (m_state.done.isEmpty())
        if (const auto error = m_part->truncate(0))
            return fail(*error);
    m_onDisk = m_state;
    tell(false);
}

void TransferWork::openLines()
{
    const qint64 total = m_state.version.total;
    if (m_lines.empty())
        return openLine(total < 0 ? ByteSpan{m_state.done.front(), -1}
                                  : m_state.done.gapFrom(0, total));
    Line &first = m_lines.front();
    if (m_lines.size() > 1 && !m_mayTakeTwo)
        closeLine(m_lines.back());
    if (m_lines.size() > 1 || !m_mayTakeTwo || m_takesNoSecond || total < 0 || !first.isAccepted)
        return;
    const ByteSpan gap = m_state.done.gapFrom(first.next, total);
    const ByteSpan other = m_state.done.gapFrom(gap.end, total);
    if (!other.isEmpty())
        openLine(other);
    else if (gap.size() >= m_options.leastForTwo)
        openLine({(gap.first + gap.end) / 2 / mebibyte * mebibyte, gap.end});
}

void TransferWork::openLine(const ByteSpan &gap)
{
    const auto before = m_state.done.around(gap.first - 1);
    Line line{.gap = gap};
    line.next = before ? std::max(before->first, gap.first - overlapBytes) : gap.first;
    line.isForRange = line.next > 0 || !m_state.done.isEmpty();
    FetchRequest request{.url = m_request.url, .silenceLimit = m_options.silenceLimit};
    if (line.isForRange) {
        request.range = FetchRange{line.next, -1};
        request.ifRange = m_state.version.ifRangeFor(m_request.url);
    }
    line.stream =
        std::make_shared<TransferStream>(std::shared_ptr<TransferBell>(m_orders, &m_orders->bell));
    line.id = m_fetch.start(std::move(request), line.stream);
    m_lines.push_back(std::move(line));
}

void TransferWork::closeLine(Line &line)
{
    if (!std::exchange(line.isOver, true))
        m_fetch.cancel(line.id);
}

void TransferWork::closeLines()
{
    for (Line &line : m_lines)
        closeLine(line);
}

void TransferWork::await()
{
    {
        TransferBell &bell = m_orders->bell;
        std::unique_lock lock(bell.mutex);
        bell.rung.wait_for(lock, std::min(longestWait, m_options.progressInterval + 1ms),
                           [&] { return bell.isRinging; });
        bell.isRinging = false;
        m_isStopped = m_orders->isStopped;
        m_mayTakeTwo = m_orders->mayTakeTwo;
    }
    for (Line &line : m_lines) {
        std::unique_lock lock(m_orders->bell.mutex);
        const TransferStream::News news = line.stream->take(m_bytes);
        lock.unlock();
        if (news.wasPutOff)
            m_fetch.resume(line.id);
        if (!m_end && !line.isOver)
            takeNews(line, news);
    }
    m_lines.remove_if([](const Line &line) { return line.isOver; });
    if (m_isStopped && !m_end)
        end(TransferResult::Stopped);
    if (!m_end)
        tick();
}

void TransferWork::takeNews(Line &line, const TransferStream::News &news)
{
    if (news.heldBack && isFirst(line))
        return askedToWait(*news.heldBack);
    if (news.head)
        judge(line, *news.head);
    if (line.isAccepted && !line.isOver && !m_end)
        store(line, m_bytes.data(), static_cast<qint64>(m_bytes.size()));
    if (news.end && !line.isOver && !m_end)
        lineEnded(line, *news.end);
}

/// Decides what the answer is good for.
void TransferWork::judge(Line &line, const FetchHead &head)
{
    if (m_state.sealed && !m_part->isUntouched())
        return dropOrStartOver(line, false);
    if (std::exchange(m_state.sealed, false))
        mark(); // before anything is written
    if (line.isForRange && head.status == 206)
        judgePart(line, head);
    else
        judgeWhole(line, head);
}

void TransferWork::judgePart(Line &line, const FetchHead &head)
{
    const auto range = ContentRange::parse(head.contentRange);
    const BodyVersion version = BodyVersion::of(head);
    const SameFile same = m_state.version.compare(version);
    if (!range || range->first != line.next || same == SameFile::No)
        return dropOrStartOver(line, same == SameFile::No);
    m_state.version.total = range->total;
    line.isAccepted = true;
}

void TransferWork::judgeWhole(Line &line, const FetchHead &head)
{
    const auto range = ContentRange::parse(head.contentRange);
    if (head.status == 206 && !(range && range->first == 0 && range->last == range->total - 1))
        return end(TransferResult::Failed, tr("The server sent only a part of the file."));
    if (!isFirst(line))
        return dropOrStartOver(line, false);
    const BodyVersion version = BodyVersion::of(head);
    if (m_state.version.compare(version) == SameFile::No) {
        m_startedOver = m_startedOver || !m_state.done.isEmpty();
        forgetFrom(0);
    }
    // What is there is compared as it comes, and only what is behind it is written.
    m_state.version = version;
    if (version.total >= 0)
        m_state.done.clip(version.total);
    line.next = 0;
    line.isForRange = false;
    line.isAccepted = true;
}

/// The second one was only a try.
void TransferWork::dropOrStartOver(Line &line, bool hasChanged)
{
    if (isFirst(line))
        return startOver(hasChanged);
    m_takesNoSecond = true;
    closeLine(line);
}

void TransferWork::store(Line &line, const char *bytes, qint64 count)
{
    const qint64 total = m_state.version.total;
    if (total >= 0 && count > total - line.next)
        return end(TransferResult::Broken, tr("The server sent another length than it announced."));
    while (count > 0 && !line.isOver && !m_end) {
        const auto there = m_state.done.around(line.next);
        const qint64 taken = there ? std::min(count, there->end - line.next)
                                   : m_state.done.gapFrom(line.next, line.next + count).size();
        if (!there)
            write(line, bytes, taken);
        else if (!isSame(line.next, bytes, taken))
            contradicted(line);
        else
            line.repeated += taken;
        if (there && !m_state.done.around(line.next))
            continue; // contradicted: this piece is written, too
        bytes += taken;
        count -= taken;
        line.next += taken;
        meetOthers(line);
    }
    if (m_hash)
        m_hash->advance(m_state.done.front());
}

void TransferWork::write(Line &line, const char *bytes, qint64 count)
{
    if (const auto error = m_part->write(line.next, bytes, count))
        return fail(*error);
    m_state.done.add({line.next, line.next + count});
    line.hasWritten = true;
    line.repeated = 0;
    m_unsynced += count;
    m_unmarked += count;
    if (m_unmarked >= markBytes)
        mark();
}

bool TransferWork::isSame(qint64 place, const char *bytes, qint64 count)
{
    m_there.resize(static_cast<size_t>(count));
    return m_part->read(place, m_there.data(), count) == count &&
           std::memcmp(m_there.data(), bytes, static_cast<size_t>(count)) == 0;
}

/// The server has other bytes than those that are there.
void TransferWork::contradicted(Line &line)
{
    if (line.isForRange)
        return startOver(true);
    // What comes from the first byte on has been compared up to here.
    m_startedOver = true;
    forgetFrom(line.next);
}

/// What is there from that place on is not of the file that the server has.
void TransferWork::forgetFrom(qint64 place)
{
    m_state.done.clip(place);
    m_onDisk.done.clip(place);
    if (m_hash)
        m_hash->restart();
    mark();
}

/// Where a line comes into what another one has fetched, it is over as soon as both agree.
void TransferWork::meetOthers(Line &line)
{
    for (Line &other : m_lines) {
        if (&other != &line && other.gap.first >= line.gap.first && other.next <= line.next)
            closeLine(other);
    }
    if (line.hasWritten && line.repeated >= overlapBytes)
        closeLine(line);
}

void TransferWork::lineEnded(Line &line, const FetchEnd &ended)
{
    line.isOver = true;
    const int status = ended.head ? ended.head->status : 0;
    if (!ended.error && status <= 299)
        return bodyEnded(line);
    if (!isFirst(line)) {
        m_takesNoSecond = true;
    } else if (!ended.error) {
        statusArrived(line, status, ended.pause);
    } else if (ended.error->kind == ErrorKind::BadUrl) {
        end(TransferResult::Failed, ended.error->text);
    } else if (ended.error->kind == ErrorKind::Cancelled) {
        end(TransferResult::Stopped);
    } else {
        end(TransferResult::Broken, ended.error->text, ended.pause);
    }
}

void TransferWork::bodyEnded(Line &line)
{
    qint64 &total = m_state.version.total;
    if (total < 0) {
        total = line.next;
        m_state.done.clip(total);
    }
    const bool isShort = line.isForRange ? !line.hasWritten : line.next != total;
    if (isFirst(line) && isShort && !m_state.isWhole())
        end(TransferResult::Broken, tr("The server sent another length than it announced."));
}

void TransferWork::statusArrived(Line &line, int status, std::chrono::milliseconds pause)
{
    const QString text = QStringLiteral("HTTP %1").arg(status);
    if (status == 416 && line.isForRange)
        startOver(true);
    else if (status == 429 || status == 503)
        askedToWait(pause);
    else
        end(mayBeTriedAgain(status) ? TransferResult::Broken : TransferResult::Failed, text);
}

void TransferWork::askedToWait(std::chrono::milliseconds pause)
{
    const bool isArchive = m_request.url.host() == QUrl(ServiceHosts::current().archive).host();
    end(TransferResult::AskedToWait,
        tr("%1 asks to wait").arg(isArchive ? tr("The Internet Archive") : tr("The server")),
        pause);
}

void TransferWork::startOver(bool hasChanged)
{
    closeLines();
    m_takesNoSecond = true;
    m_state.version = {};
    m_state.sealed = false;
    m_onDisk.version = {};
    m_onDisk.sealed = false;
    m_startedOver = m_startedOver || hasChanged;
    forgetFrom(0);
    if (const auto error = m_part->truncate(0))
        fail(*error);
    else if (++m_startsOver > mostStartsOver)
        end(TransferResult::Broken, tr("The server sends another file each time."));
}

void TransferWork::tick()
{
    const auto now = Clock::now();
    if (now - m_lastReport >= m_options.progressInterval) {
        if (!m_part->isInPlace())
            return fail(PartFile::gone());
        tell(false);
    }
    const auto since = now - m_lastSync;
    if ((m_unsynced >= syncBytes && since >= syncPause) ||
        (m_unsynced > 0 && since >= longestUnsynced))
        sync();
}

void TransferWork::mark()
{
    m_unmarked = 0;
    m_marks->write(m_state);
}

void TransferWork::sync()
{
    if (const auto error = m_part->sync())
        return fail(*error);
    m_unsynced = 0;
    m_lastSync = Clock::now();
    m_onDisk = m_state;
    mark();
    tell(false);
}

void TransferWork::tell(bool isChecking)
{
    m_lastReport = Clock::now();
    m_report({m_state.done.bytes(), m_state.version.total, m_startedOver, isChecking, m_onDisk});
}

bool TransferWork::isDiscarded() const
{
    const std::scoped_lock lock(m_orders->bell.mutex);
    return m_orders->isDiscarded;
}

/// All bytes are there.
void TransferWork::finish()
{
    tell(m_hash != nullptr);
    if (m_hash && !isGood())
        return;
    if (!m_part->isInPlace())
        return fail(PartFile::gone());
    mark();
    // A longer file may have been there before.
    if (const auto error = m_part->truncate(m_state.version.total))
        return fail(*error);
    if (const auto error = m_part->publish(m_request.destination))
        return fail(*error);
    end(TransferResult::Saved);
    m_end->isChecked = m_hash != nullptr;
}

bool TransferWork::isGood()
{
    m_hash->advance(m_state.version.total);
    std::optional<QByteArray> digest;
    while (!(digest = m_hash->wait(longestWait))) {
        const std::scoped_lock lock(m_orders->bell.mutex);
        if (m_orders->isStopped) {
            end(TransferResult::Stopped);
            return false;
        }
    }
    if (digest->isEmpty())
        fail({ErrorKind::Storage, tr("The file could not be read back.")});
    else if (*digest != m_request.checksum.digest)
        end(TransferResult::Damaged, tr("Damaged on the way"));
    return !m_end;
}

void TransferWork::end(TransferResult result, const QString &text, std::chrono::milliseconds pause)
{
    if (!m_end)
        m_end = TransferEnd{.result = result, .text = text, .pause = pause};
}

void TransferWork::fail(const Error &error)
{
    end(error.kind == ErrorKind::NoSpace ? TransferResult::NoSpace : TransferResult::Failed,
        error.text);
}

/// Puts in order what stays.
void TransferWork::leave()
{
    closeLines();
    m_hash.reset();
    if (m_end->result == TransferResult::Saved)
        return;
    if (isDiscarded() || m_end->result == TransferResult::Damaged) {
        if (m_part)
            m_part->remove();
        QFile::remove(PartMarks::pathOf(m_request.name));
        return;
    }
    if (!m_part) {
        m_end->part = m_request.part;
        return;
    }
    if (!m_part->isInPlace()) {
        m_state = {};
    } else {
        m_part->seal();
        m_state.sealed = true;
    }
    if (m_part->sync())
        m_state = m_onDisk;
    mark();
    tell(false);
    m_end->part = m_state;
}

} // namespace tavelo
