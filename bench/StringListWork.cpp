// Splitting of texts and work on lists of strings, whose results are compared before the
// clock runs.
#include <algorithm>
#include <iterator>
#include <list>
#include <memory>

#include <UtilsStringList.h>

#include "Contest.h"
#include "Random.h"

namespace bench {
namespace {

using UTILS::UtilsString;
using UTILS::UtilsStringList;
using Standard = std::vector<std::string>;
using StandardList = std::list<std::string>;
using Strings = std::shared_ptr<Standard const>;

constexpr char SEPARATOR = ',';
constexpr char const *VECTOR = "std::vector<std::string>";
constexpr char const *LIST = "std::list<std::string>";

std::string RandomLetters(Random &random, std::uint32_t size) {
    std::string text(size, ' ');
    for (char &c : text)
        c = static_cast<char>('a' + random.Below(26));
    return text;
}

// Lengths of 10 to 30; the last two are of one length, so that no fragments follow.
Strings MakePieces(std::uint32_t count) {
    Random random(count);
    auto pieces = std::make_shared<Standard>();
    for (std::uint32_t i = 0; i < count; ++i)
        pieces->push_back(RandomLetters(random, i + 2 < count ? 10 + random.Below(21) : 20));
    return pieces;
}

Strings MakeStrings(std::uint32_t count) {
    Random random(count);
    auto strings = std::make_shared<Standard>();
    for (std::uint32_t i = 0; i < count; ++i)
        strings->push_back(RandomLetters(random, 20));
    return strings;
}

std::string Joined(Standard const &pieces) {
    std::string text;
    for (std::string const &piece : pieces)
        text += piece + SEPARATOR;
    text.pop_back();
    return text;
}

// Calls `take` with each piece.
template <class Take> void Split(std::string const &text, Take take) {
    std::string piece;
    for (std::size_t begin = 0; begin <= text.size();) {
        std::size_t const end = std::min(text.find(SEPARATOR, begin), text.size());
        piece.assign(text, begin, end - begin);
        take(piece);
        begin = end + 1;
    }
}

template <class Take> void FastParse(UtilsString &text, UtilsString const &by, Take take) {
    UtilsString piece;
    for (int more = text.ParseFirstStringFast(by, piece); more;
         more = text.ParseNextStringFast(by, piece))
        take(piece);
}

// From the tail to the head, which is the order in which they were added.
Standard TakeAll(UtilsStringList &list) {
    Standard strings;
    for (; list.GetNumberOfStrings() != 0; list.RemoveString(0))
        strings.emplace_back(list.Retrieve(0));
    std::reverse(strings.begin(), strings.end());
    return strings;
}

// One text in all forms, and the pieces that it is to fall into.
class Texts {
public:
    explicit Texts(Strings const &pieces)
        : m_pieces(pieces), m_text(std::make_shared<std::string const>(Joined(*pieces))),
          m_ours(std::make_shared<UtilsString>(*m_text)),
          m_by(std::make_shared<UtilsString>(std::string(1, SEPARATOR))) {}

    Contest ParseContest() const {
        Contest contest{"Pieces of a text of 1 MiB, ParseNextStringFast", Count(), {}};
        Standard parsed;
        FastParse(*m_ours, *m_by, [&](UtilsString const &p) { parsed.emplace_back(p.c_str()); });
        Check(parsed);
        Add(
            contest, "",
            [*this] {
                std::size_t size = 0;
                FastParse(*m_ours, *m_by, [&](UtilsString const &piece) { size += piece.size(); });
                return size;
            },
            m_text->size() + 1 - Count());
        Add(
            contest, "std::string::find and assign",
            [*this] {
                std::size_t size = 0;
                Split(*m_text, [&](std::string const &piece) { size += piece.size(); });
                return size;
            },
            m_text->size() + 1 - Count());
        return contest;
    }

    Contest IntoListContest() const {
        auto const split = [*this](UtilsStringList &list) {
            list.SplitData(*m_ours, *m_by, 0, 0, 1);
        };
        auto const standard = [*this](StandardList &list) {
            Split(*m_text, [&](std::string const &piece) { list.push_front(piece); });
        };
        UtilsStringList tried;
        split(tried);
        Check(TakeAll(tried));
        StandardList expected;
        standard(expected);
        expected.reverse();
        Check({expected.begin(), expected.end()});
        return {"Split a text of 1 MiB into a list",
                Count(),
                {{"", RepeatedOn([] { return std::make_shared<UtilsStringList>(); }, split)},
                 {LIST, RepeatedOn([] { return std::make_shared<StandardList>(); }, standard)}}};
    }

    Contest IntoStringContest() const {
        auto const split = [*this](UtilsString &strings) { strings.SplitData(*m_ours, *m_by, 0); };
        auto const standard = [*this](Standard &strings) {
            Split(*m_text, [&](std::string const &piece) { strings.push_back(piece); });
        };
        UtilsString tried;
        split(tried);
        Standard strings;
        for (unsigned long i = 0; i < tried.GetNumberOfStrings(); ++i)
            strings.emplace_back(tried.GetStringNumber(i));
        Check(strings);
        strings.clear();
        standard(strings);
        Check(strings);
        return {"Split a text into the strings of one object",
                Count(),
                {{"", RepeatedOn([] { return std::make_shared<UtilsString>(); }, split)},
                 {VECTOR, RepeatedOn([] { return std::make_shared<Standard>(); }, standard)}}};
    }

private:
    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_pieces->size()); }
    void Check(Standard const &pieces) const { Expect(pieces == *m_pieces, "split"); }

    Strings m_pieces;
    std::shared_ptr<std::string const> m_text;
    std::shared_ptr<UtilsString> m_ours;
    std::shared_ptr<UtilsString> m_by;
};

