// The containers, in a source that is compiled without optimisation: nothing that they need
// may be missing from the library because a compiler would put it in line.
#include "containers.h"

#include <QVLinkDB.h>

#include <cstring>
#include <new>
#include <stdexcept>

namespace {

using namespace UTILS;

struct Word {
    int value = 0;
    int Compare(Word const &other) const { return value - other.value; }
};

bool BlocksHold() {
    UtilsAllocator<char> block(3);
    block[0] = 'x';
    UtilsAllocator<int> matrix(2, 2);
    bool refused = false;
    try {
        block.urealloc(0);
    } catch (std::bad_alloc const &fault) {
        refused = std::strstr(fault.what(), "Command Line Parameter Is Incorrect") != nullptr;
    }
    return refused && block.GetMemoryBlock()[0] == 'x' && block.ugetmem() &&
           block.GetLength() == 3 && block.AllocationScheme() == 1 && matrix.GetHeight() == 2;
}

bool RunsHold() {
    MemObject<char> text;
    text.Append("abc");
    text.Insert("xx", 1, 0);
    UtilsBase<char> const &base = text;
    char const *const run = text;
    char const sought[] = "BC";
    unsigned long index = 0;
    return std::strcmp(text.Retrieve(), "axxbc") == 0 && text.RetrieveSize() == 5 &&
           text.isupper('A') && text.utolower('A') == 'a' && base.GetCharSize() == 1 &&
           base.IsTypeSafeForCase() && !base.iswlower('a') &&
           text.search(sought, sought + 2, run, run + 5, index, 0, 0, nullptr) && index == 3;
}

bool ListsHold() {
    char data[] = "one";
    int key = 1;
    ListObject<char> list;
    list.AddToTail(data, 0);
    MapObject<int, char> map;
    map.AddToTail(&key, data, 0, 0);
    Node<char> const node(data, 1, 1, nullptr, nullptr, 0);
    MapNode<int, char> const pair(&key, data, 1, 1, nullptr, nullptr, 0, 0);
    return !list.IsEmpty() && !map.IsEmpty() && node == "one" && node.GetSizeOfData() == 3 &&
           *pair.RetrieveKey() == 1 && pair.GetSizeOfValData() == 3 && pair.isupper('A');
}

bool OwnElementsHold() {
    ListObject<Word> words;
    for (Word word : {Word{3}, Word{1}, Word{2}})
        words.AddToTail(&word, 1);
    words.Sort(0);
    Word const sought{2};
    bool outside = false;
    try {
        words.Retrieve(3);
    } catch (std::out_of_range const &) {
        outside = true;
    }
    return outside && words.SearchList(&sought, 1, 0, 1) == 1;
}

bool BundlesHold() {
    Utils<char, int> bundle;
    bundle.BuildVector(2, "x", 0);
    bundle.AddVector("last", 0);
    CCriticalSection lock;
    return lock.Lock() == 1 && lock.UnLock() == 1 && bundle.RetrieveVectorSize(2) == 4 &&
           std::strcmp(bundle.derived_class(), "class UTILS::Utils<char, int>") == 0;
}

} // namespace

bool ContainersHold() {
    return BlocksHold() && RunsHold() && ListsHold() && OwnElementsHold() && BundlesHold() &&
           g_NTAdminObject.GetOS() != OS_UNKNOWN;
}
