// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/SidebarSection.h"
#include "catalogue/Collection.h"
#include "catalogue/MediaItem.h"
#include "platform/Result.h"
#include "playback/PlaybackCoordinator.h"

#include <QCoroTask>

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
    Q_PROPERTY(tavelo::PlaybackCoordinator *playback READ playback CONSTANT)

public:
    explicit AppState(VideoPlayerManager::EngineFactory makeEngine, QObject *parent = nullptr);

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
    PlaybackCoordinator *playback() { return &m_playback; }

    /// Subject words of the Home shelves, at most 10.
    QStringList suggestions() const;

    // The same for QML: absent reads as null or as the empty text.
    QString sectionName() const { return rawValue(m_section); }
    QStringList sectionNames() const;
    QVariant selectedItemVariant() const;
    QString noticeText() const { return m_notice.value_or(QString()); }
    QString homeErrorText() const { return m_homeError.value_or(QString()); }
    QString searchErrorText() const { return m_searchError.value_or(QString()); }

    void setSection(SidebarSection section);
    void setSectionName(const QString &name); // any other name: Home
    Q_INVOKABLE void selectItem(const tavelo::MediaItem &item);
    Q_INVOKABLE void clearSelectedItem();
    void setShowPlayer(bool show);
    void setNotice(const QString &text);
    Q_INVOKABLE void clearNotice();
    void setSearchQuery(const QString &query);

    /// Fills the Home shelves, unless both are filled. A shelf that fails keeps what it has.
    Q_INVOKABLE void loadHome();
    /// Goes to the Search section and searches there.
    Q_INVOKABLE void searchFor(const QString &text);
    /// Searches for `searchQuery`; a blank one changes nothing. Of overlapping searches the last to
    /// finish wins.
    Q_INVOKABLE void runSearch();

    /// Plays a catalogue file and shows the player.
    Q_INVOKABLE void play(const tavelo::ArchiveFile &file, const tavelo::MediaItem &item);

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

private:
    using Items = Result<QList<MediaItem>>;

    QCoro::Task<> homeFlow();
    QCoro::Task<> searchFlow(QString text);
    void setHomeLoading(bool loading);
    void setHomeError(std::optional<QString> text);
    void setSearching(bool searching);
    void setSearchOutcome(const Items &items);

    SidebarSection m_section = SidebarSection::Home;
    std::optional<MediaItem> m_selectedItem;
    bool m_showPlayer = false;
    std::optional<QString> m_notice;
    QList<MediaItem> m_featured;
    QList<MediaItem> m_popular;
    std::optional<QString> m_homeError;
    bool m_homeLoading = false;
    QString m_searchQuery;
    QList<MediaItem> m_searchResults;
    bool m_searching = false;
    std::optional<QString> m_searchError;
    PlaybackCoordinator m_playback;
};

} // namespace tavelo
