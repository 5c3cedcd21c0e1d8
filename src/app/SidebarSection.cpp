// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/SidebarSection.h"

namespace tavelo {

QString rawValue(SidebarSection section)
{
    switch (section) {
    case SidebarSection::Home:
        return QStringLiteral("Home");
    case SidebarSection::Discover:
        return QStringLiteral("Discover");
    case SidebarSection::Search:
        return QStringLiteral("Search");
    case SidebarSection::Torrents:
        return QStringLiteral("Torrent Search");
    case SidebarSection::Library:
        return QStringLiteral("Library");
    case SidebarSection::Downloads:
        return QStringLiteral("Downloads");
    case SidebarSection::Settings:
        return QStringLiteral("Settings");
    }
    Q_UNREACHABLE();
}

std::optional<SidebarSection> sidebarSectionFrom(QStringView text)
{
    for (const SidebarSection section : allSidebarSections) {
        if (text == rawValue(section))
            return section;
    }
    return {};
}

} // namespace tavelo
