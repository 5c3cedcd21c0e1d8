// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentRow.h"

#include "catalogue/Fmt.h"
#include "platform/DisplayText.h"
#include "search/MergeResults.h"

#include <QCollator>
#include <QSet>

#include <algorithm>
#include <numeric>

namespace tavelo {

namespace {

QString numberText(const std::optional<qint64> &number)
{
    return number ? QString::number(*number) : QStringLiteral("—");
}

/// As people sort: whatever the letters' case, and 2 before 10.
std::vector<QCollatorSortKey> collated(const QStringList &texts)
{
    QCollator collator(QLocale(QLocale::English));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    std::vector<QCollatorSortKey> keys;
    keys.reserve(static_cast<std::size_t>(texts.size()));
    for (const QString &text : texts)
        keys.push_back(collator.sortKey(text));
    return keys;
}

void rank(QList<TorrentRow> &rows, TorrentSort::Key key, const QStringList &texts)
{
    const auto keys = collated(texts);
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::sort(order, [&](auto a, auto b) { return keys[a].compare(keys[b]) < 0; });
    qint64 place = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        place += i > 0 && keys[order[i - 1]].compare(keys[order[i]]) != 0;
        rows[static_cast<qsizetype>(order[i])].keys[key] = place;
    }
}

TorrentRow rowOf(const TorrentResult &result)
{
    TorrentRow row{.result = result,
                   .id = mergeKey(result),
                   .quality = result.quality(),
                   .format = result.format()};
    row.keys[TorrentSort::Size] = result.sizeSort();
    row.keys[TorrentSort::Seeds] = result.seedersSort();
    row.keys[TorrentSort::Peers] = result.leechersSort();
    return row;
}

} // namespace

QString TorrentRow::titleText() const
{
    return DisplayText::name(result.title);
}

QString TorrentRow::sizeText() const
{
    return Fmt::byteCount(result.size);
}

QString TorrentRow::seedsText() const
{
    return numberText(result.seeders);
}

QString TorrentRow::peersText() const
{
    return numberText(result.leechers);
}

QString TorrentRow::sourceText() const
{
    return result.sources.join(QLatin1String(", "));
}

QString TorrentRow::licenceText() const
{
    if (!result.archiveID)
        return {};
    if (result.license && !result.license->isEmpty())
        return QLatin1String("Licensed: ") + DisplayText::name(*result.license);
    return QStringLiteral("Orvella catalog item · license not stated");
}

QString TorrentRow::spokenText() const
{
    return QStringLiteral("%1, %2 seeds, %3 peers, %4, %5, %6")
        .arg(sizeText(), seedsText(), peersText(), quality, format, sourceText());
}

TorrentRows TorrentRows::of(const QList<TorrentResult> &results)
{
    TorrentRows all;
    QStringList titles;
    QStringList sources;
    QSet<QString> names;
    all.rows.reserve(results.size());
    for (const TorrentResult &result : results) {
        all.rows.append(rowOf(result));
        titles.append(result.title);
        sources.append(result.sourceSort());
        for (const QString &name : result.sources)
            names.insert(name);
    }
    rank(all.rows, TorrentSort::Title, titles);
    rank(all.rows, TorrentSort::Source, sources);
    all.sources = names.values();
    all.sources.sort();
    return all;
}

} // namespace tavelo
