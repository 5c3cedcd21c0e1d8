// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HttpHead.h"

#include <algorithm>

namespace tavelo {

namespace {

bool isPrintable(const QByteArray &line)
{
    return std::ranges::none_of(line, [](char c) {
        return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f;
    });
}

/// `HTTP/1.1 206 Partial Content`; 0 when it is not one.
int statusIn(const QByteArray &line)
{
    if (!line.startsWith("HTTP/1.") || line.size() < 12 || line[8] != ' ' ||
        (line.size() > 12 && line[12] != ' '))
        return 0;
    bool isNumber = false;
    const int status = line.sliced(9, 3).toInt(&isNumber);
    return isNumber && status >= 100 ? status : 0;
}

} // namespace

std::optional<HttpHead> HttpHead::parse(const QByteArray &text)
{
    HttpHead head;
    for (const QByteArray &piece : text.split('\n')) {
        const QByteArray line = piece.endsWith('\r') ? piece.chopped(1) : piece;
        const qsizetype colon = line.indexOf(':');
        if (!isPrintable(line))
            return {};
        if (head.status == 0)
            head.status = statusIn(line);
        else if (line.isEmpty())
            break;
        else if (colon <= 0 || line[colon - 1] == ' ')
            return {};
        else
            head.fields.append({line.first(colon).toLower(), line.sliced(colon + 1).trimmed()});
        if (head.status == 0)
            return {};
    }
    return head;
}

QByteArray HttpHead::field(const char *lowerName) const
{
    QByteArray all;
    for (const auto &[name, value] : fields) {
        if (name == lowerName)
            all += all.isEmpty() ? value : ", " + value;
    }
    return all;
}

} // namespace tavelo
