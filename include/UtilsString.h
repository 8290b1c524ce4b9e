// UtilsString: the string of the family. One object holds one or more strings, of which one
// is selected; every operation on text works on that one. A fresh object has a single empty
// string, and simple use never sees the others.
//
// Text is bytes in the system's ANSI code page with a NUL behind it that the size doesn't
// count. Wide text (16-bit units) is converted on the way in and out.
//
// Three cursors (find, parse, fast parse), the memory of the last replacement, a case setting
// and a match style belong to the object, not to each string: they are plain numbers that
// nothing corrects when text or selection change.
//
// Results: operations that look for something answer 1 or 0. Pointers to text are borrowed
// and good until that text changes; those of the wide and byte views lie in buffers that all
// objects of the process share, and are good until the next call from anywhere. Faults are
// thrown as std::out_of_range (bad indexes and counts) and std::bad_alloc.
//
// One object is for one thread at a time; separate objects are independent, the shared
// buffers apart.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "UtilsVector.h"

namespace UTILS {

class UtilsByte;
class UtilsString;
using WideString = std::basic_string<unsigned short>;

// The text that an operation takes: from a char const *, a std::string, a run, the selected
// string of a UtilsString, or from wide text, which is converted. Borrowed but for the last.
// A null pointer is an empty text.
class QVLINKDB_API TextOperand {
public:
    TextOperand(char const *source);
    TextOperand(std::string const &source);
    TextOperand(MemObject<char> const &source);
    TextOperand(UtilsString const &source);
    TextOperand(unsigned short const *source);
    TextOperand(WideString const &source);
    TextOperand(TextOperand const &other);
    TextOperand &operator=(TextOperand const &other);
    ~TextOperand();

    char const *Begin() const { return m_text; }
    char const *End() const { return m_text + m_size; }
    unsigned long Size() const { return m_size; }
    // Takes a copy if the text lies in the given run, which is about to change.
    void KeepFrom(MemObject<char> const &run);

private:
    void Own(std::string &&text);

    std::string m_owned;
    char const *m_text;
    unsigned long m_size;
};

class QVLINKDB_API UtilsString : public Utils<char, int> {
    template <typename X> using EnableIfText = std::enable_if_t<
        std::is_constructible_v<TextOperand, X const &> && !std::is_base_of_v<UtilsString, X>, int>;
    template <typename X> using EnableIfOperand =
        std::enable_if_t<std::is_constructible_v<TextOperand, X const &>, int>;

public:
    // A `count` of 0 is read as 1. The first three make `count` strings with the same text; with
    // a run or wide text it goes into the first, and the others are empty.
    UtilsString();
    explicit UtilsString(unsigned long count);
    UtilsString(char const *text, unsigned long count = 1);
    UtilsString(std::string const &text, unsigned long count = 1);
    UtilsString(MemObject<char> const &text, unsigned long count = 1);
    UtilsString(unsigned short const *text, unsigned long count = 1);
    UtilsString(WideString const &text, unsigned long count = 1);
    // All strings, cursors and settings.
    UtilsString(UtilsString const &other);
    UtilsString &operator=(UtilsString const &other);

    int isupper(char const &value) const override { return letters::IsUpper(value); }
    int islower(char const &value) const override { return letters::IsLower(value); }
    char utoupper(char const &value) const override { return letters::ToUpper(value); }
    char utolower(char const &value) const override { return letters::ToLower(value); }
    const char *derived_class() const override;
    ~UtilsString() override;

    // The strings of the object

    // Adds a string behind the others; the selection stays.
    UtilsString &AddString(TextOperand const &text);
    unsigned long GetNumberOfStrings() const { return stringCount; }
    unsigned long GetCurrentString() const { return currentString; }
    // Select a string. A bad index is out of range and changes nothing. The brackets don't
    // give a character: they select, and give the object.
    void SetCurrentString(unsigned long index);
    UtilsString &operator[](unsigned long index);
    UtilsString &operator[](unsigned int index) { return Select(index); }
    UtilsString &operator[](long index) { return Select(static_cast<unsigned long>(index)); }
    UtilsString &operator[](int index) { return Select(static_cast<unsigned long>(index)); }
    // The text of a string, without selecting it.
    char *GetStringNumber(unsigned long index) const;
    // Remove a string, by default the selected one. The last one stays, but is emptied: its
    // removal is a fault of the allocator.
    void RemoveString(unsigned long index);
    void RemoveString();

    // The selected string

    char *Retrieve() const { return Current().Retrieve(); }
    char *GetString() const { return Retrieve(); }
    char *c_str() const { return Retrieve(); }
    operator char *() { return Retrieve(); }
    operator char const *() const { return Retrieve(); }
    operator unsigned char *() { return reinterpret_cast<unsigned char *>(Retrieve()); }
    operator unsigned char const *() const {
        return reinterpret_cast<unsigned char const *>(Retrieve());
    }
    // Not checked.
    char &RetrieveChar(unsigned long position) const { return Retrieve()[position]; }
    unsigned long size() const { return Current().RetrieveSize(); }
    unsigned long length() const { return size(); }
    unsigned long strlen() const { return size(); }
    int operator!() const { return size() == 0; }

