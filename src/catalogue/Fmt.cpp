// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Fmt.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tavelo::Fmt {

namespace {

QString twoDigits(qint64 number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

bool isSpace(QChar c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

/// The length of the pattern <br\s*/?> where it begins the text, else 0.
qsizetype lineBreakLength(QStringView text)
{
    if (!text.startsWith(u"<br"))
        return 0;
    qsizetype at = 3;
    while (at < text.size() && isSpace(text[at]))
        ++at;
    if (at < text.size() && text[at] == u'/')
        ++at;
    return at < text.size() && text[at] == u'>' ? at + 1 : 0;
}

/// With a line feed for every line break, also inside other tags.
QString withLineFeeds(QStringView text)
{
    QString plain;
    plain.reserve(text.size());
    for (qsizetype open = text.indexOf(u'<'); open >= 0; open = text.indexOf(u'<')) {
        plain += text.first(open);
        text = text.sliced(open);
        const qsizetype length = lineBreakLength(text);
        plain += length > 0 ? u'\n' : u'<';
        text = text.sliced(std::max<qsizetype>(length, 1));
    }
    return plain += text;
}

struct Entity
{
    QLatin1String name; // after the ampersand
    char16_t character;
};

constexpr std::array entities{Entity{QLatin1String("quot;"), u'"'},
                              Entity{QLatin1String("#39;"), u'\''},
                              Entity{QLatin1String("nbsp;"), u' '}};

/// What the entities' names become when first "&amp;" is replaced in the whole text and then, one
/// after the other, the rest: in one pass, for each would move all that follows a match.
QString withoutEntities(QStringView text)
{
    constexpr QLatin1String ampersand("amp;");
    QString plain;
    plain.reserve(text.size());
    for (qsizetype at = text.indexOf(u'&'); at >= 0; at = text.indexOf(u'&')) {
        plain += text.first(at);
        text = text.sliced(at + 1);
        if (text.startsWith(ampersand))
            text = text.sliced(ampersand.size());
        const auto entity = std::ranges::find_if(
            entities, [text](const Entity &each) { return text.startsWith(each.name); });
        plain += entity != entities.end() ? QChar(entity->character) : QChar(u'&');
        if (entity != entities.end())
            text = text.sliced(entity->name.size());
    }
    return plain += text;
}

/// What the pattern <[^>]+> would remove, in one pass: a text of many "<" and no ">" must not take
/// quadratic time.
QString withoutTags(const QString &text)
{
    QString plain;
    plain.reserve(text.size());
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = text.indexOf(QLatin1Char('<'), from);
        const qsizetype close = open < 0 ? -1 : text.indexOf(QLatin1Char('>'), open + 1);
        if (close < 0)
            break;
        const bool isTag = close > open + 1;
        plain += QStringView(text).sliced(from, (isTag ? open : open + 1) - from);
        from = isTag ? close + 1 : open + 1;
    }
    return plain += QStringView(text).sliced(from);
}

} // namespace

QString time(double seconds)
{
    if (!std::isfinite(seconds) || seconds < 0)
        return QStringLiteral("0:00");
    constexpr auto most = std::numeric_limits<qint64>::max();
    const qint64 whole = seconds < static_cast<double>(most) ? static_cast<qint64>(seconds) : most;
    const qint64 minutes = whole / 60 % 60;
    if (whole < 3600)
        return QStringLiteral("%1:%2").arg(minutes).arg(twoDigits(whole % 60));
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(twoDigits(minutes), twoDigits(whole % 60));
}

std::optional<QString> stripHTML(const std::optional<QString> &text)
{
    if (!text)
        return {};
    const QString plain = withoutEntities(withoutTags(withLineFeeds(*text))).trimmed();
    return plain.isEmpty() ? std::nullopt : std::optional(plain);
}

QString byteCount(std::optional<qint64> bytes)
{
    if (!bytes || *bytes < 0)
        return QStringLiteral("—");
    return QLocale::c().formattedDataSize(*bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace tavelo::Fmt
