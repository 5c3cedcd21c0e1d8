// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "catalogue/ArchiveDetails.h"
#include "catalogue/ArchiveFile.h"
#include "catalogue/Collection.h"
#include "catalogue/MediaItem.h"
#include "playback/NowPlaying.h"
#include "playback/PlaybackCoordinator.h"
#include "playback/SubtitleManager.h"
#include "playback/SubtitleTrack.h"
#include "search/ProviderRegistry.h"
#include "search/SearchAggregator.h"
#include "storage/CacheManager.h"
#include "storage/LibraryStore.h"
#include "storage/SettingsStore.h"
#include "transfers/DownloadManager.h"
#include "ui/ProviderChip.h"

#include <qqmlregistration.h>

// The types of the lower floors, under the names by which the screens know them.

namespace tavelo {

struct ForeignAppState
{
    Q_GADGET
    QML_FOREIGN(tavelo::AppState)
    QML_NAMED_ELEMENT(AppState)
    QML_UNCREATABLE("There is one, and the program makes it.")
};

struct ForeignPlaybackCoordinator
{
    Q_GADGET
    QML_FOREIGN(tavelo::PlaybackCoordinator)
    QML_NAMED_ELEMENT(PlaybackCoordinator)
    QML_UNCREATABLE("AppState owns it.")
};

struct ForeignVideoPlayerManager
{
    Q_GADGET
    QML_FOREIGN(tavelo::VideoPlayerManager)
    QML_NAMED_ELEMENT(VideoPlayerManager)
    QML_UNCREATABLE("PlaybackCoordinator owns it.")
};

struct ForeignSubtitleManager
{
    Q_GADGET
    QML_FOREIGN(tavelo::SubtitleManager)
    QML_NAMED_ELEMENT(SubtitleManager)
    QML_UNCREATABLE("PlaybackCoordinator owns it.")
};

struct ForeignSubtitleTrack
{
    Q_GADGET
    QML_FOREIGN(tavelo::SubtitleTrack)
    QML_NAMED_ELEMENT(subtitleTrack)
};

struct ForeignSearchAggregator
{
    Q_GADGET
    QML_FOREIGN(tavelo::SearchAggregator)
    QML_NAMED_ELEMENT(SearchAggregator)
    QML_UNCREATABLE("AppState owns it.")
};

struct ForeignProviderChip
{
    Q_GADGET
    QML_FOREIGN(tavelo::ProviderChip)
    QML_NAMED_ELEMENT(providerChip)
};

struct ForeignMediaItem
{
    Q_GADGET
    QML_FOREIGN(tavelo::MediaItem)
    QML_NAMED_ELEMENT(mediaItem)
};

struct ForeignArchiveFile
{
    Q_GADGET
    QML_FOREIGN(tavelo::ArchiveFile)
    QML_NAMED_ELEMENT(archiveFile)
};

struct ForeignArchiveDetails
{
    Q_GADGET
    QML_FOREIGN(tavelo::ArchiveDetails)
    QML_NAMED_ELEMENT(archiveDetails)
};

struct ForeignAudioTrack
{
    Q_GADGET
    QML_FOREIGN(tavelo::AudioTrack)
    QML_NAMED_ELEMENT(audioTrack)
};

struct ForeignNowPlaying
{
    Q_GADGET
    QML_FOREIGN(tavelo::NowPlaying)
    QML_NAMED_ELEMENT(nowPlaying)
};

struct ForeignLibraryStore
{
    Q_GADGET
    QML_FOREIGN(tavelo::LibraryStore)
    QML_NAMED_ELEMENT(LibraryStore)
    QML_UNCREATABLE("AppState owns it.")
};

struct ForeignDownloadManager
{
    Q_GADGET
    QML_FOREIGN(tavelo::DownloadManager)
    QML_NAMED_ELEMENT(DownloadManager)
    QML_UNCREATABLE("AppState owns it.")
};

struct ForeignCacheManager
{
    Q_GADGET
    QML_FOREIGN(tavelo::CacheManager)
    QML_NAMED_ELEMENT(CacheManager)
    QML_UNCREATABLE("AppState owns it.")
};

struct ForeignSettingsStore
{
    Q_GADGET
    QML_FOREIGN(tavelo::SettingsStore)
    QML_NAMED_ELEMENT(SettingsStore)
    QML_UNCREATABLE("AppState owns it.")
};

struct ForeignProviderRegistry
{
    Q_GADGET
    QML_FOREIGN(tavelo::ProviderRegistry)
    QML_NAMED_ELEMENT(ProviderRegistry)
    QML_UNCREATABLE("AppState owns it.")
};

struct ForeignHistoryEntry
{
    Q_GADGET
    QML_FOREIGN(tavelo::HistoryEntry)
    QML_NAMED_ELEMENT(historyEntry)
};

struct ForeignSavedFile
{
    Q_GADGET
    QML_FOREIGN(tavelo::SavedFile)
    QML_NAMED_ELEMENT(savedFile)
};

struct ForeignDownloadTask
{
    Q_GADGET
    QML_FOREIGN(tavelo::DownloadTask)
    QML_NAMED_ELEMENT(downloadTask)
};

struct ForeignProviderConfig
{
    Q_GADGET
    QML_FOREIGN(tavelo::ProviderConfig)
    QML_NAMED_ELEMENT(providerConfig)
};

struct ForeignCollection
{
    Q_GADGET
    QML_FOREIGN(tavelo::Collection)
    QML_NAMED_ELEMENT(collection)
};

} // namespace tavelo
