// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpAnswer.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>
#include <QRandomGenerator>

#include <algorithm>
#include <memory>
#include <vector>

namespace tavelo {

namespace {

constexpr qint64 patternBytes = 1024 * 1024;
constexpr qint64 patternStep = 7919; // from one repetition to the next

QByteArray randomBlock(quint32 seed)
{
    std::vector<quint32> words(patternBytes / sizeof(quint32));
    QRandomGenerator(seed).generate(words.begin(), words.end());
    return {reinterpret_cast<const char *>(words.data()), patternBytes};
}

} // namespace

HttpAnswer::Source HttpAnswer::Source::pattern(qint64 size, quint32 seed)
{
    const auto bytes = [block = randomBlock(seed)](qint64 offset, qint64 count) {
        QByteArray made;
        made.reserve(count);
        while (made.size() < count) {
            const qint64 at = offset + made.size();
            const qint64 turn = at / patternBytes * patternStep;
            const qint64 from = (at % patternBytes + turn) % patternBytes;
            const qint64 most = std::min(
                {count - made.size(), patternBytes - from, patternBytes - at % patternBytes});
            made.append(block.constData() + from, most);
        }
        return made;
    };
    return {size, bytes};
}

QByteArray HttpAnswer::date(const QDateTime &time)
{
    return QLocale::c().toString(time.toUTC(), u"ddd, dd MMM yyyy HH:mm:ss 'GMT'").toLatin1();
}

HttpAnswer HttpAnswer::text(int status, const QByteArray &body, const QByteArray &type)
{
    return {.body = body, .status = status, .headers = {{"Content-Type", type}}};
}

HttpAnswer HttpAnswer::json(const QJsonDocument &document)
{
    return text(200, document.toJson(QJsonDocument::Compact), "application/json");
}

HttpAnswer HttpAnswer::ofFile(const QString &path)
{
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        return notFound();
    const QFileInfo info(path);
    const QDateTime changed = info.lastModified();
    const QMimeType type = QMimeDatabase().mimeTypeForFile(info, QMimeDatabase::MatchExtension);
    return {.headers = {{"Content-Type", type.name().toLatin1()}, {"Last-Modified", date(changed)}},
            .etag = '"' + QByteArray::number(file->size(), 16) + '-' +
                    QByteArray::number(changed.toMSecsSinceEpoch(), 16) + '"',
            .ranges = true,
            .source = Source{file->size(), [file](qint64 offset, qint64 count) {
                                 return file->seek(offset) ? file->read(count) : QByteArray();
                             }}};
}

} // namespace tavelo
