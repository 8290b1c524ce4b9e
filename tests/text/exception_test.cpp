// The exceptions' texts, whole, and how they are raised.
#include "std_exception.h"

#include <climits>
#include <string>

#include <gtest/gtest.h>

using UTILS::DiskIoException;
using UTILS::std_exception;
using UTILS::UtilsString;

namespace {

constexpr unsigned long unknownError = 0x2FFFFFFF; // no system has a text for it

std::string SystemText(unsigned long error) {
    UtilsString text;
    text.SetErrorMsg(error, 0);
    return text;
}

// The same condition as a text and as a UtilsString.
void ExpectText(std::string const &wanted, char const *condition, char const *file,
                unsigned long type, unsigned long line, unsigned long error, int describe) {
    EXPECT_EQ(wanted, std_exception(condition, file, type, line, error, describe).what());
    EXPECT_EQ(wanted,
              std_exception(UtilsString(condition), file, type, line, error, describe).what());
}

struct OpenException : std_exception {
    using std_exception::CopyData;
    using std_exception::std_exception;
};

} // namespace

TEST(Exception, Without_more_tells_its_class_only) {
    EXPECT_STREQ("Exception Name:  class UTILS::std_exception", std_exception().what());
}

TEST(Exception, Tells_file_line_class_type_number_and_condition) {
    ExpectText("File:  UtilsRegistry; Line Number:  315; Exception Name:  class "
               "UTILS::std_exception; Type:  204; Error Number: 2; Error Condition:  Cannot Open "
               "Registry Entry:  ; value:  SOFTWARE\\Missing\\",
               "Cannot Open Registry Entry:  ; value:  SOFTWARE\\Missing\\", "UtilsRegistry", 204,
               315, 2, 0);
}

TEST(Exception, Describes_the_error_when_told_to) {
    std::string const description = SystemText(2);
    ASSERT_FALSE(description.empty());
    ExpectText("File:  f; Line Number:  1; Exception Name:  class UTILS::std_exception; Type:  3; "
               "Error Number: 2; WinError Description: " +
                   description + "; Error Condition:  c",
               "c", "f", 3, 1, 2, 1);
    ExpectText("File:  f; Line Number:  1; Exception Name:  class UTILS::std_exception; Type:  3; "
               "Error Number: 2; WinError Description: " +
                   description + "; Error Condition:  c",
               "c", "f", 3, 1, 2, -7);
}

TEST(Exception, Keeps_the_line_break_that_ends_a_description) {
    std::string const description = SystemText(2);
    ASSERT_LT(2u, description.size());
    EXPECT_EQ("\r\n", description.substr(description.size() - 2));
    std::string const text = std_exception("c", "f", 3, 1, 2, 1).what();
    EXPECT_NE(std::string::npos, text.find("\r\n; Error Condition:  c"));
}

TEST(Exception, Of_an_error_that_the_system_has_no_text_for_shows_the_file) {
    ASSERT_EQ("", SystemText(unknownError));
    std::string const front = "File:  f.cpp; Line Number:  1; Exception Name:  class "
                              "UTILS::std_exception; Type:  3; Error Number: 805306367; "
                              "WinError Description: f.cpp; Error Condition:  c";
    ExpectText(front, "c", "f.cpp", 3, 1, unknownError, 1);
    ExpectText("File:  ; Line Number:  1; Exception Name:  class UTILS::std_exception; Type:  3; "
               "Error Number: 805306367; WinError Description: ; Error Condition:  c",
               "c", "", 3, 1, unknownError, 1);
}

TEST(Exception, Without_an_error_tells_neither_number_nor_description) {
    for (int const describe : {0, 1})
        ExpectText("File:  f; Line Number:  1; Exception Name:  class UTILS::std_exception; "
                   "Type:  3; Error Condition:  c",
                   "c", "f", 3, 1, 0, describe);
}

TEST(Exception, Tells_its_numbers_without_a_sign) {
    std::string const largest = std::to_string(ULONG_MAX);
    ExpectText("File:  f; Line Number:  " + largest +
                   "; Exception Name:  class UTILS::std_exception; Type:  " + largest +
                   "; Error Number: " + largest + "; Error Condition:  c",
               "c", "f", ULONG_MAX, ULONG_MAX, ULONG_MAX, 0);
    ExpectText("File:  f; Line Number:  0; Exception Name:  class UTILS::std_exception; Type:  0; "
               "Error Condition:  ",
               "", "f", 0, 0, 0, 1);
}

TEST(Exception, Of_five_texts_passes_them_unchanged) {
    UtilsString const condition("c"), file("f"), type("a type"), line("a line");
    EXPECT_STREQ("File:  f; Line Number:  a line; Exception Name:  class UTILS::std_exception; "
                 "Type:  a type; Error Number: an error; Error Condition:  c",
                 std_exception(condition, file, type, line, UtilsString("an error")).what());
    EXPECT_STREQ("File:  f; Line Number:  a line; Exception Name:  class UTILS::std_exception; "
                 "Type:  a type; Error Condition:  c",
                 std_exception(condition, file, type, line, UtilsString()).what());
    EXPECT_STREQ("File:  f; Line Number:  a line; Exception Name:  class UTILS::std_exception; "
                 "Type:  a type; Error Number: 0; Error Condition:  c",
                 std_exception(condition, file, type, line, UtilsString("0")).what());
    // A number that the system has a text for is not described.
    EXPECT_STREQ("File:  f; Line Number:  a line; Exception Name:  class UTILS::std_exception; "
                 "Type:  a type; Error Number: 2; Error Condition:  c",
                 std_exception(condition, file, type, line, UtilsString("2")).what());
}

