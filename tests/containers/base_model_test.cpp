// The primitives beside the plain model of them, over random ranges of few letters, so that
// partial matches, separators side by side and the oddities of folding come often.
#include "open_run.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "base_model.h"
#include "dice.h"

using UTILS::MemObject;
using UTILS::UtilsBase;

namespace {

constexpr unsigned long untouched = 0xAAAA;
constexpr int cases = 210000;

template <class Base> struct Traits;
template <> struct Traits<MemObject<char>> {
    using Element = char;
    static constexpr model::Kind kind{true, true};
};
template <> struct Traits<UtilsBase<char>> {
    using Element = char;
    static constexpr model::Kind kind{true, false};
};
template <> struct Traits<UtilsBase<unsigned char>> {
    using Element = unsigned char;
    static constexpr model::Kind kind{false, false};
};

// Sets of letters: what folding brings together and what it doesn't.
std::string const alphabets[] = {"ab",         "aAb",     "aA_?@`", std::string("a\0b", 3),
                                 "\x80\xa0`@", "0P\x10p", "a,"};

// Elements of exactly this size, so that a step too far is seen by a memory checker.
template <class T> std::vector<T> Elements(std::string const &text, bool isText) {
    std::vector<T> elements(text.begin(), text.end());
    if (isText)
        elements.push_back(T());
    elements.shrink_to_fit();
    return elements;
}

template <class T> std::string Shown(std::vector<T> const &elements) {
    return testing::PrintToString(std::vector<int>(elements.begin(), elements.end()));
}

template <class Base> class BaseModel : public testing::Test {
protected:
    using Value = typename Traits<Base>::Element;
    static constexpr model::Kind kind = Traits<Base>::kind;

    Base const base;
    Dice dice{20120504};

    // A range, sometimes of a part of its buffer. A few are long.
    model::Span AnySpan(std::string const &letters) {
        std::size_t const limit = dice.OneIn(500) ? 1500 : dice.OneIn(20) ? 200 : 12;
        std::string const buffer = dice.Text(letters, limit);
        auto const whole = static_cast<unsigned long>(buffer.size());
        return {buffer, dice.OneIn(3) ? dice.Below(buffer.size() + 1) : whole};
    }
    // The same, or with one element changed.
    model::Span Alike(model::Span span, std::string const &letters) {
        if (dice.OneIn(2) && !span.buffer.empty())
            span.buffer[dice.Below(span.buffer.size())] = dice.Of(letters);
        return span;
    }
};

using Bases = testing::Types<MemObject<char>, UtilsBase<char>, UtilsBase<unsigned char>>;
TYPED_TEST_SUITE(BaseModel, Bases);

} // namespace

TYPED_TEST(BaseModel, finds_the_same) {
    using T = typename TestFixture::Value;
    int found = 0;
    for (int i = 0; i < cases && !this->HasFailure(); ++i) {
        std::string const &letters = alphabets[this->dice.Below(std::size(alphabets))];
        model::Span const span = this->AnySpan(letters);
        std::string const sought = this->dice.Text(letters, 5);
        auto const caseMode = static_cast<int>(this->dice.Below(2));
        unsigned long const occurrence = this->dice.Below(5);
        bool const wantsPrevious = !this->dice.OneIn(4);

        model::Hit const hit = model::Search(this->kind, sought, span, caseMode, occurrence);
        auto const text = Elements<T>(span.buffer, this->kind.isText);
        auto const pattern = Elements<T>(sought, false);
        unsigned long index = untouched;
        unsigned long previous = untouched;
        int const result = this->base.search(pattern.data(), pattern.data() + pattern.size(),
                                             text.data(), text.data() + span.size, index, caseMode,
                                             occurrence, wantsPrevious ? &previous : nullptr);

        ASSERT_TRUE(result == int{hit.found} && index == hit.index &&
                    previous == (wantsPrevious ? hit.previous.value_or(untouched) : untouched))
            << Shown(pattern) << " in " << Shown(text) << " of size " << span.size << ", mode "
            << caseMode << ", occurrence " << occurrence << ": " << result << ", " << index << ", "
            << previous;
        found += result;
    }
    EXPECT_GT(found, cases / 20);
}

