// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace tavelo {

/// The sections of the main window, in the sidebar's order.
enum class SidebarSection { Home, Discover, Search, Torrents, Library, Downloads, Settings };

inline constexpr std::array allSidebarSections = {
    SidebarSection::Home,     SidebarSection::Discover, SidebarSection::Search,
    SidebarSection::Torrents, SidebarSection::Library,  SidebarSection::Downloads,
    SidebarSection::Settings};

/// The row's title, which is also the section's identity: "Torrent Search" and so on.
QString rawValue(SidebarSection section);
/// Absent for any other text.
std::optional<SidebarSection> sidebarSectionFrom(QStringView rawValue);

} // namespace tavelo
