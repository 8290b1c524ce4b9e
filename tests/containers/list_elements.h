// Elements for lists of class types, and lists, maps and nodes with their insides open to
// tests.
#pragma once

#include "UtilsList.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

// A text that is exact or blind to case by a setting of its own.
struct Word {
    Word() = default;
    Word(char const *letters) : text(letters) {}
    Word(char const *letters, bool isBlind) : text(letters), blind(isBlind) {}

    int Compare(Word const &other) const {
        return blind ? Folded(text).compare(Folded(other.text)) : text.compare(other.text);
    }

    std::string text;
    bool blind = false;

private:
    static std::string Folded(std::string letters) {
        for (char &letter : letters)
            if (letter >= 'a' && letter <= 'z')
                letter = static_cast<char>(letter - 'a' + 'A');
        return letters;
    }
};

// A number with a mark by which equal ones are told apart.
struct Number {
    int Compare(Number const &other) const {
        return key < other.key ? -1 : key > other.key ? 1 : 0;
    }
    friend bool operator==(Number const &a, Number const &b) {
        return a.key == b.key && a.mark == b.mark;
    }

    int key = 0;
    int mark = 0;
};

template <typename T> class OpenNode : public UTILS::Node<T> {
public:
    using Base = UTILS::Node<T>;
    explicit OpenNode(T *data, int scheme = 1, int caseMode = 1, unsigned long size = 0)
        : Base(data, scheme, caseMode, nullptr, nullptr, size) {}
    OpenNode(T *data, int scheme, int caseMode, Base *next, Base *previous, unsigned long size)
        : Base(data, scheme, caseMode, next, previous, size) {}
    OpenNode(OpenNode const &other) : UTILS::UtilsBase<T>(), Base(other) {}
    OpenNode &operator=(OpenNode const &other) = default;
    ~OpenNode() override = default;

    using Base::CopyData;
    using Base::dataSize;
    using Base::nextNode;
    using Base::nodeCase;
    using Base::nodeScheme;
    using Base::NullTerminate;
    using Base::prevNode;
    using Base::storage;

    static Base *Next(Base const *node) { return node->*(&OpenNode::nextNode); }
    static Base *Previous(Base const *node) { return node->*(&OpenNode::prevNode); }
};

template <typename T> class OpenList : public UTILS::ListObject<T> {
public:
    using Base = UTILS::ListObject<T>;
    using Node = UTILS::Node<T>;
    using Base::Base;
    OpenList() = default;
    using Base::operator=;

    using Base::caseMode;
    using Base::isSorted;
    using Base::listAllocationScheme;
    using Base::listHead;
    using Base::listMiddle;
    using Base::listSize;
    using Base::listTail;
    using Base::matchStyle;
    using Base::searchDirection;
    using Base::smartThreshold;

    // The nodes from the head on; links both ways and the size are tested on the way.
    std::vector<Node *> Nodes() const {
        std::vector<Node *> nodes;
        Node *before = nullptr;
        for (Node *node = listHead; node && nodes.size() <= listSize;
             node = OpenNode<T>::Next(node)) {
            EXPECT_EQ(OpenNode<T>::Previous(node), before);
            nodes.push_back(before = node);
        }
        EXPECT_EQ(nodes.size(), listSize);
        EXPECT_EQ(listTail, before);
        return nodes;
    }
    // The anchor's index from the head, or -1 for none.
    int Anchor() const {
        int index = 0;
        for (Node *node = listHead; node; node = OpenNode<T>::Next(node), ++index)
            if (node == listMiddle)
                return index;
        EXPECT_EQ(listMiddle, nullptr) << "the anchor isn't in the list";
        return -1;
    }
};

// Words of one element each, as "a b c".
inline std::string Text(OpenList<Word> const &list) {
    std::string text;
    for (auto const *const node : list.Nodes()) {
        text += text.empty() ? "" : " ";
        text += node->Retrieve() ? node->Retrieve()->text : "-";
    }
    return text;
}

inline std::vector<int> Keys(OpenList<Number> const &list) {
    std::vector<int> keys;
    for (auto const *const node : list.Nodes())
        keys.push_back(node->Retrieve() ? node->Retrieve()->key : -1);
    return keys;
}

inline void Fill(OpenList<Word> &list, std::vector<Word> words) {
    for (Word &word : words)
        list.AddToTail(&word, 0);
}

// The keys 0, 1, 2 and so on.
inline void Count(OpenList<Number> &list, int count) {
    for (int key = 0; key < count; ++key) {
        Number number{key, 0};
        list.AddToTail(&number, 0);
    }
}

// Runs the work, which is to throw, and compares the beginning of what() up to the line.
template <typename Exception, typename Work>
void ExpectThrown(char const *beginning, Work const &work) {
    try {
        work();
        ADD_FAILURE() << "nothing thrown, not: " << beginning;
    } catch (Exception const &error) {
        std::string const text = error.what();
        std::size_t const length = std::string(beginning).size();
        EXPECT_EQ(text.substr(0, length), beginning);
        EXPECT_GT(text.size(), length);
        EXPECT_EQ(text.find_first_not_of("0123456789", length), std::string::npos) << text;
    }
}
