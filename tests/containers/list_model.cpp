#include "list_model.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int SMART_THRESHOLD = 50;

bool IsLess(Number const &a, Number const &b) { return a.key < b.key; }

} // namespace

bool ListModel::IsOrdered() const { return std::is_sorted(numbers.begin(), numbers.end(), IsLess); }

// An end is where every walk stops.
int ListModel::Stopped(int index) const { return std::clamp(index, 0, Size() - 1); }

void ListModel::MoveAnchor(int steps) { anchor = Stopped(anchor + steps); }

void ListModel::AddToHead(Number const &number) {
    bool const even = Size() % 2 == 0;
    numbers.insert(numbers.begin(), number);
    ++anchor; // the same node, or the first one
    if (Size() > 1 && even)
        MoveAnchor(-1);
    sorted = false;
}

void ListModel::AddToTail(Number const &number) {
    bool const odd = Size() % 2 == 1;
    numbers.push_back(number);
    if (Size() == 1)
        anchor = 0;
    else if (odd)
        MoveAnchor(1);
    sorted = false;
}

void ListModel::Insert(int place, Number const &number) {
    int const size = Size();
    numbers.insert(numbers.begin() + place, number);
    if (anchor >= place)
        ++anchor;
    if (place > size / 2) {
        if (size % 2 == 1)
            MoveAnchor(1);
    } else if (size % 2 == 0) {
        MoveAnchor(-1);
    }
}

void ListModel::SortedInsert(Number const &number) {
    if (numbers.empty()) {
        AddToHead(number);
        return;
    }
    Sort(0);
    if (number.key < numbers.front().key)
        AddToHead(number);
    else if (numbers.back().key < number.key)
        AddToTail(number);
    else
        Insert(static_cast<int>(std::lower_bound(numbers.begin(), numbers.end(), number, IsLess) -
                                numbers.begin()),
               number);
    sorted = true;
}

void ListModel::RemoveFromHead() {
    if (numbers.empty())
        return;
    if (Size() % 2 == 0)
        MoveAnchor(1);
    numbers.erase(numbers.begin());
    // One that stood on the node removed is on the next now.
    anchor = numbers.empty() ? -1 : std::max(anchor - 1, 0);
}

int ListModel::SmartIndex(int index, bool forward) const {
    int const size = Size();
    int const direct = forward ? index : size - 1 - index;
    if (size <= SMART_THRESHOLD || index <= size / 4 || index >= (3 * size) >> 2)
        return direct;
    int const half = size / 2;
    if (forward)
        return Stopped(anchor + (index - half));
    int const steps = std::abs(half + (size % 2 == 0 ? 1 : 0) - index);
    return Stopped(index < half ? anchor + steps : anchor - steps);
}

void ListModel::SmartRemove(int index, bool forward) {
    int const victim = SmartIndex(index, forward);
    int const half = Size() / 2;
    if (Size() > 1) {
        int const told = Size() % 2 == 0 ? -1 : 1;
        bool const moves = told < 0 ? (forward ? index >= half : index <= half - 1)
                                    : (forward ? index <= half : index >= half);
        if (moves)
            MoveAnchor(told);
        if (anchor == victim)
            MoveAnchor(told);
        if (anchor == victim)
            MoveAnchor(-told);
    }
    numbers.erase(numbers.begin() + victim);
    if (numbers.empty())
        anchor = -1;
    else if (anchor > victim)
        --anchor;
}

void ListModel::Sort(unsigned algorithm) {
    if (sorted || numbers.empty())
        return;
    if (algorithm == 0)
        algorithm = Size() <= 512 ? 1 : Size() <= 1024 ? 3 : 4;
    if (algorithm == 1) {
        numbers = SelectionSorted(numbers);
    } else if (algorithm == 2) {
        numbers = ShellSorted(numbers);
        if (Size() > 1)
            anchor = anchor == Size() - 1 ? 0 : anchor + 1; // the last node is the head now
    } else if (algorithm == 3 || algorithm == 4) {
        numbers = QuickSorted(numbers);
    }
    sorted = true;
}

void ListModel::Append(ListModel const &other) {
    bool const otherSorted = other.sorted;
    Numbers const added = other.numbers;
    for (Number const &number : added)
        AddToTail(number);
    sorted = otherSorted;
}

int ListModel::Search(int key, bool forward) const {
    for (int i = 0; i < Size(); ++i) {
        int const at = forward ? i : Size() - 1 - i;
        if (numbers[static_cast<std::size_t>(at)].key == key)
            return i;
    }
    return -1;
}

int ListModel::Equals(int key) const {
    return static_cast<int>(std::count_if(numbers.begin(), numbers.end(),
                                          [key](Number const &one) { return one.key == key; }));
}
