#include "UtilsStringList.h"

namespace UTILS {
namespace {

void GiveSettings(UtilsString &text, UtilsStringList const &list) {
    text.SetCase(list.GetCase());
    text.SetMatchStyle(list.GetMatchStyle());
}

} // namespace

UtilsStringList::UtilsStringList() {
    Init();
    BuildList(1, 1);
}

UtilsStringList::UtilsStringList(UtilsString const &text) : UtilsStringList() {
    if (text.size() != 0) {
        AddString(text);
    }
}

UtilsStringList::UtilsStringList(UtilsStringList const &other)
    // NOLINTNEXTLINE(readability-redundant-member-init): the compiler wants it told
    : UtilsBase<UtilsString>(), Utils<UtilsString, int>(other) {
    CopyData(other);
}

UtilsStringList::~UtilsStringList() = default;

const char *UtilsStringList::derived_class() const { return ClassName(typeid(*this)); }

void UtilsStringList::Init() {
    reserved = 0;
    currentString = 0;
    caseMode = 1;
    matchStyle = 0;
}

void UtilsStringList::CopyData(UtilsStringList const &other) {
    reserved = other.reserved;
    currentString = other.currentString;
    caseMode = other.caseMode;
    matchStyle = other.matchStyle;
}

// Adding and removing

UtilsString UtilsStringList::WithSettings(TextOperand const &text) const {
    UtilsString copy;
    copy.Append(text);
    GiveSettings(copy, *this);
    return copy;
}

void UtilsStringList::AddString(UtilsString const &text) {
    UtilsString copy(text);
    GiveSettings(copy, *this);
    List().AddToHead(&copy, 1);
}

void UtilsStringList::AddStringSorted(UtilsString const &text) {
    UtilsString copy(text);
    GiveSettings(copy, *this);
    List().SortedInsert(&copy, 1);
}

void UtilsStringList::RemoveString() {
    if (currentString >= GetNumberOfStrings()) {
        --currentString;
    }
    List().SmartRemoveFromIndice(currentString);
}

void UtilsStringList::RemoveString(unsigned long index) { Select(index).RemoveString(); }

void UtilsStringList::RemoveAllStrings() { List().RemoveAll(); }

// Settings

template <typename Set> void UtilsStringList::ForEach(Set set) {
    unsigned long const count = GetNumberOfStrings();
    if (count == 0) {
        return;
    }
    for (Node<UtilsString> *node = List().RetrieveNodeItem(0, 1); node; node = ++*node) {
        set(*node->Retrieve());
    }
    currentString = count - 1;
}

void UtilsStringList::SetCase(int setting) {
    caseMode = setting;
    ForEach([setting](UtilsString &text) { text.SetCase(setting); });
}

void UtilsStringList::SetMatchStyle(int style) {
    matchStyle = style;
    ForEach([style](UtilsString &text) { text.SetMatchStyle(style); });
}

// Assignment

UtilsStringList &UtilsStringList::operator=(UtilsString const &text) {
    Item() = text;
    return *this;
}

UtilsStringList &UtilsStringList::operator=(UtilsStringList const &other) {
    if (this != &other) {
        ListCopy(other);
        CopyData(other);
    }
    return *this;
}

// Made apart: an item may be text of this list.
template <typename Texts> void UtilsStringList::AssignAll(Texts const &texts) {
    std::list<UtilsString> fresh;
    for (auto const &text : texts) {
        fresh.emplace_back(text);
    }
    List() = fresh;
}

UtilsStringList &UtilsStringList::operator=(std::list<char *> const &texts) {
    AssignAll(texts);
    return *this;
}

UtilsStringList &UtilsStringList::operator=(std::list<std::string> const &texts) {
    AssignAll(texts);
    return *this;
}

UtilsStringList &UtilsStringList::operator=(std::list<WideString> const &texts) {
    AssignAll(texts);
    return *this;
}

UtilsStringList &UtilsStringList::operator=(std::list<UtilsString> const &texts) {
    AssignAll(texts);
    return *this;
}

// Comparison, searching and sorting

int UtilsStringList::CompareText(TextOperand const &other) const {
    UtilsString const text = WithSettings(other);
    return compare(&Item(), &text, caseMode, matchStyle, 1, 1);
}

unsigned long UtilsStringList::SearchList(UtilsString const &item, int method,
                                          unsigned long occurrence) {
    if (GetNumberOfStrings() == 0) {
        return NOT_FOUND_INDEX;
    }
    UtilsString copy(item);
    GiveSettings(copy, *this);
    return List().SearchList(&copy, matchStyle != 0 ? 0 : method, occurrence, 1);
}

int UtilsStringList::SearchListItem(UtilsString const &pattern, int occurrence, int) {
    return Item().Search(pattern, static_cast<unsigned long>(occurrence));
}

int UtilsStringList::SearchListItem(unsigned long index, UtilsString const &pattern, int occurrence,
                                    int ignored) {
    return Select(index).SearchListItem(pattern, occurrence, ignored);
}

int UtilsStringList::ReplaceAllInCurrentString(UtilsString const &find, UtilsString const &with,
                                               int) {
    return Item().ReplaceAll(find, with);
}

int UtilsStringList::ReplaceAllInList(UtilsString const &find, UtilsString const &with, int) {
    int result = 0;
    ForEach([&](UtilsString &text) { result |= text.ReplaceAll(find, with); });
    return result;
}

// Split

void UtilsStringList::KeepPiece(UtilsString const &piece, unsigned long oldCount, int append,
                                int sorted, unsigned long &slot, bool &stored) {
    if (slot >= oldCount || append) {
        if (sorted) {
            AddStringSorted(piece);
        } else {
            AddString(piece);
        }
        if (slot == 0) {
            slot = 1;
            stored = true;
        }
        return;
    }
    Select(slot).Item() = piece;
    ++slot;
    stored = true;
}

void UtilsStringList::SplitData(UtilsString const &source, UtilsString const &separator, int append,
                                int sorted, int caseSetting) {
    UtilsString text(source);
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be a string of this list
    UtilsString const by(separator);
    text.SetCase(caseSetting);
    UtilsString piece = WithSettings("");
    unsigned long const oldCount = GetNumberOfStrings();
    unsigned long slot = 0;
    bool stored = false;
    for (int more = text.ParseFirstStringFast(by, piece); more;
         more = text.ParseNextStringFast(by, piece)) {
        if (piece.size() != 0) {
            KeepPiece(piece, oldCount, append, sorted, slot, stored);
        }
    }
    if (append || !stored) {
        return;
    }
    for (unsigned long left = oldCount > slot ? oldCount - slot : 0; left != 0; --left) {
        currentString = slot < GetNumberOfStrings() ? slot : GetNumberOfStrings() - 1;
        List().SmartRemoveFromIndice(currentString);
    }
}

void UtilsStringList::SplitData(UtilsString const &separator, int append, int sorted,
                                int caseSetting) {
    SplitData(Item(), separator, append, sorted, caseSetting);
}

} // namespace UTILS
