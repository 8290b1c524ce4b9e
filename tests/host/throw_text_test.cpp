// The texts of thrown exceptions, and the library's own path, as a client sees them.
#include "Diag.h"

#include <climits>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include <gtest/gtest.h>

#include "platform/own_path.h"
#include "platform/process.h"

TEST(FormatThrowText, joins_heading_detail_file_and_line) {
    EXPECT_EQ("Out Of Range Error - 7:3; File:  UtilsVector.h; Line:  123",
              FormatThrowText("Out Of Range Error", "7:3", "UtilsVector.h", 123));
    EXPECT_EQ("Inavlid Argument Passed - x; File:  f; Line:  0",
              FormatThrowText("Inavlid Argument Passed", "x", "f", 0));
}

TEST(FormatThrowText, has_its_marks_around_empty_texts_too) {
    EXPECT_EQ(" - ; File:  ; Line:  1", FormatThrowText("", "", "", 1));
    EXPECT_EQ(" - ; File:  ; Line:  1", FormatThrowText(nullptr, nullptr, nullptr, 1));
}

TEST(FormatThrowText, takes_texts_of_any_length) {
    std::string const text(100000, 'x');
    EXPECT_EQ(text + " - " + text + "; File:  " + text + "; Line:  5",
              FormatThrowText(text.c_str(), text.c_str(), text.c_str(), 5));
}

TEST(FormatThrowText, tells_the_line_as_a_signed_number) {
    EXPECT_EQ(" - ; File:  ; Line:  2147483647", FormatThrowText("", "", "", 2147483647));
    EXPECT_EQ(" - ; File:  ; Line:  -1", FormatThrowText("", "", "", ULONG_MAX));
    EXPECT_EQ(" - ; File:  ; Line:  " + std::to_string(LONG_MIN),
              FormatThrowText("", "", "", static_cast<unsigned long>(LONG_MAX) + 1));
}

TEST(FormatThrowText, is_copied_by_the_exception_that_it_is_thrown_in) {
    try {
        throw std::out_of_range(FormatThrowText("Out Of Range Error", "9:9", "file", 1));
    } catch (std::exception const &error) {
        EXPECT_STREQ("Out Of Range Error - 9:9; File:  file; Line:  1", error.what());
    }
}

TEST(GetOwnModulePath, is_the_librarys_file) {
    std::filesystem::path const library =
        std::filesystem::path(ProgramPath()).replace_filename(LibraryFileName());
    EXPECT_EQ(OwnPathOf(library), GetOwnModulePath());
    EXPECT_EQ(GetOwnModulePath(), GetOwnModulePath()); // one static buffer
    EXPECT_LT(std::strlen(GetOwnModulePath()), 260u);
}

TEST(DiagOfTheLibrary, does_nothing_without_a_receiver) {
    Diag(1, "file", "function", 1, "stamp", "%s - %lu", "text", 5ul);
    Diag(1, nullptr, nullptr, 0, nullptr, nullptr);
}
