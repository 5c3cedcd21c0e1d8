// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Transfer.h"

#include "platform/http/ContentRange.h"
#include "platform/http/UserAgent.h"

namespace tavelo {

namespace {

constexpr int readsInARow = 4;

bool carriesWhole(const HttpHead &head)
{
    const auto range = ContentRange::parse(head.field("content-range"));
    return head.status != 206 || (range && range->first == 0 && range->last == range->total - 1);
}

} // namespace

Transfer::Transfer(TransferInfo info, QUrl url, QString folder, TransferContext context,
                   TransferBody body)
    : m_info(std::move(info))
    , m_url(std::move(url))
    , m_folder(std::move(folder))
    , m_context(context)
    , m_body(std::move(body))
    , m_asksForRest(m_body.part != nullptr)
{
    m_pace.setSingleShot(true);
    m_pace.setInterval(context.options.progressInterval);
    connect(&m_pace, &QTimer::timeout, this, &Transfer::progressDue);
}

Transfer::~Transfer()
{
    abandon();
}

void Transfer::begin()
{
    if (!HttpDownload::canFetch(m_url))
        return fail({ErrorKind::BadUrl, tr("Invalid URL")});
    request();
}

void Transfer::request()
{
    HttpDownload::Fields fields{{"User-Agent", userAgent()}, {"Accept-Encoding", "identity"}};
    if (m_asksForRest) {
        fields.append({"Range", "bytes=" + QByteArray::number(m_body.part->size()) + '-'});
        fields.append({"If-Range", m_body.version.validator});
    }
    m_accepted = false;
    m_download.reset(new HttpDownload(m_url, fields, m_context.options.silenceLimit));
    connect(m_download.get(), &HttpDownload::advanced, this, &Transfer::pump);
    connect(m_download.get(), &HttpDownload::failed, this, &Transfer::fail);
    m_download->start();
}

/// Which also closes the connection.
void Transfer::abandon()
{
    m_pace.stop();
    if (m_download)
        m_download->disconnect(this);
    m_download.reset();
}

TransferBody Transfer::stop()
{
    if (m_body.part)
        tellProgress();
    abandon();
    if (!m_body.part || m_body.part->size() == 0 || m_body.version.validator.isEmpty())
        return {};
    m_body.part->seal();
    return std::move(m_body);
}

void Transfer::startOver()
{
    abandon();
    m_asksForRest = false;
    m_body.version = {};
    if (const auto error = m_body.part->clear())
        return fail(*error);
    request();
}

void Transfer::pump()
{
    if (!m_download || !m_download->head() || (!m_accepted && !headArrived()))
        return;
    auto &buffer = m_context.buffer;
    for (int reads = 0; m_download && reads < readsInARow; ++reads) {
        const qint64 count = m_download->read(buffer.data(), static_cast<qint64>(buffer.size()));
        if (count == 0)
            break;
        store(count);
        // The other transfers have their turn, and whoever wants to stop this one.
        if (reads == readsInARow - 1)
            QMetaObject::invokeMethod(this, &Transfer::pump, Qt::QueuedConnection);
    }
    if (m_download && m_download->isComplete())
        finish();
}

/// Decides what the answer is good for; false when it does not carry the body.
bool Transfer::headArrived()
{
    const HttpHead &head = *m_download->head();
    m_info.status = head.status;
    if (m_asksForRest && head.status == 206) {
        const qint64 from = m_body.part->size();
        m_accepted = m_body.version.isContinuedBy(head, m_download->url(), from) &&
                     m_body.part->isUntouched();
        if (m_accepted)
            m_body.version.total = ContentRange::parse(head.field("content-range"))->total;
        else
            startOver();
    } else if (m_asksForRest && head.status == 416) {
        startOver();
    } else if (head.status > 299) {
        finishWithoutBody();
    } else if (!carriesWhole(head)) {
        fail({ErrorKind::Transport, tr("The server sent only a part of the file.")});
    } else {
        openPart();
    }
    return m_accepted;
}

/// For a body from its first byte.
void Transfer::openPart()
{
    m_body.version = BodyVersion::of(*m_download->head(), m_download->url(), m_download->length());
    if (m_body.part) {
        if (const auto error = m_body.part->clear())
            return fail(*error);
    } else {
        auto part = PartFile::create(m_folder, m_context.options.write);
        if (!part)
            return fail(part.error());
        m_body.part = *std::move(part);
    }
    m_accepted = true;
}

void Transfer::store(qint64 count)
{
    if (const auto error = m_body.part->append(m_context.buffer.data(), count))
        return fail(*error);
    m_toldAll = false;
    if (!m_pace.isActive())
        tellProgress();
}

void Transfer::progressDue()
{
    if (!m_body.part->isInPlace())
        return fail(PartFile::gone());
    tellProgress();
}

void Transfer::tellProgress()
{
    if (m_toldAll)
        return;
    m_toldAll = true;
    m_pace.start();
    m_context.delegate.dataWritten(m_info, m_body.part->size(), m_body.version.total);
}

void Transfer::finish()
{
    const qint64 total = m_body.version.total;
    if (total >= 0 && m_body.part->size() != total)
        return fail(
            {ErrorKind::Transport, tr("The server sent another length than it announced.")});
    if (!m_body.part->isInPlace())
        return fail(PartFile::gone());
    tellProgress();
    abandon();
    m_body.part->publish();
    m_context.delegate.finished(m_info, m_body.part->path());
    end({});
}

void Transfer::finishWithoutBody()
{
    abandon();
    m_body.part.reset();
    m_context.delegate.finished(m_info, {});
    end({});
}

void Transfer::fail(const Error &error)
{
    abandon();
    end(error);
}

void Transfer::end(const std::optional<Error> &error)
{
    m_body.part.reset();
    m_context.delegate.completed(m_info, error);
    Q_EMIT ended();
}

} // namespace tavelo
