// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

class QQmlEngine;

/// The screens, as the program starts them.
namespace tavelo::UiModule {

/// Gives the engine the module `Tavelo`, its icons and its posters. Once for each engine, which
/// must end before the application object.
void prepare(QQmlEngine &engine);

/// The window; its required property `app` is the AppState.
QUrl mainWindow();

} // namespace tavelo::UiModule
