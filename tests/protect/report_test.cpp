// What lines without a tag report to the receiver of diagnostics.
#include "beside_receiver.h"
#include "protect_load.h"
#include "roles.h"

#include "platform/winapi.h"

#include <cstring>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace {

// Exit codes of the roles: what was found wrong first.
enum Finding : int { asTold = 0, noReceiver, wrongCount, wrongPlace, wrongText };

constexpr DWORD errorBefore = 4711;
constexpr char tagTest[] = "memicmp(line, WINDIR_TAG, _countof(WINDIR_TAG) - 1) == 0 || "
                           "memicmp(line, SYSDIR_TAG, _countof(SYSDIR_TAG) - 1) == 0";

// Compares what the receiver has got. The text is compared as far as it is given.
Finding Check(int reports, int line, std::string const &text) {
    void *const module = LoadModule(ReceiverHere().string());
    if (!module)
        return noReceiver;
    auto const count = reinterpret_cast<int (*)()>(FindSymbol(module, "ReportCount"));
    auto const last = reinterpret_cast<void (*)(Report *)>(FindSymbol(module, "GetLastReport"));
    if (count() != reports)
        return wrongCount;
    if (reports == 0)
        return asTold;
    Report report{};
    last(&report);
    if (report.level != 1 || std::strcmp(report.file, "protect") != 0 ||
        std::strcmp(report.function, "LoadFileListCallback") != 0 || report.line != line)
        return wrongPlace;
    bool const told = std::strcmp(report.format, "%s - %lu") == 0 &&
                      std::string(report.text).compare(0, text.size(), text) == 0;
    return told ? asTold : wrongText;
}

void Take(std::string line) {
    win::SetLastError(errorBefore);
    LoadFileListCallback(line.data(), static_cast<unsigned long>(line.size()));
}

Role const taggedRole("tagged-line", [](Arguments const &) -> int {
    CaptureSystemDirs();
    Take("%WindowsDir%\\win.ini");
    Take("%systemdir%\\shell32.dll");
    return Check(0, 0, "");
});

Role const percentRole("percent-line", [](Arguments const &) -> int {
    CaptureSystemDirs();
    Take("%ProgramDir%\\x.exe");
    return Check(1, 155, tagTest + std::string(" - 4711"));
});

Role const plainRole("plain-line", [](Arguments const &) -> int {
    CaptureSystemDirs();
    Take("shell32.dll in the system folder");
    return Check(2, 159, "0 - ");
});

Role const emptyRole("empty-line", [](Arguments const &) -> int {
    CaptureSystemDirs();
    Take("");
    return Check(2, 159, "0 - ");
});

Role const shortRole("short-line", [](Arguments const &) -> int {
    CaptureSystemDirs();
    Take("%SystemDir%");
    return Check(1, 155, tagTest + std::string(" - 4711"));
});

} // namespace

TEST(ListReports, A_line_with_a_tag_gives_none) {
    EXPECT_EQ(asTold, RunBesideReceiver("tagged-line"));
}

TEST(ListReports, A_line_without_a_tag_gives_one_with_the_error_of_before) {
    EXPECT_EQ(asTold, RunBesideReceiver("percent-line"));
    EXPECT_EQ(asTold, RunBesideReceiver("short-line"));
}

TEST(ListReports, A_line_without_a_percent_sign_gives_a_second_one) {
    EXPECT_EQ(asTold, RunBesideReceiver("plain-line"));
    EXPECT_EQ(asTold, RunBesideReceiver("empty-line"));
}
