// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "playback/SubtitleParser.h"

#include "catalogue/Text.h"
#include "platform/DisplayText.h"

#include <QStringTokenizer>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace tavelo::SubtitleParser {

namespace {

constexpr QStringView arrow(u"-->");
constexpr DisplayText::Bounds cueBounds{.characters = 1'000, .lines = 10};

bool isDigitOrPoint(char c)
{
    return (c >= '0' && c <= '9') || c == '.';
}

// A decimal number and nothing else, as strtod reads it in the C locale.
std::optional<double> number(QStringView text)
{
    QVarLengthArray<char, 32> ascii(text.size());
    std::ranges::transform(text, ascii.begin(), [](QChar c) {
        return c == u',' ? '.' : c.unicode() < 0x80 ? char(c.unicode()) : '?';
    });
    const char *start = ascii.begin();
    const char *const end = ascii.end();
    // from_chars knows no plus sign.
    if (end - start > 1 && *start == '+' && isDigitOrPoint(start[1]))
        ++start;
    double value = 0;
    const auto [stop, error] = std::from_chars(start, end, value);
    return error == std::errc() && stop == end && std::isfinite(value) ? std::optional(value)
                                                                       : std::nullopt;
}

QString withoutTags(QStringView text)
{
    QString plain;
    plain.reserve(text.size());
    qsizetype at = 0;
    for (qsizetype open = text.indexOf(u'<'); open >= 0; open = text.indexOf(u'<', at)) {
        const qsizetype close = text.indexOf(u'>', open);
        if (close < 0)
            break;
        // An empty pair is no tag.
        const bool isTag = close > open + 1;
        plain += text.sliced(at, (isTag ? open : close + 1) - at);
        at = close + 1;
    }
    plain += text.sliced(at);
    return std::move(plain).trimmed();
}

// Line feeds alone end the lines, and no byte order mark stands anywhere. In place and in one pass:
// QString's own replacement moves the whole rest again and again.
void tidy(QString &text)
{
    if (!text.contains(u'\r') && !text.contains(QChar(QChar::ByteOrderMark)))
        return;
    QChar *out = text.data();
    const QChar *const end = text.constEnd();
    for (const QChar *in = text.constBegin(); in < end; ++in) {
        const bool isPair = *in == u'\r' && in + 1 < end && in[1] == u'\n';
        if (!isPair && *in != QChar(QChar::ByteOrderMark))
            *out++ = *in;
    }
    text.truncate(out - text.constData());
}

// The first arrow in it; negative when there is none. Much faster than a search for the three.
qsizetype arrowIn(QStringView text)
{
    qsizetype at = text.indexOf(u'-');
    while (at >= 0 && !text.sliced(at).startsWith(arrow))
        at = text.indexOf(u'-', at + 1);
    return at;
}

// Where two line feeds follow one another, or the text ends.
qsizetype blockEnd(QStringView text)
{
    qsizetype lineEnd = text.indexOf(u'\n');
    while (lineEnd >= 0 && !text.sliced(lineEnd + 1).startsWith(u'\n'))
        lineEnd = text.indexOf(u'\n', lineEnd + 1);
    return lineEnd < 0 ? text.size() : lineEnd;
}

struct Timing
{
    double start = 0;
    double end = 0;
};

std::optional<Timing> timingIn(QStringView line)
{
    const qsizetype at = arrowIn(line);
    const QStringView after = line.sliced(at + arrow.size());
    if (arrowIn(after) >= 0)
        return {};
    const QStringView settings = Text::trimmedOfBlanks(after);
    const qsizetype space = settings.indexOf(u' ');
    const auto start = parseTime(line.first(at));
    const auto end = parseTime(settings.first(space < 0 ? settings.size() : space));
    return start && end ? std::optional(Timing{*start, *end}) : std::nullopt;
}

std::optional<SubtitleCue> cueIn(QStringView block)
{
    const qsizetype at = arrowIn(block);
    if (at < 0)
        return {};
    const qsizetype lineStart = block.first(at).lastIndexOf(u'\n') + 1;
    const qsizetype nextBreak = block.indexOf(u'\n', at);
    const qsizetype lineEnd = nextBreak < 0 ? block.size() : nextBreak;
    const auto timing = timingIn(block.sliced(lineStart, lineEnd - lineStart));
    if (!timing)
        return {};
    const QString text = withoutTags(block.sliced(lineEnd));
    if (text.isEmpty())
        return {};
    return SubtitleCue{timing->start, timing->end, DisplayText::shortened(text, cueBounds)};
}

} // namespace

QList<SubtitleCue> parse(QString text)
{
    tidy(text);
    QList<SubtitleCue> cues;
    for (QStringView rest = text; !rest.isEmpty();) {
        const QStringView block = rest.first(blockEnd(rest));
        if (auto cue = cueIn(block))
            cues.append(*std::move(cue));
        rest = rest.sliced(std::min(block.size() + 2, rest.size()));
    }
    return cues;
}

std::optional<double> parseTime(QStringView text)
{
    std::array<double, 3> pieces{};
    size_t count = 0;
    for (const QStringView piece :
         QStringTokenizer(Text::trimmedOfBlanks(text), u':', Qt::SkipEmptyParts)) {
        const auto value = number(piece);
        if (!value || count == pieces.size())
            return {};
        pieces[count++] = *value;
    }
    if (count < 2)
        return {};
    return count == 2 ? pieces[0] * 60 + pieces[1] : pieces[0] * 3600 + pieces[1] * 60 + pieces[2];
}

QString decoded(const QByteArray &file)
{
    return QByteArrayView(file).isValidUtf8() ? QString::fromUtf8(file) : QString::fromLatin1(file);
}

} // namespace tavelo::SubtitleParser
