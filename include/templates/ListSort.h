// Bodies of ListObject<T>: the sorts, which exchange the data of nodes and leave the links
// alone, and insertion into a sorted list.
#pragma once

#include "../UtilsList.h"

namespace UTILS {

// Where a position is not known yet.
constexpr unsigned long NO_POSITION = NOT_FOUND_INDEX;

template <typename T> void ListObject<T>::Sort(unsigned int algorithm) {
    if (isSorted == 1 || listSize == 0) {
        return;
    }
    if (algorithm == 0) {
        algorithm = listSize <= 512 ? 1 : listSize <= 1024 ? 3 : 4;
    }
    switch (algorithm) {
    case 1:
        class_specific_selectionsort(listHead, listTail);
        break;
    case 2:
        class_specific_shellsort(listHead, listTail, calculate_shell_sort_increment());
        break;
    case 3:
        class_specific_qsort(listHead, listTail);
        break;
    case 4:
        class_specific_fast_qsort(listHead, listTail, 1, NO_POSITION);
        break;
    default:
        break; // marked as sorted as it is
    }
    isSorted = 1;
}

template <typename T> int ListObject<T>::SortedInsert(T *data, unsigned long size) {
    if (listSize == 0) {
        return AddToHead(data, size);
    }
    Sort(0);
    unsigned long const length = size ? size : this->GetSizeOfData(data, nullptr);
    int result = 0;
    if (listHead->Compare(data, length) > 0) {
        result = AddToHead(data, size);
    } else if (listTail->Compare(data, length) < 0) {
        result = AddToTail(data, size);
    } else {
        unsigned long index = 0;
        Node<T> *node =
            bin_search_node(data, listHead, listTail, listMiddle, index, listSize, length, 1);
        node = node ? node : listHead;
        // Bisection ends near the place, which is before the first node that isn't less.
        while (node->Compare(data, length) < 0) {
            node = node->nextNode;
        }
        while (node->prevNode && node->prevNode->Compare(data, length) >= 0) {
            node = node->prevNode;
        }
        unsigned long const distance = DistanceFromHead(node);
        result = InsertData(node, searchDirection ? distance : listSize - distance - 1, data, size);
    }
    isSorted = 1;
    return result;
}

template <typename T> unsigned long ListObject<T>::DistanceFromHead(Node<T> const *node) const {
    unsigned long distance = 0;
    for (Node<T> const *step = listHead; step != node; step = step->nextNode) {
        ++distance;
    }
    return distance;
}

template <typename T> void ListObject<T>::swapnode(Node<T> *a, Node<T> *b) {
    if (a != b) {
        a->ExchangeData(*b);
    }
}

// Exchanges at every find, not once for each node.
template <typename T>
void ListObject<T>::class_specific_selectionsort(Node<T> *first, Node<T> *last) {
    for (Node<T> *i = first; i != last; i = i->nextNode) {
        Node<T> *j = i;
        do {
            j = j->nextNode;
            if (*j < *i) {
                swapnode(i, j);
            }
        } while (j != last);
    }
}

// Quick sorts

template <typename T> void ListObject<T>::class_specific_qsort(Node<T> *first, Node<T> *last) {
    class_specific_fast_qsort(first, last, 1, NO_POSITION);
}

// The smaller part is sorted by a call and the larger one here, so that no order of the data
// costs stack.
template <typename T> void ListObject<T>::class_specific_fast_qsort(Node<T> *first, Node<T> *last,
                                                                    unsigned long firstPosition,
                                                                    unsigned long lastPosition) {
    if (lastPosition == NO_POSITION) {
        lastPosition = listSize;
    }
    while (first != last) {
        unsigned long position = firstPosition;
        Node<T> *const pivot = Partition(first, last, position, lastPosition);
        if (position - firstPosition < lastPosition - position) {
            if (pivot != first) {
                class_specific_fast_qsort(first, pivot->prevNode, firstPosition, position - 1);
            }
            first = pivot->nextNode;
            firstPosition = position + 1;
        } else {
            if (pivot != last) {
                class_specific_fast_qsort(pivot->nextNode, last, position + 1, lastPosition);
            }
            last = pivot->prevNode;
            lastPosition = position - 1;
        }
    }
}

// Around the last node's data, whose place is returned. The scan from the front stops at what
// equals it, the one from the back doesn't. The positions are those of the two scans.
template <typename T> Node<T> *ListObject<T>::Partition(Node<T> *first, Node<T> *last,
                                                        unsigned long &iPosition,
                                                        unsigned long jPosition) {
    Node<T> *i = first;
    Node<T> *j = last;
    for (;;) {
        for (; i != last && i->CompareData(*last, i->GetSizeOfData()) < 0; ++iPosition) {
            i = i->nextNode;
        }
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): `first` is before it in the list
        for (; j != first && j->CompareData(*last, j->GetSizeOfData()) >= 0; --jPosition) {
            j = j->prevNode;
        }
        if (iPosition >= jPosition) {
            break;
        }
        swapnode(i, j);
    }
    swapnode(i, last);
    return i;
}

// The shell sort

template <typename T> unsigned long ListObject<T>::calculate_shell_sort_increment() const {
    if (listSize < 14) {
        return 1;
    }
    unsigned long h = 1;
    while (h < listSize) {
        h = 3 * h + 1;
    }
    return h / 3;
}

template <typename T> void ListObject<T>::class_specific_shellsort(Node<T> *first, Node<T> *last,
                                                                   unsigned long increment) {
    if (first == last) {
        return;
    }
    for (; increment != 0; increment /= 3) {
        ShellPass(first, last, increment);
    }
    // The last node goes to the head. That undoes the order; it is kept.
    listHead = last;
    listTail = last->prevNode;
    last->nextNode = first;
    first->prevNode = last;
    last->prevNode = nullptr;
    listTail->nextNode = nullptr;
}

// Begins to exchange at index 0, not where the increment ends: not every list comes out in
// order, and that is kept.
template <typename T>
void ListObject<T>::ShellPass(Node<T> *first, Node<T> *last, unsigned long increment) {
    if (increment >= listSize) {
        return;
    }
    Node<T> *node = Walk(first, increment, true);
    for (unsigned long start = 0;; ++start, node = node->nextNode) {
        unsigned long j = start;
        while (j >= increment) {
            Node<T> *const lower = RetrieveNodeItem(j - increment, 1);
            if (lower->CompareData(*node, lower->GetSizeOfData()) <= 0) {
                break;
            }
            swapnode(RetrieveNodeItem(j, 1), lower);
            if (j <= increment) {
                break;
            }
            j -= increment;
        }
        swapnode(RetrieveNodeItem(j, 1), node);
        if (node == last) {
            break;
        }
    }
}

} // namespace UTILS
