// Memory fails at each allocation of an operation in turn: nothing is lost, and what the
// operation worked on is as it was.
#include "UtilsVector.h"

#include <functional>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "allocations.h"
#include "open_allocator.h"
#include "open_base.h"
#include "open_run.h"
#include "run_element.h"

namespace {

using Fail = AllocationWatch::Fail;

struct OpenBundle : UTILS::Utils<char, int> {
    using Base = UTILS::Utils<char, int>;
    OpenBundle() = default;
    OpenBundle(OpenBundle const &other) : Base(other) {}
    using Base::VectorCopy;
    using Base::vectorStore;
};
struct ListBundle : UTILS::Utils<Element, int> {
    using Base = UTILS::Utils<Element, int>;
    using Base::ListCopy;
    using Base::listStore;
};

// Texts that don't fit into a std::string itself.
std::string const longText = "a text that is longer than what lies in a string itself";
std::string const otherText = "another text that is longer than what lies in a string itself";

// What an object holds, in words.
std::string Told(OpenRun<char> const &run) {
    return run.Text() + (run.IsTerminated() ? "" : " (no terminator)") + " in " +
           std::to_string(run.BlockLength()) + " of " + std::to_string(run.initialSize);
}
std::string Told(OpenRun<unsigned char> const &run) {
    auto const bytes = run.Text();
    return std::string(bytes.begin(), bytes.end()) + " in " + std::to_string(run.BlockLength());
}
std::string Told(OpenAllocator<Element> const &elements) {
    std::string told =
        std::to_string(elements.blockLength) + " by " + std::to_string(elements.blockHeight) + ":" +
        std::to_string(elements.isMatrix) + std::to_string(elements.allocationScheme);
    for (unsigned long row = 0; row < elements.blockHeight; ++row)
        for (unsigned long i = 0; i < elements.blockLength; ++i)
            told += " " + elements.memoryMatrix[row][i].text;
    for (unsigned long i = 0; elements.blockHeight == 0 && i < elements.blockLength; ++i)
        told += " " + elements.memoryBlock[i].text;
    return told;
}
std::string Told(OpenBundle const &bundle) {
    std::string told = bundle.vectorStore ? "vector:" : "none";
    for (unsigned long i = 0; bundle.vectorStore && i < bundle.vectorStore->GetLength(); ++i)
        told += std::string(" ") + bundle.RetrieveVectorItem(i).Retrieve();
    return told;
}
std::string Told(ListBundle &bundle) {
    std::string told = bundle.listStore ? "lists:" : "none";
    for (unsigned long i = 0; bundle.listStore && i < bundle.listStore->GetLength(); ++i) {
        told += " " + std::to_string(bundle.RetrieveListSize(i));
        for (unsigned long k = 0; k < bundle.RetrieveListSize(i); ++k)
            told += " " + bundle.RetrieveListItem(i).Retrieve(k)->text;
    }
    return told;
}

enum class After { AsBefore, Usable };

// Whether an operation throws when an allocation fails, and whether one did.
bool Throws(std::function<void()> const &operation, Fail fail, std::uint64_t number, bool &failed) {
    AllocationWatch const watch(fail, number);
    bool threw = false;
    try {
        operation();
    } catch (std::bad_alloc const &) {
        threw = true;
    }
    failed = watch.Failed();
    return threw;
}

// An object in some state; what it holds is watched.
template <class Object> std::unique_ptr<Object> Made(std::function<void(Object &)> const &prepare) {
    AllocationWatch const watch;
    auto object = std::make_unique<Object>();
    prepare(*object);
    return object;
}

// Runs an operation on an object in the state that `prepare` gives it, with each allocation
// failing, alone or with all later ones, until none does. The operation allocates at least
// once; its result is `expected`.
template <class Object> void FailEach(std::function<void(Object &)> const &prepare,
                                      std::function<void(Object &)> const &operation,
                                      std::string const &expected, After after = After::AsBefore) {
    for (Fail const fail : {Fail::One, Fail::Onwards}) {
        bool failed = true;
        std::uint64_t number = 0;
        while (failed && !testing::Test::HasFailure()) {
            SCOPED_TRACE(testing::Message() << "allocation " << ++number);
            std::size_t const live = AllocationWatch::LiveBlocks();
            int const alive = Element::Alive();
            {
                auto const object = Made(prepare);
                std::string const before = Told(*object);
                bool const threw = Throws([&] { operation(*object); }, fail, number, failed);
                EXPECT_EQ(failed, threw);
                if (!threw) {
                    EXPECT_EQ(expected, Told(*object));
                } else if (after == After::AsBefore) {
                    EXPECT_EQ(before, Told(*object));
                }
                operation(*object); // works on
            }
            EXPECT_EQ(live, AllocationWatch::LiveBlocks()) << "a leak";
            EXPECT_EQ(alive, Element::Alive()) << "elements lost";
        }
        EXPECT_GT(number, 1u) << "no allocation at all";
    }
}

template <class Object> void Nothing(Object &) {}

void FillRun(TextRun &run) { run.Append("abcdef"); }
void FillBytes(ByteRun &run) { run.Append(AsBytes("abcdef").data(), 6); }

void FillBlock(OpenAllocator<Element> &elements) {
    elements.AllocateMemory(2);
    elements[0ul].text = longText;
    elements[1ul].text = otherText;
}
void FillMatrix(OpenAllocator<Element> &elements) {
    elements.AllocateMatrix(2, 2);
    elements.memoryMatrix[0][0].text = longText;
    elements.memoryMatrix[1][1].text = otherText;
}
void FillBundle(OpenBundle &bundle) {
    for (char const *const text : {"one", "two", "three"})
        bundle.AddVector(text, 0);
}

std::string const filledBlock = " " + longText + " " + otherText;

} // namespace

