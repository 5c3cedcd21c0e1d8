// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>

namespace tavelo {

namespace {

bool hasEvenDigits(const QFont &font)
{
    const QFontMetricsF metrics(font);
    const auto widthOf = [&](QChar digit) { return metrics.horizontalAdvance(digit); };
    return std::ranges::all_of(QStringLiteral("123456789"), [&](QChar digit) {
        return qFuzzyCompare(widthOf(digit), widthOf(QLatin1Char('0')));
    });
}

QString evenDigits()
{
    for (const QFont &font :
         {QGuiApplication::font(), QFontDatabase::systemFont(QFontDatabase::GeneralFont),
          QFont(QStringLiteral("sans-serif"))}) {
        if (hasEvenDigits(font))
            return font.family();
    }
    return Fonts::fixed();
}

} // namespace

QString Fonts::text()
{
    return QGuiApplication::font().family();
}

QString Fonts::digits()
{
    static const QString family = evenDigits();
    return family;
}

QString Fonts::fixed()
{
    static const QString family = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    return family;
}

} // namespace tavelo
