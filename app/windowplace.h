// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The position and size of the main window. Usable ones are not changed.
#pragma once

#include "support/rect.h"

#include <QList>
#include <QRect>

/// The usable position and size that are nearest to the wanted ones: a part of the title bar is on
/// a screen, there is room for the menus and some of the graph, and the window fits into memory.
/// @param wanted    left, top, width and height are used; any values
/// @param isStored  whether they come from the settings file: then the window is not larger than
///                  its screen, unless several screens together show all of it. A larger size on a
///                  command line is intended, because pictures have the view's size.
/// @param screens   the parts of the screens that windows may cover; if there are none, any
///                  position is usable
QRect UsableWindow(const Rect& wanted, bool isStored, const QList<QRect>& screens);