TEST(RunsFaults, of_building_an_allocator) {
    auto const build = [](OpenAllocator<Element> &) { OpenAllocator<Element> const block(3); };
    FailEach<OpenAllocator<Element>>(Nothing<OpenAllocator<Element>>, build, "0 by 0:00");
    auto const rows = [](OpenAllocator<Element> &) { OpenAllocator<Element> const matrix(2, 3); };
    FailEach<OpenAllocator<Element>>(Nothing<OpenAllocator<Element>>, rows, "0 by 0:00");
}

TEST(RunsFaults, of_resizing_a_block) {
    for (unsigned long const length : {1ul, 5ul}) {
        std::string const expected =
            length == 1 ? "1 by 0:01 " + longText : "5 by 0:01" + filledBlock + "   ";
        FailEach<OpenAllocator<Element>>(
            FillBlock,
            [length](OpenAllocator<Element> &elements) {
                elements.ReAllocateMemory(length == elements.GetLength() ? 2 : length);
            },
            expected);
    }
}

TEST(RunsFaults, of_resizing_a_matrix) {
    FailEach<OpenAllocator<Element>>(
        FillMatrix,
        [](OpenAllocator<Element> &elements) {
            elements.ReAllocateMatrix(1, elements.GetHeight() + 1);
        },
        "1 by 3:11 " + longText + "  ");
}

TEST(RunsFaults, of_memory_of_the_callers) {
    auto const lend = [](OpenAllocator<Element> &heap) {
        Element *block = heap.AllocateMemory(nullptr, 2);
        block[1].text.assign(1, 'x');
        try {
            block = heap.ReAllocateMemory(block, 2, 4);
        } catch (...) {
            EXPECT_EQ("x", block[1].text);
            heap.FreeMemory(block);
            throw;
        }
        heap.FreeMemory(block);
    };
    FailEach<OpenAllocator<Element>>(Nothing<OpenAllocator<Element>>, lend, "0 by 0:00");
    auto const lendRows = [](OpenAllocator<Element> &heap) {
        Element **rows = heap.AllocateMatrix(nullptr, 2, 2);
        rows[1][1].text.assign(1, 'x');
        try {
            rows = heap.ReAllocateMatrix(rows, 2, 3, 2, 3);
        } catch (...) {
            EXPECT_EQ("x", rows[1][1].text);
            heap.FreeMatrix(rows, 2);
            throw;
        }
        heap.FreeMatrix(rows, 3);
    };
    FailEach<OpenAllocator<Element>>(Nothing<OpenAllocator<Element>>, lendRows, "0 by 0:00");
}

