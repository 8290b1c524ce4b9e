// Bodies of ListObject<T>: linear search and bisection.
#pragma once

#include <algorithm>

#include "../UtilsList.h"

namespace UTILS {

template <typename T>
bool ListObject<T>::Matches(Node<T> const *node, T const *item, unsigned long itemSize) const {
    T const *const run = node->Retrieve();
    if (matchStyle == 0 || !run || !item) {
        return node->Compare(item, itemSize) == 0;
    }
    unsigned long index = 0;
    return this->search(item, item + itemSize, run, run + node->GetSizeOfData(), index, caseMode, 0,
                        nullptr) == 1;
}

template <typename T>
bool ListObject<T>::CompareEqual(Node<T> const *node, T const *item, unsigned long itemSize) const {
    return this->compare(node->Retrieve(), item, caseMode, matchStyle, node->GetSizeOfData(),
                         itemSize) == 0;
}

// `index` counts the nodes passed. Of equal nodes the first is found whatever `occurrence`
// is; of nodes that hold the item, as many as it says are passed.
template <typename T>
int ListObject<T>::linear_search(T const *item, Node<T> *first, Node<T> *last, unsigned long &index,
                                 unsigned long occurrence, unsigned long itemSize) const {
    bool const forward = searchDirection == 1;
    Node<T> const *const end = forward ? last : first;
    unsigned long count = 0;
    index = 0;
    for (Node<T> const *node = forward ? first : last; node;
         node = forward ? node->nextNode : node->prevNode) {
        if (Matches(node, item, itemSize) && (matchStyle == 0 || count++ >= occurrence)) {
            return 1;
        }
        ++index;
        if (node == end) {
            break;
        }
    }
    index = NOT_FOUND_INDEX;
    return 0;
}

template <typename T> int ListObject<T>::bin_search(T const *item, Node<T> *first, Node<T> *last,
                                                    unsigned long &index, unsigned long count,
                                                    unsigned long itemSize) const {
    bin_search_node(item, first, last, listMiddle, index, count == ~0UL ? listSize : count,
                    itemSize, 0);
    return index != NOT_FOUND_INDEX;
}

// Bisects the links between `first` and `last`, of `count` nodes, from `middle`. Where the
// anchor stands off the middle, walks end at the segment's ends and the index at the list's.
template <typename T>
Node<T> *ListObject<T>::bin_search_node(T const *item, Node<T> *first, Node<T> *last,
                                        Node<T> *middle, unsigned long &index, unsigned long count,
                                        unsigned long itemSize, int forInsert) const {
    index = count / 2 - (searchDirection != 1 && count % 2 == 0 ? 1 : 0);
    while (!Matches(middle, item, itemSize)) {
        bool const right = item && middle->Compare(item, itemSize) < 0;
        if (middle == (right ? last : first) || first == last) {
            index = forInsert ? index : NOT_FOUND_INDEX;
            return right ? middle : middle->prevNode;
        }
        unsigned long steps = 0;
        if (right) {
            count = count == 0 ? 0 : count / 2 - (count % 2 == 0 ? 1 : 0);
            steps = count / 2 + 1;
            first = middle->nextNode;
        } else {
            steps = (std::max)(count / 4 + count / 2 % 2, 1UL);
            count /= 2;
            last = middle->prevNode;
        }
        // To the left, any direction that isn't 0 counts as the one from the head.
        bool const up = right == (right ? searchDirection == 1 : searchDirection != 0);
        index = up ? (std::min)(index + steps, listSize - 1) : index - (std::min)(index, steps);
        Node<T> const *const end = right ? last : first;
        for (; steps != 0 && middle != end; --steps) {
            middle = right ? middle->nextNode : middle->prevNode;
        }
    }
    return middle;
}

template <typename T> unsigned long ListObject<T>::SearchList(T const *item, int method,
                                                              unsigned long occurrence,
                                                              unsigned long itemSize) {
    if (listSize == 0 || (method != 0 && method != 1)) {
        return NOT_FOUND_INDEX;
    }
    if (itemSize == 0) {
        itemSize = this->GetSizeOfData(item, nullptr);
    }
    unsigned long index = 0;
    if (method == 0) {
        linear_search(item, listHead, listTail, index, occurrence, itemSize);
        return index;
    }
    if (isSorted == 0) {
        Sort(0);
    }
    if (!bin_search(item, listHead, listTail, index, ~0UL, itemSize)) {
        return NOT_FOUND_INDEX;
    }
    // Back to the first of equal nodes.
    Node<T> const *before = index != 0 ? RetrieveNode(index - 1) : nullptr;
    while (before && CompareEqual(before, item, itemSize)) {
        before = searchDirection == 1 ? before->prevNode : before->nextNode;
        --index;
    }
    if (occurrence == 0) {
        return index;
    }
    index += occurrence;
    return CompareEqual(RetrieveNode(index), item, itemSize) ? index : NOT_FOUND_INDEX;
}

} // namespace UTILS
