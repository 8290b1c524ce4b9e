// Messages: the texts of errors, and what isn't supported here.
#include "../messages.h"

#include "settings_keeper.h"

namespace {

struct Known {
    DWORD code;
    const char *text;
};

// As the documented lists of errors have them.
constexpr Known known[] = {
    {0, "The operation completed successfully."},
    {2, "The system cannot find the file specified."},
    {3, "The system cannot find the path specified."},
    {5, "Access is denied."},
    {6, "The handle is invalid."},
    {13, "The data is invalid."},
    {18, "There are no more files."},
    {32, "The process cannot access the file because it is being used by another process."},
    {80, "The file exists."},
    {87, "The parameter is incorrect."},
    {112, "There is not enough space on the disk."},
    {122, "The data area passed to a system call is too small."},
    {126, "The specified module could not be found."},
    {145, "The directory is not empty."},
    {183, "Cannot create a file when that file already exists."},
    {234, "More data is available."},
    {259, "No more data is available."},
    {1008, "An attempt was made to reference a token that does not exist."},
    {1314, "A required privilege is not held by the client."},
};

// What the services set, and what their callers may pass on.
constexpr DWORD others[] = {4,    8,    14,  15,   17,   19,   24,   31,   33,   38,  50,  53,
                            120,  123,  127, 131,  132,  206,  223,  258,  288,  487, 587, 998,
                            1004, 1009, 235, 1018, 1113, 1117, 1151, 1337, 1450, 1921};

Message FormatError(DWORD code, ...) {
    va_list arguments;
    va_start(arguments, code);
    Message const message = AskMessage(fromSystem, nullptr, code, &arguments);
    va_end(arguments);
    return message;
}

} // namespace

TEST(MessagesHere, of_errors_are_sentences_of_the_documented_wording) {
    for (Known const &error : known)
        EXPECT_EQ(std::string(error.text) + "\r\n",
                  AskMessage(fromSystem, nullptr, error.code, nullptr).text);
}

TEST(MessagesHere, there_is_one_for_each_error_of_the_services) {
    for (DWORD const code : others)
        EXPECT_GT(AskMessage(fromSystem, nullptr, code, nullptr).count, 10u) << code;
}

TEST(MessagesHere, failing_leaves_the_callers_pointer_alone) {
    EXPECT_TRUE(AskMessage(fromSystem, nullptr, 987654, nullptr).kept);
    EXPECT_TRUE(AskMessage(fromSystem, nullptr, 193, nullptr).kept);
    EXPECT_TRUE(AskMessage(fromString, "%", 0, nullptr).kept);
    EXPECT_TRUE(AskMessage(256, "abc", 0, nullptr).kept);
}

TEST(MessagesHere, other_flags_and_languages_and_no_text_are_87) {
    for (DWORD const flags :
         {0u, 0x100u, 0x400u, 0x1000u, 0x1500u, 0x700u, 0x1300u, 0x2500u, 0x501u})
        EXPECT_EQ(87u, AskMessage(flags, "abc", 2, nullptr).error) << flags;
    EXPECT_EQ(87u, AskMessage(fromString, "abc", 0, nullptr, 0).error);
    EXPECT_EQ(87u, AskMessage(fromSystem, nullptr, 2, nullptr, 1033).error);
    EXPECT_EQ(87u, AskMessage(fromString, nullptr, 0, nullptr).error);
}

TEST(MessagesHere, other_formats_are_87) {
    for (const char *const text :
         {"%1!f!", "%1!e!", "%1!g!", "%1!n!", "%1!q!", "%1!!", "%1!5!", "%1!d5!", "%1!%d!"})
        EXPECT_EQ(87u, Format(text, 1).error) << text;
}

TEST(MessagesHere, stars_count_as_arguments_for_the_inserts_behind_them) {
    EXPECT_EQ("  Bi Bob   Bill", Format("%1!*.*s! %4 %5!*s!", 4, 2, "Bill", "Bob", 6, "Bill").text);
    EXPECT_EQ("ab  |ab", Format("%1!*s!|%1!.*s!", -4, "ab", "x").text);
}

TEST(MessagesHere, the_last_insert_may_have_two_stars) {
    std::string const text = "%99!*.*d!";
    // 98 arguments that nobody prints, then width, precision and value
    EXPECT_EQ(" 05", Format(text.c_str(), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                            0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                            0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                            0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                            0, 0, 0, 0, 0, 0, 0, 3, 2, 5)
                         .text);
}

TEST(MessagesHere, wide_arguments_come_in_the_settings_page) {
    SettingsKeeper const keeper;
    platform::Settings settings = keeper.Copy();
    unsigned short const text[] = {0xe9, 0x416, 0};
    settings.codePage = 1252;
    platform::ApplySettings(settings);
    EXPECT_EQ("\xe9?", Format("%1!S!", text).text);
    settings.codePage = 65001;
    platform::ApplySettings(settings);
    EXPECT_EQ("\xc3\xa9\xd0\x96", Format("%1!S!", text).text);
    EXPECT_EQ("\xc3\xa9", Format("%1!C!", 0xe9).text);
}

TEST(MessagesHere, a_block_is_as_large_as_asked_for) {
    char *block = nullptr;
    ASSERT_EQ(1u, win::FormatMessageA(fromString, "a", 0, usersLanguage,
                                      reinterpret_cast<char *>(&block), 1000, nullptr));
    std::memset(block, 'x', 1000);
    EXPECT_EQ(nullptr, win::LocalFree(block));
    EXPECT_EQ(block, win::LocalFree(block));
    EXPECT_EQ(6u, win::GetLastError());
}

TEST(MessagesHere, arguments_of_errors_are_filled_in) {
    EXPECT_EQ("a.exe is not a valid Win32 application.\r\n", FormatError(193, "a.exe").text);
}

TEST(MessagesHere, can_be_long) {
    std::string const word(40000, 'w');
    EXPECT_TRUE(Format("%1%2", word.c_str(), word.c_str()).text == word + word);
}

TEST(MessagesHere, a_b_behind_a_percent_sign_is_a_blank) { EXPECT_EQ("a b", Format("a%bb").text); }