TEST(RunsFaults, of_copying_an_allocator) {
    OpenAllocator<Element> block;
    FillBlock(block);
    OpenAllocator<Element> matrix;
    FillMatrix(matrix);
    auto const take = [](OpenAllocator<Element> const &source) {
        return [&source](OpenAllocator<Element> &target) {
            OpenAllocator<Element> const copy(source);
            target = copy;
        };
    };
    auto const single = [](OpenAllocator<Element> &elements) { elements.AllocateMemory(1); };
    for (auto const &prepare : {std::function<void(OpenAllocator<Element> &)>(single),
                                std::function<void(OpenAllocator<Element> &)>(FillBlock)}) {
        FailEach<OpenAllocator<Element>>(prepare, take(matrix), Told(matrix));
    }
    FailEach<OpenAllocator<Element>>(single, take(block), Told(block));
    FailEach<OpenAllocator<Element>>(FillMatrix, take(block), Told(block));
}

TEST(RunsFaults, of_copying_into_a_block_of_the_same_length) {
    OpenAllocator<Element> other(2);
    other[0ul].text = otherText + longText;
    other[1ul].text = longText + otherText;
    FailEach<OpenAllocator<Element>>(
        FillBlock, [&other](OpenAllocator<Element> &target) { target = other; }, Told(other),
        After::Usable);
}

TEST(RunsFaults, of_reversing_a_range) {
    struct Range : OpenBase<Element> {
        Element elements[2] = {Element(longText), Element(otherText)};
        void Turn() { reverse(elements, elements + 2); }
    };
    bool failed = true;
    for (std::uint64_t number = 1; failed && !HasFailure(); ++number) {
        std::size_t const live = AllocationWatch::LiveBlocks();
        int const alive = Element::Alive();
        {
            Range range;
            AllocationWatch const watch(Fail::One, number);
            try {
                range.Turn();
                EXPECT_EQ(otherText, range.elements[0].text);
            } catch (std::bad_alloc const &) {
            }
            failed = watch.Failed();
        }
        EXPECT_EQ(live, AllocationWatch::LiveBlocks()) << number;
        EXPECT_EQ(alive, Element::Alive()) << number;
    }
}

TEST(RunsFaults, there_are_none_in_searches_and_comparisons) {
    OpenRun<char> const run(std::string(2000, 'x'));
    char const *const text = run.Retrieve();
    char const pattern[] = "xy";
    std::vector<char> room(3000);
    OpenBase<char> base;
    AllocationWatch const watch(Fail::Onwards, 1);
    for (int const caseMode : {0, 1}) {
        unsigned long index = 0;
        EXPECT_EQ(0,
                  run.search(pattern, pattern + 2, text, text + 2000, index, caseMode, 1, nullptr));
        EXPECT_EQ(1, run.parse(text, text + 2000, room.data(), pattern, pattern + 1, 1, caseMode, 0,
                               nullptr, 0));
        EXPECT_NE(0, run.compare(text, pattern, caseMode, 1, 0, 0));
    }
    run.GetSizeOfData(text, nullptr);
    base.selection_sort(room.data(), room.data() + 10);
    EXPECT_FALSE(watch.Failed());
}

TEST(RunsFaults, of_building_a_run) {
    auto const build = [](TextRun &) { TextRun const run(5); };
    FailEach<TextRun>(Nothing<TextRun>, build, " in 1 of 1");
}

TEST(RunsFaults, of_appending) {
    FailEach<TextRun>(
        FillRun, [](TextRun &run) { run.Append("ghi", 2); }, "abcdefgh in 9 of 1");
    FailEach<TextRun>(
        FillRun, [](TextRun &run) { run.Append(run.Retrieve() + 4, 2); }, "abcdefef in 9 of 1");
    FailEach<ByteRun>(
        FillBytes, [](ByteRun &run) { run.Append(AsBytes("g").data()); }, "abcdefg in 7");
}