// One set of strings in all forms.
struct Source {
    explicit Source(Strings const &strings)
        : standard(strings),
          ours(std::make_shared<std::vector<UtilsString>>(strings->begin(), strings->end())) {}

    std::uint32_t Count() const { return static_cast<std::uint32_t>(standard->size()); }
    std::shared_ptr<UtilsStringList> MakeOurs() const {
        auto list = std::make_shared<UtilsStringList>();
        for (UtilsString const &string : *ours)
            list->AddString(string);
        return list;
    }
    template <class Container> std::shared_ptr<Container> Make() const {
        return std::make_shared<Container>(standard->begin(), standard->end());
    }

    Strings standard;
    std::shared_ptr<std::vector<UtilsString> const> ours;
};

Contest FillContest(Source const &source) {
    Expect(TakeAll(*source.MakeOurs()) == *source.standard, "fill");
    return {"Fill a list, AddString",
            source.Count(),
            {{"", RepeatedOn([] { return std::make_shared<UtilsStringList>(); },
                             [=](UtilsStringList &list) {
                                 for (UtilsString const &string : *source.ours)
                                     list.AddString(string);
                             })},
             {LIST, RepeatedOn([] { return std::make_shared<StandardList>(); },
                               [=](StandardList &list) {
                                   for (std::string const &string : *source.standard)
                                       list.push_front(string);
                               })},
             {VECTOR, RepeatedOn([] { return std::make_shared<Standard>(); },
                                 [=](Standard &strings) {
                                     for (std::string const &string : *source.standard)
                                         strings.push_back(string);
                                 })}}};
}

Contest SortContest(char const *workload, Source const &source, unsigned int algorithm) {
    auto const list = source.MakeOurs();
    list->Sort(algorithm);
    Standard sorted = TakeAll(*list);
    std::reverse(sorted.begin(), sorted.end());
    auto const expected = source.Make<Standard>();
    std::sort(expected->begin(), expected->end());
    Expect(sorted == *expected, "sort");
    return {workload,
            source.Count(),
            {{"", RepeatedOn([=] { return source.MakeOurs(); },
                             [=](UtilsStringList &strings) { strings.Sort(algorithm); })},
             {"std::list::sort", RepeatedOn([=] { return source.Make<StandardList>(); },
                                            [](StandardList &strings) { strings.sort(); })},
             {"std::sort on std::vector",
              RepeatedOn([=] { return source.Make<Standard>(); },
                         [](Standard &strings) { std::sort(strings.begin(), strings.end()); })}}};
}

// Looks for one string after the other, in no order.
template <class Find> auto LookFor(Source const &source, Find find) {
    return [=](benchmark::State &state) {
        for (std::size_t next = 0; state.KeepRunning(); ++next)
            benchmark::DoNotOptimize(find(next * 7919 % source.Count()));
    };
}

Contest SearchContest(Source const &source) {
    auto const list = source.MakeOurs();
    list->Sort(4);
    auto const sorted = source.Make<Standard>();
    std::sort(sorted->begin(), sorted->end());
    auto const chain = std::make_shared<StandardList>(sorted->begin(), sorted->end());
    auto const bisected = [=](std::size_t i) { return list->SearchList((*source.ours)[i], 1, 0); };
    auto const lower = [=](std::size_t i) {
        auto const found = std::lower_bound(sorted->begin(), sorted->end(), (*source.standard)[i]);
        return static_cast<unsigned long>(found - sorted->begin());
    };
    auto const linear = [=](std::size_t i) {
        auto const found = std::find(chain->begin(), chain->end(), (*source.standard)[i]);
        return static_cast<unsigned long>(std::distance(chain->begin(), found));
    };
    for (std::size_t i = 0; i < source.Count(); i += source.Count() / 97)
        Expect(bisected(i) == lower(i) && linear(i) == lower(i), "search");
    return {"Find a string, SearchList by bisection",
            source.Count(),
            {{"", LookFor(source, bisected)},
             {"std::lower_bound on std::vector", LookFor(source, lower)},
             {"std::find on std::list", LookFor(source, linear)}}};
}

// Sums up the first characters of all strings, each of which is asked for by its index.
template <class Get> Contender Walk(std::string const &name, Source const &source, Get get) {
    std::uint32_t const count = source.Count();
    auto const sum = [=] {
        long total = 0;
        for (std::uint32_t i = 0; i < count; ++i)
            total += *get(i);
        return total;
    };
    long expected = 0;
    for (std::string const &string : *source.standard)
        expected += string[0];
    Expect(sum() == expected, "walk, " + name);
    return {name, Repeated(sum)};
}

Contest WalkContest(Source const &source) {
    auto const list = source.MakeOurs();
    auto const chain = source.Make<StandardList>();
    auto const strings = source.Make<Standard>();
    return {"Walk by index, RetrieveString",
            source.Count(),
            {Walk("", source, [=](std::uint32_t i) { return list->RetrieveString(i)->c_str(); }),
             Walk("std::next on std::list", source,
                  [=](std::uint32_t i) { return std::next(chain->begin(), i)->c_str(); }),
             Walk(VECTOR, source, [=](std::uint32_t i) { return (*strings)[i].c_str(); })}};
}

} // namespace

std::vector<Contest> StringListContests(std::uint32_t strings) {
    Texts const text(MakePieces(50000));
    Source const source(MakeStrings(strings));
    return {text.ParseContest(),
            text.IntoListContest(),
            Texts(MakePieces(1000)).IntoStringContest(),
            FillContest(source),
            SortContest("Sort(4), strings in no order", source, 4),
            SortContest("Sort(0), strings in no order: selection", Source(MakeStrings(512)), 0),
            SearchContest(source),
            WalkContest(Source(MakeStrings(2000)))};
}

} // namespace bench
