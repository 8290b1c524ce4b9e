// Lists of words and of elements of a class, against the standard library's.
#include <iterator>
#include <list>
#include <memory>

#include <UtilsList.h>

#include "Contest.h"
#include "Random.h"

namespace bench {
namespace {

using WordList = UTILS::ListObject<char>;
using StandardWords = std::list<std::string>;
using Words = std::shared_ptr<std::vector<std::string> const>;

// An element that says itself how it compares, as the lists ask of a class.
struct Entry {
    std::uint64_t key = 0;
    int Compare(Entry const &other) const { return key < other.key ? -1 : key > other.key ? 1 : 0; }
    bool operator<(Entry const &other) const { return key < other.key; }
};
using EntryList = UTILS::ListObject<Entry>;
using StandardEntries = std::list<Entry>;

Words MakeWords(std::uint32_t count) {
    Random random(count);
    auto words = std::make_shared<std::vector<std::string>>();
    for (std::uint32_t i = 0; i < count; ++i) {
        std::string word(4 + random.Below(20), ' ');
        for (char &c : word)
            c = static_cast<char>('a' + random.Below(26));
        words->push_back(word);
    }
    return words;
}

void Append(WordList &list, Words const &words) {
    for (std::string const &word : *words)
        list.AddToTail(const_cast<char *>(word.c_str()), word.size());
}

std::shared_ptr<WordList> Filled(Words const &words) {
    auto list = std::make_shared<WordList>();
    Append(*list, words);
    return list;
}

std::shared_ptr<StandardWords> FilledStandard(Words const &words) {
    return std::make_shared<StandardWords>(words->begin(), words->end());
}

Contest Contend(char const *workload, Words const &words,
                std::function<void(benchmark::State &)> ours,
                std::function<void(benchmark::State &)> standard) {
    return {workload,
            static_cast<std::uint32_t>(words->size()),
            {{"", std::move(ours)}, {"std::list<std::string>", std::move(standard)}}};
}

Contest AppendContest(Words const &words) {
    return Contend("Append words", words,
                   RepeatedOn([] { return std::make_shared<WordList>(); },
                              [=](WordList &list) { Append(list, words); }),
                   RepeatedOn([] { return std::make_shared<StandardWords>(); },
                              [=](StandardWords &list) {
                                  for (std::string const &word : *words)
                                      list.push_back(word);
                              }));
}

Contest RemoveContest(Words const &words) {
    return Contend("Remove words from the head", words,
                   RepeatedOn([=] { return Filled(words); },
                              [](WordList &list) {
                                  while (!list.IsEmpty())
                                      list.RemoveFromHead();
                              }),
                   RepeatedOn([=] { return FilledStandard(words); },
                              [](StandardWords &list) {
                                  while (!list.empty())
                                      list.pop_front();
                              }));
}

Contest CopyContest(Words const &words) {
    auto const ours = Filled(words);
    auto const standard = FilledStandard(words);
    return Contend("Copy a list of words", words,
                   RepeatedOn([] { return std::make_shared<WordList>(); },
                              [=](WordList &list) { list = *ours; }),
                   RepeatedOn([] { return std::make_shared<StandardWords>(); },
                              [=](StandardWords &list) { list = *standard; }));
}

Contest ClearContest(Words const &words) {
    return Contend(
        "Clear a list of words", words,
        RepeatedOn([=] { return Filled(words); }, [](WordList &list) { list.RemoveAll(); }),
        RepeatedOn([=] { return FilledStandard(words); },
                   [](StandardWords &list) { list.clear(); }));
}

std::shared_ptr<EntryList> Filled(StandardEntries const &entries) {
    auto list = std::make_shared<EntryList>();
    for (Entry entry : entries)
        list->AddToTail(&entry, 1);
    return list;
}

StandardEntries MakeEntries(std::uint32_t count) {
    Random random(count);
    StandardEntries entries;
    for (std::uint32_t i = 0; i < count; ++i)
        entries.push_back({random.Below(1000000000)});
    return entries;
}

// Calls `get` for one index after the other, in no order.
template <class Get> auto AtRandom(std::uint32_t count, Get get) {
    auto indexes = std::make_shared<std::vector<std::uint32_t>>();
    Random random(count);
    for (std::uint32_t i = 0; i < 4096; ++i)
        indexes->push_back(random.Below(count));
    return [indexes, get](benchmark::State &state) {
        for (std::size_t next = 0; state.KeepRunning(); ++next)
            benchmark::DoNotOptimize(get((*indexes)[next % indexes->size()]));
    };
}

Contest IndexContest(StandardEntries const &source) {
    auto const count = static_cast<std::uint32_t>(source.size());
    auto const ours = Filled(source);
    auto const standard = std::make_shared<StandardEntries const>(source);
    auto const smart = [=](std::uint32_t index) { return ours->SmartRetrieve(index)->key; };
    auto const plain = [=](std::uint32_t index) { return ours->Retrieve(index)->key; };
    auto const next = [=](std::uint32_t index) {
        return std::next(standard->begin(), static_cast<std::ptrdiff_t>(index))->key;
    };
    for (std::uint32_t index = 0; index < count; index += 37)
        Expect(smart(index) == next(index) && plain(index) == next(index), "element by index");
    return {"Element by index, one",
            count,
            {{"SmartRetrieve", AtRandom(count, smart)},
             {"Retrieve, from the head", AtRandom(count, plain)},
             {"std::next on std::list", AtRandom(count, next)}}};
}

Contest SortContest(StandardEntries const &source) {
    auto const entries = std::make_shared<StandardEntries const>(source);
    auto const sorted = std::make_shared<StandardEntries>(source);
    sorted->sort();
    auto const ours = Filled(source);
    ours->Sort(4);
    unsigned long index = 0;
    for (Entry const &entry : *sorted)
        Expect(ours->SmartRetrieve(index++)->key == entry.key, "sort");
    return {
        "Sort(4), numbers in no order",
        static_cast<std::uint32_t>(source.size()),
        {{"", RepeatedOn([=] { return Filled(*entries); }, [](EntryList &list) { list.Sort(4); })},
         {"std::list::sort", RepeatedOn([=] { return std::make_shared<StandardEntries>(*entries); },
                                        [](StandardEntries &list) { list.sort(); })}}};
}

} // namespace

std::vector<Contest> ListContests(std::uint32_t nodes) {
    Words const words = MakeWords(nodes);
    StandardEntries const entries = MakeEntries(nodes);
    return {AppendContest(words), RemoveContest(words),  CopyContest(words),
            ClearContest(words),  IndexContest(entries), SortContest(entries)};
}

} // namespace bench
