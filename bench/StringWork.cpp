// Work on single strings, whose results are compared before the clock runs.
#include <cstring>
#include <list>
#include <memory>

#include <strings.h>
#include <UtilsStringList.h>

#include "Contest.h"
#include "Random.h"
#include "System.h"

namespace bench {
namespace {

using UTILS::UtilsString;

constexpr char const *SHORT = "short text";
constexpr std::uint32_t SHORT_STRINGS = 1000;
constexpr char const *STANDARD = "std::string";

std::string RandomLetters(std::uint32_t size) {
    Random random(size);
    std::string text(size, ' ');
    for (char &c : text)
        c = static_cast<char>('a' + random.Below(26));
    return text;
}

std::string Upper(std::string text) {
    for (char &c : text)
        c = static_cast<char>(c - 'a' + 'A');
    return text;
}

int Sign(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

template <class String> std::size_t MakeAndDestroy(std::string const &text) {
    String const string(text);
    benchmark::DoNotOptimize(&string);
    return string.size();
}

Contest ConstructContest(std::uint32_t size) {
    Contest contest{"Construct and destroy", size, {}};
    auto const text = std::make_shared<std::string const>(RandomLetters(size));
    Add(
        contest, "", [=] { return MakeAndDestroy<UtilsString>(*text); }, size);
    Add(
        contest, STANDARD, [=] { return MakeAndDestroy<std::string>(*text); }, size);
    return contest;
}

// Work on strings that are made anew each time; afterwards each has to hold `result`.
template <class String, class Work> Contender OnStrings(std::uint32_t count, char const *content,
                                                        Work work, std::string const &result) {
    auto const make = [=] {
        auto strings = std::make_shared<std::vector<String>>();
        strings->reserve(count);
        for (std::uint32_t i = 0; i < count; ++i)
            strings->emplace_back(content);
        return strings;
    };
    auto const all = [=](std::vector<String> &strings) {
        for (String &string : strings)
            work(string);
    };
    auto const tried = make();
    all(*tried);
    for (String const &string : *tried)
        Expect(std::strcmp(string.c_str(), result.c_str()) == 0, "append");
    return {STANDARD, RepeatedOn(make, all)};
}

template <class Work> Contest AppendContest(std::string const &workload, std::uint32_t size,
                                            std::uint32_t count, char const *content, Work work,
                                            std::string const &result) {
    return {workload,
            size,
            {OnStrings<UtilsString>(count, content, work, result),
             OnStrings<std::string>(count, content, work, result)}};
}

std::vector<Contest> AppendContests() {
    auto const some = std::make_shared<std::string const>(RandomLetters(20));
    auto const many = std::make_shared<std::string const>(RandomLetters(1024));
    return {AppendContest(
                "Append to each of 1,000 short strings", 20, SHORT_STRINGS, SHORT,
                [=](auto &string) { string += *some; }, SHORT + *some),
            AppendContest(
                "Append byte by byte", 1024, 1, "",
                [=](auto &string) {
                    for (char const c : *many)
                        string += c;
                },
                *many)};
}

std::vector<Contest> CompareContests(std::uint32_t size) {
    std::string letters = RandomLetters(size);
    letters.back() = 'b';
    auto const text = std::make_shared<std::string const>(letters);
    letters.back() = 'c';
    auto const other = std::make_shared<std::string const>(letters);
    auto const upper = std::make_shared<std::string const>(Upper(letters));
    auto const ours = std::make_shared<UtilsString>(*text);
    auto const oursBlind = std::make_shared<UtilsString>(*text);
    oursBlind->SetCase(0);
    auto const oursOther = std::make_shared<UtilsString>(*other);
    auto const oursUpper = std::make_shared<UtilsString>(*upper);
    Contest exact{"Compare, the last byte differs", size, {}};
    Add(
        exact, "", [=] { return ours->Compare(*oursOther); }, -1);
    Add(
        exact, STANDARD, [=] { return Sign(text->compare(*other)); }, -1);
    Contest blind{"Compare, case-blind, the last byte differs", size, {}};
    Add(
        blind, "", [=] { return oursBlind->Compare(*oursUpper); }, -1);
    Add(
        blind, "strcasecmp", [=] { return Sign(strcasecmp(text->c_str(), upper->c_str())); }, -1);
    return {exact, blind};
}

// A pattern of eight, near the end.
Contest FindContest(std::uint32_t size) {
    auto const text = std::make_shared<std::string const>(RandomLetters(size));
    auto const pattern = std::make_shared<std::string const>(text->substr(size - 8 - size / 16, 8));
    auto const ours = std::make_shared<UtilsString>(*text);
    auto const oursPattern = std::make_shared<UtilsString>(*pattern);
    std::size_t const answer = text->find(*pattern);
    Contest contest{"FindFirst, random letters", size, {}};
    Add(
        contest, "",
        [=] {
            unsigned long index = 0;
            ours->FindFirst(*oursPattern, index);
            return index;
        },
        answer);
    Add(
        contest, "std::string::find", [=] { return text->find(*pattern); }, answer);
    return contest;
}

// Bytes that each of many objects takes, itself included.
constexpr std::uint32_t OBJECTS = 20000;

template <class Fill> double BytesOfEach(Fill fill) {
    std::size_t const before = HeapBytes();
    auto const objects = fill();
    return static_cast<double>(HeapBytes() - before) / OBJECTS;
}

template <class String> double BytesOfString(std::string const &text) {
    return BytesOfEach([&] {
        std::vector<String> strings;
        strings.reserve(OBJECTS);
        for (std::uint32_t i = 0; i < OBJECTS; ++i)
            strings.emplace_back(text);
        return strings;
    });
}

double BytesInOurList(std::string const &text) {
    return BytesOfEach([&] {
        auto list = std::make_unique<UTILS::UtilsStringList>();
        for (std::uint32_t i = 0; i < OBJECTS; ++i)
            list->AddString(text);
        return list;
    });
}

double BytesInStandardList(std::string const &text) {
    return BytesOfEach([&] { return std::list<std::string>(OBJECTS, text); });
}

Row MemoryRow(std::uint32_t size, char const *workload, double ours, char const *baseline,
              double theirs) {
    return {size, workload, Unit::Bytes, ours, Against::Limit, baseline, theirs, 0};
}

} // namespace

std::vector<Contest> StringContests() {
    std::vector<Contest> contests = {ConstructContest(0), ConstructContest(20)};
    for (Contest const &contest : AppendContests())
        contests.push_back(contest);
    for (std::uint32_t const size : {64U, 65536U})
        for (Contest const &contest : CompareContests(size))
            contests.push_back(contest);
    for (std::uint32_t const size : {65536U, 1048576U})
        contests.push_back(FindContest(size));
    return contests;
}

std::vector<Row> StringMemory() {
    std::vector<Row> rows;
    for (std::uint32_t const size : {0U, 20U}) {
        std::string const text = RandomLetters(size);
        rows.push_back(MemoryRow(size, "Memory of a string", BytesOfString<UtilsString>(text),
                                 STANDARD, BytesOfString<std::string>(text)));
    }
    std::string const text = RandomLetters(20);
    rows.push_back(MemoryRow(20, "Memory of a string in a list", BytesInOurList(text),
                             "std::list<std::string>", BytesInStandardList(text)));
    return rows;
}

} // namespace bench
