// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/Foresight.h"
#include "app/SidebarSection.h"
#include "catalogue/Collection.h"
#include "catalogue/MediaItem.h"
#include "platform/DisplayText.h"
#include "platform/Workspace.h"
#include "playback/PlaybackCoordinator.h"
#include "search/ProviderRegistry.h"
#include "search/SearchAggregator.h"
#include "storage/CacheManager.h"
#include "torrent/TorrentInfo.h"
#include "transfers/DownloadManager.h"

#include <QCoroTask>

#include <functional>
#include <memory>
#include <optional>

namespace tavelo {

/// The state of the program that every screen reads, and the owner of its services. One of it,
/// created before the first window. Every field's signal follows every assignment. Main thread
/// only.
class AppState : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString section READ sectionName WRITE setSectionName NOTIFY sectionChanged)
    Q_PROPERTY(QStringList sections READ sectionNames CONSTANT)
    Q_PROPERTY(QVariant selectedItem READ selectedItemVariant NOTIFY selectedItemChanged)
    Q_PROPERTY(bool showPlayer READ showPlayer WRITE setShowPlayer NOTIFY showPlayerChanged)
    Q_PROPERTY(QString notice READ noticeText NOTIFY noticeChanged)
    Q_PROPERTY(QList<tavelo::MediaItem> featured READ featured NOTIFY featuredChanged)
    Q_PROPERTY(QList<tavelo::MediaItem> popular READ popular NOTIFY popularChanged)
    Q_PROPERTY(QStringList suggestions READ suggestions NOTIFY suggestionsChanged)
    Q_PROPERTY(QString homeError READ homeErrorText NOTIFY homeErrorChanged)
    Q_PROPERTY(bool homeLoading READ homeLoading NOTIFY homeLoadingChanged)
    Q_PROPERTY(QString searchQuery READ searchQuery WRITE setSearchQuery NOTIFY searchQueryChanged)
    Q_PROPERTY(
        QList<tavelo::MediaItem> searchResults READ searchResults NOTIFY searchResultsChanged)
    Q_PROPERTY(bool searching READ searching NOTIFY searchingChanged)
    Q_PROPERTY(QString searchError READ searchErrorText NOTIFY searchErrorChanged)
    Q_PROPERTY(
        QList<tavelo::MediaItem> discoverResults READ discoverResults NOTIFY discoverResultsChanged)
    Q_PROPERTY(bool discoverLoading READ discoverLoading NOTIFY discoverLoadingChanged)
    Q_PROPERTY(QList<tavelo::Collection> collections READ collections CONSTANT)
    Q_PROPERTY(QVariant collection READ collectionVariant NOTIFY collectionChanged)
    Q_PROPERTY(QVariant inspector READ inspectorVariant NOTIFY inspectorChanged)
    Q_PROPERTY(
        QList<tavelo::HistoryEntry> recentlyViewed READ recentlyViewed NOTIFY recentlyViewedChanged)
    Q_PROPERTY(tavelo::SettingsStore *settings READ settings CONSTANT)
    Q_PROPERTY(tavelo::LibraryStore *library READ library CONSTANT)
    Q_PROPERTY(tavelo::SearchAggregator *aggregator READ aggregator CONSTANT)
    Q_PROPERTY(tavelo::CacheManager *cache READ cache CONSTANT)
    Q_PROPERTY(tavelo::DownloadManager *downloads READ downloads CONSTANT)
    Q_PROPERTY(tavelo::ProviderRegistry *registry READ registry CONSTANT)
    Q_PROPERTY(tavelo::PlaybackCoordinator *playback READ playback CONSTANT)

