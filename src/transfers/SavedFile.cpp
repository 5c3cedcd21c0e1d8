// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/SavedFile.h"

#include <QDir>

#include <algorithm>
#include <array>

namespace tavelo {

namespace {

constexpr std::array extensions{QLatin1String("mp4"), QLatin1String("m4v"), QLatin1String("mov"),
                                QLatin1String("mkv"), QLatin1String("avi"), QLatin1String("webm"),
                                QLatin1String("ogv")};

// The listing passes links to pipes and devices, which would hold up whoever opens them.
bool isVideo(const QFileInfo &file)
{
    return file.isFile() &&
           std::ranges::find(extensions, file.suffix().toLower()) != extensions.end();
}

QDateTime creationOf(const QFileInfo &file)
{
    const QDateTime birth = file.birthTime();
    return birth.isValid() ? birth.toUTC() : QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
}

} // namespace

QString SavedFile::title() const
{
    return QFileInfo(url.toLocalFile()).completeBaseName();
}

QList<SavedFile> savedFilesIn(const QString &folder)
{
    QList<SavedFile> saved;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files, QDir::Unsorted)) {
        if (isVideo(file))
            saved.append({QUrl::fromLocalFile(file.filePath()), file.size(), creationOf(file)});
    }
    std::ranges::stable_sort(saved, std::ranges::greater(), &SavedFile::added);
    return saved;
}

} // namespace tavelo
