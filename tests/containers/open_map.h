// Maps and their nodes with their insides open to tests.
#pragma once

#include "list_elements.h"

#include <utility>

template <typename V> class OpenMapNode : public UTILS::MapNode<int, V> {
public:
    using Base = UTILS::MapNode<int, V>;
    OpenMapNode(int *key, V *value, int scheme = 1, unsigned long keyLength = 0,
                unsigned long valLength = 0)
        : Base(key, value, scheme, 1, nullptr, nullptr, keyLength, valLength) {}

    using Base::keyStorage;
    using Base::nextNode;
    using Base::nodeCase;
    using Base::nodeScheme;
    using Base::NullTerminateKey;
    using Base::NullTerminateVal;
    using Base::prevNode;
    using Base::valStorage;

    static Base *Next(Base const *node) { return node->*(&OpenMapNode::nextNode); }
    static Base *Previous(Base const *node) { return node->*(&OpenMapNode::prevNode); }
    static int Case(Base const *node) { return node->*(&OpenMapNode::nodeCase); }
};

template <typename V> class OpenMap : public UTILS::MapObject<int, V> {
public:
    using Base = UTILS::MapObject<int, V>;
    using Base::Base;
    using Base::caseMode;
    using Base::CopyMap;
    using Base::flag;
    using Base::listAllocationScheme;
    using Base::listHead;
    using Base::listMiddle;
    using Base::listSize;
    using Base::listTail;
    using Base::reserved;
    using Base::searchDirection;
    using Base::smartThreshold;

    std::vector<UTILS::MapNode<int, V> *> Nodes() const {
        std::vector<UTILS::MapNode<int, V> *> nodes;
        UTILS::MapNode<int, V> *before = nullptr;
        for (auto *node = listHead; node && nodes.size() <= listSize;
             node = OpenMapNode<V>::Next(node)) {
            EXPECT_EQ(OpenMapNode<V>::Previous(node), before);
            nodes.push_back(before = node);
        }
        EXPECT_EQ(nodes.size(), listSize);
        EXPECT_EQ(listTail, before);
        return nodes;
    }
    int Anchor() const {
        auto const nodes = Nodes();
        for (std::size_t i = 0; i < nodes.size(); ++i)
            if (nodes[i] == listMiddle)
                return static_cast<int>(i);
        EXPECT_EQ(listMiddle, nullptr);
        return -1;
    }
};

using Pairs = std::vector<std::pair<int, std::string>>;

inline Pairs Contents(OpenMap<char> const &map) {
    Pairs pairs;
    for (auto const *node : map.Nodes())
        pairs.emplace_back(*node->RetrieveKey(), node->RetrieveVal());
    return pairs;
}

inline void Add(OpenMap<char> &map, int key, std::string value) {
    EXPECT_EQ(map.AddToTail(&key, value.data(), 0, 0), 1);
}

inline void Fill(OpenMap<char> &map, int count) {
    for (int key = 0; key < count; ++key)
        Add(map, key, std::to_string(key));
}
