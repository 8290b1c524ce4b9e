// Finds, pieces, comparisons and replacements of random bytes against plain models.
#include "open_string.h"

#include <random>

#include <gtest/gtest.h>

#include "text_model.h"

using text_model::Kind;
using UTILS::UtilsByte;

namespace {

using Random = std::mt19937;

std::string SomeBytes(Random &random, std::size_t least, std::size_t limit) {
    static char const values[] = {'\0', 'a', 'A', '\xff'};
    std::string bytes(least + random() % (limit - least), ' ');
    for (char &byte : bytes)
        byte = values[random() % sizeof values];
    return bytes;
}

UtilsByte Bytes(std::string const &content) {
    return content.empty() ? UtilsByte() : UtilsByte(AsData(content), SizeOf(content));
}

// The bytes on a plain string, with the rules of replacements.
struct Model {
    std::string bytes;
    int caseMode;
    unsigned long last;

    bool Replace(std::string const &find, std::string const &with, bool isFirst) {
        if (find.size() == bytes.size()) {
            bytes = isFirst ? with : bytes;
            return isFirst;
        }
        auto const hit = text_model::Search(Kind::Bytes, find, bytes, caseMode, 0);
        if (!hit.found || (!isFirst && hit.index == last))
            return false;
        last = hit.index;
        bytes =
            find.size() == with.size()
                ? text_model::Overwritten(bytes, with, last)
                : text_model::Inserted(text_model::Without(bytes, SizeOf(find), last), with, last);
        return true;
    }
};

} // namespace

TEST(ByteModel, Finds_are_those_of_one_pass) {
    Random random(1);
    for (int round = 0; round < 40000; ++round) {
        std::string const content = SomeBytes(random, 0, 14);
        std::string const pattern = SomeBytes(random, 1, 4);
        UtilsByte bytes = Bytes(content);
        bytes.SetCase(round % 2);
        unsigned long index = 0;
        for (unsigned long i = 0; i < 3; ++i) {
            int const found = i == 0 ? bytes.FindFirst(AsData(pattern), SizeOf(pattern), index)
                                     : bytes.FindNext(AsData(pattern), SizeOf(pattern), index);
            auto const hit = text_model::Search(Kind::Bytes, pattern, content, round % 2, i);
            ASSERT_EQ(hit.found, found == 1) << "round " << round;
            ASSERT_EQ(hit.index, index) << "round " << round;
        }
    }
}

TEST(ByteModel, Pieces_are_those_between_the_finds) {
    Random random(2);
    UtilsByte piece;
    text_model::Pieces pieces;
    pieces.kind = Kind::Bytes;
    for (int round = 0; round < 40000; ++round) {
        std::string const content = SomeBytes(random, 0, 12);
        std::string const separator = SomeBytes(random, 1, 3);
        UtilsByte bytes = Bytes(content);
        bytes.SetCase(round % 2); // has no part in it
        unsigned long const size = SizeOf(separator);
        for (unsigned long i = 0; i < 3; ++i) {
            auto const wanted = pieces.Parse(content, separator, i);
            int const found = i == 0 ? bytes.ParseFirstByteString(AsData(separator), size, piece)
                                     : bytes.ParseNextByteString(AsData(separator), size, piece);
            ASSERT_EQ(wanted.has_value(), found == 1) << "round " << round;
            ASSERT_EQ(wanted.value_or(""), BytesOf(piece)) << "round " << round;
        }
    }
}

TEST(ByteModel, Comparisons_are_over_unsigned_values) {
    Random random(3);
    for (int round = 0; round < 60000; ++round) {
        std::string const a = SomeBytes(random, 1, 5), b = SomeBytes(random, 1, 5);
        int const caseMode = round & 1, style = round >> 1 & 1;
        UtilsByte bytes = Bytes(a);
        bytes.SetCase(caseMode);
        bytes.SetMatchStyle(style);
        ASSERT_EQ(text_model::Compare(Kind::Bytes, a, b, caseMode, style), bytes.Compare(Bytes(b)))
            << "round " << round;
        ASSERT_EQ(text_model::Compare(Kind::Bytes, b, a, caseMode, style),
                  bytes.FriendCompare(Bytes(b)))
            << "round " << round;
    }
}

TEST(ByteModel, Replacements_are_made_one_by_one_from_the_start) {
    Random random(4);
    for (int round = 0; round < 40000; ++round) {
        std::string const find = SomeBytes(random, 1, 4), with = SomeBytes(random, 1, 4);
        Model model{SomeBytes(random, 0, 14), round % 2, 0};
        OpenByte bytes;
        bytes = static_cast<UtilsByte const &>(Bytes(model.bytes));
        bytes.SetCase(round % 2);
        bytes.lastReplaceIndex = 0;
        int patience = 100;
        bool const any = model.Replace(find, with, true);
        while (any && patience != 0 && model.Replace(find, with, false))
            --patience;
        if (patience == 0)
            continue; // it would grow without end
        ASSERT_EQ(any, bytes.ReplaceAll(AsData(find), SizeOf(find), AsData(with), SizeOf(with)))
            << "round " << round;
        ASSERT_EQ(model.bytes, BytesOf(bytes)) << "round " << round;
    }
}
