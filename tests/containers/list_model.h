// A list as a plain array with the index of its anchor, by the rules told for lists.
#pragma once

#include "sort_model.h"

class ListModel {
public:
    Numbers numbers;
    int anchor = -1; // from the head
    bool sorted = false;

    int Size() const { return static_cast<int>(numbers.size()); }
    bool AnchorIsTrue() const { return numbers.empty() || anchor == Size() / 2; }
    // In order, not only marked so.
    bool IsOrdered() const;

    void AddToHead(Number const &number);
    void AddToTail(Number const &number);
    void SortedInsert(Number const &number);
    void RemoveFromHead();
    // Where a Smart walk ends, as an index from the head.
    int SmartIndex(int index, bool forward) const;
    void SmartRemove(int index, bool forward);
    void Sort(unsigned algorithm);
    void Append(ListModel const &other);

    // Index of the first equal one, counted in the direction, or -1.
    int Search(int key, bool forward) const;
    // How many are equal to it.
    int Equals(int key) const;

private:
    void MoveAnchor(int steps);
    int Stopped(int index) const;
    void Insert(int place, Number const &number);
};
