// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/bandqueue.h"

#include "meta/passwatch.h"

#include <QRunnable>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <new>
#include <utility>

namespace {

// How long the caller waits before the watch gets a look at the clock.
constexpr std::chrono::milliseconds kLook{10};

// What a thread of the pool runs.
class Helper final : public QRunnable
{
public:
    explicit Helper(std::shared_ptr<BandQueue> joined) : queue(std::move(joined))
    {
        isReady.store(true, std::memory_order_release);
    }
    void run() override
    {
        if (isReady.load(std::memory_order_acquire))
            queue->Work(nullptr);
    }

private:
    std::shared_ptr<BandQueue> queue;
    std::atomic<bool> isReady = false; // how Qt hands it to the thread, no sanitizer can see
};

} // namespace

// Qt says nothing of a thread that does not start, and would wait for it at the program's end; so
// the pool is never destroyed.
void BandQueue::CallThreads(const std::shared_ptr<BandQueue>& queue, int helpers)
{
    try {
        static auto* const pool = new QThreadPool;
        pool->setMaxThreadCount(std::max(helpers, pool->maxThreadCount()));
        for (int i = 0; i < helpers; ++i) {
            auto helper = std::make_unique<Helper>(queue);
            if (!pool->tryStart(helper.get()))
                return;
            static_cast<void>(helper.release()); // the pool deletes it
        }
    } catch (const std::bad_alloc&) {
        return; // the caller draws what they would have drawn
    }
}

class BandQueue::Turn
{
public:
    explicit Turn(BandQueue& turning) : queue(turning) {}
    ~Turn()
    {
        const std::lock_guard lock(queue.mutex);
        ++queue.finished;
        queue.changed.notify_one();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    BandQueue& queue;
};

void BandQueue::Work(PassWatch* watch)
{
    for (size_t mine = next++; mine < count; mine = next++) {
        const Turn turn(*this);
        draw(mine, watch);
    }
}

void BandQueue::Close()
{
    const size_t begun = std::min(next.exchange(count), count);
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return finished >= begun; });
}

void BandQueue::Wait(PassWatch* watch)
{
    std::unique_lock lock(mutex);
    do {
        if (watch != nullptr)
            watch->Tick();
    } while (!changed.wait_for(lock, kLook, [this] { return finished == count; }));
}
