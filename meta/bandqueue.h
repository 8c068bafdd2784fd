// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Lets threads take one band after the other, the caller among them.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

class PassWatch;

/// The turn of each band. It may outlive what it draws: a thread may come when all is done.
class BandQueue
{
public:
    /// Draws a band, by number. It throws nothing where the watch does not.
    using Draw = std::function<void(size_t band, PassWatch* watch)>;

    BandQueue(size_t bands, Draw drawBand) : count(bands), draw(std::move(drawBand)) {}

    /// Calls so many threads to help, as far as there are any.
    static void CallThreads(const std::shared_ptr<BandQueue>& queue, int helpers);
    /// Draws bands until there are none left.
    void Work(PassWatch* watch);
    /// Waits for the last one.
    void Wait(PassWatch* watch);
    /// Lets nobody begin another one, and waits for those that have begun.
    void Close();

private:
    // Counts a band as finished, however it ended.
    class Turn;

    const size_t count;
    const Draw draw; // called while there is a band to be drawn
    std::atomic<size_t> next = 0;
    std::mutex mutex;
    std::condition_variable changed;
    size_t finished = 0;
};
