// Bodies of MapObject<K, V>.
#pragma once

#include "../UtilsList.h"

namespace UTILS {

template <typename K, typename V> MapObject<K, V>::MapObject(int scheme, int caseSetting) {
    Init(scheme, caseSetting);
}

template <typename K, typename V> MapObject<K, V>::~MapObject() { RemoveAll(); }

template <typename K, typename V> const char *MapObject<K, V>::derived_class() const {
    return ClassName(typeid(*this));
}

template <typename K, typename V> void MapObject<K, V>::Init(int scheme, int caseSetting) {
    smartThreshold = 50;
    listAllocationScheme = scheme;
    searchDirection = 1;
    reserved[0] = reserved[1] = reserved[2] = 0;
    caseMode = caseSetting;
    flag = 1;
    SetToNull();
}

template <typename K, typename V> void MapObject<K, V>::SetToNull() {
    listHead = listTail = listMiddle = nullptr;
    listSize = 0;
}

template <typename K, typename V> int MapObject<K, V>::IsEmpty() const {
    return !listHead && !listTail && !listMiddle;
}

template <typename K, typename V>
MapObject<K, V> &MapObject<K, V>::operator=(MapObject const &other) {
    if (this != &other) {
        RemoveAll();
        CopyMap(other);
    }
    return *this;
}

// Settings go over too, other than with lists; pairs are added behind what is there.
template <typename K, typename V> void MapObject<K, V>::CopyMap(MapObject const &other) {
    valBase.UBaseCopy(other.valBase);
    keyBase.UBaseCopy(other.keyBase);
    smartThreshold = other.smartThreshold;
    listAllocationScheme = other.listAllocationScheme;
    searchDirection = other.searchDirection;
    for (int i = 0; i < 3; ++i) {
        reserved[i] = other.reserved[i];
    }
    caseMode = other.caseMode;
    flag = other.flag;
    MapNode<K, V> const *node = other.listHead;
    for (unsigned long left = other.listSize; left != 0; --left) {
        AddToTail(node->RetrieveKey(), node->RetrieveVal(), node->GetSizeOfKeyData(),
                  node->GetSizeOfValData());
        node = node->nextNode;
    }
}

template <typename K, typename V>
int MapObject<K, V>::AddToTail(K *key, V *value, unsigned long keySize, unsigned long valueSize) {
    MapNode<K, V> *node = nullptr;
    {
        ScopedLock const held(syncLock);
        node = new MapNode<K, V>(key, value, listAllocationScheme, caseMode, nullptr, listTail,
                                 keySize, valueSize);
    }
    if (listSize == 0) {
        listHead = listMiddle = node;
    } else {
        listTail->nextNode = node;
        if (listSize % 2 == 1) {
            listMiddle = listMiddle->nextNode ? listMiddle->nextNode : listMiddle;
        }
    }
    listTail = node;
    ++listSize;
    return 1;
}

template <typename K, typename V> void MapObject<K, V>::DeleteNode(MapNode<K, V> *node) {
    ScopedLock const held(syncLock);
    delete node;
}

// The anchor moves as the list's does, and never off the map.
template <typename K, typename V> void MapObject<K, V>::RemoveFromHead() {
    if (listSize == 0) {
        return;
    }
    if ((listSize % 2 == 0 || listMiddle == listHead) && listMiddle->nextNode) {
        listMiddle = listMiddle->nextNode;
    }
    MapNode<K, V> *const victim = listHead;
    listHead = victim->nextNode;
    DeleteNode(victim);
    if (--listSize == 0) {
        SetToNull();
    } else {
        listHead->prevNode = nullptr;
    }
}

template <typename K, typename V> void MapObject<K, V>::RemoveAll() {
    while (listSize != 0) {
        RemoveFromHead();
    }
    SetToNull();
}

extern template class MapObject<int, char>;
extern template class MapObject<int, unsigned char>;
extern template class UtilsAllocator<MapObject<int, char>>;
extern template class UtilsAllocator<MapObject<int, unsigned char>>;

} // namespace UTILS
