// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph in memory: its bytes and zero bytes behind them. Any number of passes may read it at
// once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

/// Bytes in the header that every graph begins with.
constexpr size_t kPlfHeaderSize = 16;
/// Zero bytes kept behind the data: the decoder's loop ends at the first of them, and its readers
/// consume at most six beyond that (a "TG" command cut off at the end of the file).
constexpr size_t kPlfTailSize = 32;
/// Where the search for the background color begins: the header area lies before it.
constexpr size_t kBackgroundScanStart = 100;
/// Background index of a character that stands for no color; it has no palette row.
constexpr int kNoBackground = 16;

/// The header: ESC "TG140000" ESC "TG1410".
extern const char gszPlfhdr[kPlfHeaderSize];
/// The character that stands for each palette index behind "RA1".
extern const int gBkClrEsc[16];

/// The bytes of a graph that somebody else owns, with kPlfTailSize zero bytes behind them.
struct PlfBytes {
    const char* data = nullptr; // null = no graph
    size_t size = 0;            // without the zero bytes

    [[nodiscard]] const char* End() const { return data == nullptr ? nullptr : data + size; }
    /// How many bytes lie before a place. Readers may stand in the zero bytes, which is the end.
    [[nodiscard]] size_t OffsetOf(const char* at) const
    {
        return static_cast<size_t>(std::min(at, End()) - data);
    }
};

/// A loaded graph, or none.
class PlfGraph
{
public:
    PlfGraph() = default;

    /// Copies a graph.
    /// @param problem  receives why there is none; untouched on success
    /// @return none when there is no byte, no memory or another header
    static PlfGraph FromBytes(std::string_view bytes, const char** problem);
    /// Reads a file whole.
    /// @param path      local 8-bit file name
    /// @param problem   as above
    /// @param measured  receives the size of the file as soon as it is known; may be null
    /// @return none when the file cannot be opened or read whole, is empty, is no regular file, or
    ///         has another header
    static PlfGraph FromFile(const char* path, const char** problem,
                             unsigned long* measured = nullptr);
    /// Reads a stream, such as a pipe, to its end.
    /// @param problem  as above; also the system's words for a failed read
    static PlfGraph FromStream(int descriptor, const char** problem);

    [[nodiscard]] bool IsLoaded() const { return block != nullptr; }
    [[nodiscard]] PlfBytes Bytes() const { return {block.get(), size}; }
    /// Gives the block away: its new owner frees it.
    [[nodiscard]] char* Release() { return block.release(); }

private:
    struct Free {
        void operator()(char* bytes) const { free(bytes); }
    };

    static PlfGraph Allocate(size_t size);
    bool Grow(size_t capacity);
    bool ReadAll(int descriptor);
    void ClearTail();
    static PlfGraph Checked(PlfGraph graph, const char** problem);

    std::unique_ptr<char, Free> block; // the bytes and their tail
    size_t size = 0;
};

/// What a loader says of a file that cannot be read, of one that holds something else, and of a
/// stream without a byte.
extern const char kCannotOpenGraph[];
extern const char kNotAGraph[];
extern const char kNoBytes[];

/// The character that names the background: the one behind the second "RA1" of those behind
/// kBackgroundScanStart. It may be the zero byte behind the data.
/// @return null when there is no second one
const char* FindPlfBackGround(const PlfBytes& graph);

/// The palette index of the background that a graph names; white (15) when it names none.
/// @return 0..15, or kNoBackground for a character that stands for no color
int NamedBackground(const PlfBytes& graph);
