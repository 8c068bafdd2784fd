// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Decodes the texts of a graph.
#pragma once

#include <QString>

#include <string_view>

/// The characters of a text or font name. Most files contain only ASCII. Other bytes are read as
/// UTF-8 if the whole text is valid UTF-8, otherwise as Latin-1, so no character is lost.
QString TextFromFile(std::string_view text);
