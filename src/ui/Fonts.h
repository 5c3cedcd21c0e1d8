// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQmlIntegration>

namespace tavelo {

/// Font families.
class Fonts : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// The program's own, which the templates of text fields do not take over by themselves.
    Q_PROPERTY(QString text READ text CONSTANT)
    /// Whose digits are all of one width: the program's own font, or else the desktop's.
    Q_PROPERTY(QString digits READ digits CONSTANT)
    /// Whose letters are all of one width.
    Q_PROPERTY(QString fixed READ fixed CONSTANT)

public:
    using QObject::QObject;

    static QString text();
    static QString digits();
    static QString fixed();
};

} // namespace tavelo
