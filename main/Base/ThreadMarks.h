#pragma once

#include <string_view>

/// Annotations for the thread sanitizer where an object changes threads through a Qt queue: Qt is not instrumented, so
/// the sanitizer cannot see its locks. No-ops without the sanitizer.

// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming): the names are the sanitizer's own
extern "C" {
void __tsan_acquire(void *address);
void __tsan_release(void *address);
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)

#define BRELLIN_QUOTED(text) #text
#define BRELLIN_VALUE_OF(macro) BRELLIN_QUOTED(macro)

namespace brellin {

/// The compiler defines the macro as 1 in instrumented builds.
inline constexpr bool threadSanitized = std::string_view(BRELLIN_VALUE_OF(__SANITIZE_THREAD__)) == "1";

/// Release: makes this thread's writes visible to the thread that takes the object over.
inline void markHandedOver([[maybe_unused]] void *object)
{
    if constexpr (threadSanitized)
        __tsan_release(object);
}

/// Acquire: must be the first access to a handed-over object.
inline void markTakenOver([[maybe_unused]] void *object)
{
    if constexpr (threadSanitized)
        __tsan_acquire(object);
}

} // namespace brellin
