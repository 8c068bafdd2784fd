// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph in memory: its bytes, followed by zero bytes. Any number of passes may read it at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>

#include <sys/types.h>

/// Bytes of the header that every graph begins with.
constexpr size_t kPlfHeaderSize = 16;
/// Zero bytes after the data: the decoder's loop ends at the first of them, and its readers consume
/// at most six more (for a "TG" command cut off at the end of the file).
constexpr size_t kPlfTailSize = 32;
/// Where the search for the background color begins: after the header area.
constexpr size_t kBackgroundScanStart = 100;
/// Background index for a character without a color; it has no palette row.
constexpr int kNoBackground = 16;

/// The header: ESC "TG140000" ESC "TG1410".
extern const char gszPlfhdr[kPlfHeaderSize];
/// The character of each palette index after "RA1".
extern const int gBkClrEsc[16];

/// The bytes of a graph, followed by kPlfTailSize zero bytes. Does not own them.
struct PlfBytes {
    const char* data = nullptr; // null = no graph
    size_t size = 0;            // without the zero bytes
    bool isCut = false;         // what they were unpacked from has more, which cannot be unpacked

    [[nodiscard]] const char* End() const { return data == nullptr ? nullptr : data + size; }
    /// The offset of a position. Positions in the zero bytes count as the end.
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
    /// @param problem  receives the reason of a failure; unchanged on success
    /// @return none if there are no bytes, no memory or another header
    static PlfGraph FromBytes(std::string_view bytes, const char** problem);
    /// Reads a whole file.
    /// @param path      local 8-bit file name
    /// @param problem   as above
    /// @param measured  receives the size of the file as soon as it is known; may be null
    /// @return none if the file cannot be opened or read completely, is empty, is not a regular
    ///         file, or has another header
    static PlfGraph FromFile(const char* path, const char** problem,
                             unsigned long* measured = nullptr);
    /// Reads a stream, such as a pipe, up to its end.
    /// @param problem  as above, or the system's message about a failed read
    static PlfGraph FromStream(int descriptor, const char** problem);
    /// Fills a block of that many bytes; returns how many it has filled, 0 at the end of the data,
    /// or -1 after a failure.
    using Reader = std::function<ssize_t(char* block, size_t size)>;
    /// Reads what a function delivers, and stops after the header if it is another one.
    /// @param expected  how many bytes there will most likely be; 0 = nobody knows
    /// @param problem   as above, kNoMemory, or null where the function failed
    static PlfGraph FromReader(const Reader& read, size_t expected, const char** problem);

    [[nodiscard]] bool IsLoaded() const { return block != nullptr; }
    [[nodiscard]] PlfBytes Bytes() const { return {block.get(), size, isCut}; }
    /// Notes that what the graph was unpacked from is cut or damaged.
    void SetCut() { isCut = true; }
    /// Releases the block: the caller frees it.
    [[nodiscard]] char* Release() { return block.release(); }

private:
    struct Free {
        void operator()(char* bytes) const { free(bytes); }
    };

    enum class Filled { kFull, kAtEnd, kFailed, kNoMemory };

    static PlfGraph Allocate(size_t size);
    bool Grow(size_t capacity);
    Filled Fill(const Reader& read, size_t capacity);
    [[nodiscard]] bool HasHeader() const;
    void ClearTail();
    static PlfGraph Checked(PlfGraph graph, const char** problem);

    std::unique_ptr<char, Free> block; // the bytes and the zero bytes
    size_t size = 0;
    bool isCut = false;
};

/// Messages of the loaders: the file cannot be read, is not a graph, the stream is empty, or is
/// larger than the memory.
extern const char kCannotOpenGraph[];
extern const char kNotAGraph[];
extern const char kNoBytes[];
extern const char kNoMemory[];

/// The character that names the background: the one after the second "RA1" after
/// kBackgroundScanStart. It may be the zero byte after the data.
/// @return null if there is no second one
const char* FindPlfBackGround(const PlfBytes& graph);

/// The palette index of the background that a graph names; white (15) if it names none.
/// @return 0..15, or kNoBackground for a character without a color
int NamedBackground(const PlfBytes& graph);
