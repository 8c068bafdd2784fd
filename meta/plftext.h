// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Texts of a graph as characters.
#pragma once

#include <QString>

#include <string_view>

/// The characters of a text or font name. Files in use carry ASCII. Other bytes are UTF-8 when the
/// whole text is, and Latin-1 when not, so that no character is lost.
QString TextFromFile(std::string_view text);
