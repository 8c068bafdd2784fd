// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Whether a test is built with a sanitizer, which takes time and memory of its own.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

#if defined(__SANITIZE_THREAD__)
constexpr bool kThreadSanitized = true;
#elif defined(__has_feature)
constexpr bool kThreadSanitized = __has_feature(thread_sanitizer);
#else
constexpr bool kThreadSanitized = false;
#endif
