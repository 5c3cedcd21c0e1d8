// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Mp4Layout.h"

#include "platform/media/film/Mp4Box.h"

#include <array>

namespace tavelo {

namespace {

constexpr int maxBoxes = 64;

/// The first box tells a film from something else. Old QuickTime files have no ftyp.
bool canBegin(quint32 type)
{
    static constexpr std::array known{fourCC("ftyp"), fourCC("moov"), fourCC("mdat"),
                                      fourCC("free"), fourCC("skip"), fourCC("wide"),
                                      fourCC("pnot"), fourCC("uuid")};
    return std::ranges::find(known, type) != known.end();
}

class Walk
{
public:
    Walk(qint64 fileSize, const HeldBytes &held)
        : m_fileSize(fileSize)
        , m_held(held)
    {}

    Mp4Layout layout()
    {
        for (int count = 0; count < maxBoxes && !isComplete(); ++count) {
            const auto box = nextBox();
            if (!box || (count == 0 && !canBegin(box->type)) || !note(*box))
                break;
            m_place += box->size;
        }
        return m_layout;
    }

private:
    bool isComplete() const { return m_layout.index && m_layout.media; }

    std::optional<Mp4Box> nextBox()
    {
        const qint64 room = m_fileSize - m_place;
        if (room < Mp4Box::shortHead)
            return {};
        auto head = m_held(m_place, Mp4Box::shortHead);
        if (head && Mp4Box::isLong(*head) && room >= Mp4Box::longHead)
            head = m_held(m_place, Mp4Box::longHead);
        if (head)
            return Mp4Box::read(*head, room);
        m_layout.missing = ByteSpan{m_place, m_place + std::min(room, Mp4Box::longHead)};
        return {};
    }

    /// False when the rest of the file does not matter any more.
    bool note(const Mp4Box &box)
    {
        const ByteSpan whole{m_place, m_place + box.size};
        if (box.type == fourCC("moov") && !m_layout.index) {
            if (box.size > Mp4Layout::maxIndexBytes)
                return false;
            m_layout.index = whole;
        }
        if (box.type == fourCC("mdat") && !m_layout.media && box.size > box.head)
            m_layout.media = ByteSpan{whole.first + box.head, whole.end};
        return true;
    }

    const qint64 m_fileSize;
    const HeldBytes &m_held;
    qint64 m_place = 0;
    Mp4Layout m_layout;
};

} // namespace

Mp4Layout Mp4Layout::of(qint64 fileSize, const HeldBytes &held)
{
    return Walk(fileSize, held).layout();
}

} // namespace tavelo