    void Erase() { Current().Empty(); }
    void EraseString() { Erase(); }
    // See MemObject: removal of the last `n` characters, or of `n` from a position on.
    void TruncateString(unsigned long n) { Current().Truncate(n); }
    void TruncateStringAtPosition(unsigned long n, unsigned long position) {
        Current().TruncateAtPosition(n, position);
    }
    // Take the last character away; out of range if there is none.
    UtilsString &operator--();
    UtilsString &operator--(int);
    // Puts text in at a position; Replace overwrites, as far as the string goes.
    void Insert(TextOperand const &text, unsigned long position);
    void Replace(TextOperand const &text, unsigned long position);
    void Reverse();
    // Sorts the characters, by their signed values.
    void Sort();

    // 0: comparison of the whole text; 1: containment counts as equal.
    int GetMatchStyle() const { return matchStyle; }
    void SetMatchStyle(int style) { matchStyle = style; }
    // 1: exact; 0: blind to case.
    int GetCase() const { return caseMode; }
    void SetCase(int setting) { caseMode = setting; }

    // Operators: one row each, for a char const *, std::string, run, UtilsString and wide text.

    // Puts text in the place of the selected string; other strings and the cursors stay.
    template <typename X, EnableIfText<X> = 0> UtilsString &operator=(X const &text) {
        Assign(TextOperand(text));
        return *this;
    }
    // One string for each item, with selection and cursors at 0; one empty string for none.
    UtilsString &operator=(std::vector<char *> const &texts);
    UtilsString &operator=(std::vector<std::string> const &texts);
    UtilsString &operator=(std::vector<WideString> const &texts);
    UtilsString &operator=(std::vector<UtilsString> const &texts);

    UtilsString &Append(TextOperand const &text);
    UtilsString &Append(char value);
    UtilsString &Append(int value);
    UtilsString &Append(unsigned long value);
    UtilsString &Append(double value); // in 15 digits
    template <typename X> UtilsString &operator+=(X const &value) { return Append(value); }

    // -1, 0 or 1, with this object's settings; FriendCompare with the operands exchanged.
    int Compare(TextOperand const &other) const;
    int FriendCompare(TextOperand const &other) const;
    template <typename X, EnableIfOperand<X> = 0> int operator==(X const &x) const {
        return Compare(x) == 0;
    }
    template <typename X, EnableIfOperand<X> = 0> int operator!=(X const &x) const {
        return Compare(x) != 0;
    }
    template <typename X, EnableIfOperand<X> = 0> int operator<(X const &x) const {
        return Compare(x) < 0;
    }
    template <typename X, EnableIfOperand<X> = 0> int operator<=(X const &x) const {
        return Compare(x) <= 0;
    }
    template <typename X, EnableIfOperand<X> = 0> int operator>(X const &x) const {
        return Compare(x) > 0;
    }
    template <typename X, EnableIfOperand<X> = 0> int operator>=(X const &x) const {
        return Compare(x) >= 0;
    }

    // Find: see UtilsBase::search for what is found.

    int FindFirst(TextOperand const &pattern, unsigned long &index);
    // The next occurrence; searches from the start of the text again.
    int FindNext(TextOperand const &pattern, unsigned long &index);
    int FindAll(TextOperand const &pattern);
    // No cursor takes part.
    int Search(TextOperand const &pattern, unsigned long occurrence) const;
    void FindReset() { findIndex = 0; }
    void ReplaceReset() { findIndex = 0; }

    // Parse: see UtilsBase::parse for what a piece is. A string as target loses its text
    // whatever the result; a buffer has room for the piece and is left alone without one.

    int ParseString(TextOperand const &separator, char *out, unsigned long piece,
                    int keepFront = 0) const;
    int ParseString(TextOperand const &separator, UtilsString &out, unsigned long piece,
                    int keepFront = 0) const;
    int ParseFirstString(TextOperand const &separator, char *out);
    int ParseFirstString(TextOperand const &separator, UtilsString &out);
    int ParseNextString(TextOperand const &separator, char *out, int keepFront = 0);
    int ParseNextString(TextOperand const &separator, UtilsString &out, int keepFront = 0);
    void ParseReset() { parseIndex = 0; }

    // These go on where the last one ended and see what is left without a separator as a
    // piece. A last piece longer than the one before it is followed by fragments of its tail.
    int ParseStringFast(TextOperand const &separator, char *out, unsigned long piece);
    int ParseStringFast(TextOperand const &separator, UtilsString &out, unsigned long piece);
    int ParseFirstStringFast(TextOperand const &separator, char *out);
    int ParseFirstStringFast(TextOperand const &separator, UtilsString &out);
    int ParseNextStringFast(TextOperand const &separator, char *out);
    int ParseNextStringFast(TextOperand const &separator, UtilsString &out);
    void ParseFastReset() { fastParseFound = fastParseStart = 0; }

