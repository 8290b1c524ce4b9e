#include "output/time.h"

#include <cstdio>

namespace qvlink {
namespace {

constexpr std::uint64_t TicksPerSecond = 10'000'000;
constexpr std::uint64_t SecondsPerDay = 86'400;
constexpr std::uint64_t DaysPer400Years = 146'097;

bool IsLeap(std::uint64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

unsigned DaysOfMonth(std::uint64_t year, unsigned month) {
    static constexpr unsigned days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[month] + (month == 1 && IsLeap(year));
}

} // namespace

std::string TimeText(std::uint64_t fileTime) {
    std::uint64_t const seconds = fileTime / TicksPerSecond;
    std::uint64_t days = seconds / SecondsPerDay;
    // 1601 begins a cycle of 400 years.
    std::uint64_t year = 1601 + days / DaysPer400Years * 400;
    days %= DaysPer400Years;
    for (; days >= 365U + IsLeap(year); ++year) {
        days -= 365U + IsLeap(year);
    }
    unsigned month = 0;
    for (; days >= DaysOfMonth(year, month); ++month) {
        days -= DaysOfMonth(year, month);
    }
    auto const clock = static_cast<unsigned>(seconds % SecondsPerDay);
    char text[64];
    std::snprintf(text, sizeof text, "%04llu-%02u-%02uT%02u:%02u:%02u.%07uZ",
                  static_cast<unsigned long long>(year), month + 1, static_cast<unsigned>(days) + 1,
                  clock / 3600, clock / 60 % 60, clock % 60,
                  static_cast<unsigned>(fileTime % TicksPerSecond));
    return text;
}

} // namespace qvlink
