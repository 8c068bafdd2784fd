// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the module throws; module.cpp makes Python's exceptions of it.
#pragma once

#include <cstddef>
#include <string>

namespace python {

/// The bytes are no graph, or a damaged one. Becomes PlfError.
struct GraphFailure {
    std::string reason;
    size_t offset = 0; // bytes from the start of the file
};

/// The system refused something. Becomes OSError or what Python derives from it.
struct SystemFailure {
    int error = 0; // errno
    std::string name;
};

/// A file is in the way that is not to be replaced. Becomes FileExistsError.
struct OutputFailure {
    std::string reason;
    std::string name;
};

/// Settings of a picture that are wrong. Becomes ValueError.
struct SettingsFailure {
    std::string reason;
};

} // namespace python