TYPED_TEST(BaseModel, gives_the_same_pieces) {
    using T = typename TestFixture::Value;
    int given = 0;
    for (int i = 0; i < cases && !this->HasFailure(); ++i) {
        std::string const &letters = alphabets[this->dice.Below(std::size(alphabets))];
        model::Span const span = this->AnySpan(letters);
        std::string const mark = this->dice.Text(letters, 4);
        auto const caseMode = static_cast<int>(this->dice.Below(2));
        unsigned long const piece = this->dice.Below(4);
        bool const keepFront = this->dice.OneIn(3);
        bool const wantsOffset = this->dice.OneIn(2);
        bool const noWhole = this->dice.OneIn(2);

        model::Piece const told =
            model::Parse(this->kind, span, mark, piece, caseMode, keepFront, wantsOffset, noWhole);
        std::string expected = told.text;
        if (told.found && this->kind.isText)
            expected += '\0';
        expected.resize(span.size + 2, '#');

        auto const text = Elements<T>(span.buffer, this->kind.isText);
        auto const separator = Elements<T>(mark, false);
        std::vector<T> room(span.size + 2, T('#'));
        unsigned long offset = untouched;
        int const result =
            this->base.parse(text.data(), text.data() + span.size, room.data(), separator.data(),
                             separator.data() + separator.size(), piece, caseMode, keepFront,
                             wantsOffset ? &offset : nullptr, noWhole);

        ASSERT_TRUE(result == int{told.found} && offset == told.offset.value_or(untouched) &&
                    room == std::vector<T>(expected.begin(), expected.end()))
            << Shown(text) << " of size " << span.size << " by " << Shown(separator) << ", piece "
            << piece << ", mode " << caseMode << ", " << keepFront << wantsOffset << noWhole << ": "
            << result << ", " << Shown(room) << ", " << offset;
        given += result;
    }
    EXPECT_GT(given, cases / 5);
}

TYPED_TEST(BaseModel, compares_the_same) {
    using T = typename TestFixture::Value;
    int seen[3] = {};
    for (int i = 0; i < cases && !this->HasFailure(); ++i) {
        std::string const &letters = alphabets[this->dice.Below(std::size(alphabets))];
        model::Span a = this->AnySpan(letters);
        model::Span b = this->dice.OneIn(3) ? this->Alike(a, letters) : this->AnySpan(letters);
        auto const caseMode = static_cast<int>(this->dice.Below(2));
        auto const matchStyle = static_cast<int>(this->dice.Below(3));
        // A size of 0 is measured: to the terminator, or one element, which there must be.
        unsigned long sizes[2] = {a.size, b.size};
        model::Span *const spans[2] = {&a, &b};
        for (int side = 0; side < 2; ++side) {
            model::Span &span = *spans[side];
            if (span.buffer.empty() && !this->kind.isText)
                span.buffer = "a";
            if (sizes[side] != 0)
                continue;
            span.size = this->kind.isText
                            ? static_cast<unsigned long>(std::string(span.buffer.c_str()).size())
                            : 1;
        }
        auto const left = Elements<T>(a.buffer, this->kind.isText);
        auto const right = Elements<T>(b.buffer, this->kind.isText);

        int const expected = model::Compare(this->kind, a, b, caseMode, matchStyle);
        int const result =
            this->base.compare(left.data(), right.data(), caseMode, matchStyle, sizes[0], sizes[1]);
        ASSERT_EQ(expected, result)
            << Shown(left) << " of size " << sizes[0] << ", " << Shown(right) << " of size "
            << sizes[1] << ", mode " << caseMode << ", style " << matchStyle;
        ++seen[result + 1];
    }
    for (int const count : seen)
        EXPECT_GT(count, cases / 20);
}
