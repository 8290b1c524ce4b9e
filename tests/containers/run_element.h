// An element of class type for containers: it holds a text and compares itself.
#pragma once

#include <string>
#include <utility>

struct Element {
    Element() { ++Alive(); }
    Element(std::string content) : text(std::move(content)) { ++Alive(); }
    Element(Element const &other) : text(other.text) { ++Alive(); }
    Element &operator=(Element const &other) {
        if (this == &other)
            ++SelfAssignments();
        text = other.text;
        ++Assignments();
        return *this;
    }
    ~Element() { --Alive(); }

    int Compare(Element const &other) const { return text.compare(other.text); }
    bool operator<(Element const &other) const { return text < other.text; }

    static int &Alive() {
        static int count = 0;
        return count;
    }
    static int &Assignments() {
        static int count = 0;
        return count;
    }
    static int &SelfAssignments() {
        static int count = 0;
        return count;
    }

    std::string text;
};
