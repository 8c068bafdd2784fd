// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The standard streams at the start of a program.
#pragma once

/// To be called first in every program. A stream that the caller closed would give its number to
/// the next descriptor, such as a connection to the X server or a pipe between processes, and
/// messages or pictures would be written into that. Here its number is taken, by something of which
/// every use fails.
void TakeClosedStreams();
