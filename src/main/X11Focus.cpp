// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/X11Focus.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

namespace tavelo {

void X11Focus::allow(const QString &startupId)
{
    const QLatin1String mark("_TIME");
    const qsizetype at = startupId.lastIndexOf(mark);
    bool isTime = false;
    const quint32 time =
        QStringView(startupId).sliced(at < 0 ? 0 : at + mark.size()).toUInt(&isTime);
    if (at < 0 || !isTime)
        return;
    using SetTime = void (*)(QScreen *, quint32);
    for (const char *name : {"setapptime", "setappusertime"}) {
        const auto function =
            QGuiApplication::platformNativeInterface()->nativeResourceFunctionForScreen(name);
        // They are given out under one type, and each is of its own.
        const auto set = reinterpret_cast<SetTime>(reinterpret_cast<void (*)()>(function));
        if (set)
            set(QGuiApplication::primaryScreen(), time);
    }
}

} // namespace tavelo
