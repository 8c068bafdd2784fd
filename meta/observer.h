// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The interface for following a pass byte by byte.
#pragma once

#include <cstddef>
#include <string_view>

/// Bytes of the file: the offset of the first one, and the offset after the last one.
struct PlfSpan {
    size_t begin = 0;
    size_t end = 0;
};

/// A vector in file units, y upward, with its color and width.
struct PlfVector {
    int x1 = 0, y1 = 0;
    int x2 = 0, y2 = 0;
    int color = 0; // palette index
    int width = 0; // width in the file, times the pass's scale
};

/// A text, its position in file units with y upward, and the settings of texts.
struct PlfText {
    std::string_view text;
    int x = 0, y = 0;
    std::string_view font;
    int size = 0;  // points
    int color = 0; // palette index
    bool isBold = false;
    bool isItalic = false;
};

/// How an integer was read.
enum class PlfInteger {
    kWhole,
    kComma,     // a comma replaces this color component and the next
    kUnfinished // a control character or the end of the data ended or replaced it
};

/// Why the drawing ended.
enum class PlfEnd { kBel, kByte255, kZeroByte, kEndOfFile };

/// Is called for everything, in the order of the file. Spans do not overlap; bytes in none of them
/// had no effect.
class PlfObserver
{
public:
    PlfObserver() = default;
    virtual ~PlfObserver() = default;
    PlfObserver(const PlfObserver&) = delete;
    PlfObserver& operator=(const PlfObserver&) = delete;

    // The parameters of a command, each before the command itself.

    /// An integer parameter.
    virtual void Integer(int value, PlfInteger kind) = 0;
    /// A string, or the characters that a command skips.
    /// @param isWhole  false if the data ended before it did, or before its count
    virtual void String(std::string_view text, bool isWhole) = 0;
    /// A position in file units. isClosed is false if the data ended before it did.
    virtual void Position(int x, int y, bool isClosed) = 0;

    /// A command was executed.
    /// @param letters  one or two
    /// @param isKnown  false if it is unknown and its parameters were skipped
    virtual void Command(PlfSpan span, std::string_view letters, bool isKnown) = 0;
    /// An address moved the beam.
    virtual void Move(PlfSpan span, int x, int y) = 0;
    /// An address drew a vector.
    virtual void Vector(PlfSpan span, const PlfVector& vector) = 0;
    /// A control character (GS): the next address moves.
    virtual void NextMoves(PlfSpan span) = 0;
    /// A command drew a text; called before Command.
    virtual void Text(const PlfText& text) = 0;

    /// A control character replaced the first bytes of the address that begins there.
    virtual void BrokenAddress(size_t begin) = 0;
    /// An address was ignored: an escape interrupted it, or no byte followed it.
    virtual void DroppedAddress(size_t begin) = 0;
    /// The drawing ended between an escape and the end of its letters.
    virtual void DroppedCommand(size_t begin) = 0;
    /// The pass has ended, at the offset of the byte that ended it, or at the size of the file.
    virtual void End(size_t offset, PlfEnd reason) = 0;
};

/// Ignores everything, so that callers need not check whether there is an observer. Observers that
/// need only a few calls inherit the others.
class NoObserver : public PlfObserver
{
public:
    void Integer(int /*value*/, PlfInteger /*kind*/) override {}
    void String(std::string_view /*text*/, bool /*isWhole*/) override {}
    void Position(int /*x*/, int /*y*/, bool /*isClosed*/) override {}
    void Command(PlfSpan /*span*/, std::string_view /*letters*/, bool /*isKnown*/) override {}
    void Move(PlfSpan /*span*/, int /*x*/, int /*y*/) override {}
    void Vector(PlfSpan /*span*/, const PlfVector& /*vector*/) override {}
    void NextMoves(PlfSpan /*span*/) override {}
    void Text(const PlfText& /*text*/) override {}
    void BrokenAddress(size_t /*begin*/) override {}
    void DroppedAddress(size_t /*begin*/) override {}
    void DroppedCommand(size_t /*begin*/) override {}
    void End(size_t /*offset*/, PlfEnd /*reason*/) override {}
};
