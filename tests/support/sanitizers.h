#pragma once

#ifndef __has_feature
#define __has_feature(feature) 0
#endif

// What the tests are compiled with. Some of what they do, such as taking memory until there is no
// more, is not possible under a sanitizer.

#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

#if defined(__SANITIZE_THREAD__) || __has_feature(thread_sanitizer)
inline constexpr bool kThreadSanitizer = true;
#else
inline constexpr bool kThreadSanitizer = false;
#endif