TEST(Exception, Takes_the_selected_string_of_a_condition) {
    UtilsString condition("one");
    condition.AddString("two");
    condition.SetCurrentString(1);
    EXPECT_STREQ("File:  f; Line Number:  1; Exception Name:  class UTILS::std_exception; Type:  "
                 "3; Error Condition:  two",
                 std_exception(condition, "f", 3, 1, 0, 0).what());
}

TEST(Exception, A_copy_has_the_same_text_of_its_own) {
    std_exception const exception("c", "f", 3, 1, 2, 0);
    std_exception const copy(exception);
    OpenException assigned, copied;
    assigned = OpenException("c", "f", 3, 1, 2, 0);
    copied.CopyData(exception);
    EXPECT_STREQ(exception.what(), copy.what());
    EXPECT_NE(exception.what(), copy.what());
    EXPECT_STREQ(exception.what(), assigned.what());
    EXPECT_STREQ(exception.what(), copied.what());
}

TEST(Exception, Gives_its_text_as_a_pointer) {
    std_exception const exception("c", "f", 3, 1, 2, 0);
    char const *const text = exception;
    EXPECT_EQ(exception.what(), text);
    std::exception const &base = exception;
    EXPECT_EQ(text, base.what());
}

TEST(Exception, Names_its_class) {
    EXPECT_STREQ("class UTILS::std_exception", std_exception().derived_class());
    DiskIoException const disk(1, 2, 3, "f", "m");
    std_exception const &base = disk;
    EXPECT_STREQ("class UTILS::DiskIoException", base.derived_class());
}

TEST(Exception, Raises_a_copy_of_itself) {
    std_exception const exception("c", "f", 3, 1, 2, 0);
    try {
        exception._Doraise();
    } catch (std::exception const &raised) {
        EXPECT_STREQ(exception.what(), raised.what());
        EXPECT_NE(static_cast<std::exception const *>(&exception), &raised);
        EXPECT_TRUE(typeid(raised) == typeid(std_exception));
    }
}

TEST(DiskException, Holds_what_it_was_made_from) {
    auto const check = [](auto const &message) {
        DiskIoException const exception(7, 5, 42, "DiskIO", message);
        EXPECT_EQ(7u, exception.type);
        EXPECT_EQ(5u, exception.error);
        EXPECT_EQ(42u, exception.line);
        EXPECT_STREQ("class UTILS::DiskIoException", exception.name.c_str());
        EXPECT_STREQ("message", exception.message.c_str());
        EXPECT_STREQ("DiskIO", exception.file.c_str());
        EXPECT_STREQ("File:  DiskIO; Line Number:  42; Exception Name:  class "
                     "UTILS::std_exception; Type:  7; Error Number: 5; Error Condition:  message",
                     exception.what());
    };
    char const *const message = "message";
    check(message);
    check(UtilsString("message"));
}

TEST(DiskException, Is_never_described) {
    std::string const text = DiskIoException(7, 2, 42, "DiskIO", "message").what();
    EXPECT_EQ(std::string::npos, text.find("WinError"));
    EXPECT_NE(std::string::npos, text.find("Error Number: 2; "));
}

TEST(DiskException, Without_an_error_tells_no_number) {
    EXPECT_STREQ("File:  f; Line Number:  1; Exception Name:  class UTILS::std_exception; Type:  "
                 "7; Error Condition:  m",
                 DiskIoException(7, 0, 1, "f", "m").what());
}

TEST(DiskException, Is_caught_as_itself_when_thrown) {
    EXPECT_THROW(throw DiskIoException(1, 2, 3, "f", "m"), DiskIoException);
    try {
        throw DiskIoException(1, 2, 3, "f", "m");
    } catch (std_exception const &exception) {
        EXPECT_STREQ("class UTILS::DiskIoException", exception.derived_class());
    }
}

TEST(DiskException, Raised_is_caught_as_a_plain_exception) {
    DiskIoException const exception(1, 2, 3, "f", "m");
    std::string caught;
    try {
        exception._Doraise();
    } catch (DiskIoException const &) {
        caught = "disk";
    } catch (std_exception const &raised) {
        caught = raised.what();
        EXPECT_STREQ("class UTILS::std_exception", raised.derived_class());
    }
    EXPECT_EQ(exception.what(), caught);
}

TEST(DiskException, Has_a_lock_that_is_free) {
    DiskIoException exception(1, 2, 3, "f", "m");
    exception.lock.Lock();
    exception.lock.UnLock();
    DiskIoException const copy(exception);
    EXPECT_STREQ("m", copy.message.c_str());
}
