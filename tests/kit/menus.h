// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The menus of the main window.
#pragma once

#include "tests/kit/window.h"

#include <QAction>
#include <QList>

namespace fixture {

/// The item with that text, or null.
QAction* FindItem(const QList<QAction*>& items, const char* text);

/// The items of a menu of the menu bar.
QList<QAction*> MenuItems(const Window& window, const char* menu);

/// Chooses a menu's item by its underlined letters. A dialog before it may have kept the keyboard.
void ChooseByKeys(const Window& window, Qt::Key menu, Qt::Key item);

} // namespace fixture
