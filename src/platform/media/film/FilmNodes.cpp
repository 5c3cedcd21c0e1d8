// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/FilmNodes.h"

#include <QUrlQuery>

#include <utility>

namespace tavelo {

namespace {

/// Asks the catalogue not to count the request as a view.
QUrl uncounted(const QUrl &url)
{
    QUrlQuery query(url);
    if (!query.hasQueryItem(QStringLiteral("cnt")))
        query.addQueryItem(QStringLiteral("cnt"), QStringLiteral("0"));
    QUrl asked = url;
    asked.setQuery(query);
    return asked;
}

} // namespace

FilmNodes::FilmNodes(QUrl item)
    : m_item(std::move(item))
{}

void FilmNodes::setAlternatives(const QList<QUrl> &urls)
{
    m_alternatives = urls;
    m_alternative = -1;
}

FilmNodes::Address FilmNodes::current() const
{
    if (!m_node.isEmpty())
        return Address::Node;
    return m_alternative < 0 ? Address::Item : Address::Alternative;
}

QUrl FilmNodes::url(Address address, bool counted) const
{
    switch (address) {
    case Address::Node:
        return m_node;
    case Address::Alternative:
        return m_alternatives.value(m_alternative);
    case Address::Item:
        break;
    }
    return counted ? m_item : uncounted(m_item);
}

void FilmNodes::led(const QUrl &to, int turn)
{
    if (turn == m_turn)
        m_node = to;
}

/// Several requests end where the first of them has led away from already: then it is true.
bool FilmNodes::forgetNode(const Slice &slice)
{
    if (slice.turn != m_turn)
        return true;
    m_node.clear();
    return slice.address == Address::Node;
}

void FilmNodes::failed(const Slice &slice)
{
    if (forgetNode(slice) || m_alternatives.isEmpty())
        return;
    m_alternative = m_alternative + 1 < m_alternatives.size() ? m_alternative + 1 : -1;
    ++m_turn;
}

bool FilmNodes::refused(const Slice &slice)
{
    if (forgetNode(slice))
        return true;
    if (m_alternative + 1 >= m_alternatives.size())
        return false;
    ++m_alternative;
    ++m_turn;
    return true;
}

} // namespace tavelo