    // Replace. A pattern as long as the text replaces all of it, whatever they hold. ReplaceNext
    // searches from the start and stops where the last replacement was made: a replacement that
    // begins with the pattern is made once. One that holds it elsewhere makes ReplaceAll endless.
    int ReplaceFirst(TextOperand const &find, TextOperand const &with);
    int ReplaceNext(TextOperand const &find, TextOperand const &with);
    int ReplaceAll(TextOperand const &find, TextOperand const &with);

    // Makes strings of the pieces of the selected string of `source`, which may be this object;
    // empty pieces are left out. With `append` they are added; else they take the place of the
    // strings that are there, and what is left of those goes. A text without the separator
    // changes nothing.
    void SplitData(UtilsString &source, UtilsString const &separator, int append);
    void SplitData(UtilsString const &separator, int append) {
        SplitData(*this, separator, append);
    }

    // Conversion

    // Wide text in the ANSI code page, in the place of the selected string or behind it. Text
    // that can't be converted changes nothing.
    void ConvertFromWideChar(unsigned short const *text, int append);
    static UtilsString ReturnStringFromWideString(unsigned short const *text);
    static UtilsString ReturnStringFromWideString(WideString const &text);
    // The text as 16-bit units in a buffer that all objects share. Null for good when the
    // process's first call was made on an empty text.
    unsigned short *ReturnWideChar() const;
    unsigned short *w_str() const { return ReturnWideChar(); }
    operator unsigned short *() { return ReturnWideChar(); }
    operator unsigned short const *() const { return ReturnWideChar(); }
    // Each character less 128, without a terminator, in a buffer that all objects share and
    // that the first text of the process gives its size; a longer text is out of range.
    unsigned char *ReturnByteStr() const;
    // Up to the first NUL.
    std::string GetSTLString() const { return Retrieve(); }
    std::string ConvertToSTL() const { return GetSTLString(); }
    operator std::string() const { return GetSTLString(); }
    WideString GetSTLWString() const;
    operator WideString() const { return GetSTLWString(); }

    // Appends a string resource of at most `maximum` bytes, of the program itself for a null
    // instance: its length, or 0.
    unsigned long LoadStringA(HINSTANCE instance, unsigned int id, unsigned long maximum);
    // Append a format of the system's FormatMessageA, or of a resource, with the arguments put in:
    // the length, or 0, which leaves the string as it is.
    template <typename... Arguments>
    unsigned long FormatMessageA(UtilsString const &format, Arguments... arguments) {
        return FormatInto(format.Retrieve(), arguments...);
    }
    template <typename... Arguments>
    unsigned long FormatMessageA(HINSTANCE instance, unsigned int id, Arguments... arguments) {
        UtilsString format;
        format.LoadStringA(instance, id, 255);
        return FormatInto(format.Retrieve(), arguments...);
    }
    // The same with the selected string as the format, which the result replaces.
    template <typename... Arguments> unsigned long FormatCurrentString(Arguments... arguments) {
        UtilsString result;
        unsigned long const count = result.FormatInto(Retrieve(), arguments...);
        if (count != 0) {
            Assign(TextOperand(result));
        }
        return count;
    }
    // Appends the system's text for an error code, with "Error Number:  " and the number in
    // front if asked for: the length of the system's text, or 0 when there is none.
    unsigned long SetErrorMsg(unsigned long code, int withNumber);

    // Scrambling in place, each its own inverse; a NUL that it makes stays inside the text. An
    // empty key is a division by zero.
    void XORString(unsigned char key);
    void EncryptString(UtilsString const &key);
    void EncryptString(UtilsByte const &key);

protected:
    void Init();
    void CopyData(UtilsString const &other);

    unsigned long findIndex;        // occurrence number of the find cursor
    unsigned long parseIndex;       // piece number of the parse cursor
    unsigned long fastParseFound;   // separator that the last fast parse found, from its start
    unsigned long fastParseStart;   // where the next fast parse begins
    unsigned long lastReplaceIndex; // where the last replacement was made
    unsigned long stringCount;      // strings held
    unsigned long currentString;    // the selected one
    int matchStyle;                 // 0: the whole text; 1: containment counts as equal
    int caseMode;                   // 1: exact; 0: blind to case

private:
    static constexpr const char *SOURCE = "UtilsString";

    MemObject<char> &Current() const { return RetrieveVectorItem(currentString); }
    UtilsString &Select(unsigned long index);
    void Assign(TextOperand text);
    template <typename Texts> void AssignAll(Texts const &texts);
    void RemoveAllStrings();
    void CheckIndex(unsigned long index) const;
    int SearchFor(TextOperand const &pattern, unsigned long occurrence, unsigned long &index) const;
    int PieceInto(UtilsString &out, TextOperand const &separator, unsigned long start,
                  unsigned long piece, int keepFront, unsigned long *foundOffset) const;
    void ReplaceAt(TextOperand const &find, TextOperand const &with, unsigned long index);
    bool KeepPiece(TextOperand const &piece, unsigned long oldCount, int append,
                   unsigned long &slot);
    unsigned long FormatInto(char const *format, ...);
    void Scramble(unsigned char const *key, unsigned long keyLength);
};

} // namespace UTILS

#include "templates/StringElements.h"
