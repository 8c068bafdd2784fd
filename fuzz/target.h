// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What every fuzz target has. The fuzzer, or the plain replayer (replay.cpp), calls the two
// functions; a target reports what it finds by ending the process.
#pragma once

#include "support/rect.h"

#include <QByteArray>
#include <QObject>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <string>

/// Prepares the process, once. The two parameters are main's.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
/// Runs one input. What it leaves behind must not change what the next one does.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzz {

/// Ends the process with a message when a promise is broken.
void Require(bool kept, const char* promise);

/// Shows windows nowhere, prints on no printer of the system, and drops the toolkit's messages,
/// which would fill the log. To be called before the application object is made.
void PrepareToolkit();

/// A folder of the target's own, which is the working directory, gszCurdir, gszHomedir and
/// gszExePath from then on. It lies in a folder that is its own too, so that "..", which an input
/// may name, holds nothing else. Both go with the process.
class Sandbox
{
public:
    Sandbox();
    /// Replaces a file in it.
    void Write(const char* name, const QByteArray& bytes) const;
    /// Removes every file in it.
    void Clear() const;
    [[nodiscard]] QString Path(const char* name) const;

private:
    QTemporaryDir root;
    QString folder;
};

/// A file without a name, in memory.
class MemoryFile
{
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// What opens it for others; stays the same.
    [[nodiscard]] char* Path() { return path.data(); }
    [[nodiscard]] QByteArray Contents() const;

private:
    int fd;
    std::string path;
};

/// Gives every variable of the program that an input may change the value that it starts with.
void ResetGlobals();

/// Makes the bytes the loaded file, as the program loads one. ResetGlobals frees it.
/// @return false when the loader refuses them
bool LoadGraph(const uint8_t* data, size_t size);

/// The file's whole area, in drawing units.
Rect WholeArea();

/// Rejects every dialog as soon as the event loop runs behind it, as a user would who wants none.
class Refuser : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace fuzz
