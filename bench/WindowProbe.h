// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace tavelo {

/// Asks the X server what its windows are, as seen from outside any program.
class WindowProbe
{
    template <typename Fetch, typename Cookie>
    auto reply(Fetch fetch, Cookie cookie) const
    {
        auto *answer = fetch(m_connection, cookie, nullptr);
        return std::unique_ptr<std::remove_pointer_t<decltype(answer)>, decltype(&std::free)>(
            answer, &std::free);
    }

public:
    WindowProbe()
        : m_connection(xcb_connect(nullptr, nullptr))
    {}
    ~WindowProbe() { xcb_disconnect(m_connection); }

    WindowProbe(const WindowProbe &) = delete;
    WindowProbe &operator=(const WindowProbe &) = delete;

    /// Number of top windows that are on screen and larger than a tooltip.
    int shownWindows() const
    {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        const auto tree = reply(xcb_query_tree_reply, xcb_query_tree(m_connection, root));
        if (!tree)
            return 0;
        int shown = 0;
        const xcb_window_t *children = xcb_query_tree_children(tree.get());
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i)
            shown += isShown(children[i]) ? 1 : 0;
        return shown;
    }

private:
    bool isShown(xcb_window_t window) const
    {
        const auto attributes =
            reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(m_connection, window));
        const auto geometry = reply(xcb_get_geometry_reply, xcb_get_geometry(m_connection, window));
        return attributes && geometry && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
               geometry->width > 200 && geometry->height > 200;
    }

    xcb_connection_t *m_connection;
};

} // namespace tavelo
