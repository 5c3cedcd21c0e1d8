// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/DisplayText.h"

#include <QList>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace tavelo::DisplayText {

namespace {

constexpr Bounds nameBounds{.characters = 500};
constexpr Bounds bodyBounds{.characters = 20'000, .lines = 1'000};
constexpr Bounds extractBounds{.characters = 300};
constexpr Bounds messageBounds{.characters = 1'000, .lines = 10};

// Laying out 20,000 letters takes 5 ms. It takes 500 ms when every other one runs the other way, or
// when all of them are accents of the first.
constexpr int mostTurns = 1'000;
constexpr int mostMarks = 30; // in a row; no more in a stream-safe text (Unicode, UAX #15)

// And 50 ms when it finds no place to break.
constexpr qsizetype longestRun = 100;
constexpr qsizetype runPiece = 20;

constexpr QChar breakPlace(0x200B);
constexpr QChar rightToLeftMark(0x200F);
constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popIsolate(0x2069);
constexpr QChar ellipsis(0x2026);

bool isLineEnd(char32_t c)
{
    return c == QChar::LineSeparator || QChar::direction(c) == QChar::DirB;
}

/// Embeddings, overrides, isolates and their ends.
bool isBidiControl(char32_t c)
{
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool runsRightToLeft(char32_t c)
{
    const QChar::Direction direction = QChar::direction(c);
    return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
}

bool runsLeftToRight(char32_t c)
{
    const QChar::Direction direction = QChar::direction(c);
    return direction == QChar::DirL || direction == QChar::DirEN;
}

/// Nothing that name() cares for.
bool isPlain(QChar c)
{
    return c >= u' ' && c < QChar(0x0590) && c != QChar(0x0085);
}

/// Counts the lines and the turns of a text, letter by letter.
struct Progress
{
    qsizetype lines = 1;
    int turns = 0;
    bool rightToLeft = false;

    void take(char32_t c)
    {
        const bool turned = rightToLeft ? runsLeftToRight(c) : runsRightToLeft(c);
        rightToLeft = rightToLeft != turned;
        turns += turned || isBidiControl(c);
        lines += isLineEnd(c);
    }
};

qsizetype lengthWithin(const QString &text, Bounds bounds)
{
    Progress progress;
    qsizetype length = 0;
    for (const char32_t c : text.left(bounds.characters).toUcs4()) {
        progress.take(c);
        if (progress.lines > bounds.lines || progress.turns > mostTurns)
            return length;
        length += QChar::requiresSurrogates(c) ? 2 : 1;
    }
    return length;
}

/// The last border between characters up to `at`; `at` itself, or what is next to it, where a
/// single character is longer.
qsizetype borderBefore(QStringView text, qsizetype at)
{
    const QStringView head = text.first(std::min(text.size(), at + 2));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, head.data(), head.size());
    finder.setPosition(at);
    const qsizetype border = finder.isAtBoundary() ? at : finder.toPreviousBoundary();
    if (border > 0)
        return border;
    return at > 1 && text.at(at - 1).isHighSurrogate() ? at - 1 : at;
}

void appendDivided(QString &text, QStringView run)
{
    while (run.size() > runPiece) {
        const qsizetype cut = borderBefore(run, runPiece);
        text += run.first(cut);
        text += breakPlace;
        run = run.sliced(cut);
    }
    text += run;
}

QString withoutTowers(const QString &text)
{
    QList<uint> letters = text.toUcs4();
    int marks = 0;
    letters.removeIf([&marks](char32_t c) {
        marks = QChar::isMark(c) ? marks + 1 : 0;
        return marks > mostMarks;
    });
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(letters.constData()),
                             letters.size());
}

QString isolated(const QString &text)
{
    if (std::ranges::none_of(text.toUcs4(), runsRightToLeft))
        return text;
    // Alone in its line it still begins at the right: what is inside an isolate does not count.
    const QString mark = text.isRightToLeft() ? QString(rightToLeftMark) : QString();
    return mark + firstStrongIsolate + text + popIsolate;
}

} // namespace

QString shortened(const QString &text, Bounds bounds)
{
    const qsizetype length = lengthWithin(text, bounds);
    if (length == text.size())
        return text;
    return text.left(borderBefore(text, std::min(length, bounds.characters - 1))) + ellipsis;
}

QString breakable(const QString &text)
{
    if (text.size() <= longestRun)
        return text;
    QString divided;
    divided.reserve(text.size() + text.size() / runPiece);
    QTextBoundaryFinder places(QTextBoundaryFinder::Line, text);
    qsizetype from = 0;
    for (qsizetype to = places.toNextBoundary(); to >= 0; to = places.toNextBoundary()) {
        const QStringView run = QStringView(text).sliced(from, to - from);
        if (run.size() > longestRun)
            appendDivided(divided, run);
        else
            divided += run;
        from = to;
    }
    return divided;
}

QString name(const QString &text)
{
    if (text.size() <= nameBounds.characters && std::ranges::all_of(text, isPlain))
        return text;
    QString shown = shortened(text, nameBounds);
    shown.removeIf([](QChar c) { return isBidiControl(c.unicode()); });
    std::ranges::replace_if(
        shown, [](QChar c) { return isLineEnd(c.unicode()); }, u' ');
    return isolated(shown);
}

QString body(const QString &text)
{
    return breakable(withoutTowers(shortened(text, bodyBounds)));
}

QString extract(const QString &text)
{
    return shortened(text, extractBounds);
}

QString message(const QString &text)
{
    return breakable(shortened(text, messageBounds));
}

} // namespace tavelo::DisplayText
