// words TEXT [WORD]: prints the words between the commas of TEXT in order, and the number of
// the one that is WORD.
#include <QVLinkDB.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

// Lists take elements of any class that tells how it compares.
struct Word {
    std::string text;
    int Compare(Word const &other) const { return text.compare(other.text); }
};

// Adds the pieces of the text to the list, which copies them.
void Split(UTILS::MemObject<char> const &text, UTILS::ListObject<Word> &words) {
    char const comma = ',';
    char const *const begin = text;
    char const *const end = begin + text.RetrieveSize();
    std::vector<char> piece(text.RetrieveSize() + 1);
    unsigned long count = 0;
    while (text.parse(begin, end, piece.data(), &comma, &comma + 1, count, 1, 0, nullptr, 1)) {
        Word word{piece.data()};
        words.AddToTail(&word, 1);
        ++count;
    }
    if (count == 0) { // no comma in it
        Word whole{begin};
        words.AddToTail(&whole, 1);
    }
}

} // namespace

int main(int count, char **arguments) {
    if (count != 2 && count != 3)
        return 2;
    UTILS::MemObject<char> text;
    text.Append(arguments[1]);
    UTILS::ListObject<Word> words;
    Split(text, words);
    words.Sort(0);
    for (unsigned long i = 0; i < words.ListSize(); ++i)
        std::puts(words.SmartRetrieve(i)->text.c_str());
    if (count == 2)
        return 0;
    Word const wanted{arguments[2]};
    unsigned long const index = words.SearchList(&wanted, 1, 0, 1);
    if (index == UTILS::NOT_FOUND_INDEX)
        return 1;
    std::printf("%lu\n", index);
    return 0;
}
