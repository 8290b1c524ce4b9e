#include "UtilsList.h"

#include "platform/winapi.h"

namespace UTILS {

// What the system's classification of wide characters calls upper and lower.
int letters::IsUpper(unsigned short value) { return win::iswctype(value, 1); }

int letters::IsLower(unsigned short value) { return win::iswctype(value, 2); }

template class Node<char>;
template class Node<unsigned char>;
template class ListObject<char>;
template class ListObject<unsigned char>;
template class MapNode<int, char>;
template class MapNode<int, unsigned char>;
template class MapObject<int, char>;
template class MapObject<int, unsigned char>;
template class UtilsAllocator<ListObject<char>>;
template class UtilsAllocator<ListObject<unsigned char>>;
template class UtilsAllocator<MapObject<int, char>>;
template class UtilsAllocator<MapObject<int, unsigned char>>;

} // namespace UTILS
