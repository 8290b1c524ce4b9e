// Random courses of adds and questions, compared with a plain model.
#include "services.h"
#include "tree_nodes.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

#include "dice.h"
#include "platform/code_page.h"

namespace {

constexpr std::uint32_t courses = 60;
constexpr int stepsOfCourse = 400;
constexpr unsigned alreadyExists = 183;

// Every node of a tree by its components in lower case.
class Model {
public:
    Model() { m_nodes[{}] = {}; }

    unsigned Add(std::string const &path, std::uint32_t data) {
        Names at;
        bool made = false;
        for (std::string const &name : Split(path)) {
            at.push_back(name);
            if (m_nodes.insert({at, {false, data}}).second)
                made = true;
        }
        Node &last = m_nodes[at];
        bool const listed = !made && last.marked;
        last.marked = true;
        return listed ? alreadyExists : 0;
    }

    bool Ask(std::string const &path) {
        auto const node = m_nodes.find(Split(path));
        if (node == m_nodes.end())
            return false;
        bool const before = node->second.marked;
        node->second.marked = true;
        return before;
    }

    bool Has(std::string const &path, std::uint32_t &data) const {
        auto const node = m_nodes.find(Split(path));
        data = node == m_nodes.end() ? 0 : node->second.data;
        return node != m_nodes.end();
    }

    std::size_t Size() const { return m_nodes.size() - 1; }

private:
    struct Node {
        bool marked = false;
        std::uint32_t data = 0;
    };

    static Names Split(std::string const &path) {
        Names names;
        std::string name;
        for (char const c : path + "\\") {
            if (c != '\\') {
                name.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c);
            } else if (!name.empty()) {
                names.push_back(name);
                name.clear();
            }
        }
        return names;
    }

    std::map<Names, Node> m_nodes;
};

std::string AnyPath(Dice &dice) {
    static char const *const names[] = {"C:",
                                        "c:",
                                        "windows",
                                        "WINDOWS",
                                        "a",
                                        "A",
                                        "b",
                                        "fonts.\xd7",
                                        "x",
                                        "system32",
                                        "systEM32.dll",
                                        "_",
                                        "a long name of more than a head"};
    std::string path;
    for (std::size_t left = dice.Below(6); left > 0; --left) {
        path += names[dice.Below(std::size(names))];
        path.append(1 + (dice.OneIn(5) ? dice.Below(3) : 0), '\\');
    }
    if (!path.empty() && dice.OneIn(2))
        path.pop_back();
    return dice.OneIn(10) ? '\\' + path : path;
}

} // namespace

TEST(ProtectTree, Answers_like_the_model) {
    for (std::uint32_t seed = 0; seed < courses; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        ProtectNode tree;
        Model model;
        for (int step = 0; step < stepsOfCourse; ++step) {
            std::string const path = AnyPath(dice);
            auto const data = static_cast<std::uint32_t>(dice.Below(1000));
            std::uint32_t told = 99, expected = 0;
            switch (dice.Below(4)) {
            case 0:
                ASSERT_EQ(model.Add(path, data), ProtectAdd(tree, path.c_str(), data)) << path;
                break;
            case 1: {
                bool const has = model.Has(path, expected);
                ASSERT_EQ(has, ProtectFind(tree, path.c_str(), &told)) << path;
                ASSERT_EQ(expected, told) << path;
                break;
            }
            default:
                ASSERT_EQ(model.Ask(path), Ask(tree, path)) << path;
            }
            ASSERT_EQ(model.Size(), CountBelow(tree));
        }
    }
}

// Thousands of children of one node, added in several orders.
TEST(ProtectTree, Holds_many_children_in_whatever_order_they_come) {
    constexpr std::size_t many = 3000;
    for (std::size_t const stride : {1u, 2999u, 1777u, 7u}) { // up, down, about
        SCOPED_TRACE(stride);
        ProtectNode tree;
        Model model;
        for (std::size_t i = 0; i < many; ++i) {
            std::string const name = "Name" + std::to_string(10000 + i * stride % many);
            std::string const path = "C:\\" + name + (i % 3 == 0 ? "\\below" : "");
            ASSERT_EQ(model.Add(path, 1), ProtectAdd(tree, path.c_str(), 1)) << path;
        }
        EXPECT_EQ(model.Size(), CountBelow(tree));
        for (std::size_t i = 0; i < many + 10; ++i) {
            std::string const path = "c:\\nAME" + std::to_string(10000 + i);
            ASSERT_EQ(model.Ask(path), Ask(tree, path)) << path;
            ASSERT_EQ(model.Ask(path + "\\BELOW"), Ask(tree, path + "\\BELOW")) << path;
        }
    }
}

// The loader's way: one path after the other, of which each may begin as the one before.
TEST(ProtectAdder, Answers_like_the_model) {
    for (std::uint32_t seed = 0; seed < courses; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed + courses);
        ProtectNode tree;
        Model model;
        ProtectAdder adder(tree);
        std::string last;
        for (int step = 0; step < stepsOfCourse; ++step) {
            std::string path = AnyPath(dice);
            if (dice.OneIn(2))
                path = last.substr(0, dice.Below(last.size() + 1)) + path;
            path.resize(std::min<std::size_t>(path.size(), 259));
            last = path;
            auto const data = static_cast<std::uint32_t>(dice.Below(1000));
            ASSERT_EQ(model.Add(path, data), adder.Add(path.c_str(), data)) << path;
            ASSERT_EQ(model.Size(), CountBelow(tree)) << path;
            std::uint32_t told = 0, expected = 0;
            ASSERT_TRUE(model.Has(path, expected) && ProtectFind(tree, path.c_str(), &told));
            ASSERT_EQ(expected, told) << path;
        }
    }
}

// Half a character at the end of a path isn't the first half of one in the next.
TEST(ProtectAdder, Goes_on_from_whole_characters) {
    CodePageNow const now(932);
    if (!now.Set() || UnderWine())
        GTEST_SKIP() << "Wine reads on behind half a character at the end";
    ProtectNode tree;
    ProtectAdder adder(tree);
    adder.Add("a\\b\x83", 0);
    adder.Add("a\\b\x83\x5c"
              "c",
              0);
    EXPECT_EQ(3u, CountBelow(tree));
    EXPECT_TRUE(Ask(tree, "a\\b\x83\x5c"
                          "c"));
}
