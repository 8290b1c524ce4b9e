#include "UtilsBase.h"

namespace UTILS {

template class UtilsBase<char>;
template class UtilsBase<unsigned char>;
template class UtilsBase<int>;

} // namespace UTILS
