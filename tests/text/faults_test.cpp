// Memory that fails at each point of each operation: nothing is lost, and what is left can be
// used and destroyed.
#include "open_string.h"

#include <functional>
#include <list>
#include <memory>
#include <new>
#include <ostream>

#include <gtest/gtest.h>

#include "allocations.h"
#include "std_exception.h"

using Fail = AllocationWatch::Fail;
using UTILS::MemObject;
using UTILS::UtilsByte;
using UTILS::UtilsString;
using UTILS::UtilsStringList;

namespace {

constexpr std::uint64_t manyAllocations = 5000;

template <class Object> struct Operation {
    char const *name;
    std::function<void(Object &)> run;
};
template <class Object> std::ostream &operator<<(std::ostream &out, Operation<Object> const &op) {
    return out << op.name;
}

// Runs the work with an allocation failing, or all from that on. False if it never came to it.
template <class Work> bool Fails(Fail fail, std::uint64_t number, Work const &work) {
    AllocationWatch const watch(fail, number);
    try {
        work();
    } catch (std::bad_alloc const &) {
    }
    return watch.Failed();
}

// What each object has left after a fault.
void CheckUsable(OpenString &string) {
    ASSERT_LT(string.currentString, string.stringCount);
    for (unsigned long i = 0; i < string.stringCount; ++i)
        ASSERT_NE(nullptr, string.GetStringNumber(i));
    ASSERT_THROW(string.GetStringNumber(string.stringCount), std::out_of_range);
    ASSERT_EQ('\0', string.Retrieve()[string.size()]);
    string = "usable";
    string.AddString("too");
    ASSERT_STREQ("usable", string.c_str());
}

void CheckUsable(OpenByte &bytes) {
    bytes.Erase();
    bytes.Append(AsData("usable"), 6);
    ASSERT_EQ("usable", BytesOf(bytes));
}

void CheckUsable(OpenStringList &list) {
    for (unsigned long i = 0; i < list.GetNumberOfStrings(); ++i)
        ASSERT_NE(nullptr, list.Retrieve(i));
    list.AddString("usable");
    ASSERT_STREQ("usable", list.Retrieve(0));
    list.RemoveString(0);
    list.Sort(0);
}

void Fill(OpenString &string) {
    string = "a,B,long enough to be no small text of its own,c";
    string.AddString("second string").AddString("third");
}

void Fill(OpenByte &bytes) { bytes.Append(AsData("a,B,long enough,c"), 17); }

void Fill(OpenStringList &list) {
    for (char const *const text : {"b", "a string", "a,b;long enough to be no small text", "z"})
        list.AddString(text);
}

template <class Object> void FailAtEach(Operation<Object> const &operation, Fail fail) {
    for (std::uint64_t number = 1; number < manyAllocations; ++number) {
        SCOPED_TRACE(operation.name + std::string(" at ") + std::to_string(number));
        std::size_t const before = AllocationWatch::LiveBlocks();
        bool failed = false;
        {
            Object object;
            Fill(object);
            failed = Fails(fail, number, [&] { operation.run(object); });
            ASSERT_NO_FATAL_FAILURE(CheckUsable(object));
        }
        ASSERT_EQ(before, AllocationWatch::LiveBlocks());
        if (!failed)
            return;
    }
    FAIL() << operation.name << " goes on and on";
}

template <class Object> void RunAll(std::vector<Operation<Object>> const &operations) {
    for (auto const &operation : operations) {
        Object warm; // what is made once for the process
        Fill(warm);
        operation.run(warm);
        FailAtEach(operation, Fail::One);
        FailAtEach(operation, Fail::Onwards);
    }
}

unsigned long place;

UtilsString const other("B");
UtilsByte const otherBytes(AsData("B,"), 2);

} // namespace

