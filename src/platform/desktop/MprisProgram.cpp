// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/MprisProgram.h"

#include "platform/desktop/MediaSession.h"

namespace tavelo {

MprisProgram::MprisProgram(MediaSession &session)
    : QDBusAbstractAdaptor(&session)
    , m_session(session)
{}

void MprisProgram::Raise()
{
    Q_EMIT m_session.raiseAsked();
}

void MprisProgram::Quit()
{
    Q_EMIT m_session.quitAsked();
}

} // namespace tavelo
