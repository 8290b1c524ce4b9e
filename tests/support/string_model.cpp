#include "string_model.h"

using text_model::Hit;
using text_model::Kind;
using text_model::Pieces;

void StringModel::RemoveString(unsigned long index) {
    strings.erase(strings.begin() + static_cast<std::ptrdiff_t>(index));
    if (current > index || current == strings.size())
        --current;
}

void StringModel::RemoveString() {
    strings.erase(strings.begin() + static_cast<std::ptrdiff_t>(current));
    if (current == strings.size())
        --current;
}

void StringModel::AssignAll(std::vector<std::string> const &texts) {
    strings = texts;
    if (strings.empty())
        strings.emplace_back();
    current = findIndex = parseIndex = fastParseFound = fastParseStart = lastReplaceIndex = 0;
}

void StringModel::Scramble(std::string const &key) {
    for (std::size_t i = 0; i < Text().size(); ++i)
        Text()[i] = static_cast<char>(Text()[i] ^ key[i % key.size()]);
}

// Find

Hit StringModel::Search(std::string const &pattern, unsigned long occurrence) const {
    return text_model::Search(Kind::Text, pattern, Text(), caseMode, occurrence);
}

Hit StringModel::FindFirst(std::string const &pattern) {
    findIndex = 0;
    return Search(pattern, findIndex);
}

Hit StringModel::FindNext(std::string const &pattern) {
    ++findIndex;
    return Search(pattern, findIndex);
}

bool StringModel::FindAll(std::string const &pattern) {
    bool const any = FindFirst(pattern).found;
    while (any && FindNext(pattern).found) {
    }
    findIndex = 0;
    return any;
}

// Parse

std::optional<std::string> StringModel::Parse(std::string const &separator, unsigned long piece,
                                              bool keepFront) const {
    Pieces pieces;
    pieces.caseMode = caseMode;
    pieces.keepFront = keepFront;
    return pieces.Parse(Text(), separator, piece);
}

std::optional<std::string> StringModel::ParseFast(std::string const &separator,
                                                  unsigned long piece) {
    if (fastParseStart > Text().size())
        return {};
    Pieces pieces;
    pieces.caseMode = caseMode;
    pieces.foundOffset = &fastParseFound;
    return pieces.Parse(Text().substr(fastParseStart), separator, piece);
}

std::optional<std::string> StringModel::ParseFirstFast(std::string const &separator) {
    fastParseFound = fastParseStart = 0;
    return ParseFast(separator, 0);
}

std::optional<std::string> StringModel::ParseNextFast(std::string const &separator) {
    fastParseStart += fastParseFound + static_cast<unsigned long>(separator.size());
    return ParseFast(separator, 0);
}

// Replace

void StringModel::ReplaceAt(unsigned long index, std::string const &find, std::string const &with) {
    if (find.size() == with.size())
        Text() = text_model::Overwritten(Text(), with, index);
    else
        Text() = text_model::Inserted(
            text_model::Without(Text(), static_cast<unsigned long>(find.size()), index), with,
            index);
    lastReplaceIndex = index;
}

bool StringModel::ReplaceFirst(std::string const &find, std::string const &with) {
    if (find.size() == Text().size()) {
        Text() = with;
        return true;
    }
    Hit const hit = FindFirst(find);
    if (hit.found)
        ReplaceAt(hit.index, find, with);
    return hit.found;
}

bool StringModel::ReplaceNext(std::string const &find, std::string const &with) {
    if (find.size() == Text().size())
        return false;
    Hit const hit = FindFirst(find);
    if (!hit.found || hit.index == lastReplaceIndex)
        return false;
    ReplaceAt(hit.index, find, with);
    return true;
}

std::optional<bool> StringModel::ReplaceAll(std::string const &find, std::string const &with,
                                            int patience) {
    if (!ReplaceFirst(find, with))
        return false;
    while (ReplaceNext(find, with))
        if (--patience < 0)
            return {};
    findIndex = 0;
    return true;
}

// Split

void StringModel::SplitData(std::string const &text, int textCase, std::string const &separator,
                            bool append) {
    Pieces pieces;
    pieces.caseMode = textCase;
    std::size_t const oldCount = strings.size();
    std::size_t slot = 0;
    bool stored = false;
    for (unsigned long number = 0;; ++number) {
        auto const parsed = pieces.Parse(text, separator, number);
        if (!parsed)
            break;
        std::string const piece = text_model::UpToNul(*parsed);
        if (piece.empty())
            continue;
        stored = true;
        if (append || slot >= oldCount) {
            strings.push_back(piece);
        } else {
            strings[slot] = piece;
            current = static_cast<unsigned long>(slot++);
        }
    }
    for (std::size_t left = slot; !append && stored && left < oldCount; ++left)
        RemoveString(static_cast<unsigned long>(slot));
}
