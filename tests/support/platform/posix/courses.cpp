#include "courses.h"

#include "platform/thread_sanitizer.h"

std::uint32_t Courses(std::uint32_t all) { return underThreadSanitizer ? all / 8 : all; }
