// Strings and lists of strings with what derived classes see laid open.
#pragma once

#include "UtilsByte.h"
#include "UtilsStringList.h"

#include <string>
#include <vector>

struct OpenString : UTILS::UtilsString {
    using UTILS::UtilsString::UtilsString;
    using UTILS::UtilsString::operator=;
    OpenString(OpenString const &other) : UtilsBase<char>(), UTILS::UtilsString(other) {}

    using UTILS::UtilsString::caseMode;
    using UTILS::UtilsString::currentString;
    using UTILS::UtilsString::fastParseFound;
    using UTILS::UtilsString::fastParseStart;
    using UTILS::UtilsString::findIndex;
    using UTILS::UtilsString::lastReplaceIndex;
    using UTILS::UtilsString::matchStyle;
    using UTILS::UtilsString::parseIndex;
    using UTILS::UtilsString::stringCount;

    std::vector<unsigned long> Cursors() const {
        return {findIndex, parseIndex, fastParseFound, fastParseStart, lastReplaceIndex};
    }
    void SetCursors(unsigned long value) {
        findIndex = parseIndex = fastParseFound = fastParseStart = lastReplaceIndex = value;
    }
};

struct OpenByte : UTILS::UtilsByte {
    using UTILS::UtilsByte::UtilsByte;
    using UTILS::UtilsByte::operator=;

    using UTILS::UtilsByte::caseMode;
    using UTILS::UtilsByte::findIndex;
    using UTILS::UtilsByte::lastReplaceIndex;
    using UTILS::UtilsByte::matchStyle;
    using UTILS::UtilsByte::stringCount;
};

struct OpenStringList : UTILS::UtilsStringList {
    using UTILS::UtilsStringList::UtilsStringList;
    using UTILS::UtilsStringList::operator=;

    using UTILS::UtilsStringList::caseMode;
    using UTILS::UtilsStringList::currentString;
    using UTILS::UtilsStringList::matchStyle;
    using UTILS::UtilsStringList::reserved;
};

// The selected text, with the NULs in it.
inline std::string TextOf(UTILS::UtilsString const &text) { return {text.Retrieve(), text.size()}; }

// All texts, each up to its first NUL.
inline std::vector<std::string> TextsOf(UTILS::UtilsString const &text) {
    std::vector<std::string> texts;
    for (unsigned long i = 0; i < text.GetNumberOfStrings(); ++i)
        texts.emplace_back(text.GetStringNumber(i));
    return texts;
}

inline std::vector<std::string> TextsOf(UTILS::UtilsStringList list) {
    std::vector<std::string> texts;
    for (unsigned long i = 0; i < list.GetNumberOfStrings(); ++i)
        texts.push_back(TextOf(*list.RetrieveString(i)));
    return texts;
}

inline std::string BytesOf(UTILS::UtilsByte const &bytes) {
    return {reinterpret_cast<char const *>(bytes.Retrieve()), bytes.size()};
}

inline unsigned char const *AsData(std::string const &text) {
    return reinterpret_cast<unsigned char const *>(text.data());
}

// Of a literal, with the NULs in it.
template <std::size_t size> unsigned char const *AsData(char const (&text)[size]) {
    return reinterpret_cast<unsigned char const *>(text);
}

inline unsigned long SizeOf(std::string const &text) {
    return static_cast<unsigned long>(text.size());
}

inline UTILS::WideString Wide(std::string const &text) { return {text.begin(), text.end()}; }
