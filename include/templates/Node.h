// Bodies of Node<T> and MapNode<K, V>.
#pragma once

#include <algorithm>
#include <memory>
#include <utility>

#include "../UtilsList.h"

namespace UTILS {

// Storage for data in an allocator of its own. Null data is a view of nothing.
template <typename T> std::unique_ptr<UtilsAllocator<T>> StoreData(UtilsBase<T> &base, T *data,
                                                                   int scheme, unsigned long size) {
    unsigned long const length = scheme == 0 || !data ? 0 : size + base.GetCharSize();
    auto storage = std::make_unique<UtilsAllocator<T>>(length);
    if (scheme == 0) {
        storage->SetMemoryPointer(data);
    } else if (length != 0) {
        storage->CopyMem(data, size);
        base.NullTerminate(storage->GetMemoryBlock() + size);
    }
    return storage;
}

template <typename T>
Node<T>::Node(T *data, int scheme, int caseMode, Node *next, Node *previous, unsigned long size) {
    BuildNodeData(data, scheme, caseMode, next, previous, size);
}

template <typename T> Node<T>::Node(Node const &other) : UtilsBase<T>() { *this = other; }

template <typename T> Node<T> &Node<T>::operator=(Node const &other) {
    if (this != &other) {
        this->UBaseCopy(other);
        CopyData(other);
    }
    return *this;
}

template <typename T> void Node<T>::CopyData(Node const &other) {
    auto copy = std::make_unique<UtilsAllocator<T>>(*other.storage);
    delete storage;
    storage = copy.release();
    nodeScheme = other.nodeScheme;
    nodeCase = other.nodeCase;
    dataSize = other.dataSize;
    nextNode = other.nextNode;
    prevNode = other.prevNode;
}

template <typename T> Node<T>::~Node() { delete storage; }

template <typename T> int Node<T>::isupper(unsigned short const &value) const {
    return letters::IsUpper(value);
}
template <typename T> int Node<T>::isupper(char const &value) const {
    return letters::IsUpper(value);
}
template <typename T> int Node<T>::islower(unsigned short const &value) const {
    return letters::IsLower(value);
}
template <typename T> int Node<T>::islower(char const &value) const {
    return letters::IsLower(value);
}
template <typename T> unsigned short Node<T>::utoupper(unsigned short const &value) const {
    return letters::ToUpper(value);
}
template <typename T> char Node<T>::utoupper(char const &value) const {
    return letters::ToUpper(value);
}
template <typename T> unsigned short Node<T>::utolower(unsigned short const &value) const {
    return letters::ToLower(value);
}
template <typename T> char Node<T>::utolower(char const &value) const {
    return letters::ToLower(value);
}

template <typename T> const char *Node<T>::derived_class() const {
    return ClassName(typeid(*this));
}

template <typename T> T *Node<T>::Retrieve() const { return storage->GetMemoryBlock(); }
template <typename T> unsigned long Node<T>::GetSizeOfData() const { return dataSize; }
template <typename T> Node<T> *Node<T>::operator++() { return nextNode; }
template <typename T> Node<T> *Node<T>::operator++(int) { return nextNode; }

template <typename T> int Node<T>::operator==(T const *item) const {
    return Compare(item, dataSize) == 0;
}
template <typename T> int Node<T>::operator<(T const *item) const {
    return Compare(item, dataSize) < 0;
}
template <typename T> int Node<T>::operator>(T const *item) const {
    return Compare(item, dataSize) > 0;
}
template <typename T> int Node<T>::operator>=(T const *item) const {
    return Compare(item, dataSize) >= 0;
}

template <typename T> void Node<T>::BuildNodeData(T *data, int scheme, int caseMode, Node *next,
                                                  Node *previous, unsigned long size) {
    if (size == 0 || !data) {
        size = this->GetSizeOfData(data, nullptr);
    }
    {
        ScopedLock const held(syncLock);
        auto fresh = StoreData<T>(*this, data, scheme, size);
        delete storage;
        storage = fresh.release();
    }
    nodeCase = this->IsCaseType() ? caseMode : 1;
    nodeScheme = scheme == 0 ? 0 : 1;
    dataSize = size;
    nextNode = next;
    prevNode = previous;
}

template <typename T> void Node<T>::datacopy(T const *data, unsigned long size) {
    storage->CopyMem(data, size);
    NullTerminate();
}

// Owned storage of the right length stays where it is.
template <typename T> void Node<T>::external_datacopy(T const *data, unsigned long size) {
    if (nodeScheme == 0) {
        storage->SetMemoryPointer(const_cast<T *>(data));
    } else if (data && storage->GetLength() != 0 && storage->GetLength() == size + this->charSize) {
        storage->CopyMem(data, size);
    } else {
        size = data ? size : 0;
        auto fresh = StoreData<T>(*this, const_cast<T *>(data), 1, size);
        delete storage;
        storage = fresh.release();
    }
    dataSize = size;
    if (nodeScheme != 0) {
        NullTerminate();
    }
}

template <typename T> void Node<T>::NullTerminate() {
    if (Retrieve()) {
        UtilsBase<T>::NullTerminate(Retrieve() + dataSize);
    }
}

template <typename T> int Node<T>::Compare(T const *item, unsigned long itemSize) const {
    T const *const run = Retrieve();
    if (!run || !item) {
        return run ? 1 : item ? -1 : 0;
    }
    unsigned long const common = (std::min)(dataSize, itemSize);
    for (unsigned long i = 0; i < common; ++i) {
        if (int const order = this->CompareElements(run[i], item[i], nodeCase)) {
            return order;
        }
    }
    return common < dataSize ? 1 : 0;
}

template <typename T> int Node<T>::CompareData(Node const &other, unsigned long count) const {
    T const *const run = Retrieve();
    T const *const others = other.Retrieve();
    if (!run || !others) {
        return run ? 1 : others ? -1 : 0;
    }
    for (unsigned long i = 0; i < count; ++i) {
        if (i >= dataSize || i >= other.dataSize) {
            return i < dataSize ? 1 : i < other.dataSize ? -1 : 0;
        }
        if (int const order = this->CompareElements(run[i], others[i], 1)) {
            return order;
        }
    }
    return 0;
}

template <typename T> int Node<T>::operator<(Node const &other) const {
    return CompareData(other, (std::max)(dataSize, other.dataSize)) < 0;
}

// Blocks go over from node to node; nothing is copied, and so nothing can fail half-way.
template <typename T> void Node<T>::ExchangeData(Node &other) {
    std::swap(storage, other.storage);
    std::swap(dataSize, other.dataSize);
    std::swap(nodeScheme, other.nodeScheme);
}

template <typename K, typename V>
MapNode<K, V>::MapNode(K *key, V *value, int scheme, int caseMode, MapNode *next, MapNode *previous,
                       unsigned long keyLength, unsigned long valLength) {
    BuildMapNodeData(key, value, scheme, caseMode, next, previous, keyLength, valLength);
}

template <typename K, typename V> MapNode<K, V>::~MapNode() {
    delete valStorage;
    delete keyStorage;
}

template <typename K, typename V> const char *MapNode<K, V>::derived_class() const {
    return ClassName(typeid(*this));
}

template <typename K, typename V> int MapNode<K, V>::isupper(unsigned short const &value) const {
    return letters::IsUpper(value);
}
template <typename K, typename V> int MapNode<K, V>::islower(unsigned short const &value) const {
    return letters::IsLower(value);
}
template <typename K, typename V>
unsigned short MapNode<K, V>::utoupper(unsigned short const &value) const {
    return letters::ToUpper(value);
}
template <typename K, typename V>
unsigned short MapNode<K, V>::utolower(unsigned short const &value) const {
    return letters::ToLower(value);
}
template <typename K, typename V> int MapNode<K, V>::isupper(char const &value) const {
    return letters::IsUpper(value);
}
template <typename K, typename V> int MapNode<K, V>::islower(char const &value) const {
    return letters::IsLower(value);
}
template <typename K, typename V> char MapNode<K, V>::utoupper(char const &value) const {
    return letters::ToUpper(value);
}
template <typename K, typename V> char MapNode<K, V>::utolower(char const &value) const {
    return letters::ToLower(value);
}

template <typename K, typename V> K *MapNode<K, V>::RetrieveKey() const {
    return keyStorage->GetMemoryBlock();
}
template <typename K, typename V> V *MapNode<K, V>::RetrieveVal() const {
    return valStorage->GetMemoryBlock();
}
template <typename K, typename V> unsigned long MapNode<K, V>::GetSizeOfKeyData() const {
    return keySize;
}
template <typename K, typename V> unsigned long MapNode<K, V>::GetSizeOfValData() const {
    return valSize;
}

template <typename K, typename V>
void MapNode<K, V>::BuildMapNodeData(K *key, V *value, int scheme, int caseMode, MapNode *next,
                                     MapNode *previous, unsigned long keyLength,
                                     unsigned long valLength) {
    keyLength = keyLength && key ? keyLength : keyBase.GetSizeOfData(key, nullptr);
    valLength = valLength && value ? valLength : valBase.GetSizeOfData(value, nullptr);
    {
        ScopedLock const held(syncLock);
        auto freshKey = StoreData<K>(keyBase, key, scheme, keyLength);
        auto freshVal = StoreData<V>(valBase, value, scheme, valLength);
        delete keyStorage;
        delete valStorage;
        keyStorage = freshKey.release();
        valStorage = freshVal.release();
    }
    nodeCase = valBase.IsCaseType() ? caseMode : 1;
    nodeScheme = scheme == 0 ? 0 : 1;
    keySize = keyLength;
    valSize = valLength;
    nextNode = next;
    prevNode = previous;
}

template <typename K, typename V> void MapNode<K, V>::ResetKeyDataSize(K *key, unsigned long size) {
    keySize = size ? size : keyBase.GetSizeOfData(key ? key : RetrieveKey(), nullptr);
}

template <typename K, typename V>
void MapNode<K, V>::ResetValDataSize(V *value, unsigned long size) {
    valSize = size ? size : valBase.GetSizeOfData(value ? value : RetrieveVal(), nullptr);
}

template <typename K, typename V>
void MapNode<K, V>::datakeycopy(K const *data, unsigned long size) {
    keyStorage->CopyMem(data, size);
    NullTerminateKey();
}

template <typename K, typename V>
void MapNode<K, V>::datavalcopy(V const *data, unsigned long size) {
    valStorage->CopyMem(data, size);
    NullTerminateVal();
}

// A recorded size may be larger than what is held.
template <typename K, typename V> void MapNode<K, V>::NullTerminateKey() {
    if (keySize < keyStorage->GetLength()) {
        keyBase.NullTerminate(RetrieveKey() + keySize);
    }
}

template <typename K, typename V> void MapNode<K, V>::NullTerminateVal() {
    if (valSize < valStorage->GetLength()) {
        valBase.NullTerminate(RetrieveVal() + valSize);
    }
}

// Only nodes of strings are copied, replaced and stepped over.
#define QVLINKDB_PLAIN_NODE(T)                                                                     \
    template <> Node<T>::Node(Node const &) = delete;                                              \
    template <> Node<T> &Node<T>::operator=(Node const &) = delete;                                \
    template <> void Node<T>::CopyData(Node const &) = delete
QVLINKDB_PLAIN_NODE(char);
QVLINKDB_PLAIN_NODE(unsigned char);
#undef QVLINKDB_PLAIN_NODE

extern template class Node<char>;
extern template class Node<unsigned char>;
extern template class MapNode<int, char>;
extern template class MapNode<int, unsigned char>;

} // namespace UTILS
