// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a pass draws, decoded once, so that it can be drawn by several painters and looked at from
// its end. One thread records it, in blocks, and others play the blocks that there are already.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

class PainterSink;

class Tape
{
public:
    /// More would not be worth the memory: bytes.
    static constexpr size_t kMostBytes = size_t{32} * 1024 * 1024;

    /// A vector from one point to another, in drawing units. Hardly any needs more digits.
    struct Line {
        int16_t x1, y1, x2, y2;
    };
    /// What comes between the vectors.
    struct Event {
        enum class Kind : uint32_t { kPen, kText, kFarVector };

        uint32_t at; // before this vector of the block
        Kind kind;
        int first, second; // width and color, or the number of the text or far vector
    };
    struct Place {
        int x1, y1, x2, y2;
    };
    struct Label {
        std::string text;
        int x, y;
    };
    /// What a group of vectors reaches.
    struct Box {
        int16_t left, top, right, bottom;
    };
    /// Vectors of a group: few enough to lie close together, and enough to make the look at their
    /// box negligible.
    static constexpr size_t kGroup = 64;

    /// Which vectors of a block need not be drawn; empty = none.
    using Hidden = std::vector<bool>;

    /// Some of what is drawn.
    struct Block {
        std::vector<Line> lines;
        std::vector<Box> boxes; // one for each group, the last of which may be smaller
        std::vector<Event> events;
        std::vector<Place> farVectors;
        std::vector<Label> texts;

        /// Adds the box of the last group, of so many vectors.
        void AddBox(size_t count);
        /// Draws it.
        void Play(PainterSink& sink, const Hidden& hidden) const;

    private:
        template <typename Function>
        void ForLines(size_t begin, size_t stop, const Hidden& hidden, Function function) const;
        void PlayLines(PainterSink& sink, size_t begin, size_t stop, const Hidden& hidden) const;
        void PlayEvent(PainterSink& sink, const Event& event) const;
    };

    /// How a tape ends.
    enum class End {
        kNone,      // there may be more
        kWhole,     // all is there
        kTooLong,   // it was given up, so that the graph has to be decoded
        kAbandoned, // nobody needs it any more
    };

    /// For the thread that records.
    void Add(std::unique_ptr<const Block> block);
    void Finish(End how);

    [[nodiscard]] End HowItEnded() const;
    /// Waits until there is a block of that number, or none will come.
    /// @return null when none will come
    [[nodiscard]] const Block* Await(size_t number) const;
    /// Waits for the end.
    /// @return the number of blocks
    [[nodiscard]] size_t AwaitEnd() const;

private:
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    std::vector<std::unique_ptr<const Block>> blocks;
    End end = End::kNone;
};
