// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Checksum.h"
#include "platform/files/PartFile.h"
#include "platform/http/Fetch.h"
#include "transfers/PartState.h"

#include <QObject>

#include <chrono>
#include <memory>
#include <thread>

#include <unistd.h>

namespace tavelo {

class TransferWork;
struct TransferOrders;

struct TransferOptions
{
    std::chrono::milliseconds silenceLimit{30'000};  // without a byte, then it breaks off
    std::chrono::milliseconds progressInterval{100}; // between two reports, at least
    qint64 leastForTwo = 64LL * 1024 * 1024;         // bytes missing, for two connections
    PartFile::Write write = ::pwrite;
};

/// What is asked for.
struct TransferRequest
{
    QUrl url;               // http or https
    QString destination;    // path of the finished file; its folder must be there
    QString name;           // of the part file and its marks; of no other download
    PartState part = {};    // what is known to be on the disk of it
    Checksum checksum = {}; // of the whole file
};

struct TransferProgress
{
    qint64 received = 0;      // bytes that are there
    qint64 total = -1;        // of the whole file; -1: not known
    bool startedOver = false; // for the file had changed on the server
    bool isChecking = false;  // all is there but the check
    PartState onDisk = {};    // what is there even after a power failure
};

enum class TransferResult {
    Saved,
    Stopped, // by `stop` or `discard`
    Broken,  // the way to the server; it may be tried again
    AskedToWait,
    NoSpace,
    Damaged, // it came whole, and is not what its checksum says; nothing is left on disk
    Failed,  // and would again
};

struct TransferEnd
{
    TransferResult result = TransferResult::Stopped;
    QString text = {};                  // what the user reads, unless Saved or Stopped
    std::chrono::milliseconds pause{0}; // for how long the server is to be left alone
    PartState part = {};                // what is on the disk
    bool isChecked = false;             // Saved, and it is what its checksum says
};

/// One download on its way, on a thread of its own: what comes from the server is written to the
/// part file, which gets the destination's name when it is whole. What is there already is not
/// fetched again when the server still has the same file: some of it is compared. Otherwise it
/// starts over.
///
/// Signals are emitted on this object's thread. Every transfer ends with exactly one `ended`, and
/// nothing is said of it afterwards.
class Transfer : public QObject
{
    Q_OBJECT

public:
    /// Begins. `fetch` must outlive this.
    Transfer(Fetch &fetch, TransferRequest request, TransferOptions options = {});
    /// Stops it in silence, and waits until what it has is on the disk.
    ~Transfer() override;

    /// What is there stays on the disk.
    void stop();
    /// Nothing stays.
    void discard();
    /// Stops it, waits until what it has is on the disk, and tells how it ended, which no signal
    /// does then.
    TransferEnd waitForEnd();
    /// Whether it may take two connections to the server; one at first.
    void allowTwo(bool two);

Q_SIGNALS:
    void progressed(const tavelo::TransferProgress &progress);
    void ended(const tavelo::TransferEnd &end);

private:
    const std::shared_ptr<TransferOrders> m_orders;
    std::thread m_thread;
};

} // namespace tavelo
