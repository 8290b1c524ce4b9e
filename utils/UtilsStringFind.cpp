// Find, parse, replace and split.
#include <string>

#include "UtilsString.h"

namespace UTILS {

// Find

int UtilsString::SearchFor(TextOperand const &pattern, unsigned long occurrence,
                           unsigned long &index) const {
    return search(pattern.Begin(), pattern.End(), Retrieve(), Retrieve() + size(), index, caseMode,
                  occurrence, nullptr);
}

int UtilsString::FindFirst(TextOperand const &pattern, unsigned long &index) {
    findIndex = 0;
    return SearchFor(pattern, findIndex, index);
}

int UtilsString::FindNext(TextOperand const &pattern, unsigned long &index) {
    ++findIndex;
    return SearchFor(pattern, findIndex, index);
}

// The run through all occurrences would show in nothing but the cursor, which is back at 0.
int UtilsString::FindAll(TextOperand const &pattern) {
    unsigned long index = 0;
    return FindFirst(pattern, index);
}

int UtilsString::Search(TextOperand const &pattern, unsigned long occurrence) const {
    unsigned long index = 0;
    return SearchFor(pattern, occurrence, index);
}

// Parse

// The target takes the piece up to a NUL in it; it may be this object.
int UtilsString::PieceInto(UtilsString &out, TextOperand const &separator, unsigned long start,
                           unsigned long piece, int keepFront, unsigned long *foundOffset) const {
    char const *const text = Retrieve() + start;
    unsigned long begin = 0;
    unsigned long end = 0;
    bool const found =
        start <= size() && FindPiece(text, Retrieve() + size(), separator.Begin(), separator.End(),
                                     piece, caseMode, keepFront, foundOffset, 0, begin, end);
    std::string const taken = found ? std::string(text + begin, text + end) : std::string();
    out.Assign(taken.c_str());
    return found ? 1 : 0;
}

int UtilsString::ParseString(TextOperand const &separator, char *out, unsigned long piece,
                             int keepFront) const {
    return parse(Retrieve(), Retrieve() + size(), out, separator.Begin(), separator.End(), piece,
                 caseMode, keepFront, nullptr, 0);
}

int UtilsString::ParseString(TextOperand const &separator, UtilsString &out, unsigned long piece,
                             int keepFront) const {
    return PieceInto(out, separator, 0, piece, keepFront, nullptr);
}

int UtilsString::ParseFirstString(TextOperand const &separator, char *out) {
    parseIndex = 0;
    return ParseString(separator, out, 0, 0);
}

int UtilsString::ParseFirstString(TextOperand const &separator, UtilsString &out) {
    parseIndex = 0;
    return ParseString(separator, out, 0, 0);
}

int UtilsString::ParseNextString(TextOperand const &separator, char *out, int keepFront) {
    ++parseIndex;
    return ParseString(separator, out, parseIndex, keepFront);
}

int UtilsString::ParseNextString(TextOperand const &separator, UtilsString &out, int keepFront) {
    ++parseIndex;
    return ParseString(separator, out, parseIndex, keepFront);
}

int UtilsString::ParseStringFast(TextOperand const &separator, char *out, unsigned long piece) {
    if (fastParseStart > size()) {
        *out = '\0';
        return 0;
    }
    return parse(Retrieve() + fastParseStart, Retrieve() + size(), out, separator.Begin(),
                 separator.End(), piece, caseMode, 0, &fastParseFound, 0);
}

int UtilsString::ParseStringFast(TextOperand const &separator, UtilsString &out,
                                 unsigned long piece) {
    return PieceInto(out, separator, fastParseStart, piece, 0, &fastParseFound);
}

int UtilsString::ParseFirstStringFast(TextOperand const &separator, char *out) {
    ParseFastReset();
    return ParseStringFast(separator, out, 0);
}

int UtilsString::ParseFirstStringFast(TextOperand const &separator, UtilsString &out) {
    ParseFastReset();
    return ParseStringFast(separator, out, 0);
}

// Behind the last piece this goes on by the length of the one before: tail fragments follow a
// last piece that is longer, and that is kept.
int UtilsString::ParseNextStringFast(TextOperand const &separator, char *out) {
    fastParseStart += fastParseFound + separator.Size();
    return ParseStringFast(separator, out, 0);
}

int UtilsString::ParseNextStringFast(TextOperand const &separator, UtilsString &out) {
    fastParseStart += fastParseFound + separator.Size();
    return ParseStringFast(separator, out, 0);
}

// Replace

void UtilsString::ReplaceAt(TextOperand const &find, TextOperand const &with, unsigned long index) {
    TextOperand kept(with);
    kept.KeepFrom(Current());
    if (find.Size() != with.Size()) {
        unsigned long const length = find.Size();
        Current().TruncateAtPosition(length, index);
        Current().Insert(kept.Begin(), index, 0, kept.Size());
    } else {
        Current().Insert(kept.Begin(), index, 1, kept.Size());
    }
    lastReplaceIndex = index;
}

int UtilsString::ReplaceFirst(TextOperand const &find, TextOperand const &with) {
    if (find.Size() == size()) {
        // Of one length is enough: the contents aren't compared.
        Assign(with);
        return 1;
    }
    unsigned long index = 0;
    if (!FindFirst(find, index)) {
        return 0;
    }
    ReplaceAt(find, with, index);
    return 1;
}

int UtilsString::ReplaceNext(TextOperand const &find, TextOperand const &with) {
    unsigned long index = 0;
    if (find.Size() == size() || !FindFirst(find, index) || index == lastReplaceIndex) {
        return 0;
    }
    ReplaceAt(find, with, index);
    return 1;
}

int UtilsString::ReplaceAll(TextOperand const &find, TextOperand const &with) {
    TextOperand keptFind(find);
    TextOperand keptWith(with);
    keptFind.KeepFrom(Current());
    keptWith.KeepFrom(Current());
    if (!ReplaceFirst(keptFind, keptWith)) {
        return 0;
    }
    while (ReplaceNext(keptFind, keptWith)) {
    }
    findIndex = 0;
    return 1;
}

// Split

// Stores a piece in the next of the old strings, or behind all.
bool UtilsString::KeepPiece(TextOperand const &piece, unsigned long oldCount, int append,
                            unsigned long &slot) {
    if (piece.Size() == 0) {
        return false;
    }
    if (slot >= oldCount || append) {
        AddString(piece);
    } else {
        currentString = slot;
        Assign(piece);
        ++slot;
    }
    return true;
}

void UtilsString::SplitData(UtilsString &source, UtilsString const &separator, int append) {
    UtilsString text(static_cast<MemObject<char> const &>(source.Current()));
    text.SetCase(source.GetCase());
    UtilsString const by(static_cast<MemObject<char> const &>(separator.Current()));
    UtilsString piece;
    unsigned long const oldCount = stringCount;
    unsigned long slot = 0;
    bool stored = false;
    for (unsigned long number = 0; text.ParseString(by, piece, number, 0); ++number) {
        stored |= KeepPiece(piece, oldCount, append, slot);
    }
    if (append || !stored) {
        return;
    }
    for (unsigned long left = oldCount > slot ? oldCount - slot : 0; left != 0; --left) {
        RemoveString(slot);
    }
}

} // namespace UTILS
