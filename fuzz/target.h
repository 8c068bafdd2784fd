// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The interface of a fuzz target. The fuzzer, or the plain replayer (replay.cpp), calls the two
// functions; a target reports a failure by ending the process.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <string>

/// Prepares the process, once. The two parameters are main's.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
/// Runs one input. It must not leave anything that affects the next one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzz {

/// Ends the process with a message if the condition is false.
void Require(bool kept, const char* promise);

/// Uses no display and no printer of the system, and drops Qt's messages, which would fill the log.
/// To be called before the application object is created.
void PrepareQt();

/// Does the same and creates the application object, for the fonts: all that a target needs that
/// draws. The parameters and the result are those of LLVMFuzzerInitialize.
int PrepareGui(int* argc, char*** argv);

/// A private folder of the target, which becomes the working directory, gszCurdir, gszHomedir and
/// gszExePath. It is inside another private folder, so that "..", which an input may name, contains
/// nothing else. Both are removed with the process.
class Sandbox
{
public:
    Sandbox();
    /// Replaces a file in the folder.
    void Write(const char* name, const QByteArray& bytes) const;
    /// Removes every file in the folder.
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

    /// The name to open it by; it does not change.
    [[nodiscard]] char* Path() { return path.data(); }
    [[nodiscard]] QByteArray Contents() const;

private:
    int fd;
    std::string path;
};

/// Loads the bytes as the program loads a file. ResetGlobals frees them.
/// @return false if the loader refuses them
bool LoadGraph(const uint8_t* data, size_t size);

/// Rejects every dialog as soon as its event loop runs.
class Refuser : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace fuzz
