#include "sort_model.h"

#include <algorithm>
#include <utility>

Numbers SelectionSorted(Numbers numbers) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
        for (std::size_t j = i + 1; j < numbers.size(); ++j)
            if (numbers[j].key < numbers[i].key)
                std::swap(numbers[i], numbers[j]);
    return numbers;
}

namespace {

void QuickSort(Numbers &numbers, std::size_t first, std::size_t last) {
    if (first == last)
        return;
    int const pivot = numbers[last].key;
    std::size_t i = first;
    std::size_t j = last;
    for (;;) {
        while (i != last && numbers[i].key < pivot)
            ++i;
        while (j != first && numbers[j].key >= pivot)
            --j;
        if (j <= i)
            break;
        std::swap(numbers[i], numbers[j]);
    }
    if (i != last)
        std::swap(numbers[i], numbers[last]);
    if (i != first)
        QuickSort(numbers, first, i - 1);
    if (i != last)
        QuickSort(numbers, i + 1, last);
}

long FirstIncrement(long size) {
    if (size < 14)
        return 1;
    long h = 1;
    while (h < size)
        h = 3 * h + 1;
    return h / 3;
}

Number &At(Numbers &numbers, long index) { return numbers.at(static_cast<std::size_t>(index)); }

// One pass; `start` and `below` are kept from one number to the next.
void ShellPass(Numbers &numbers, long increment) {
    long const size = static_cast<long>(numbers.size());
    long start = 0;
    long below = -increment;
    for (long current = increment; current < size; ++current, ++start, ++below) {
        Number const data = At(numbers, current);
        long j = start;
        long k = below;
        while (j >= increment && At(numbers, k).key > data.key) {
            std::swap(At(numbers, j), At(numbers, k));
            if (j <= increment)
                break;
            j -= increment;
            k -= increment;
            if (j < increment)
                break;
        }
        std::swap(At(numbers, j), At(numbers, current));
    }
}

} // namespace

Numbers QuickSorted(Numbers numbers) {
    if (!numbers.empty())
        QuickSort(numbers, 0, numbers.size() - 1);
    return numbers;
}

Numbers ShellSorted(Numbers numbers) {
    if (numbers.size() < 2)
        return numbers;
    for (long increment = FirstIncrement(static_cast<long>(numbers.size())); increment >= 1;
         increment /= 3)
        ShellPass(numbers, increment);
    std::rotate(numbers.begin(), numbers.end() - 1, numbers.end());
    return numbers;
}