public:
    AppState(VideoPlayerManager::EngineFactory makeEngine, std::unique_ptr<Workspace> workspace,
             QObject *parent = nullptr);
    ~AppState() override;

    SidebarSection section() const { return m_section; }
    const std::optional<MediaItem> &selectedItem() const { return m_selectedItem; }
    bool showPlayer() const { return m_showPlayer; }
    const std::optional<QString> &notice() const { return m_notice; }
    QList<MediaItem> featured() const { return m_featured; }
    QList<MediaItem> popular() const { return m_popular; }
    const std::optional<QString> &homeError() const { return m_homeError; }
    bool homeLoading() const { return m_homeLoading; }
    QString searchQuery() const { return m_searchQuery; }
    QList<MediaItem> searchResults() const { return m_searchResults; }
    bool searching() const { return m_searching; }
    const std::optional<QString> &searchError() const { return m_searchError; }
    QList<MediaItem> discoverResults() const { return m_discoverResults; }
    bool discoverLoading() const { return m_discoverLoading; }
    static QList<Collection> collections() { return Collection::all(); }
    const std::optional<Collection> &collection() const { return m_collection; }
    /// The torrent that was inspected last.
    const std::optional<TorrentInfo> &inspector() const { return m_inspector; }

    // The services, in the order in which they are made.
    SettingsStore *settings() { return &m_settings; }
    LibraryStore *library() { return &m_library; }
    SearchAggregator *aggregator() { return &m_aggregator; }
    CacheManager *cache() { return &m_cache; }
    DownloadManager *downloads() { return &m_downloads; }
    ProviderRegistry *registry() { return &m_registry; }
    PlaybackCoordinator *playback() { return &m_playback; }

    /// Subject words of the Home shelves, at most 10; counted a moment after the shelves come.
    QStringList suggestions() const { return m_suggestions; }
    /// The latest of the history that are not local, at most 20.
    QList<HistoryEntry> recentlyViewed() const;

    // The same for QML: absent reads as null or as the empty text.
    QString sectionName() const { return rawValue(m_section); }
    QStringList sectionNames() const;
    QVariant selectedItemVariant() const;
    QString noticeText() const { return shown(m_notice); }
    QString homeErrorText() const { return shown(m_homeError); }
    QString searchErrorText() const { return shown(m_searchError); }
    QVariant collectionVariant() const;
    QVariant inspectorVariant() const;

    void setSection(SidebarSection section);
    void setSectionName(const QString &name); // any other name: Home
    Q_INVOKABLE void selectItem(const tavelo::MediaItem &item);
    Q_INVOKABLE void clearSelectedItem();
    /// The screen shows the files of the selected item.
    Q_INVOKABLE void showDetails(const tavelo::ArchiveDetails &details);
    /// The pointer or the keyboard is on the card of a film to go on with, or not any more.
    Q_INVOKABLE void reachCard(const tavelo::HistoryEntry &entry);
    Q_INVOKABLE void leaveCard(const tavelo::HistoryEntry &entry);
    Q_INVOKABLE void clearInspector();
    void setShowPlayer(bool show);
    void setNotice(const QString &text);
    Q_INVOKABLE void clearNotice();
    void setSearchQuery(const QString &query);

    /// Writes what is not on disk yet, the film's place included, and waits for it: the program may
    /// be ended at any moment.
    void saveAll();

    /// Fills the Home shelves, unless both are filled. A shelf that fails keeps what it has.
    Q_INVOKABLE void loadHome();
    /// Goes to the Search section and searches there.
    Q_INVOKABLE void searchFor(const QString &text);
    /// Searches for `searchQuery`; a blank one changes nothing. Of overlapping searches the last to
    /// finish wins.
    Q_INVOKABLE void runSearch();

    /// Loads a Discover collection; a failure leaves none of its items. Of overlapping loads the
    /// last to finish wins.
    Q_INVOKABLE void loadCollection(const tavelo::Collection &collection);

    // Actions. None fails: what goes wrong is said in `notice`.

    /// Plays a catalogue file, with the item's subtitles to choose from, and shows the player.
    Q_INVOKABLE void play(const tavelo::ArchiveFile &file, const tavelo::MediaItem &item,
                          const QList<tavelo::ArchiveFile> &subtitles);
    Q_INVOKABLE void playLocal(const tavelo::SavedFile &file);
    Q_INVOKABLE void resume(const tavelo::HistoryEntry &entry);
    /// Plays what a finished download saved; nothing when the file is not there any more.
    Q_INVOKABLE void playDownload(const tavelo::DownloadTask &task);
    /// Ends the film and hides the player.
    Q_INVOKABLE void closePlayer();
    /// Starts a download and goes to the Downloads section.
    Q_INVOKABLE void download(const tavelo::ArchiveFile &file, const tavelo::MediaItem &item);
    /// Shows what a magnet link says of its torrent.
    Q_INVOKABLE void inspectMagnet(const QString &text);
    /// Fetches a .torrent file, keeps a copy in the cache, and shows what it says; or shows the
    /// magnet link to which the server redirects instead.
    Q_INVOKABLE void inspectTorrentURL(const QUrl &url);
    /// Shows what a local .torrent file says.
    Q_INVOKABLE void inspectTorrentFile(const QUrl &file);
    /// Hands a valid magnet link to the user's own application, with nothing but what names the
    /// torrent and says where it is.
    Q_INVOKABLE void openMagnet(const QString &link);
    /// Hands a .torrent file to the user's own application for it, provided that it still is the
    /// torrent of that info hash, which the user has seen.
    Q_INVOKABLE void openTorrentFile(const QUrl &file, const QString &infoHash);
    /// Shows it in its folder, on the same condition.
    Q_INVOKABLE void showTorrentFile(const QUrl &file, const QString &infoHash);
    /// Hands a magnet link or a .torrent file, as it is, to the user's own application for it.
    void openExternally(const QString &address);
    /// An http or https address, in the user's browser.
    Q_INVOKABLE void openWebPage(const QUrl &url);
    /// A local file, selected in its folder.
    Q_INVOKABLE void showInFileManager(const QUrl &file);
    /// From now on the cache is in `folder`, or in one of its own in it; what is in the old one
    /// stays there. A notice tells when it cannot be.
    Q_INVOKABLE void useCacheFolder(const QUrl &folder);
    /// From now on downloads are saved in `folder`.
    Q_INVOKABLE void useDownloadsFolder(const QUrl &folder);

