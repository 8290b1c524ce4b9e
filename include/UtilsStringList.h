// UtilsStringList: a list of UtilsString with one string selected, and a case and match
// setting that it gives to every element.
//
// Strings are numbered from the head, where AddString puts the newest: it has number 0. They
// are found by the Smart retrieval of ListObject. A number outside the list is out of range,
// noticed when the string is used and not when it is selected. Operations that take a leading
// number select that string first.
//
// Pointers to strings and texts are borrowed and good until the list changes. One list is for
// one thread at a time.
#pragma once

#include <list>

#include "UtilsString.h"

namespace UTILS {

class QVLINKDB_API UtilsStringList : public Utils<UtilsString, int> {
public:
    UtilsStringList();
    // An empty text isn't added.
    UtilsStringList(UtilsString const &text);
    UtilsStringList(UtilsStringList const &other);

    const char *derived_class() const override;
    ~UtilsStringList() override;

    // Adding and removing

    // Put a copy in at the head, or in its order, with the list's settings.
    void AddString(UtilsString const &text);
    void AddStringSorted(UtilsString const &text);
    // A selection behind the end falls by one first.
    void RemoveString();
    void RemoveString(unsigned long index);
    void RemoveAllStrings(); // the selection stays

    // Selection and inspection

    void SetCurrentString(unsigned long index) { currentString = index; }
    unsigned long GetCurrentString() const { return currentString; }
    UtilsStringList &operator[](unsigned long index) { return Select(index); }
    UtilsStringList &operator[](unsigned int index) { return Select(index); }
    UtilsStringList &operator[](long index) { return Select(static_cast<unsigned long>(index)); }
    UtilsStringList &operator[](int index) { return Select(static_cast<unsigned long>(index)); }
    unsigned long GetNumberOfStrings() const { return List().ListSize(); }
    unsigned long length(unsigned long index) { return Select(index).Item().size(); }
    int operator!() const { return GetNumberOfStrings() == 0; }

    UtilsString *RetrieveString() const { return &Item(); }
    UtilsString *RetrieveString(unsigned long index) { return &Select(index).Item(); }
    UtilsString RetrieveUString() const { return Item(); }
    UtilsString RetrieveUString(unsigned long index) { return Select(index).Item(); }
    operator UtilsString() const { return Item(); }
    char *Retrieve() const { return Item().Retrieve(); }
    char *Retrieve(unsigned long index) { return Select(index).Item().Retrieve(); }
    operator char const *() const { return Retrieve(); }

    int GetCase() const { return caseMode; }
    int GetMatchStyle() const { return matchStyle; }
    // Give the setting to every string, and leave the last one selected.
    void SetCase(int setting);
    void SetMatchStyle(int style);
    void SetSearchDirection(int direction) { List().SetSearchDirection(direction); }

    // Change of the selected string: texts as UtilsString takes them, numbers, and the selected
    // string of a list.

    template <typename X> UtilsStringList &Append(X const &value) {
        Item().Append(Operand(value));
        return *this;
    }
    template <typename X> UtilsStringList &Append(unsigned long index, X const &value) {
        return Select(index).Append(value);
    }
    template <typename X> UtilsStringList &operator+=(X const &value) { return Append(value); }
    template <typename X> void Insert(X const &text, unsigned long position) {
        Item().Insert(Operand(text), position);
    }
    template <typename X> void Insert(unsigned long index, X const &text, unsigned long position) {
        Select(index).Insert(text, position);
    }
    template <typename X> void Replace(X const &text, unsigned long position) {
        Item().Replace(Operand(text), position);
    }
    template <typename X> void Replace(unsigned long index, X const &text, unsigned long position) {
        Select(index).Replace(text, position);
    }

    // The selected string becomes a copy.
    UtilsStringList &operator=(UtilsString const &text);
    // A copy of the list and its settings.
    UtilsStringList &operator=(UtilsStringList const &other);
    // The items, each put in at the head and so in reverse.
    UtilsStringList &operator=(std::list<char *> const &texts);
    UtilsStringList &operator=(std::list<std::string> const &texts);
    UtilsStringList &operator=(std::list<WideString> const &texts);
    UtilsStringList &operator=(std::list<UtilsString> const &texts);

    // Of the selected string with another text, -1, 0 or 1, with the list's settings.
    template <typename X> int Compare(X const &other) const {
        return CompareText(TextOperand(Operand(other)));
    }
    template <typename X> int operator==(X const &x) const { return Compare(x) == 0; }
    template <typename X> int operator!=(X const &x) const { return Compare(x) != 0; }
    template <typename X> int operator<(X const &x) const { return Compare(x) < 0; }
    template <typename X> int operator<=(X const &x) const { return Compare(x) <= 0; }
    template <typename X> int operator>(X const &x) const { return Compare(x) > 0; }
    template <typename X> int operator>=(X const &x) const { return Compare(x) >= 0; }

    // Searching and sorting: see ListObject. With a match style every search looks at string
    // after string.

    unsigned long SearchList(UtilsString const &item, int method, unsigned long occurrence);
    // 1 if the selected string holds the pattern so many times, by its own case setting. The
    // last number is ignored.
    int SearchListItem(UtilsString const &pattern, int occurrence, int ignored);
    int SearchListItem(unsigned long index, UtilsString const &pattern, int occurrence,
                       int ignored);
    void Sort(unsigned int algorithm) { SortList(0, algorithm); }
    // As UtilsString::ReplaceAll, in the selected string or in every one in turn: 1 if
    // something was replaced. The last number is ignored.
    int ReplaceAllInCurrentString(UtilsString const &find, UtilsString const &with, int ignored);
    int ReplaceAllInList(UtilsString const &find, UtilsString const &with, int ignored);

    // Fills the list with the pieces of a text, by default of the selected string, that a fast
    // parse gives; empty pieces are left out. With `append` they are added; else they take the
    // place of the strings that are there, and what is left of those goes.
    void SplitData(UtilsString const &source, UtilsString const &separator, int append, int sorted,
                   int caseSetting);
    void SplitData(UtilsString const &separator, int append, int sorted, int caseSetting);

protected:
    void Init();
    void CopyData(UtilsStringList const &other);

    unsigned long reserved;      // 0
    unsigned long currentString; // the selected string
    int caseMode;                // 1: exact; 0: blind to case
    int matchStyle;              // 0: whole comparison; 1: containment

private:
    ListObject<UtilsString> &List() const { return RetrieveListItem(0); }
    UtilsString &Item() const { return *List().SmartRetrieve(currentString); }
    UtilsStringList &Select(unsigned long index) {
        currentString = index;
        return *this;
    }
    // A list stands for its selected string.
    template <typename X> static auto const &Operand(X const &value) {
        if constexpr (std::is_base_of_v<UtilsStringList, X>) {
            return value.Item();
        } else {
            return value;
        }
    }
    int CompareText(TextOperand const &other) const;
    UtilsString WithSettings(TextOperand const &text) const;
    template <typename Set> void ForEach(Set set);
    template <typename Texts> void AssignAll(Texts const &texts);
    void KeepPiece(UtilsString const &piece, unsigned long oldCount, int append, int sorted,
                   unsigned long &slot, bool &stored);
};

} // namespace UTILS
