// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "torrent/Magnet.h"

#include "platform/Utf8.h"
#include "platform/http/ServiceHosts.h"
#include "torrent/TorrentMetadata.h"

#include <QUrl>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace tavelo {

namespace {

constexpr QLatin1String scheme("magnet:");
constexpr QLatin1String hashPrefix("urn:btih:");
constexpr qsizetype hexDigits = 40;
constexpr qsizetype base32Digits = 32;
constexpr qsizetype maxCharacters = 65'536; // of a link

QString encoded(const QString &value)
{
    return value.isValidUtf16() ? QString::fromLatin1(QUrl::toPercentEncoding(value, {}, "-._~"))
                                : QString();
}

bool isEscape(const QByteArray &text, qsizetype at)
{
    const auto isHex = [&](qsizetype place) {
        return place < text.size() && std::isxdigit(uchar(text[place]));
    };
    return text[at] == '%' && isHex(at + 1) && isHex(at + 2);
}

// With what no URL holds escaped (RFC 3986): people paste links that have spaces and signs in them.
QByteArray repaired(const QByteArray &text)
{
    QByteArray link;
    link.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char c = text[at];
        const bool stands = c > ' ' && c < 0x7F && !std::strchr("\"%<>\\^`{|}", c);
        if (stands || isEscape(text, at))
            link += c;
        else
            link += '%' + QByteArray(1, c).toHex().toUpper();
    }
    return link;
}

std::optional<QByteArray> linkIn(const QString &text)
{
    const QString link = text.trimmed();
    return link.startsWith(scheme) && link.size() <= maxCharacters
               ? std::optional(repaired(link.toUtf8()))
               : std::nullopt;
}

struct Parameter
{
    QString name;
    std::optional<QString> value; // absent without an equals sign
    QByteArray encodedValue;
};

QString percentDecoded(const QByteArray &text)
{
    return Utf8::decoded(QByteArray::fromPercentEncoding(text));
}

// Of the query (RFC 3986, 3.4), in order; absent when there is none.
std::optional<QList<Parameter>> parametersOf(const QByteArray &link)
{
    const QByteArray address = link.first(link.contains('#') ? link.indexOf('#') : link.size());
    const qsizetype start = address.indexOf('?');
    if (start < 0)
        return {};
    QList<Parameter> parameters;
    for (const QByteArray &item : address.sliced(start + 1).split('&')) {
        const qsizetype equals = item.indexOf('=');
        if (equals < 0)
            parameters.append({percentDecoded(item), {}, {}});
        else
            parameters.append({percentDecoded(item.first(equals)),
                               percentDecoded(item.sliced(equals + 1)), item.sliced(equals + 1)});
    }
    return parameters;
}

std::optional<QString> firstNamed(const QList<Parameter> &parameters, QLatin1String name)
{
    const auto found = std::ranges::find(parameters, name, &Parameter::name);
    return found == parameters.end() ? std::nullopt : found->value;
}

bool isHexDigit(QChar c)
{
    return c.unicode() < 0x80 && std::isxdigit(int(c.unicode()));
}

// In the link's letter case when it is hexadecimal there.
std::optional<QString> hashIn(const QString &topic)
{
    if (!topic.toLower().startsWith(hashPrefix))
        return {};
    QString hash = topic.sliced(hashPrefix.size());
    if (hash.size() == base32Digits)
        hash = TorrentMetadata::base32ToHex(hash).value_or(hash);
    return hash.size() == hexDigits && std::ranges::all_of(hash, isHexDigit) ? std::optional(hash)
                                                                             : std::nullopt;
}

} // namespace

QString makeMagnet(const QString &hash, const QString &name)
{
    QString link = scheme + QLatin1String("?xt=") + encoded(hashPrefix + hash) +
                   QLatin1String("&dn=") + encoded(name);
    for (const QString &tracker : ServiceHosts::current().trackers)
        link += QLatin1String("&tr=") + encoded(tracker);
    return link;
}

std::optional<QString> essentialMagnet(const QString &link)
{
    if (!TorrentMetadata::parseMagnet(link))
        return {};
    const QList<Parameter> parameters = *parametersOf(*linkIn(link));
    QStringList kept;
    QStringList once{QStringLiteral("xt"), QStringLiteral("dn"), QStringLiteral("xl")};
    for (const Parameter &parameter : parameters) {
        const bool repeats =
            parameter.name == QLatin1String("tr") || parameter.name == QLatin1String("ws");
        if ((repeats || once.removeOne(parameter.name)) && parameter.value)
            kept << parameter.name + QLatin1Char('=') + QString::fromLatin1(parameter.encodedValue);
    }
    return scheme + QLatin1Char('?') + kept.join(QLatin1Char('&'));
}

std::optional<TorrentInfo> TorrentMetadata::parseMagnet(const QString &text)
{
    const auto link = linkIn(text);
    const auto parameters = link ? parametersOf(*link) : std::nullopt;
    if (!parameters)
        return {};
    const auto hash = hashIn(firstNamed(*parameters, QLatin1String("xt")).value_or(QString()));
    if (!hash)
        return {};
    TorrentInfo torrent;
    torrent.name = firstNamed(*parameters, QLatin1String("dn")).value_or(*hash);
    torrent.infoHash = hash->toLower();
    for (const Parameter &parameter : *parameters) {
        if (parameter.name == QLatin1String("tr") && parameter.value)
            torrent.trackers.append(*parameter.value);
    }
    torrent.magnet = QString::fromUtf8(*link);
    return torrent;
}

std::optional<QString> TorrentMetadata::base32ToHex(const QString &text)
{
    constexpr QLatin1String alphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZ234567");
    QByteArray bytes;
    quint64 accumulator = 0;
    int bits = 0;
    for (const QChar digit : text.toUpper()) {
        const qsizetype position = alphabet.indexOf(digit);
        if (position < 0)
            return {};
        accumulator = (accumulator << 5) + quint64(position);
        bits += 5;
        if (bits >= 8) {
            bits -= 8;
            bytes.append(char((accumulator >> bits) & 0xFF));
        }
    }
    return QString::fromLatin1(bytes.toHex());
}

} // namespace tavelo