Q_SIGNALS:
    void sectionChanged();
    void selectedItemChanged();
    void showPlayerChanged();
    void noticeChanged();
    void featuredChanged();
    void popularChanged();
    void suggestionsChanged();
    void homeErrorChanged();
    void homeLoadingChanged();
    void searchQueryChanged();
    void searchResultsChanged();
    void searchingChanged();
    void searchErrorChanged();
    void discoverResultsChanged();
    void discoverLoadingChanged();
    void collectionChanged();
    void inspectorChanged();
    void recentlyViewedChanged();

private:
    static QString shown(const std::optional<QString> &text)
    {
        return DisplayText::message(text.value_or(QString()));
    }

    using Items = Result<QList<MediaItem>>;

    QCoro::Task<> homeFlow();
    QCoro::Task<> suggestionsFlow();
    QCoro::Task<> searchFlow(QString text);
    QCoro::Task<> collectionFlow(QString query);
    QCoro::Task<> inspectFlow(QUrl url);
    QCoro::Task<> inspectFileFlow(QString path);
    QCoro::Task<> openFlow(QString address);
    QCoro::Task<> cacheFolderFlow(QString path);
    QCoro::Task<> whenUnchanged(QUrl file, QString infoHash, std::function<void()> deed);
    QCoro::Task<> tellFailure(QCoro::Task<Workspace::Outcome> deed);
    void tellTrouble(const QString &text);
    void setInspected(const Result<TorrentInfo> &torrent);
    void setDiscoverLoading(bool loading);
    void setInspector(const TorrentInfo &torrent);
    void setOpened(int number, const TorrentInfo &torrent);
    void setHomeLoading(bool loading);
    void setHomeError(std::optional<QString> text);
    void setSearching(bool searching);
    void setSearchOutcome(const Items &items);

    SettingsStore m_settings;
    LibraryStore m_library;
    SearchAggregator m_aggregator;
    SidebarSection m_section = SidebarSection::Home;
    std::optional<MediaItem> m_selectedItem;
    bool m_showPlayer = false;
    std::optional<QString> m_notice;
    QList<MediaItem> m_featured;
    QList<MediaItem> m_popular;
    QStringList m_suggestions;
    int m_suggestionTurn = 0; // of suggestionsFlow(); an earlier one's words are out of date
    std::optional<QString> m_homeError;
    bool m_homeLoading = false;
    QString m_searchQuery;
    QList<MediaItem> m_searchResults;
    bool m_searching = false;
    std::optional<QString> m_searchError;
    QList<MediaItem> m_discoverResults;
    bool m_discoverLoading = false;
    std::optional<Collection> m_collection;
    std::optional<TorrentInfo> m_inspector;
    int m_openings = 0;     // magnets and files opened so far
    int m_shownOpening = 0; // the last of them that was shown
    CacheManager m_cache;
    DownloadManager m_downloads;
    ProviderRegistry m_registry;
    PlaybackCoordinator m_playback;
    std::unique_ptr<Workspace> m_workspace;
    Foresight m_foresight;
};

} // namespace tavelo
