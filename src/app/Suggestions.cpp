// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/Suggestions.h"

#include "catalogue/Text.h"

#include <QHash>

#include <algorithm>

namespace tavelo {

namespace {

constexpr qsizetype mostSuggestions = 10;
constexpr qsizetype shortest = 3;
constexpr qsizetype longest = 23;

struct Word
{
    QString text;
    int count = 0;
};

} // namespace

QStringList suggestionsFrom(const QList<MediaItem> &items)
{
    QList<Word> words;
    QHash<QString, qsizetype> places;
    for (const MediaItem &item : items) {
        for (const QString &subject : item.subjects) {
            const QString lower = subject.toLower();
            const QString word = Text::trimmedOfBlanks(lower).toString();
            const qsizetype length = word.toUcs4().size();
            if (length < shortest || length > longest)
                continue;
            if (!places.contains(word)) {
                places.insert(word, words.size());
                words.append({word, 0});
            }
            ++words[places.value(word)].count;
        }
    }
    std::ranges::stable_sort(words, std::ranges::greater(), &Word::count);
    QStringList suggestions;
    for (const Word &word : words.first(std::min(words.size(), mostSuggestions)))
        suggestions.append(word.text);
    return suggestions;
}

} // namespace tavelo
