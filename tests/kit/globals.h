// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The program's variables as they are when it starts.
#pragma once

/// Gives every variable the value that it starts with, but for the directories that the start of
/// the program finds out. Frees the loaded graph.
void ResetGlobals();

/// Of these, only the options of EPS files.
void ResetEpsOptions();
