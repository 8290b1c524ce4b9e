// The shared buffers of the wide and byte views: what the first call of a process decides.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"
#include "roles.h"

using UTILS::UtilsString;

namespace {

Role const emptyFirst("empty-wide-first", [](Arguments const &) {
    bool const first = UtilsString().ReturnWideChar() == nullptr;
    bool const later = UtilsString("text").ReturnWideChar() == nullptr;
    bool const empty = UtilsString("text").GetSTLWString().empty();
    return first && later && empty ? 0 : 1;
});

Role const longerThanTheFirst("longer-bytes", [](Arguments const &) {
    UtilsString const first("abc");
    unsigned char const *const bytes = first.ReturnByteStr();
    if (bytes[0] != 'a' + 128 || bytes[1] != 'b' + 128 || bytes[2] != 'c' + 128)
        return 1;
    UtilsString const high(std::string("\x80\xff\x7f", 3));
    if (high.ReturnByteStr() != bytes || bytes[0] != 0 || bytes[1] != 127 || bytes[2] != 255)
        return 2;
    if (UtilsString("z").ReturnByteStr() != bytes || bytes[0] != 'z' + 128 || bytes[1] != 127)
        return 3; // no terminator is added
    bool const refused =
        IsOutOfRange([] { UtilsString("abcd").ReturnByteStr(); }, "3:3", "UtilsAllocator");
    return refused ? 0 : 4;
});

Role const emptyBytesFirst("empty-bytes-first", [](Arguments const &) {
    if (UtilsString().ReturnByteStr() != nullptr)
        return 1;
    bool const refused =
        IsOutOfRange([] { UtilsString("a").ReturnByteStr(); }, "0:0", "UtilsAllocator");
    return refused ? 0 : 2;
});

} // namespace

TEST(StringViews, After_an_empty_text_there_is_never_a_wide_one) {
    EXPECT_EQ(0, RunRole("empty-wide-first", {}));
}

TEST(StringViews, Bytes_are_the_characters_less_128_for_texts_up_to_the_first) {
    EXPECT_EQ(0, RunRole("longer-bytes", {}));
}

TEST(StringViews, After_an_empty_text_no_text_has_bytes) {
    EXPECT_EQ(0, RunRole("empty-bytes-first", {}));
}
