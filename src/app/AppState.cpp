// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/AppState.h"

#include "app/Suggestions.h"
#include "catalogue/OrvellaProvider.h"
#include "platform/ThreadPool.h"

#include <QCoroFuture>
#include <QPointer>

namespace tavelo {

namespace {

const QString byDownloads = QStringLiteral("downloads desc");
const QString byWeek = QStringLiteral("week desc");
constexpr int shelfRows = 24;
constexpr int searchRows = 60;

// Null for QML when absent.
template <typename T>
QVariant variantOf(const std::optional<T> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant::fromValue(nullptr);
}

} // namespace

AppState::AppState(VideoPlayerManager::EngineFactory makeEngine,
                   std::unique_ptr<Workspace> workspace, QObject *parent)
    : QObject(parent)
    , m_cache(m_settings)
    , m_downloads(m_settings, Fetch::shared())
    , m_registry(m_settings)
    , m_playback(m_library, std::move(makeEngine))
    , m_workspace(std::move(workspace))
    , m_foresight(m_playback, *m_workspace, Films::shared())
{
    for (KeptFile *file : {&m_settings.file(), &m_library.file(), &m_downloads.file()})
        connect(file, &KeptFile::troubled, this, &AppState::tellTrouble);
    connect(&m_library, &LibraryStore::historyChanged, this, &AppState::recentlyViewedChanged);
    connect(this, &AppState::featuredChanged, this, &AppState::suggestionsFlow);
    connect(this, &AppState::popularChanged, this, &AppState::suggestionsFlow);
}

AppState::~AppState()
{
    saveAll(); // closing the window ends the program
}

void AppState::saveAll()
{
    m_playback.saveNow();
    for (KeptFile *file : {&m_settings.file(), &m_library.file(), &m_downloads.file()})
        file->flush();
}

QCoro::Task<> AppState::suggestionsFlow()
{
    const QPointer<AppState> self(this);
    const int turn = ++m_suggestionTurn;
    const auto counting =
        runOnPool([items = m_featured + m_popular] { return suggestionsFrom(items); });
    const QStringList words = co_await counting;
    if (!self || turn != m_suggestionTurn)
        co_return;
    m_suggestions = words;
    Q_EMIT suggestionsChanged();
}

QList<HistoryEntry> AppState::recentlyViewed() const
{
    constexpr qsizetype most = 20;
    QList<HistoryEntry> viewed;
    for (const HistoryEntry &entry : m_library.history()) {
        if (!entry.isLocal && viewed.size() < most)
            viewed.append(entry);
    }
    return viewed;
}

QStringList AppState::sectionNames() const
{
    QStringList names;
    for (const SidebarSection section : allSidebarSections)
        names.append(rawValue(section));
    return names;
}

QVariant AppState::selectedItemVariant() const
{
    return variantOf(m_selectedItem);
}

QVariant AppState::collectionVariant() const
{
    return variantOf(m_collection);
}

QVariant AppState::inspectorVariant() const
{
    return variantOf(m_inspector);
}

void AppState::loadHome()
{
    if (!m_featured.isEmpty() && !m_popular.isEmpty())
        return;
    homeFlow();
}

QCoro::Task<> AppState::homeFlow()
{
    const QPointer<AppState> self(this);
    setHomeLoading(true);
    setHomeError({});
    auto featuredSearch = OrvellaProvider::search({}, QStringLiteral("collection:(feature_films)"),
                                                  byDownloads, shelfRows, 1);
    auto popularSearch = OrvellaProvider::search({}, {}, byWeek, shelfRows, 1);

    const Items featured = co_await featuredSearch;
    if (!self)
        co_return;
    if (featured) {
        m_featured = *featured;
        Q_EMIT featuredChanged();
    } else {
        setHomeError(featured.error().text);
    }

    const Items popular = co_await popularSearch;
    if (!self)
        co_return;
    if (popular) {
        m_popular = *popular;
        Q_EMIT popularChanged();
    } else {
        setHomeError(popular.error().text);
    }
    setHomeLoading(false);
}

void AppState::searchFor(const QString &text)
{
    setSearchQuery(text);
    setSection(SidebarSection::Search);
    runSearch();
}

void AppState::runSearch()
{
    if (const QString text = m_searchQuery.trimmed(); !text.isEmpty())
        searchFlow(text);
}

QCoro::Task<> AppState::searchFlow(QString text)
{
    const QPointer<AppState> self(this);
    setSearching(true);
    m_searchError.reset();
    Q_EMIT searchErrorChanged();
    const Items items = co_await OrvellaProvider::search(text, {}, byDownloads, searchRows, 1);
    if (!self)
        co_return;
    setSearchOutcome(items);
    setSearching(false);
}

void AppState::setSearchOutcome(const Items &items)
{
    m_searchResults = items ? *items : QList<MediaItem>();
    Q_EMIT searchResultsChanged();
    if (items)
        return;
    m_searchError = items.error().text;
    Q_EMIT searchErrorChanged();
}

void AppState::loadCollection(const Collection &collection)
{
    m_collection = collection;
    Q_EMIT collectionChanged();
    setDiscoverLoading(true);
    collectionFlow(collection.query);
}

QCoro::Task<> AppState::collectionFlow(QString query)
{
    const QPointer<AppState> self(this);
    const Items items = co_await OrvellaProvider::search({}, query, byDownloads, searchRows, 1);
    if (!self)
        co_return;
    m_discoverResults = items ? *items : QList<MediaItem>();
    Q_EMIT discoverResultsChanged();
    setDiscoverLoading(false);
}

void AppState::setSection(SidebarSection section)
{
    m_section = section;
    Q_EMIT sectionChanged();
}

void AppState::setSectionName(const QString &name)
{
    setSection(sidebarSectionFrom(name).value_or(SidebarSection::Home));
}

void AppState::selectItem(const MediaItem &item)
{
    m_foresight.leaveItem();
    m_selectedItem = item;
    Q_EMIT selectedItemChanged();
}

void AppState::clearSelectedItem()
{
    m_foresight.leaveItem();
    m_selectedItem.reset();
    Q_EMIT selectedItemChanged();
}

void AppState::showDetails(const ArchiveDetails &details)
{
    if (m_selectedItem && m_selectedItem->id == details.item.id)
        m_foresight.showItem(details);
}

void AppState::reachCard(const HistoryEntry &entry)
{
    m_foresight.reachCard(entry);
}

void AppState::leaveCard(const HistoryEntry &entry)
{
    m_foresight.leaveCard(entry);
}

void AppState::clearInspector()
{
    m_inspector.reset();
    Q_EMIT inspectorChanged();
}

void AppState::setShowPlayer(bool show)
{
    m_showPlayer = show;
    Q_EMIT showPlayerChanged();
}

void AppState::setNotice(const QString &text)
{
    m_notice = text;
    Q_EMIT noticeChanged();
}

void AppState::tellTrouble(const QString &text)
{
    // Both files may be damaged at once, and each is told once.
    setNotice(m_notice ? *m_notice + QLatin1String("\n\n") + text : text);
}

void AppState::clearNotice()
{
    m_notice.reset();
    Q_EMIT noticeChanged();
}

void AppState::setSearchQuery(const QString &query)
{
    m_searchQuery = query;
    Q_EMIT searchQueryChanged();
}

void AppState::setSearching(bool searching)
{
    m_searching = searching;
    Q_EMIT searchingChanged();
}

void AppState::setDiscoverLoading(bool loading)
{
    m_discoverLoading = loading;
    Q_EMIT discoverLoadingChanged();
}

void AppState::setHomeLoading(bool loading)
{
    m_homeLoading = loading;
    Q_EMIT homeLoadingChanged();
}

void AppState::setHomeError(std::optional<QString> text)
{
    m_homeError = std::move(text);
    Q_EMIT homeErrorChanged();
}

} // namespace tavelo
