#pragma once

namespace poker::holdem::test {

/// Whether address or thread sanitizer is at work, which makes everything several times as slow and as large.
inline constexpr bool kSanitized =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

}  // namespace poker::holdem::test
