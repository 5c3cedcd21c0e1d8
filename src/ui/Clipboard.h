// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Pasteboard.h"

#include <QObject>
#include <QtQmlIntegration>

namespace tavelo {

/// The desktop's pasteboard, for C++ and for QML.
class Clipboard : public QObject, public Pasteboard
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE void setText(const QString &text) override;
};

} // namespace tavelo