TEST(TextFaults, Changes_of_a_string) {
    RunAll<OpenString>({
        {"Append", [](auto &s) { s += "more text than there was"; }},
        {"Append of itself", [](auto &s) { s += s; }},
        {"Append of a number", [](auto &s) { s.Append(7ul).Append(-7).Append(0.5).Append('c'); }},
        {"Append of wide text", [](auto &s) { s += Wide("a wide text of some length"); }},
        {"Insert", [](auto &s) { s.Insert("more text", 3); }},
        {"Replace", [](auto &s) { s.Replace("more text", 3); }},
        {"Assign", [](auto &s) { s = "another text, not a small one"; }},
        {"Assign a part", [](auto &s) { s = s.c_str() + 2; }},
        {"Truncate", [](auto &s) { s.TruncateString(3); }},
        {"Cut out", [](auto &s) { s.TruncateStringAtPosition(3, 2); }},
        {"Erase", [](auto &s) { s.Erase(); }},
        {"Reverse", [](auto &s) { s.Reverse(); }},
        {"Sort", [](auto &s) { s.Sort(); }},
        {"Scramble", [](auto &s) { s.EncryptString(other); }},
    });
}

TEST(TextFaults, Strings_of_a_string) {
    RunAll<OpenString>({
        {"AddString", [](auto &s) { s.AddString("one more string of some length"); }},
        {"AddString of itself", [](auto &s) { s.AddString(s); }},
        {"RemoveString", [](auto &s) { s.RemoveString(1); }},
        {"RemoveString selected", [](auto &s) { s[2].RemoveString(); }},
        {"Copy", [](auto &s) { OpenString const copy(s); }},
        {"Assign a copy",
         [](auto &s) {
             OpenString copy("x", 2);
             copy = static_cast<UtilsString const &>(s);
             s = static_cast<UtilsString const &>(copy);
         }},
        {"Assign texts",
         [](auto &s) {
             s = std::vector<std::string>{"a", "text", "x"};
         }},
        {"Assign strings",
         [](auto &s) {
             s = std::vector<UtilsString>{"a", s};
         }},
        {"Make", [](auto &) { UtilsString const made("a text of some length", 4); }},
        {"Make of wide text", [](auto &) { UtilsString const made(Wide("text"), 2); }},
    });
}

TEST(TextFaults, Searches_of_a_string) {
    RunAll<OpenString>({
        {"Find", [](auto &s) { s.FindFirst("B", place); }},
        {"Find all", [](auto &s) { s.FindAll(Wide(",")); }},
        {"Find blind",
         [](auto &s) {
             s.SetCase(0);
             s.FindNext("b", place);
         }},
        {"Compare", [](auto &s) { s.Compare(Wide("a,B,long")); }},
        {"Parse",
         [](auto &s) {
             UtilsString piece;
             s.ParseString(",", piece, 2);
         }},
        {"Parse fast into itself", [](auto &s) { s.ParseFirstStringFast(",", s); }},
        {"Replace first", [](auto &s) { s.ReplaceFirst(",", "<and so on>"); }},
        {"Replace next", [](auto &s) { s.ReplaceNext("B", s); }},
        {"Replace all", [](auto &s) { s.ReplaceAll(",", "<->"); }},
        {"Replace by itself", [](auto &s) { s.ReplaceFirst("B", s.c_str() + 5); }},
        {"Split", [](auto &s) { s.SplitData(",", 0); }},
        {"Split and append", [](auto &s) { s.SplitData(",", 1); }},
    });
}

TEST(TextFaults, Conversions_of_a_string) {
    UtilsString("a text to make the shared buffers large enough").ReturnWideChar();
    RunAll<OpenString>({
        {"To a wide string", [](auto &s) { s.GetSTLWString(); }},
        {"To a string", [](auto &s) { s.GetSTLString(); }},
        {"From wide text", [](auto &s) { s.ConvertFromWideChar(Wide("wide text").c_str(), 1); }},
        {"Format", [](auto &s) { s.FormatMessageA(UtilsString("a format with %1"), "text"); }},
        {"Format the string itself", [](auto &s) { s.FormatCurrentString("text"); }},
        {"System text", [](auto &s) { s.SetErrorMsg(2, 1); }},
        {"Name of the class", [](auto &s) { s.derived_class(); }},
    });
}

