// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/LibraryRows.h"

#include "catalogue/Fmt.h"

#include <QRegularExpression>

namespace tavelo {

namespace {

using Row = QVariantMap;

Row textRow(const QString &kind, const QString &title)
{
    return {{QStringLiteral("id"), title},
            {QStringLiteral("kind"), kind},
            {QStringLiteral("title"), title}};
}

Row heading(const QString &title)
{
    return textRow(QStringLiteral("heading"), title);
}

Row note(const QString &text)
{
    return textRow(QStringLiteral("note"), text);
}

Row savedRow(const SavedFile &file)
{
    return {{QStringLiteral("id"), file.url},
            {QStringLiteral("kind"), QStringLiteral("saved")},
            {QStringLiteral("title"), file.shownTitle()},
            {QStringLiteral("size"), Fmt::byteCount(file.size)},
            {QStringLiteral("action"), QStringLiteral("Play")},
            {QStringLiteral("film"), QVariant::fromValue(file)}};
}

Row entryRow(const HistoryEntry &entry)
{
    const bool underway = entry.isUnderway();
    const QString time =
        Fmt::time(entry.position) + QStringLiteral(" / ") + Fmt::time(entry.duration);
    return {
        {QStringLiteral("id"), QStringLiteral("watched ") + entry.key},
        {QStringLiteral("kind"), QStringLiteral("entry")},
        {QStringLiteral("title"), entry.shownTitle()},
        {QStringLiteral("time"), underway ? time : QString()},
        {QStringLiteral("date"),
         LibraryRows::dayText(entry.lastPlayed.toLocalTime().date(), QLocale())},
        {QStringLiteral("action"), underway ? QStringLiteral("Resume") : QStringLiteral("Play")},
        {QStringLiteral("film"), QVariant::fromValue(entry)}};
}

} // namespace

QVariantList LibraryRows::of(const QList<SavedFile> &saved, const QList<HistoryEntry> &history)
{
    QVariantList rows{heading(QStringLiteral("Saved on this Mac"))};
    if (saved.isEmpty())
        rows.append(note(QStringLiteral("Nothing saved yet. Download a file from an Orvella item "
                                        "to keep it here.")));
    for (const SavedFile &file : saved)
        rows.append(savedRow(file));
    rows.append(heading(QStringLiteral("History")));
    if (history.isEmpty())
        rows.append(note(QStringLiteral("Nothing watched yet.")));
    for (const HistoryEntry &entry : history)
        rows.append(entryRow(entry));
    return rows;
}

QString LibraryRows::dayText(const QDate &day, const QLocale &locale)
{
    static const QRegularExpression weekday(QStringLiteral("^dddd[\\s,،]*|[\\s,،]*dddd$"));
    return locale.toString(day, locale.dateFormat(QLocale::LongFormat).remove(weekday));
}

} // namespace tavelo
