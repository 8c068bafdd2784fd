// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where the main window goes. What a user can work with stays as given.
#pragma once

#include "support/rect.h"

#include <QList>
#include <QRect>

/// The place and size nearest to those wanted with which a window can be used: some of its title
/// bar is on a screen, it has room for the menus and for some of the graph, and memory holds it.
/// @param wanted    left, top, width and height count; any values
/// @param isStored  they come from the settings file: then it is no larger than its screen either,
///                  unless all of it is on several. Larger ones on a command line are meant, as
///                  pictures have the view's size.
/// @param screens   the parts of the screens that windows may cover; with none, no place is bad
QRect UsableWindow(const Rect& wanted, bool isStored, const QList<QRect>& screens);
