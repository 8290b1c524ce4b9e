// Searches and comparisons of runs of char, whose answers are compared before the clock runs.
#include <cstring>
#include <memory>
#include <utility>

#include <strings.h>
#include <UtilsVector.h>

#include "Contest.h"
#include "Random.h"

namespace bench {
namespace {

constexpr std::uint32_t SIZES[] = {16, 1024, 65536, 1048576};
constexpr double MOST_OF_A_LOOP = 3; // what an exact search may take of a plain loop's time

struct Texts {
    std::string text;
    std::string pattern; // or what the text is compared with
    std::string folded;  // the same in upper case
};
using SharedTexts = std::shared_ptr<Texts const>;

char Letter(Random &random) { return static_cast<char>('a' + random.Below(26)); }

// The fold of the containers: what isn't upper case loses 32.
char Fold(char c) { return c >= 'A' && c <= 'Z' ? c : static_cast<char>(c - 32); }

struct AsItIs {
    char operator()(char c) const { return c; }
};
struct Folding {
    char operator()(char c) const { return Fold(c); }
};

SharedTexts Finish(std::string text, std::string pattern) {
    std::string folded = pattern;
    for (char &c : folded)
        c = Fold(c);
    return std::make_shared<Texts>(Texts{std::move(text), std::move(pattern), std::move(folded)});
}

// The pattern of eight stands near the end, and by chance nowhere else.
SharedTexts RandomLetters(std::uint32_t size) {
    Random random(size);
    std::string text(size, ' ');
    for (char &c : text)
        c = Letter(random);
    std::string const pattern = text.substr(size - 8 - size / 16, 8);
    return Finish(text, pattern);
}

// The pattern's first seven letters, over and over; at last all eight.
SharedTexts PartialMatches(std::uint32_t size) {
    std::string text;
    while (text.size() < size - 8)
        text += "pqrstuvx";
    return Finish(text + "pqrstuvw", "pqrstuvw");
}

// The pattern's first letter, over and over.
SharedTexts FirstLetters(std::uint32_t size) {
    return Finish(std::string(size - 1, 'a') + 'b', "ab");
}

// A text and itself but for the last letter.
SharedTexts NearlyEqual(std::uint32_t size) {
    std::string text = RandomLetters(size)->text;
    std::string other = text;
    text.back() = 'b';
    other.back() = 'c';
    return Finish(text, other);
}

template <class Form> std::size_t PlainSearch(std::string const &text, std::string const &pattern) {
    Form const form;
    for (std::size_t t = 0; t + pattern.size() <= text.size(); ++t) {
        std::size_t p = 0;
        while (p < pattern.size() && form(text[t + p]) == form(pattern[p]))
            ++p;
        if (p == pattern.size())
            return t;
    }
    return std::string::npos;
}

template <class Form> int PlainCompare(std::string const &a, std::string const &b) {
    Form const form;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (form(a[i]) != form(b[i]))
            return form(a[i]) < form(b[i]) ? -1 : 1;
    return 0;
}

std::size_t OurSearch(UTILS::MemObject<char> const &letters, std::string const &text,
                      std::string const &pattern, int caseMode) {
    unsigned long index = 0;
    letters.search(pattern.data(), pattern.data() + pattern.size(), text.data(),
                   text.data() + text.size(), index, caseMode, 0, nullptr);
    return index;
}

int OurCompare(UTILS::MemObject<char> const &letters, std::string const &a, std::string const &b,
               int caseMode) {
    return letters.compare(a.data(), b.data(), caseMode, 0, a.size(), b.size());
}

int Sign(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

std::size_t Position(std::string const &text, void const *found) {
    return static_cast<std::size_t>(static_cast<char const *>(found) - text.data());
}

class RangeWork {
public:
    void AddSearches(std::string const &kind, SharedTexts const &texts) {
        std::size_t const answer = texts->text.find(texts->pattern);
        auto const size = static_cast<std::uint32_t>(texts->text.size());
        auto const letters = m_letters;
        Contest exact{"Search, " + kind, size, {}};
        Add(
            exact, "", [=] { return OurSearch(*letters, texts->text, texts->pattern, 1); }, answer);
        Add(
            exact, "plain byte loop",
            [=] { return PlainSearch<AsItIs>(texts->text, texts->pattern); }, answer,
            Against::Limit, MOST_OF_A_LOOP);
        Add(
            exact, "std::string::find", [=] { return texts->text.find(texts->pattern); }, answer);
        Add(
            exact, "memmem",
            [=] {
                std::string const &text = texts->text;
                return Position(text, memmem(text.data(), text.size(), texts->pattern.data(),
                                             texts->pattern.size()));
            },
            answer);
        Contest blind{"Search, case-blind, " + kind, size, {}};
        Add(
            blind, "", [=] { return OurSearch(*letters, texts->text, texts->folded, 0); }, answer);
        Add(
            blind, "plain folding loop",
            [=] { return PlainSearch<Folding>(texts->text, texts->folded); }, answer,
            Against::Limit);
        Add(
            blind, "strcasestr",
            [=] {
                return Position(texts->text,
                                strcasestr(texts->text.c_str(), texts->folded.c_str()));
            },
            answer);
        m_contests.push_back(std::move(exact));
        m_contests.push_back(std::move(blind));
    }

    void AddComparisons(SharedTexts const &texts) {
        auto const size = static_cast<std::uint32_t>(texts->text.size());
        auto const letters = m_letters;
        Contest exact{"Compare, the last byte differs", size, {}};
        Add(
            exact, "", [=] { return OurCompare(*letters, texts->text, texts->pattern, 1); }, -1);
        Add(
            exact, "plain byte loop",
            [=] { return PlainCompare<AsItIs>(texts->text, texts->pattern); }, -1, Against::Limit);
        Add(
            exact, "std::string::compare",
            [=] { return Sign(texts->text.compare(texts->pattern)); }, -1);
        Contest blind{"Compare, case-blind, the last byte differs", size, {}};
        Add(
            blind, "", [=] { return OurCompare(*letters, texts->text, texts->folded, 0); }, -1);
        Add(
            blind, "plain folding loop",
            [=] { return PlainCompare<Folding>(texts->text, texts->folded); }, -1, Against::Limit);
        Add(
            blind, "strcasecmp",
            [=] { return Sign(strcasecmp(texts->text.c_str(), texts->folded.c_str())); }, -1);
        m_contests.push_back(std::move(exact));
        m_contests.push_back(std::move(blind));
    }

    std::vector<Contest> Take() { return std::move(m_contests); }

private:
    // It knows the letters that the case-blind work needs.
    std::shared_ptr<UTILS::MemObject<char>> m_letters = std::make_shared<UTILS::MemObject<char>>();
    std::vector<Contest> m_contests;
};

} // namespace

std::vector<Contest> RangeContests() {
    RangeWork work;
    for (std::uint32_t const size : SIZES)
        work.AddSearches("random letters", RandomLetters(size));
    for (std::uint32_t const size : SIZES)
        work.AddSearches("partial matches", PartialMatches(size));
    for (std::uint32_t const size : SIZES)
        work.AddSearches("first letters only", FirstLetters(size));
    for (std::uint32_t const size : SIZES)
        work.AddComparisons(NearlyEqual(size));
    return work.Take();
}

} // namespace bench
