// Has a stored list loaded, and tells its lines.
#pragma once

#include "list_resource.h"
#include "told_lists.h"

#include <gtest/gtest.h>

using Lines = std::vector<std::string>;

constexpr char listType[] = "WIN_FILES";
constexpr WORD listId = 101;
constexpr std::uint32_t tooLong = MaxListText + 1; // of a text

inline Lines &LinesSeen() {
    static Lines lines;
    return lines;
}

// As the loader's callback it writes to the line: that is its own until it returns.
inline void SeeLine(char *line, unsigned long length) {
    EXPECT_EQ(std::strlen(line), length);
    LinesSeen().emplace_back(line, length);
    std::memset(line, '#', length);
}

// What is told already is loaded.
inline Lines LinesTold() {
    LinesSeen().clear();
    LoadListResource(listId, listType, SeeLine);
    return LinesSeen();
}

inline Lines LinesOfStored(std::string const &stored) {
    ToldLists told;
    told.Tell(listType, listId, stored);
    return LinesTold();
}

inline Lines LinesOf(std::string const &text) { return LinesOfStored(lists::Pack(text)); }
