// The sorts of lists on plain arrays, each as it is told.
#pragma once

#include "list_elements.h"

#include <vector>

using Numbers = std::vector<Number>;

Numbers SelectionSorted(Numbers numbers);
Numbers QuickSorted(Numbers numbers);
// With its last step, which takes the last to the front.
Numbers ShellSorted(Numbers numbers);
