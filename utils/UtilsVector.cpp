#include "UtilsVector.h"

namespace UTILS {

template class MemObject<char>;
template class MemObject<unsigned char>;
template class UtilsAllocator<MemObject<char>>;
template class UtilsAllocator<MemObject<unsigned char>>;
template class Utils<char, int>;
template class Utils<unsigned char, int>;

} // namespace UTILS
