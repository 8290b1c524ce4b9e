// Whether the thread sanitizer watches the program: it reports mistakes with locks that
// tests make on purpose.
#pragma once

#ifdef __SANITIZE_THREAD__
constexpr bool underThreadSanitizer = true;
#else
constexpr bool underThreadSanitizer = false;
#endif
