// Bodies of ListObject<T>: nodes and retrieval. Searches are in ListSearch.h, sorts in
// ListSort.h.
#pragma once

#include <memory>

#include "../UtilsList.h"

namespace UTILS {

template <typename T> ListObject<T>::ListObject(int scheme, int caseSetting) {
    Init(scheme, caseSetting);
}

template <typename T> ListObject<T>::~ListObject() { RemoveAll(); }

template <typename T> const char *ListObject<T>::derived_class() const {
    return ClassName(typeid(*this));
}

template <typename T> void ListObject<T>::Init(int scheme, int caseSetting) {
    smartThreshold = 50;
    listAllocationScheme = scheme;
    isSorted = 0;
    searchDirection = 1;
    matchStyle = 0;
    caseMode = caseSetting;
    SetToNull();
}

template <typename T> void ListObject<T>::SetToNull() {
    listHead = listTail = listMiddle = nullptr;
    listSize = 0;
}

template <typename T> int ListObject<T>::IsEmpty() const {
    return !listHead && !listTail && !listMiddle;
}

template <typename T> unsigned long ListObject<T>::ListSize() const { return listSize; }

template <typename T> void ListObject<T>::SetListAllocationScheme(int scheme) {
    listAllocationScheme = scheme;
}

template <typename T> void ListObject<T>::SetSearchDirection(int direction) {
    searchDirection = direction;
}

// Copies

template <typename T> ListObject<T> &ListObject<T>::operator=(ListObject const &other) {
    if (this != &other) {
        RemoveAll();
        this->UBaseCopy(other);
        CopyList(other);
    }
    return *this;
}

// A list behind itself is taken once.
template <typename T> void ListObject<T>::CopyList(ListObject const &other) {
    int const sorted = other.isSorted;
    Node<T> const *node = other.listHead;
    for (unsigned long left = other.listSize; left != 0; --left) {
        AddToTail(node->Retrieve(), node->GetSizeOfData());
        node = node->nextNode;
    }
    isSorted = sorted;
}

template <typename T> ListObject<T> &ListObject<T>::operator=(std::list<T> &other) {
    RemoveAll();
    CopyList(other);
    return *this;
}

// Each element goes to the head: the order is reversed, and meant to be.
template <typename T> void ListObject<T>::CopyList(std::list<T> &other) {
    for (T &element : other) {
        AddToHead(&element, 0);
    }
}

// Nodes and the anchor

template <typename T>
Node<T> *ListObject<T>::NewNode(T *data, Node<T> *next, Node<T> *previous, unsigned long size) {
    ScopedLock const held(syncLock);
    return new Node<T>(data, listAllocationScheme, caseMode, next, previous, size);
}

template <typename T> void ListObject<T>::DeleteNode(Node<T> *node) {
    ScopedLock const held(syncLock);
    delete node;
}

// From a node some steps along; an end is where every walk stops.
template <typename T>
Node<T> *ListObject<T>::Walk(Node<T> *from, unsigned long steps, bool forward) const {
    for (; steps != 0; --steps) {
        Node<T> *const next = forward ? from->nextNode : from->prevNode;
        if (!next) {
            break;
        }
        from = next;
    }
    return from;
}

template <typename T> void ListObject<T>::MoveAnchor(bool forward) {
    listMiddle = Walk(listMiddle, 1, forward);
}

template <typename T> int ListObject<T>::AddToHead(T *data, unsigned long size) {
    Node<T> *const node = NewNode(data, listHead, nullptr, size);
    if (listSize == 0) {
        listTail = listMiddle = node;
    } else {
        listHead->prevNode = node;
        if (listSize % 2 == 0) {
            MoveAnchor(false);
        }
    }
    listHead = node;
    ++listSize;
    isSorted = 0;
    return 1;
}

template <typename T> int ListObject<T>::AddToTail(T *data, unsigned long size) {
    Node<T> *const node = NewNode(data, nullptr, listTail, size);
    if (listSize == 0) {
        listHead = listMiddle = node;
    } else {
        listTail->nextNode = node;
        if (listSize % 2 == 1) {
            MoveAnchor(true);
        }
    }
    listTail = node;
    ++listSize;
    isSorted = 0;
    return 1;
}

// Adds before a node; `index` is its index in the direction of the list.
template <typename T>
int ListObject<T>::InsertData(Node<T> *at, unsigned long index, T *data, unsigned long size) {
    if (!at) {
        return 0;
    }
    Node<T> *const node = NewNode(data, at, at->prevNode, size);
    (at->prevNode ? at->prevNode->nextNode : listHead) = node;
    at->prevNode = node;
    unsigned long const position = searchDirection ? index : listSize - index - 1;
    if (position > listSize / 2) {
        if (listSize % 2 == 1) {
            MoveAnchor(true);
        }
    } else if (listSize % 2 == 0) {
        MoveAnchor(false);
    }
    ++listSize;
    return 1;
}

// The anchor moves for an even size, where an odd one needs it: it may stand one node off
// afterwards, and that is kept.
template <typename T> void ListObject<T>::RemoveFromHead() {
    if (listSize == 0) {
        return;
    }
    if (listSize % 2 == 0 || listMiddle == listHead) {
        MoveAnchor(true);
    }
    Node<T> *const victim = listHead;
    listHead = victim->nextNode;
    DeleteNode(victim);
    if (--listSize == 0) {
        SetToNull();
    } else {
        listHead->prevNode = nullptr;
    }
}

template <typename T> void ListObject<T>::RemoveAll() {
    while (listSize != 0) {
        RemoveFromHead();
    }
    SetToNull();
}

// Retrieval

template <typename T> T *ListObject<T>::Retrieve(unsigned long index) const {
    return RetrieveItem(index, searchDirection);
}

template <typename T> T *ListObject<T>::RetrieveItem(unsigned long index, int direction) const {
    return RetrieveNodeItem(index, direction)->Retrieve();
}

template <typename T> Node<T> *ListObject<T>::RetrieveNode(unsigned long index) const {
    return RetrieveNodeItem(index, searchDirection);
}

template <typename T>
Node<T> *ListObject<T>::RetrieveNodeItem(unsigned long index, int direction) const {
    if (index >= listSize) {
        ThrowOutOfRange(index, listSize, SOURCE, __LINE__);
    }
    bool const forward = direction == 1;
    return Walk(forward ? listHead : listTail, index, forward);
}

template <typename T> T *ListObject<T>::SmartRetrieve(unsigned long index) const {
    return SmartRetrieveItem(index, searchDirection);
}

template <typename T>
T *ListObject<T>::SmartRetrieveItem(unsigned long index, int direction) const {
    return SmartNode(index, direction == 1)->Retrieve();
}

template <typename T> Node<T> *ListObject<T>::SmartNode(unsigned long index, bool forward) const {
    if (index >= listSize) {
        ThrowOutOfRange(index, listSize, SOURCE, __LINE__);
    }
    if (listSize <= smartThreshold || index <= listSize / 4) {
        return Walk(forward ? listHead : listTail, index, forward);
    }
    if (index >= (3 * listSize) >> 2) {
        return Walk(forward ? listTail : listHead, listSize - index - 1, !forward);
    }
    unsigned long const half = listSize / 2;
    if (forward) {
        return index >= half ? Walk(listMiddle, index - half, true)
                             : Walk(listMiddle, half - index, false);
    }
    // For an even size this ends two nodes past the index, and that is kept.
    unsigned long const from = half + (listSize % 2 == 0 ? 1 : 0);
    unsigned long const steps = from > index ? from - index : index - from;
    return Walk(listMiddle, steps, index < half);
}

// Smart removal

template <typename T> void ListObject<T>::SmartRemoveFromIndice(unsigned long index) {
    SmartRemoveFromIndiceItem(index, searchDirection);
}

template <typename T>
void ListObject<T>::SmartRemoveFromIndiceItem(unsigned long index, int direction) {
    bool const forward = direction == 1;
    Node<T> *const victim = SmartNode(index, forward);
    bool const even = listSize % 2 == 0;
    unsigned long const half = listSize / 2;
    if (even ? (forward ? index >= half : index + 1 <= half)
             : (forward ? index <= half : index >= half)) {
        MoveAnchor(!even);
    }
    if (victim == listMiddle) {
        MoveAnchor(!even);
    }
    if (victim == listMiddle) {
        MoveAnchor(even);
    }
    Unlink(victim);
    DeleteNode(victim);
    if (--listSize == 0) {
        SetToNull();
    }
}

template <typename T> void ListObject<T>::Unlink(Node<T> *victim) {
    (victim->prevNode ? victim->prevNode->nextNode : listHead) = victim->nextNode;
    (victim->nextNode ? victim->nextNode->prevNode : listTail) = victim->prevNode;
}

// Lists of plain runs are filled, copied and emptied; the rest is for strings.
#define QVLINKDB_PLAIN_LIST(T)                                                                     \
    template <> ListObject<T> &ListObject<T>::operator=(std::list<T> &) = delete;                  \
    template <> void ListObject<T>::CopyList(std::list<T> &) = delete;                             \
    template <> int ListObject<T>::AddToHead(T *, unsigned long) = delete;                         \
    template <> int ListObject<T>::SortedInsert(T *, unsigned long) = delete;                      \
    template <> unsigned long ListObject<T>::ListSize() const = delete;                            \
    template <> void ListObject<T>::SetListAllocationScheme(int) = delete;                         \
    template <> void ListObject<T>::SetSearchDirection(int) = delete;                              \
    template <> T *ListObject<T>::Retrieve(unsigned long) const = delete;                          \
    template <> T *ListObject<T>::RetrieveItem(unsigned long, int) const = delete;                 \
    template <> Node<T> *ListObject<T>::RetrieveNode(unsigned long) const = delete;                \
    template <> Node<T> *ListObject<T>::RetrieveNodeItem(unsigned long, int) const = delete;       \
    template <> T *ListObject<T>::SmartRetrieve(unsigned long) const = delete;                     \
    template <> T *ListObject<T>::SmartRetrieveItem(unsigned long, int) const = delete;            \
    template <> void ListObject<T>::SmartRemoveFromIndice(unsigned long) = delete;                 \
    template <> void ListObject<T>::SmartRemoveFromIndiceItem(unsigned long, int) = delete;        \
    template <> unsigned long ListObject<T>::SearchList(T const *, int, unsigned long,             \
                                                        unsigned long) = delete;                   \
    template <> void ListObject<T>::Sort(unsigned int) = delete;                                   \
    template <> int ListObject<T>::InsertData(Node<T> *, unsigned long, T *, unsigned long) =      \
        delete;                                                                                    \
    template <> unsigned long ListObject<T>::DistanceFromHead(Node<T> const *) const = delete;     \
    template <> Node<T> *ListObject<T>::SmartNode(unsigned long, bool) const = delete;             \
    template <> void ListObject<T>::Unlink(Node<T> *) = delete;                                    \
    template <> bool ListObject<T>::Matches(Node<T> const *, T const *, unsigned long) const =     \
        delete;                                                                                    \
    template <> bool ListObject<T>::CompareEqual(Node<T> const *, T const *, unsigned long)        \
        const = delete;                                                                            \
    template <> int ListObject<T>::linear_search(T const *, Node<T> *, Node<T> *, unsigned long &, \
                                                 unsigned long, unsigned long) const = delete;     \
    template <> int ListObject<T>::bin_search(T const *, Node<T> *, Node<T> *, unsigned long &,    \
                                              unsigned long, unsigned long) const = delete;        \
    template <> Node<T> *ListObject<T>::bin_search_node(T const *, Node<T> *, Node<T> *,           \
                                                        Node<T> *, unsigned long &, unsigned long, \
                                                        unsigned long, int) const = delete;        \
    template <> void ListObject<T>::swapnode(Node<T> *, Node<T> *) = delete;                       \
    template <> unsigned long ListObject<T>::calculate_shell_sort_increment() const = delete;      \
    template <> void ListObject<T>::class_specific_selectionsort(Node<T> *, Node<T> *) = delete;   \
    template <>                                                                                    \
    void ListObject<T>::class_specific_shellsort(Node<T> *, Node<T> *, unsigned long) = delete;    \
    template <> void ListObject<T>::class_specific_qsort(Node<T> *, Node<T> *) = delete;           \
    template <> void ListObject<T>::class_specific_fast_qsort(Node<T> *, Node<T> *, unsigned long, \
                                                              unsigned long) = delete;             \
    template <> Node<T> *ListObject<T>::Partition(Node<T> *, Node<T> *, unsigned long &,           \
                                                  unsigned long) = delete;                         \
    template <> void ListObject<T>::ShellPass(Node<T> *, Node<T> *, unsigned long) = delete
QVLINKDB_PLAIN_LIST(char);
QVLINKDB_PLAIN_LIST(unsigned char);
#undef QVLINKDB_PLAIN_LIST

extern template class ListObject<char>;
extern template class ListObject<unsigned char>;
extern template class UtilsAllocator<ListObject<char>>;
extern template class UtilsAllocator<ListObject<unsigned char>>;

} // namespace UTILS

#include "ListSearch.h"
#include "ListSort.h"
