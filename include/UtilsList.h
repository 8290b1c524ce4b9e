// The lists of the family: Node<T> and MapNode<K, V> hold the data, ListObject<T> and
// MapObject<K, V> chain them.
//
// Ownership (the allocation scheme): with scheme 1 nodes copy their data and own the copy;
// with 0 they borrow the caller's pointer, and the caller keeps the data alive. A size of 0
// is measured: up to the terminator for char, one element otherwise. Null data is held as
// null and sorts before all else.
//
// Faults: std::out_of_range for a bad index, std::bad_alloc from the allocators.
//
// Locking: the locks are held only while a node is made or freed. Links and fields change
// outside them, so that one list is for one thread at a time.
#pragma once

#include <list>

#include "UtilsBase.h"

namespace UTILS {

template <typename T> class ListObject;
template <typename K, typename V> class MapObject;

// Case hooks that know the letters of ASCII; the conversions test nothing.
namespace letters {
constexpr int IsUpper(char value) { return value >= 65 && value <= 90; }
constexpr int IsLower(char value) { return value >= 97 && value <= 122; }
constexpr char ToUpper(char value) { return static_cast<char>(value - 32); }
constexpr char ToLower(char value) { return static_cast<char>(value + 32); }
QVLINKDB_API int IsUpper(unsigned short value);
QVLINKDB_API int IsLower(unsigned short value);
constexpr unsigned short ToUpper(unsigned short value) {
    return static_cast<unsigned short>(value - 32);
}
constexpr unsigned short ToLower(unsigned short value) {
    return static_cast<unsigned short>(value + 32);
}
} // namespace letters

// A run of T with two links: the element of ListObject<T>. A copy (for lists of strings)
// has its own copy of owned data, and borrows what is borrowed.
template <typename T> class QVLINKDB_TEMPLATE Node : public virtual UtilsBase<T> {
public:
    // See BuildNodeData.
    Node(T *data, int scheme, int caseMode, Node *next, Node *previous, unsigned long size);
    Node(Node const &other);
    Node &operator=(Node const &other);

    using UtilsBase<T>::isupper;
    using UtilsBase<T>::islower;
    using UtilsBase<T>::utoupper;
    using UtilsBase<T>::utolower;
    // For char some of these override the hooks, for others none does: none says so.
    // NOLINTBEGIN(modernize-use-override)
    virtual int isupper(unsigned short const &value) const;
    virtual int isupper(char const &value) const;
    virtual int islower(unsigned short const &value) const;
    virtual int islower(char const &value) const;
    virtual unsigned short utoupper(unsigned short const &value) const;
    virtual char utoupper(char const &value) const;
    virtual unsigned short utolower(unsigned short const &value) const;
    virtual char utolower(char const &value) const;
    virtual const char *derived_class() const;
    virtual ~Node();
    // NOLINTEND(modernize-use-override)

    // Takes the data: with `scheme` 0 the pointer, else a copy with its terminator.
    void BuildNodeData(T *data, int scheme, int caseMode, Node *next, Node *previous,
                       unsigned long size);
    // The data, borrowed; good until the node's data is replaced.
    T *Retrieve() const;
    using UtilsBase<T>::GetSizeOfData;
    unsigned long GetSizeOfData() const;
    // Overwrites the owned data with at most as many elements as it has room for.
    void datacopy(T const *data, unsigned long size);
    // Replaces the data and its size, as owned or as borrowed as it was.
    void external_datacopy(T const *data, unsigned long size);
    Node *operator++();
    Node *operator++(int);

    // Compare the node's elements with as many of `item`.
    int operator==(T const *item) const;
    int operator<(T const *item) const;
    int operator>(T const *item) const;
    int operator>=(T const *item) const;
    // Compares over the larger of the two sizes; a shorter run is less.
    int operator<(Node const &other) const;

protected:
    using UtilsBase<T>::NullTerminate;
    void NullTerminate();
    void CopyData(Node const &other);

    CCriticalSection syncLock;            // guards the making of `storage`
    int nodeScheme = 0;                   // 1: owns a copy of the data; 0: borrows the caller's
    int nodeCase = 1;                     // 1 exact, 0 blind to case
    unsigned long dataSize = 0;           // elements, without the terminator
    UtilsAllocator<T> *storage = nullptr; // owned
    Node *nextNode = nullptr;
    Node *prevNode = nullptr;

private:
    friend class ListObject<T>;

    // Sign of node - item, where `item` has `itemSize` elements.
    int Compare(T const *item, unsigned long itemSize) const;
    // Sign of this - other over `count` elements; where one run ends it is less.
    int CompareData(Node const &other, unsigned long count) const;
    void ExchangeData(Node &other);
    UtilsAllocator<T> *NewStorage(T *data, int scheme, unsigned long size);
};

// A pair of runs, key and value, with two links: the element of MapObject<K, V>.
template <typename K, typename V> class QVLINKDB_TEMPLATE MapNode {
public:
    // See BuildMapNodeData.
    MapNode(K *key, V *value, int scheme, int caseMode, MapNode *next, MapNode *previous,
            unsigned long keyLength, unsigned long valLength);
    MapNode(MapNode const &) = delete;
    MapNode &operator=(MapNode const &) = delete;

    virtual int isupper(unsigned short const &value) const;
    virtual int isupper(char const &value) const;
    virtual int islower(unsigned short const &value) const;
    virtual int islower(char const &value) const;
    virtual unsigned short utoupper(unsigned short const &value) const;
    virtual char utoupper(char const &value) const;
    virtual unsigned short utolower(unsigned short const &value) const;
    virtual char utolower(char const &value) const;
    virtual const char *derived_class() const;
    virtual ~MapNode();

    // Takes key and value: with `scheme` 0 the pointers, else copies with their terminators.
    void BuildMapNodeData(K *key, V *value, int scheme, int caseMode, MapNode *next,
                          MapNode *previous, unsigned long keyLength, unsigned long valLength);
    // The data, borrowed.
    K *RetrieveKey() const;
    V *RetrieveVal() const;
    unsigned long GetSizeOfKeyData() const;
    unsigned long GetSizeOfValData() const;
    // Record a size. 0 measures the data given, or where that is null the data held.
    void ResetKeyDataSize(K *key, unsigned long size);
    void ResetValDataSize(V *value, unsigned long size);
    // Overwrite owned data with at most as many elements as it has room for.
    void datakeycopy(K const *data, unsigned long size);
    void datavalcopy(V const *data, unsigned long size);

protected:
    void NullTerminateKey();
    void NullTerminateVal();

    CCriticalSection syncLock;
    UtilsBase<V> valBase;
    UtilsBase<K> keyBase;
    int nodeCase = 1;
    int nodeScheme = 0;
    unsigned long keySize = 0;
    unsigned long valSize = 0;
    UtilsAllocator<V> *valStorage = nullptr; // owned
    UtilsAllocator<K> *keyStorage = nullptr; // owned
    MapNode *nextNode = nullptr;
    MapNode *prevNode = nullptr;

private:
    friend class MapObject<K, V>;
};

// A doubly linked list with an anchor near the middle, which bounds a Smart walk on a long
// list to about a quarter of it, and a flag by which a sorted list is searched by bisection.
// Retrieval, searches and sorts are for lists of strings; others have what is marked "all".
//
// The anchor is the node at index size / 2 after additions at the ends, insertions and
// Smart removals. Removal from the head moves it by the other parity: it may stand one node
// off afterwards, and further with each removal that additions make up for, and Smart walks
// from it with it. It never leaves the list.
template <typename T> class QVLINKDB_TEMPLATE ListObject : public virtual UtilsBase<T> {
public:
    // An empty list, for all.
    ListObject(int scheme = 1, int caseSetting = 1);
    ListObject(ListObject const &) = delete;

    const char *derived_class() const override;
    ~ListObject() override;

    // All: copies the data of the other list's nodes, and whether it is sorted; no settings.
    ListObject &operator=(ListObject const &other);
    // All: the same behind what is there.
    void CopyList(ListObject const &other);
    // Add each element at the head, and so in reverse; the assignment clears the list first.
    ListObject &operator=(std::list<T> &other);
    void CopyList(std::list<T> &other);

    // Add a node; the result is 1. AddToTail is for all.
    int AddToHead(T *data, unsigned long size);
    int AddToTail(T *data, unsigned long size);
    // Adds a node in its order; a list that isn't sorted yet is sorted first. The result is 1.
    int SortedInsert(T *data, unsigned long size);

    // All: an empty list is left alone.
    void RemoveFromHead();
    void RemoveAll();
    int IsEmpty() const;
    // All: forgets the nodes without freeing them.
    void SetToNull();
    unsigned long ListSize() const;
    void SetListAllocationScheme(int scheme);
    // 1: indexes count from the head; otherwise from the tail.
    void SetSearchDirection(int direction);

    // The data or node at an index, counted in `direction`, by default that of the list.
    // Borrowed. An index from the size on is out of range. The plain ones walk from the end
    // where counting starts.
    T *Retrieve(unsigned long index) const;
    T *RetrieveItem(unsigned long index, int direction) const;
    Node<T> *RetrieveNode(unsigned long index) const;
    Node<T> *RetrieveNodeItem(unsigned long index, int direction) const;
    // These walk from the nearest of both ends and the anchor. Counted from the tail, a list
    // of even length answers from its middle half with the node two before the one asked for,
    // but for the index that is half the size.
    T *SmartRetrieve(unsigned long index) const;
    T *SmartRetrieveItem(unsigned long index, int direction) const;
    // Remove the node that the Smart retrieval finds.
    void SmartRemoveFromIndice(unsigned long index);
    void SmartRemoveFromIndiceItem(unsigned long index, int direction);

    // Index of a node that matches `item`, or NOT_FOUND_INDEX. `method` 0 looks at node after
    // node, 1 sorts the list and bisects; others find nothing. With `matchStyle` a node that
    // holds the item matches. `occurrence` counts from 0; looking at node after node for equal
    // ones it has no effect. Bisection throws std::out_of_range for an occurrence behind the end.
    unsigned long SearchList(T const *item, int method, unsigned long occurrence,
                             unsigned long itemSize);
    // Exchanges the data of nodes until they are in order: 0 picks by size, 1 selection,
    // 2 shell, 3 and 4 quick sorts; any other only marks the list as sorted. A list that is
    // marked is left alone. None is stable. The shell sort doesn't order every list.
    void Sort(unsigned int algorithm);

protected:
    CCriticalSection syncLock;    // guards the making and freeing of nodes
    unsigned long listSize;       // nodes
    unsigned long smartThreshold; // up to this size Smart walks start from the ends only
    int listAllocationScheme;     // 1: nodes copy their data; 0: they borrow it
    int isSorted;                 // 1 after Sort
    int searchDirection;          // 1: indexes count from the head; otherwise from the tail
    int matchStyle;               // non-zero: containment is a match in searches
    int caseMode;                 // passed to each node and to search
    Node<T> *listHead;
    Node<T> *listTail;
    Node<T> *listMiddle; // the anchor

private:
    static constexpr const char *SOURCE = "UtilsList";

    void Init(int scheme, int caseSetting);
    Node<T> *NewNode(T *data, Node<T> *next, Node<T> *previous, unsigned long size);
    void DeleteNode(Node<T> *node);
    Node<T> *Walk(Node<T> *from, unsigned long steps, bool forward) const;
    void MoveAnchor(bool forward);
    int InsertData(Node<T> *at, unsigned long index, T *data, unsigned long size);
    unsigned long DistanceFromHead(Node<T> const *node) const;
    Node<T> *SmartNode(unsigned long index, bool forward) const;
    void Unlink(Node<T> *victim);

    int linear_search(T const *item, Node<T> *first, Node<T> *last, unsigned long &index,
                      unsigned long occurrence, unsigned long itemSize) const;
    int bin_search(T const *item, Node<T> *first, Node<T> *last, unsigned long &index,
                   unsigned long count, unsigned long itemSize) const;
    Node<T> *bin_search_node(T const *item, Node<T> *first, Node<T> *last, Node<T> *middle,
                             unsigned long &index, unsigned long count, unsigned long itemSize,
                             int forInsert) const;
    bool Matches(Node<T> const *node, T const *item, unsigned long itemSize) const;
    bool CompareEqual(Node<T> const *node, T const *item, unsigned long itemSize) const;

    void swapnode(Node<T> *a, Node<T> *b);
    unsigned long calculate_shell_sort_increment() const;
    void class_specific_selectionsort(Node<T> *first, Node<T> *last);
    void class_specific_shellsort(Node<T> *first, Node<T> *last, unsigned long increment);
    void class_specific_qsort(Node<T> *first, Node<T> *last);
    void class_specific_fast_qsort(Node<T> *first, Node<T> *last, unsigned long firstPosition,
                                   unsigned long lastPosition);
    void ShellPass(Node<T> *first, Node<T> *last, unsigned long increment);
    Node<T> *Partition(Node<T> *first, Node<T> *last, unsigned long &iPosition,
                       unsigned long jPosition);
};

// A doubly linked list of pairs in the order of their addition. There is no lookup and no
// uniqueness: it is filled, copied and emptied.
template <typename K, typename V> class QVLINKDB_TEMPLATE MapObject {
public:
    MapObject(int scheme = 1, int caseSetting = 1);
    MapObject(MapObject const &) = delete;

    virtual const char *derived_class() const;
    virtual ~MapObject();

    // Copies pairs and settings, the scheme among them; no effect on itself.
    MapObject &operator=(MapObject const &other);
    // Adds a pair; the result is 1.
    int AddToTail(K *key, V *value, unsigned long keySize, unsigned long valueSize);
    // An empty map is left alone.
    void RemoveFromHead();
    void RemoveAll();
    int IsEmpty() const;
    // Forgets the nodes without freeing them.
    void SetToNull();

protected:
    void CopyMap(MapObject const &other);

    CCriticalSection syncLock; // guards the making and freeing of nodes
    UtilsBase<V> valBase;
    UtilsBase<K> keyBase;
    unsigned long listSize;
    unsigned long smartThreshold;
    int listAllocationScheme; // 1: nodes copy key and value; 0: they borrow the pointers
    int searchDirection;
    unsigned long reserved[3];
    int caseMode; // given to each node
    int flag;
    MapNode<K, V> *listHead;
    MapNode<K, V> *listTail;
    MapNode<K, V> *listMiddle;

private:
    void Init(int scheme, int caseSetting);
    void DeleteNode(MapNode<K, V> *node);
};

} // namespace UTILS

#include "templates/ListObject.h"
#include "templates/MapObject.h"
#include "templates/Node.h"
