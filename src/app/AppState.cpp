// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/AppState.h"

#include "app/Suggestions.h"
#include "catalogue/OrvellaProvider.h"

#include <QPointer>

namespace tavelo {

namespace {

const QString byDownloads = QStringLiteral("downloads desc");
const QString byWeek = QStringLiteral("week desc");
constexpr int shelfRows = 24;
constexpr int searchRows = 60;

} // namespace

AppState::AppState(VideoPlayerManager::EngineFactory makeEngine, QObject *parent)
    : QObject(parent)
    , m_playback(std::move(makeEngine))
{
    connect(this, &AppState::featuredChanged, this, &AppState::suggestionsChanged);
    connect(this, &AppState::popularChanged, this, &AppState::suggestionsChanged);
}

QStringList AppState::suggestions() const
{
    return suggestionsFrom(m_featured + m_popular);
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
    return m_selectedItem ? QVariant::fromValue(*m_selectedItem) : QVariant::fromValue(nullptr);
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

void AppState::play(const ArchiveFile &file, const MediaItem &item)
{
    m_playback.play(file, item);
    clearSelectedItem();
    setShowPlayer(true);
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
    m_selectedItem = item;
    Q_EMIT selectedItemChanged();
}

void AppState::clearSelectedItem()
{
    m_selectedItem.reset();
    Q_EMIT selectedItemChanged();
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
