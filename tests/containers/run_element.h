// An element of class type for containers: it holds a text and compares itself.
#pragma once

#include <memory>
#include <string>
#include <utility>

struct Element {
    Element() { ++Alive(); }
    Element(std::string content) : text(std::move(content)) { ++Alive(); }
    Element(Element const &other) : text(other.text) { ++Alive(); }
    Element &operator=(Element const &other) {
        if (this == &other)
            ++SelfAssignments();
        // Asks for memory here, where it can be made to fail: strings may ask within a library.
        std::make_unique<std::string>(other.text)->swap(text);
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
