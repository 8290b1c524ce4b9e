// Files of lists for the tests of the command line.
#pragma once

#include "schema.h"
#include "tool.h"

#include "../answer/library_images.h"
#include "stored_list.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

constexpr char FilesText[] = "%SystemDir%\\drivers\\etc\\hosts\r\n"
                             "%SystemDir%\\kernel32.dll\r\n"
                             "%WindowsDir%\\win.ini\r\n";
constexpr char KeysText[] = "HKLM\\SYSTEM\r\nHKLM\\SYSTEM\\Setup\r\n\r\nHKCU\\Console\r\n";

class CliLists : public testing::Test {
protected:
    // Runs `qvlink lists` with these words.
    static Outcome Lists(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "lists");
        return RunTool(arguments);
    }
    static nlohmann::json Json(std::vector<std::string> arguments, long exitCode) {
        arguments.emplace_back("--json");
        Outcome const told = Lists(arguments);
        EXPECT_EQ(told.exitCode, exitCode) << told.err;
        EXPECT_TRUE(nlohmann::json::accept(told.out)) << told.out;
        return nlohmann::json::parse(told.out, nullptr, false);
    }

    std::string Path(std::string const &name) const { return (m_folder.Path() / name).string(); }
    std::string Write(std::string const &name, std::string const &bytes) const {
        WriteBytes(m_folder.Path() / name, BytesOf(bytes));
        return Path(name);
    }
    std::string Read(std::string const &name) const {
        Bytes const bytes = ReadBytes(m_folder.Path() / name);
        return {bytes.begin(), bytes.end()};
    }
    std::size_t FileCount() const {
        auto const entries = std::filesystem::directory_iterator(m_folder.Path());
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

    // Libraries with the lists 101 and 110.
    std::string WriteDll(std::string const &name, std::string const &files = FilesText) const {
        return Write(name, libraries::Dll(Resources(files)));
    }
    std::string WriteSo(std::string const &name, std::string const &files = FilesText) const {
        return Write(name, libraries::SharedLibrary(Resources(files)));
    }

    static void ExpectTold(Outcome const &outcome, long exitCode, std::string const &piece) {
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(piece), std::string::npos) << outcome.err;
    }
    static void ExpectAnswer(Outcome const &outcome, long exitCode, std::string const &text) {
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
        EXPECT_EQ(outcome.out, text);
        EXPECT_EQ(outcome.err, "");
    }

private:
    static std::vector<libraries::Resource> Resources(std::string const &files) {
        return {{"WIN_FILES", 101, lists::Pack(files)}, {"WIN_REGS", 110, lists::Pack(KeysText)}};
    }

    TempFolder m_folder;
};
