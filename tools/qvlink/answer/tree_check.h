// A check of the trees that the parent links of linkdb.dat make.
#pragma once

#include "answer/file_image.h"

namespace qvlink {

// Every file and key comes up to a root, once, within the depth that paths may have;
// brothers have different names, and so have drives, hives and bare names.
void CheckTree(FileImage const &image, FileCheck &check);

} // namespace qvlink