TEST(TextFaults, Bytes) {
    RunAll<OpenByte>({
        {"Append", [](auto &b) { b.Append(AsData("more bytes"), 10); }},
        {"Append of itself", [](auto &b) { b += b; }},
        {"Insert", [](auto &b) { b.Insert(AsData("more"), 4, 2); }},
        {"Replace", [](auto &b) { b.Replace(otherBytes, 2); }},
        {"Assign", [](auto &b) { b = static_cast<UtilsByte const &>(otherBytes); }},
        {"Copy", [](auto &b) { UtilsByte const copy(b); }},
        {"Make", [](auto &) { UtilsByte const made(AsData("text"), 4); }},
        {"Truncate", [](auto &b) { b.TruncateString(2); }},
        {"Cut out", [](auto &b) { b.TruncateStringAtPosition(2, 3); }},
        {"Erase", [](auto &b) { b.Erase(); }},
        {"Reverse", [](auto &b) { b.Reverse(); }},
        {"Find", [](auto &b) { b.FindFirst(AsData("B"), 1, place); }},
        {"Compare", [](auto &b) { b.Compare(otherBytes); }},
        {"Parse",
         [](auto &b) {
             UtilsByte piece;
             b.ParseFirstByteString(AsData(","), 1, piece);
             b.ParseNextByteString(AsData(","), 1, b);
         }},
        {"Replace first", [](auto &b) { b.ReplaceFirst(AsData("B"), 1, AsData("xyz"), 3); }},
        {"Replace all", [](auto &b) { b.ReplaceAll(AsData(","), 1, AsData("--"), 2); }},
        {"Scramble", [](auto &b) { b.EncryptData(otherBytes); }},
    });
}

TEST(TextFaults, Lists_of_strings) {
    RunAll<OpenStringList>({
        {"Add", [](auto &l) { l.AddString("one more"); }},
        {"Add sorted", [](auto &l) { l.AddStringSorted("one more"); }},
        {"Remove", [](auto &l) { l.RemoveString(1); }},
        {"Remove all", [](auto &l) { l.RemoveAllStrings(); }},
        {"Copy", [](auto &l) { UtilsStringList const copy(l); }},
        {"Assign a copy",
         [](auto &l) {
             UtilsStringList copy(other);
             copy = l;
             l = static_cast<UtilsStringList const &>(copy);
         }},
        {"Assign a string", [](auto &l) { l = other; }},
        {"Assign texts",
         [](auto &l) {
             l = std::list<std::string>{"a", "text", "x"};
         }},
        {"Retrieve a copy", [](auto &l) { l.RetrieveUString(1); }},
        {"Append", [](auto &l) { l += l; }},
        {"Insert", [](auto &l) { l.Insert(1, "text", 1); }},
        {"Compare", [](auto &l) { l.Compare("text"); }},
    });
}

TEST(TextFaults, Searches_of_a_list) {
    RunAll<OpenStringList>({
        {"Settings", [](auto &l) { l.SetCase(0); }},
        {"Look at each", [](auto &l) { l.SearchList(other, 0, 0); }},
        {"Bisect", [](auto &l) { l.SearchList("b", 1, 0); }},
        {"Look into one", [](auto &l) { l.SearchListItem(2, other, 0, 0); }},
        {"Sort", [](auto &l) { l.Sort(0); }},
        {"Sort by quick sort", [](auto &l) { l.Sort(3); }},
        {"Sort by shell sort", [](auto &l) { l.Sort(2); }},
        {"Replace all", [](auto &l) { l.ReplaceAllInList("b", "text", 0); }},
        {"Split", [](auto &l) { l.SplitData("a;b;c;d;e;f", ";", 0, 0, 1); }},
        {"Split one", [](auto &l) { l[1].SplitData(";", 1, 1, 1); }},
    });
}

TEST(TextFaults, Exceptions) {
    using UTILS::DiskIoException;
    using UTILS::std_exception;
    RunAll<OpenString>({
        {"Make", [](auto &) { std_exception const made("c", "f", 1, 2, 3, 1); }},
        {"Make plain", [](auto &) { std_exception const made; }},
        {"Make of texts", [](auto &s) { std_exception const made(s, s, s, s, s); }},
        {"Make a disk's", [](auto &s) { DiskIoException const made(1, 2, 3, "f", s); }},
        {"Copy",
         [](auto &) {
             DiskIoException const made(1, 2, 3, "f", "m");
             DiskIoException const copy(made);
         }},
    });
}

TEST(TextFaults, Destruction_needs_no_memory) {
    auto string = std::make_unique<OpenString>();
    auto bytes = std::make_unique<OpenByte>();
    auto list = std::make_unique<OpenStringList>();
    Fill(*string);
    Fill(*bytes);
    Fill(*list);
    AllocationWatch const watch(Fail::Onwards, 1);
    string.reset();
    bytes.reset();
    list.reset();
}
