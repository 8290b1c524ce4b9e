// Random courses of adds and questions, compared with a plain model.
#include "tree_nodes.h"

#include <map>

#include <gtest/gtest.h>

#include "dice.h"

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