TEST(RunsFaults, of_inserting) {
    FailEach<TextRun>(
        FillRun, [](TextRun &run) { run.Insert("xy", 1, 0); }, "axybcdef in 9 of 1");
    FailEach<TextRun>(
        FillRun, [](TextRun &run) { run.Insert("xy", 1, 1); }, "axydef in 7 of 1");
    FailEach<ByteRun>(
        FillBytes, [](ByteRun &run) { run.Insert(AsBytes("x").data(), 6, 0); }, "abcdefx in 7");
}

TEST(RunsFaults, of_cutting) {
    FailEach<TextRun>(
        FillRun, [](TextRun &run) { run.Truncate(2); }, "abcd in 5 of 1");
    FailEach<TextRun>(
        FillRun, [](TextRun &run) { run.TruncateAtPosition(3, 1); }, "aef in 4 of 1");
    FailEach<ByteRun>(
        FillBytes, [](ByteRun &run) { run.TruncateAtPosition(1, 0); }, "bcdef in 5");
}

TEST(RunsFaults, of_emptying) {
    auto const empty = [](TextRun &run) {
        if (run.RetrieveSize() == 0)
            return;
        run.Empty();
    };
    FailEach<TextRun>(FillRun, empty, " in 1 of 1");
    auto const all = [](TextRun &run) { run.Truncate(run.RetrieveSize()); };
    FailEach<TextRun>(FillRun, all, " in 1 of 1");
}

TEST(RunsFaults, of_reversing_a_run) {
    FailEach<TextRun>(
        FillRun, [](TextRun &run) { run.Reverse(); }, "fedcba in 7 of 1");
}

TEST(RunsFaults, of_assigning_a_run) {
    TextRun other(4);
    FailEach<TextRun>(
        FillRun, [&other](TextRun &run) { run = other; }, " in 4 of 4");
    other.Append("xyz");
    FailEach<TextRun>(
        FillRun, [&other](TextRun &run) { run = other; }, "xyz in 4 of 4");
}

TEST(RunsFaults, of_building_a_vector) {
    auto const build = [](OpenBundle &bundle) { bundle.BuildVector(2, "xyz", 0); };
    FailEach<OpenBundle>(Nothing<OpenBundle>, build, "vector: xyz xyz");
    FailEach<OpenBundle>(FillBundle, build, "vector: xyz xyz");
}

TEST(RunsFaults, of_growing_a_vector) {
    auto const add = [](OpenBundle &bundle) { bundle.AddVector("four", 0); };
    FailEach<OpenBundle>(Nothing<OpenBundle>, add, "vector: four");
    FailEach<OpenBundle>(FillBundle, add, "vector: one two three four");
    auto const own = [](OpenBundle &bundle) {
        bundle.AddVector(bundle.RetrieveVectorItem(1).Retrieve(), 0);
    };
    FailEach<OpenBundle>(FillBundle, own, "vector: one two three two");
}

TEST(RunsFaults, of_shrinking_a_vector) {
    auto const remove = [](OpenBundle &bundle) { bundle.RemoveVectorItem(0); };
    FailEach<OpenBundle>(FillBundle, remove, "vector: two three");
}

TEST(RunsFaults, of_copying_bundles) {
    OpenBundle source;
    FillBundle(source);
    auto const copy = [&source](OpenBundle &bundle) {
        OpenBundle const second(source);
        bundle.VectorCopy(second);
    };
    FailEach<OpenBundle>(Nothing<OpenBundle>, copy, "vector: one two three");
    auto const build = [](OpenBundle &bundle) { bundle.AddVector("x", 0); };
    FailEach<OpenBundle>(build, copy, "vector: one two three");
}

TEST(RunsFaults, of_building_and_copying_lists) {
    auto const build = [](ListBundle &bundle) { bundle.BuildList(2, 1); };
    FailEach<ListBundle>(Nothing<ListBundle>, build, "lists: 0 0");
    ListBundle source;
    source.BuildList(2, 1);
    Element item(longText);
    source.RetrieveListItem(1).AddToTail(&item, 0);
    auto const copy = [&source](ListBundle &bundle) { bundle.ListCopy(source); };
    FailEach<ListBundle>(build, copy, "lists: 0 1 " + longText);
}
