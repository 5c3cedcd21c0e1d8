// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTest>

#include <clocale>

namespace tavelo {

/// Runs a test as the program runs: drawing with OpenGL, with the decimal point of the engine.
template <typename Test>
int runWithWindows(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace tavelo

#define TAVELO_WINDOW_TEST(Test)                                                                   \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return tavelo::runWithWindows<Test>(argc, argv);                                           \
    }
