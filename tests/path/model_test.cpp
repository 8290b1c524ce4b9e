// Random texts and steps against a model on plain strings.
#include "path_twin.h"

#include <random>

#include <gtest/gtest.h>

#include "courses.h"

namespace {

using Random = std::mt19937;

std::string RandomText(Random &random) {
    static char const *const words[] = {".",  ".",  "\\", "\\", "\\", ":",    "a",    "bc",
                                        "C:", "..", " ",  "d",  "x",  "HKLM", "HKCU", "HKEY_USERS"};
    std::string text;
    for (auto left = random() % 9; left > 0; --left)
        text += words[random() % std::size(words)];
    return text;
}

std::string RandomBase(Random &random) {
    static char const *const bases[] = {"C:\\a\\b",     "C:",      "C:\\", "a",
                                        "\\\\host\\x",  "HKLM\\a", "",     " D:\\d\\e\\f ",
                                        "C:\\C:\\C:\\", "x\\y"};
    return random() % 4 == 0 ? RandomText(random) : bases[random() % std::size(bases)];
}

void Step(PathTwin &twin, Random &random) {
    std::string const text = RandomText(random);
    auto const step = random() % 10;
    if (step < 3)
        twin.SetPath(text, RandomBase(random));
    else if (step < 6)
        twin.AddToPath(text);
    else if (step == 6)
        twin.MoveToParent();
    else if (step == 7)
        twin.CloseParentSearch();
    else if (step == 8)
        twin.ClimbOn();
    else
        twin.ClimbBack();
}

} // namespace

TEST(PathModel, Steps_in_any_order_do_what_plain_strings_do) {
    UTILS::CUtilsPath const first; // keeps the installer loaded, which else comes and goes
    for (std::uint32_t seed = 1; seed <= Courses(6000); ++seed) {
        Random random(seed);
        PathTwin twin;
        for (int step = 0; step < 8; ++step)
            Step(twin, random);
        ASSERT_EQ("", twin.Difference()) << "course " << seed;
    }
}

TEST(PathModel, Names_are_divided_as_plain_strings_are) {
    Random random(99);
    PathTwin twin;
    for (std::uint32_t round = Courses(20000); round > 0; --round) {
        std::string const text = RandomText(random);
        twin.DivideName(text, random() % 2 == 1);
        ASSERT_EQ("", twin.Difference());
    }
}
