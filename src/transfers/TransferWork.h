// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "transfers/BodyHash.h"
#include "transfers/PartMarks.h"
#include "transfers/Transfer.h"
#include "transfers/TransferStream.h"

#include <functional>
#include <list>

namespace tavelo {

/// What others want of a transfer.
struct TransferOrders
{
    TransferBell bell; // guards the rest
    bool isStopped = false;
    bool isDiscarded = false;
    bool mayTakeTwo = false;
    TransferEnd end = {}; // of the thread; not guarded, for others look at it when that is over
};

/// What a transfer's thread does.
class TransferWork
{
public:
    using Report = std::function<void(const TransferProgress &)>;

    TransferWork(Fetch &fetch, const TransferRequest &request, const TransferOptions &options,
                 std::shared_ptr<TransferOrders> orders, Report report);
    ~TransferWork();
    Q_DISABLE_COPY_MOVE(TransferWork)

    TransferEnd run();

private:
    using Clock = std::chrono::steady_clock;

    /// One request: its bytes lie from `next` on.
    struct Line
    {
        FetchId id = {};
        std::shared_ptr<TransferStream> stream = {};
        ByteSpan gap = {};       // for which it was made
        qint64 next = 0;         // place of the byte that comes next
        bool isForRange = false; // it asks for a part
        bool isAccepted = false; // its answer carries what it was made for
        bool hasWritten = false;
        qint64 repeated = 0; // bytes that were there already, since it wrote last
        bool isOver = false;
    };

    bool isSavedAlready() const;
    void open();
    void openLines();
    void openLine(const ByteSpan &gap);
    void closeLine(Line &line);
    void closeLines();
    void await();
    void takeNews(Line &line, const TransferStream::News &news);
    void judge(Line &line, const FetchHead &head);
    void judgePart(Line &line, const FetchHead &head);
    void judgeWhole(Line &line, const FetchHead &head);
    void dropOrStartOver(Line &line, bool hasChanged);
    void store(Line &line, const char *bytes, qint64 count);
    void write(Line &line, const char *bytes, qint64 count);
    bool isSame(qint64 place, const char *bytes, qint64 count);
    void contradicted(Line &line);
    void forgetFrom(qint64 place);
    void meetOthers(Line &line);
    void lineEnded(Line &line, const FetchEnd &ended);
    void bodyEnded(Line &line);
    void statusArrived(Line &line, int status, std::chrono::milliseconds pause);
    void askedToWait(std::chrono::milliseconds pause);
    void startOver(bool hasChanged);
    void tick();
    void mark();
    void sync();
    void tell(bool isChecking);
    void finish();
    bool isGood();
    bool isDiscarded() const;
    void end(TransferResult result, const QString &text = {}, std::chrono::milliseconds pause = {});
    void fail(const Error &error);
    void leave();

    bool isFirst(const Line &line) const { return &line == &m_lines.front(); }

    Fetch &m_fetch;
    const TransferRequest m_request;
    const TransferOptions &m_options;
    const std::shared_ptr<TransferOrders> m_orders;
    const Report m_report;
    std::unique_ptr<PartFile> m_part;
    std::optional<PartMarks> m_marks;
    std::unique_ptr<BodyHash> m_hash; // goes before the part that it reads
    PartState m_state;
    PartState m_onDisk;        // what a synchronisation has covered of it
    std::list<Line> m_lines;   // two at most
    std::vector<char> m_bytes; // taken from a stream
    std::vector<char> m_there; // read for a comparison
    bool m_isStopped = false;
    bool m_mayTakeTwo = false;
    bool m_takesNoSecond = false; // the server does not
    bool m_startedOver = false;
    int m_startsOver = 0;
    qint64 m_unmarked = 0; // bytes written since the last mark
    qint64 m_unsynced = 0; // and since the last synchronisation
    Clock::time_point m_lastReport = {};
    Clock::time_point m_lastSync = Clock::now();
    std::optional<TransferEnd> m_end;
};

} // namespace tavelo
