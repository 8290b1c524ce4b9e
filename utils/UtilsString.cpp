#include "UtilsString.h"

#include <cstdio>
#include <utility>

namespace UTILS {

UtilsString::UtilsString() : UtilsString(1UL) {}

UtilsString::UtilsString(unsigned long count) {
    Init();
    stringCount = count ? count : 1;
    BuildVector(stringCount, nullptr, 0);
}

UtilsString::UtilsString(char const *text, unsigned long count) {
    Init();
    stringCount = count ? count : 1;
    BuildVector(stringCount, text, 0);
}

UtilsString::UtilsString(std::string const &text, unsigned long count) {
    Init();
    stringCount = count ? count : 1;
    BuildVector(stringCount, text.data(), static_cast<unsigned long>(text.size()));
}

UtilsString::UtilsString(MemObject<char> const &text, unsigned long count) : UtilsString(count) {
    Append(text);
}

UtilsString::UtilsString(unsigned short const *text, unsigned long count) : UtilsString(count) {
    ConvertFromWideChar(text, 0);
}

UtilsString::UtilsString(WideString const &text, unsigned long count)
    : UtilsString(text.c_str(), count) {}

UtilsString::UtilsString(UtilsString const &other)
    // NOLINTNEXTLINE(readability-redundant-member-init): the compiler wants it told
    : UtilsBase<char>(), Utils<char, int>(other) {
    CopyData(other);
}

UtilsString &UtilsString::operator=(UtilsString const &other) {
    if (this != &other) {
        VectorCopy(other);
        CopyData(other);
    }
    return *this;
}

UtilsString::~UtilsString() = default;

const char *UtilsString::derived_class() const { return ClassName(typeid(*this)); }

void UtilsString::Init() {
    findIndex = 0;
    parseIndex = 0;
    fastParseFound = 0;
    fastParseStart = 0;
    lastReplaceIndex = 0;
    stringCount = 1;
    currentString = 0;
    matchStyle = 0;
    caseMode = 1;
}

void UtilsString::CopyData(UtilsString const &other) {
    findIndex = other.findIndex;
    parseIndex = other.parseIndex;
    fastParseFound = other.fastParseFound;
    fastParseStart = other.fastParseStart;
    lastReplaceIndex = other.lastReplaceIndex;
    stringCount = other.stringCount;
    currentString = other.currentString;
    matchStyle = other.matchStyle;
    caseMode = other.caseMode;
}

// The strings of the object

// Added, put in and over, a text is measured: it ends where its first NUL is.
UtilsString &UtilsString::AddString(TextOperand const &text) {
    AddVector(text.Begin(), 0);
    ++stringCount;
    return *this;
}

void UtilsString::CheckIndex(unsigned long index) const {
    if (index > stringCount - 1) {
        ThrowOutOfRange(index, stringCount, SOURCE, __LINE__);
    }
}

void UtilsString::SetCurrentString(unsigned long index) {
    CheckIndex(index);
    currentString = index;
}

UtilsString &UtilsString::Select(unsigned long index) {
    SetCurrentString(index);
    return *this;
}

UtilsString &UtilsString::operator[](unsigned long index) { return Select(index); }

// An index that is the count gets by here, and is the vector's to refuse.
char *UtilsString::GetStringNumber(unsigned long index) const {
    if (index > stringCount) {
        ThrowOutOfRange(index, stringCount, SOURCE, __LINE__);
    }
    return RetrieveVectorItem(index).Retrieve();
}

void UtilsString::RemoveString(unsigned long index) {
    CheckIndex(index);
    RemoveVectorItem(index);
    --stringCount;
    if (currentString > index || currentString >= stringCount) {
        --currentString;
    }
}

void UtilsString::RemoveString() {
    RemoveVectorItem(currentString);
    --stringCount;
    if (currentString >= stringCount) {
        --currentString;
    }
}

// One empty string is left.
void UtilsString::RemoveAllStrings() {
    BuildVector(1, nullptr, 0);
    stringCount = 1;
}

// The selected string

UtilsString &UtilsString::operator--() {
    TruncateString(1);
    return *this;
}

UtilsString &UtilsString::operator--(int) { return --*this; }

void UtilsString::Insert(TextOperand const &text, unsigned long position) {
    Current().Insert(text.Begin(), position, 0, 0);
}

void UtilsString::Replace(TextOperand const &text, unsigned long position) {
    Current().Insert(text.Begin(), position, 1, 0);
}

void UtilsString::Reverse() { reverse(Retrieve(), Retrieve() + size()); }

void UtilsString::Sort() { selection_sort(Retrieve(), Retrieve() + size()); }

// Assignment

void UtilsString::Assign(TextOperand text) {
    text.KeepFrom(Current());
    Current().Empty();
    Append(text);
}

// Made apart and then exchanged: an item may be text of this object.
template <typename Texts> void UtilsString::AssignAll(Texts const &texts) {
    UtilsString fresh;
    bool first = true;
    for (auto const &text : texts) {
        if (first) {
            fresh.Assign(text);
        } else {
            fresh.AddString(text);
        }
        first = false;
    }
    std::swap(vectorStore, fresh.vectorStore);
    stringCount = fresh.stringCount;
    currentString = 0;
    findIndex = parseIndex = fastParseFound = fastParseStart = lastReplaceIndex = 0;
}

UtilsString &UtilsString::operator=(std::vector<char *> const &texts) {
    AssignAll(texts);
    return *this;
}

UtilsString &UtilsString::operator=(std::vector<std::string> const &texts) {
    AssignAll(texts);
    return *this;
}

UtilsString &UtilsString::operator=(std::vector<WideString> const &texts) {
    AssignAll(texts);
    return *this;
}

UtilsString &UtilsString::operator=(std::vector<UtilsString> const &texts) {
    AssignAll(texts);
    return *this;
}

// Appending

UtilsString &UtilsString::Append(TextOperand const &text) {
    Current().Append(text.Begin(), text.Size());
    return *this;
}

UtilsString &UtilsString::Append(char value) {
    char const text[2] = {value, '\0'};
    return Append(TextOperand(text));
}

UtilsString &UtilsString::Append(int value) {
    char text[25];
    std::snprintf(text, sizeof text, "%ld", static_cast<long>(value));
    return Append(TextOperand(text));
}

UtilsString &UtilsString::Append(unsigned long value) {
    char text[25];
    std::snprintf(text, sizeof text, "%lu", value);
    return Append(TextOperand(text));
}

UtilsString &UtilsString::Append(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.15g", value);
    return Append(TextOperand(text));
}

// Comparison

int UtilsString::Compare(TextOperand const &other) const {
    return compare(Retrieve(), other.Begin(), caseMode, matchStyle, size(), other.Size());
}

int UtilsString::FriendCompare(TextOperand const &other) const {
    return compare(other.Begin(), Retrieve(), caseMode, matchStyle, other.Size(), size());
}

// Scrambling

void UtilsString::Scramble(unsigned char const *key, unsigned long keyLength) {
    char *const text = Retrieve();
    for (unsigned long i = 0; i < size(); ++i) {
        text[i] = static_cast<char>(static_cast<unsigned char>(text[i]) ^ key[i % keyLength]);
    }
}

void UtilsString::XORString(unsigned char key) { Scramble(&key, 1); }

// An empty key is a division by zero, and that stays.
void UtilsString::EncryptString(UtilsString const &key) {
    Scramble(static_cast<unsigned char const *>(key), key.size());
}

template class UtilsAllocator<UtilsString>;
template class UtilsBase<UtilsString>;
template class MemObject<UtilsString>;
template class Node<UtilsString>;
template class ListObject<UtilsString>;
template class MapNode<int, UtilsString>;
template class MapObject<int, UtilsString>;
template class UtilsAllocator<MemObject<UtilsString>>;
template class UtilsAllocator<ListObject<UtilsString>>;
template class UtilsAllocator<MapObject<int, UtilsString>>;
template class Utils<UtilsString, int>;

} // namespace UTILS
