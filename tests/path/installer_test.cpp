// The installer's module: how paths find it, hold it and let it go.
#include "open_path.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "call_hook.h"

#include "platform/winapi.h"

using Moment = CallHook::Moment;

namespace {

using Names = std::vector<std::string>;

Names const entries = {"MsiDecomposeDescriptorA", "MsiOpenDatabaseA",   "MsiDatabaseOpenViewA",
                       "MsiViewExecute",          "MsiViewFetch",       "MsiRecordGetStringA",
                       "MsiGetComponentPathA",    "MsiGetProductInfoA", "MsiGetShortcutTargetA",
                       "MsiCloseHandle"};

// Notes what is loaded, looked for and freed; what is named as missing isn't found.
class Installer : public testing::Test {
protected:
    bool Note(CallHook::Call const &call) {
        std::string const about = call.path ? call.path : "";
        if (call.moment == Moment::After)
            return false;
        if (Is(call, "LoadLibraryA"))
            m_loaded.push_back(about);
        else if (Is(call, "GetProcAddress"))
            m_asked.push_back(about);
        else if (Is(call, "FreeLibrary"))
            ++m_freed;
        else
            return false;
        bool const fails = !m_missing.empty() && about == m_missing;
        if (fails)
            win::SetLastError(126);
        return fails;
    }

    std::string m_missing;
    Names m_loaded;
    Names m_asked;
    std::size_t m_freed = 0;
    CallHook m_hook{[this](CallHook::Call const &call) { return Note(call); }};
};

void ExpectNoInstaller(OpenPath const &path) {
    EXPECT_EQ(nullptr, path.msiModule);
    EXPECT_EQ(0, path.msiAvailable);
    for (auto const entry : path.installer)
        EXPECT_EQ(nullptr, entry);
}

void ExpectInstaller(OpenPath const &path) {
    ASSERT_NE(nullptr, path.msiModule);
    EXPECT_EQ(1, path.msiAvailable);
    for (std::size_t i = 0; i < entries.size(); ++i)
        EXPECT_EQ(reinterpret_cast<OpenPath::InstallerEntry>(
                      win::GetProcAddress(path.msiModule, entries[i].c_str())),
                  path.installer[i])
            << entries[i];
}

} // namespace

TEST_F(Installer, Is_loaded_once_and_asked_for_ten_entries) {
    OpenPath const path("C:\\a");
    EXPECT_EQ(Names{"MSI.DLL"}, m_loaded);
    EXPECT_EQ(entries, m_asked);
    EXPECT_EQ(0u, m_freed);
    ExpectInstaller(path);
}

TEST_F(Installer, Is_freed_once_with_the_path) {
    { OpenPath const path; }
    EXPECT_EQ(1u, m_loaded.size());
    EXPECT_EQ(1u, m_freed);
}

TEST_F(Installer, Isnt_loaded_again_when_a_path_is_set) {
    OpenPath path;
    path.SetDir("C:\\a");
    path.AddToPath("b");
    path.Clear(0);
    EXPECT_EQ(1u, m_loaded.size());
    EXPECT_EQ(0u, m_freed);
}

TEST_F(Installer, That_is_missing_is_no_failure) {
    m_missing = "MSI.DLL";
    {
        OpenPath path("C:\\a");
        ExpectNoInstaller(path);
        EXPECT_EQ("C:\\a", path.Text());
    }
    EXPECT_EQ(Names{}, m_asked);
    EXPECT_EQ(0u, m_freed);
}

TEST_F(Installer, Is_available_with_nine_entries_or_ten) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        m_missing = entries[i];
        OpenPath const path;
        EXPECT_NE(nullptr, path.msiModule) << m_missing;
        EXPECT_EQ(i == OpenPath::MsiDecomposeDescriptorA ? 1 : 0, path.msiAvailable) << m_missing;
        for (std::size_t j = 0; j < entries.size(); ++j)
            EXPECT_EQ(i == j, path.installer[j] == nullptr) << m_missing << ' ' << entries[j];
    }
    EXPECT_EQ(10u, m_freed);
}

TEST_F(Installer, Of_a_copy_is_held_once_more) {
    {
        OpenPath const path("C:\\a");
        OpenPath const copy(path);
        EXPECT_EQ(2u, m_loaded.size());
        EXPECT_EQ(path.msiModule, copy.msiModule);
        ExpectInstaller(copy);
        EXPECT_EQ(0u, m_freed);
    }
    EXPECT_EQ(2u, m_freed);
}

TEST_F(Installer, Is_taken_by_assignment_without_another_load) {
    {
        OpenPath const path("C:\\a");
        OpenPath target;
        target.msiAvailable = 0;
        target.installer[3] = nullptr;
        target = path;
        EXPECT_EQ(2u, m_loaded.size());
        EXPECT_EQ(0u, m_freed);
        ExpectInstaller(target);
    }
    EXPECT_EQ(2u, m_freed);
}

TEST_F(Installer, That_one_path_hasnt_stays_balanced_in_copies_both_ways) {
    m_missing = "MSI.DLL";
    auto without = std::make_unique<OpenPath>("C:\\a");
    m_missing.clear();
    auto with = std::make_unique<OpenPath>("C:\\b");
    std::size_t const before = m_loaded.size();
    *without = *with;
    ExpectInstaller(*without);
    m_missing = "MSI.DLL";
    auto none = std::make_unique<OpenPath>("C:\\c");
    *with = *none;
    ExpectNoInstaller(*with);
    EXPECT_LE(before, m_loaded.size());
    without.reset();
    with.reset();
    none.reset();
    EXPECT_EQ(2u, m_freed); // each had it once
}

TEST_F(Installer, Is_looked_for_anew_when_all_is_cleared) {
    m_missing = "MSI.DLL";
    {
        OpenPath path;
        ExpectNoInstaller(path);
        m_missing.clear();
        path.Clear(1);
        ExpectInstaller(path);
        path.Clear(1);
        ExpectInstaller(path);
        EXPECT_EQ(3u, m_loaded.size());
    }
    EXPECT_EQ(2u, m_freed);
}
