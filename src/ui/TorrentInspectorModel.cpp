// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentInspectorModel.h"

#include "catalogue/Fmt.h"

#include <algorithm>
#include <array>

namespace tavelo {

namespace {

constexpr std::array videos{QLatin1String("mp4"), QLatin1String("m4v"),  QLatin1String("mkv"),
                            QLatin1String("avi"), QLatin1String("mov"),  QLatin1String("webm"),
                            QLatin1String("mpg"), QLatin1String("mpeg"), QLatin1String("wmv"),
                            QLatin1String("flv"), QLatin1String("ts"),   QLatin1String("ogv")};

constexpr std::array subtitles{QLatin1String("srt"), QLatin1String("vtt"), QLatin1String("ass"),
                               QLatin1String("ssa"), QLatin1String("sub")};

/// Empty when the last component has none; a leading dot begins a name, not an extension.
QStringView extensionOf(QStringView path)
{
    const QStringView name = path.sliced(path.lastIndexOf(QLatin1Char('/')) + 1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.sliced(dot + 1) : QStringView();
}

template <typename List>
bool isOneOf(QStringView extension, const List &list)
{
    return std::ranges::any_of(list, [extension](QLatin1String known) {
        return extension.size() == known.size() &&
               extension.compare(known, Qt::CaseInsensitive) == 0;
    });
}

bool isVideo(const TorrentFileEntry &file)
{
    return isOneOf(extensionOf(file.path), videos);
}

} // namespace

void TorrentInspectorModel::setInfo(const QVariant &info)
{
    beginResetModel();
    m_info = info.value<TorrentInfo>();
    m_videos = std::ranges::count_if(m_info.files, isVideo);
    endResetModel();
    Q_EMIT infoChanged();
}

QString TorrentInspectorModel::symbolFor(const QString &path)
{
    const QStringView extension = extensionOf(path);
    if (isOneOf(extension, videos))
        return QStringLiteral("film");
    return isOneOf(extension, subtitles) ? QStringLiteral("captions.bubble")
                                         : QStringLiteral("doc");
}

QString TorrentInspectorModel::hashText() const
{
    return QLatin1String("Info hash: ") + m_info.infoHash;
}

QString TorrentInspectorModel::summary() const
{
    return QStringLiteral("%1 file(s) · %2 · %3 video")
        .arg(QString::number(count()), Fmt::byteCount(m_info.totalSize()),
             QString::number(m_videos));
}

QString TorrentInspectorModel::trackersText() const
{
    return QStringLiteral("%1 tracker(s)").arg(m_info.trackers.size());
}

int TorrentInspectorModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TorrentInspectorModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return {};
    const TorrentFileEntry &file = m_info.files.at(index.row());
    switch (role) {
    case PathRole:
        return DisplayText::name(file.path);
    case SymbolRole:
        return symbolFor(file.path);
    case SizeRole:
        return Fmt::byteCount(file.size);
    default:
        return {};
    }
}

QHash<int, QByteArray> TorrentInspectorModel::roleNames() const
{
    return {{PathRole, QByteArrayLiteral("path")},
            {SymbolRole, QByteArrayLiteral("symbol")},
            {SizeRole, QByteArrayLiteral("size")}};
}

} // namespace tavelo
