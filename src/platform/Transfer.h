// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TransferDelegate.h"
#include "platform/files/PartFile.h"
#include "platform/http/BodyVersion.h"
#include "platform/http/HttpDownload.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <vector>

#include <unistd.h>

namespace tavelo {

struct TransferOptions
{
    std::chrono::milliseconds silenceLimit{60'000};  // without a byte, then it fails
    std::chrono::milliseconds progressInterval{100}; // between two reports, at least
    PartFile::Write write = ::pwrite;
};

/// What all transfers of a session share; outlives them.
struct TransferContext
{
    TransferDelegate &delegate;
    const TransferOptions &options;
    std::vector<char> &buffer;
};

/// The bytes that a transfer has, and what they are the beginning of.
struct TransferBody
{
    BodyVersion version = {};
    std::unique_ptr<PartFile> part = {};
};

/// One download on its way, on the session's thread. Tells the delegate everything but what its
/// owner does to it: destroying it ends the transfer in silence and leaves no file.
class Transfer : public QObject
{
    Q_OBJECT

public:
    /// `body`: what a paused transfer left, when it is to go on.
    Transfer(TransferInfo info, QUrl url, QString folder, TransferContext context,
             TransferBody body);
    ~Transfer() override;

    const TransferInfo &info() const { return m_info; }
    const QUrl &url() const { return m_url; }

    void begin();
    /// Closes the connection and hands over what can be gone on with; without a part when nothing
    /// can. Reports the last progress, then falls silent.
    TransferBody stop();

Q_SIGNALS:
    /// After the delegate's last callback.
    void ended();

private:
    void request();
    void abandon();
    void startOver();
    void pump();
    bool headArrived();
    void openPart();
    void store(qint64 count);
    void progressDue();
    void tellProgress();
    void finish();
    void finishWithoutBody();
    void fail(const Error &error);
    void end(const std::optional<Error> &error);

    TransferInfo m_info;
    QUrl m_url;
    QString m_folder;
    TransferContext m_context;
    TransferBody m_body;
    std::unique_ptr<HttpDownload, QScopedPointerDeleteLater> m_download;
    QTimer m_pace; // runs after each report, until the next one is due
    bool m_asksForRest = false;
    bool m_accepted = false; // the answer at hand carries the body
    bool m_toldAll = true;   // the delegate knows how many bytes there are
};

} // namespace tavelo
