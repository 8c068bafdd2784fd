// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The interpreter writes EPS into a file by its name and does not look how that goes. Here the file
// is a pipe, and what comes out of it goes where failures are noticed.
#pragma once

#include "tools/convert/fd.h"

#include <QByteArray>

#include <thread>

class QIODevice;

/// A pipe with a name, and a thread that copies from it into a device.
class EpsPipe
{
public:
    /// @param target  written to until Finish returns; after a failure the rest is dropped
    explicit EpsPipe(QIODevice* target);
    ~EpsPipe() { Finish(); }
    EpsPipe(const EpsPipe&) = delete;
    EpsPipe& operator=(const EpsPipe&) = delete;

    /// Whether the pipe can be opened by its name; it cannot where /proc is not mounted.
    [[nodiscard]] bool IsUsable() const;
    /// The file name to write to.
    [[nodiscard]] QByteArray Name() const { return NameOfFd(writeEnd); }
    /// Waits until everything is copied. Every other writer must have closed the pipe.
    void Finish();

private:
    void Copy(QIODevice* target) const;

    Fd readEnd;
    Fd writeEnd;
    std::thread copier;
};
