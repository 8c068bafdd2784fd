// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Reports once that a pass takes longer than a user would wait without a sign.
#pragma once

#include <chrono>
#include <functional>
#include <utility>

class PassWatch
{
public:
    /// Shorter passes look immediate; a sign would only flicker.
    static constexpr std::chrono::milliseconds kPatience{100};

    /// @param onLong  called once, from within the pass
    explicit PassWatch(std::function<void()> onLong) : tell(std::move(onLong)) {}

    /// To be called from time to time during the pass.
    void Tick()
    {
        if (tell != nullptr && Clock::now() - begin >= kPatience)
            std::exchange(tell, nullptr)();
    }

private:
    using Clock = std::chrono::steady_clock;

    std::function<void()> tell; // empty after the call
    Clock::time_point begin = Clock::now();
};
