// Conversions and messages when the system's own calls fail.
#include "open_string.h"

#include <gtest/gtest.h>

#include "call_hook.h"
#include "std_exception.h"

#include "platform/winapi.h"

using UTILS::UtilsString;
using UTILS::WideString;

namespace {

constexpr DWORD anyError = 87;

// Lets so many calls of a service through and has the next one fail.
class FailingCall {
public:
    FailingCall(char const *service, int passes, DWORD error = anyError)
        : m_hook([=, left = passes](CallHook::Call const &call) mutable {
              if (!Is(call, service) || call.moment != CallHook::Moment::Before || left-- != 0)
                  return false;
              win::SetLastError(error);
              return true;
          }) {}

private:
    CallHook m_hook;
};

} // namespace

TEST(StringCalls, Wide_text_that_cant_be_measured_or_converted_changes_nothing) {
    for (int const passes : {0, 1}) {
        UtilsString string("old");
        {
            FailingCall const failing("WideCharToMultiByte", passes);
            string.ConvertFromWideChar(Wide("new").c_str(), 0);
        }
        EXPECT_STREQ("old", string.c_str());
        {
            FailingCall const failing("WideCharToMultiByte", passes);
            string += Wide("new");
        }
        EXPECT_STREQ("old", string.c_str());
        FailingCall const failing("WideCharToMultiByte", passes);
        EXPECT_STREQ("", UtilsString::ReturnStringFromWideString(Wide("new")).c_str());
    }
}

TEST(StringCalls, Wide_text_that_cant_be_converted_still_takes_the_old_text_away) {
    UtilsString string("old");
    FailingCall const failing("WideCharToMultiByte", 0);
    string = Wide("new");
    EXPECT_STREQ("", string.c_str());
}

TEST(StringCalls, A_failed_conversion_gives_the_buffer_as_it_was) {
    UtilsString const before("before"), text("text");
    unsigned short const *const buffer = before.ReturnWideChar();
    FailingCall const failing("MultiByteToWideChar", 0);
    EXPECT_EQ(buffer, text.ReturnWideChar());
    EXPECT_EQ(Wide("before"), WideString(buffer));
}

TEST(StringCalls, A_short_buffer_is_made_larger_and_the_conversion_repeated) {
    std::string const text(100000, 'x');
    UtilsString("short").ReturnWideChar();
    EXPECT_EQ(Wide(text), UtilsString(text).GetSTLWString());
    // Where there is room a failure for want of it has the conversion repeated all the same.
    FailingCall const failing("MultiByteToWideChar", 0, ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(Wide("text"), UtilsString("text").GetSTLWString());
}

TEST(StringCalls, A_failed_message_leaves_the_string_as_it_is) {
    FailingCall const failing("FormatMessageA", 0);
    UtilsString string("%1");
    EXPECT_EQ(0u, string.FormatMessageA(UtilsString("%1"), "text"));
    EXPECT_STREQ("%1", string.c_str());
}

TEST(StringCalls, A_failed_message_of_the_string_itself_leaves_it_as_it_is) {
    FailingCall const failing("FormatMessageA", 0);
    UtilsString string("%1");
    EXPECT_EQ(0u, string.FormatCurrentString("text"));
    EXPECT_STREQ("%1", string.c_str());
}

TEST(StringCalls, A_failed_system_text_leaves_the_string_as_it_is) {
    FailingCall const failing("FormatMessageA", 0);
    UtilsString string("old");
    EXPECT_EQ(0u, string.SetErrorMsg(2, 1));
    EXPECT_STREQ("old", string.c_str());
}

TEST(StringCalls, Without_a_system_text_an_exception_shows_the_file) {
    FailingCall const failing("FormatMessageA", 0);
    EXPECT_STREQ("File:  f.cpp; Line Number:  1; Exception Name:  class UTILS::std_exception; "
                 "Type:  3; Error Number: 2; WinError Description: f.cpp; Error Condition:  c",
                 UTILS::std_exception("c", "f.cpp", 3, 1, 2, 1).what());
}
