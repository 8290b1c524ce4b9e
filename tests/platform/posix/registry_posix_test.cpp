// The registry's calls over the store: what makes it, who shares it, what is refused.
#include "registry_store.h"

#include "platform/tiny_folder.h"
#include "roles.h"

#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// Everything that reads, on keys that aren't there.
void ReadAll() {
    for (HKEY const root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKEY_CLASSES_ROOT, HKEY_USERS,
                            HKEY_CURRENT_CONFIG}) {
        ScopedKey key;
        EXPECT_EQ(2, OpenKey(root, "Software\\QVLinkDB", key));
        EXPECT_EQ(2, Query(root, "value").status);
        EXPECT_EQ(std::nullopt, SubkeyAt(root, 0));
        EXPECT_EQ(std::vector<std::string>{}, ValueNames(root));
        EXPECT_EQ(2, win::RegDeleteKeyA(root, "Software\\QVLinkDB"));
        EXPECT_EQ(2, win::RegDeleteValueA(root, "value"));
        EXPECT_EQ(0, win::RegCloseKey(root));
    }
}

DWORD NumberOf(HKEY key, const char *name) {
    DWORD number = 0;
    DWORD size = sizeof number;
    win::RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE *>(&number), &size);
    return number;
}

// Makes keys and adds to a number of its own, as often as it is told.
int WriteOften(Arguments const &arguments) {
    TellRegistryDirectory(arguments[0]);
    ScopedKey key;
    if (MakeKey(HKEY_LOCAL_MACHINE, "Software\\Shared", key) != 0)
        return 2;
    int const count = std::stoi(arguments[2]);
    for (int i = 0; i < count; ++i) {
        DWORD const next = NumberOf(key, arguments[1].c_str()) + 1;
        std::string const bytes(reinterpret_cast<const char *>(&next), sizeof next);
        if (SetBytes(key, arguments[1].c_str(), REG_DWORD, bytes) != 0 ||
            MakeKey(key, arguments[1] + '\\' + std::to_string(i)) != 0)
            return 3;
    }
    return 0;
}

// Writes values for ever, and tells of each that is done.
int WriteUntilKilled(Arguments const &arguments) {
    TellRegistryDirectory(arguments[0]);
    ScopedKey key;
    if (MakeKey(HKEY_CURRENT_USER, "Software\\Killed", key) != 0)
        return 2;
    for (auto number = static_cast<unsigned>(std::stoul(arguments[1]));; ++number) {
        std::string const name = std::to_string(number);
        if (SetBytes(key, name.c_str(), REG_SZ, name + '\0') != 0 || MakeKey(key, name) != 0)
            return 3;
        if (write(STDOUT_FILENO, &number, sizeof number) != sizeof number)
            return 4;
    }
}

// Reads, and fails to write, as one who has no rights.
int ReadWithoutRights(Arguments const &arguments) {
    TellRegistryDirectory(arguments[0]);
    if (geteuid() == 0 && setuid(65534) != 0)
        return 2;
    ScopedKey key;
    if (OpenKey(HKEY_CURRENT_USER, "Software\\There", key) != 0)
        return 3;
    if (!(Query(key, "value") == Answer{0, REG_SZ, std::string("text\0", 5)}))
        return 4;
    if (SubkeyAt(key, 0) != "below" || SetBytes(key, "value", REG_SZ, "x") != 5 ||
        MakeKey(key, "new") != 5 || win::RegDeleteKeyA(key, "below") != 5 ||
        win::RegDeleteValueA(key, "value") != 5)
        return 5;
    return MakeKey(key, "below");
}

// Writes until files may grow no more.
int WriteUntilFull(Arguments const &arguments) {
    TellRegistryDirectory(arguments[0]);
    ScopedKey key;
    if (MakeKey(HKEY_CURRENT_USER, "Software\\Full", key) != 0)
        return 2;
    signal(SIGXFSZ, SIG_IGN);
    rlimit const limit{200000, 200000};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::string const data(1000, 'x');
    for (int i = 0; i < 1000; ++i) {
        std::string const name = std::to_string(i);
        LSTATUS const status = SetBytes(key, name.c_str(), REG_BINARY, data);
        if (status != 0)
            return status == 112 && i > 10 && Query(key, name.c_str()).status == 2 &&
                           Query(key, "0").data == data
                       ? 0
                       : 3;
    }
    return 4;
}

Role const writing("registry_write", WriteOften);
Role const killed("registry_killed", WriteUntilKilled);
Role const reading("registry_read", ReadWithoutRights);
Role const filling("registry_fill", WriteUntilFull);

// Runs the role until it told of some numbers, and kills it; the last number.
unsigned KillAfter(std::string const &directory, unsigned first, unsigned count) {
    int ends[2];
    EXPECT_EQ(0, pipe(ends));
    pid_t const child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        std::string const start = std::to_string(first);
        execl(ProgramPath().c_str(), "test", "--role", "registry_killed", directory.c_str(),
              start.c_str(), nullptr);
        _exit(127);
    }
    close(ends[1]);
    unsigned last = 0;
    unsigned number = 0;
    bool alive = true;
    // What it told of between the last number and its end counts too.
    while (read(ends[0], &number, sizeof number) == sizeof number) {
        last = number;
        if (alive && number >= first + count) {
            kill(child, SIGKILL);
            alive = false;
        }
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    return last;
}

} // namespace

TEST_F(RegistryStore, isnt_made_by_reading) {
    ReadAll();
    EXPECT_FALSE(fs::exists(Folder() / "prefix"));
}

TEST_F(RegistryStore, is_made_by_the_first_call_that_writes) {
    ASSERT_EQ(0, MakeKey(HKEY_LOCAL_MACHINE, "Software\\QVLinkDB"));
    EXPECT_TRUE(fs::is_regular_file(File()));
    for (auto const &entry : fs::directory_iterator(Directory()))
        EXPECT_EQ("store.db", entry.path().filename().string().substr(0, 8));
    ASSERT_EQ(0, win::RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\QVLinkDB"));
    ASSERT_EQ(0, win::RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software"));
    ReadAll();
}

TEST_F(RegistryStore, is_made_by_a_value_of_a_root) {
    ASSERT_EQ(0, SetBytes(HKEY_CURRENT_USER, "value", REG_BINARY, "x"));
    EXPECT_EQ((Answer{0, REG_BINARY, "x"}), Query(HKEY_CURRENT_USER, "value"));
    EXPECT_EQ("S-1-5-21-0-0-0-1000", SubkeyAt(HKEY_USERS, 0));
}

TEST_F(RegistryStore, has_the_roots_that_lead_elsewhere) {
    struct {
        HKEY root, target;
        std::string path;
    } const rows[] = {{HKEY_CURRENT_USER, HKEY_USERS, "S-1-5-21-0-0-0-1000"},
                      {HKEY_CLASSES_ROOT, HKEY_LOCAL_MACHINE, "Software\\Classes"},
                      {HKEY_CURRENT_CONFIG, HKEY_LOCAL_MACHINE,
                       "System\\CurrentControlSet\\Hardware Profiles\\Current"}};
    for (auto const &row : rows) {
        ScopedKey key;
        EXPECT_EQ(2, OpenKey(row.target, row.path, key));
        ASSERT_EQ(0, MakeKey(row.root, "made"));
        EXPECT_EQ(0, OpenKey(row.target, row.path + "\\made", key));
        ASSERT_EQ(0, MakeKey(row.target, row.path + "\\other"));
        EXPECT_EQ((std::vector<std::string>{"made", "other"}), Subkeys(row.root));
        // It goes, and comes again when it is written to.
        EXPECT_EQ(0, win::RegDeleteKeyA(row.root, "made"));
        EXPECT_EQ(0, win::RegDeleteKeyA(row.root, "other"));
        EXPECT_EQ(0, win::RegDeleteKeyA(row.target, row.path.c_str()));
        EXPECT_EQ(std::nullopt, SubkeyAt(row.root, 0));
        EXPECT_EQ(2, Query(row.root, "value").status);
        ASSERT_EQ(0, MakeKey(row.root, "again"));
        EXPECT_EQ(0, OpenKey(row.target, row.path + "\\again", key));
    }
}

TEST_F(RegistryStore, follows_the_settings_and_open_keys_stay_where_they_are) {
    ScopedKey first;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "first", first));
    TellRegistryDirectory((Folder() / "other").string());
    ScopedKey second;
    EXPECT_EQ(2, OpenKey(HKEY_CURRENT_USER, "first", second));
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "second", second));
    EXPECT_EQ(0, SetBytes(first, "value", REG_BINARY, "x"));
    TellRegistryDirectory(Directory());
    EXPECT_EQ(std::vector<std::string>{"first"}, Subkeys(HKEY_CURRENT_USER));
    ASSERT_EQ(0, OpenKey(HKEY_CURRENT_USER, "first", second));
    EXPECT_EQ((Answer{0, REG_BINARY, "x"}), Query(second, "value"));
}

TEST_F(RegistryStore, is_shared_by_processes_that_write_at_once) {
    constexpr int count = 200;
    std::vector<pid_t> children;
    for (char const name : {'a', 'b', 'c'}) {
        pid_t const child = fork();
        if (child == 0) {
            std::string const own(1, name);
            std::string const often = std::to_string(count);
            execl(ProgramPath().c_str(), "test", "--role", "registry_write", Directory().c_str(),
                  own.c_str(), often.c_str(), nullptr);
            _exit(127);
        }
        children.push_back(child);
    }
    for (pid_t const child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(0, status);
    }
    ScopedKey key;
    ASSERT_EQ(0, OpenKey(HKEY_LOCAL_MACHINE, "software\\shared", key));
    EXPECT_EQ((std::vector<std::string>{"a", "b", "c"}), Subkeys(key));
    for (const char *const name : {"a", "b", "c"}) {
        EXPECT_EQ(DWORD{count}, NumberOf(key, name));
        ScopedKey below;
        ASSERT_EQ(0, OpenKey(key, name, below));
        EXPECT_EQ(std::size_t{count}, Subkeys(below).size());
    }
}

TEST_F(RegistryStore, shows_what_another_process_changes) {
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_LOCAL_MACHINE, "Software\\Shared", key));
    for (int i = 1; i < 4; ++i) {
        ASSERT_EQ(0, RunRole("registry_write", {Directory(), "a", "2"}));
        EXPECT_EQ(static_cast<DWORD>(2 * i), NumberOf(key, "a"));
        EXPECT_EQ("a", SubkeyAt(key, 0));
    }
}

TEST_F(RegistryStore, has_all_that_was_done_when_its_writer_is_killed) {
    unsigned next = 0;
    for (unsigned round = 0; round < 12; ++round) {
        unsigned const last = KillAfter(Directory(), next, round * round * 7 % 60);
        ScopedKey key;
        ASSERT_EQ(0, OpenKey(HKEY_CURRENT_USER, "Software\\Killed", key));
        for (unsigned number = next; number <= last; ++number) {
            std::string const name = std::to_string(number);
            ASSERT_EQ((Answer{0, REG_SZ, name + '\0'}), Query(key, name.c_str()));
            ScopedKey below;
            ASSERT_EQ(0, OpenKey(key, name, below)) << name;
        }
        next = last + 2; // one more may be there that it had no time to tell of
    }
}

TEST_F(RegistryStore, is_read_where_nothing_may_be_written) {
    {
        ScopedKey key;
        ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "Software\\There", key));
        ASSERT_EQ(0, SetBytes(key, "value", REG_SZ, std::string("text\0", 5)));
        ASSERT_EQ(0, MakeKey(key, "below"));
    }
    TellRegistryDirectory((Folder() / "other").string());
    Query(HKEY_CURRENT_USER, ""); // the store is closed
    ASSERT_FALSE(fs::exists(File().string() + "-wal"));
    fs::permissions(Folder(), fs::perms(0755));
    fs::permissions(File(), fs::perms(0444));
    fs::permissions(Directory(), fs::perms(0555));
    EXPECT_EQ(0, RunRole("registry_read", {Directory()}));
    EXPECT_EQ(1, std::distance(fs::directory_iterator(Directory()), fs::directory_iterator()));
    fs::permissions(Directory(), fs::perms(0755));
}

TEST_F(RegistryStore, that_cant_be_made_has_the_code_of_the_reason) {
    WriteBytes(Folder() / "prefix", BytesOf("a file"));
    EXPECT_EQ(1011, MakeKey(HKEY_CURRENT_USER, "x"));
    EXPECT_EQ(1011, SetBytes(HKEY_CURRENT_USER, "x", REG_BINARY, "x"));
}

TEST_F(RegistryStore, without_a_directory_is_empty_and_isnt_written) {
    TellRegistryDirectory("");
    ReadAll();
    EXPECT_EQ(1011, MakeKey(HKEY_CURRENT_USER, "x"));
    EXPECT_EQ(1011, SetBytes(HKEY_CURRENT_USER, "x", REG_BINARY, "x"));
    EXPECT_FALSE(fs::exists("/store.db"));
}

TEST_F(RegistryStore, on_a_full_disk_is_112_and_keeps_what_it_had) {
    EXPECT_EQ(0, RunRole("registry_fill", {Directory()}));
    ScopedKey key;
    ASSERT_EQ(0, OpenKey(HKEY_CURRENT_USER, "Software\\Full", key));
    EXPECT_EQ(1000u, Query(key, "0").data.size());
    EXPECT_EQ(0, SetBytes(key, "more", REG_BINARY, "x")) << "once there is room";
}

TEST(RegistryOnATinyDisk, fills_it_and_says_112) {
    TinyFolder const tiny(400000);
    if (!tiny.Available())
        GTEST_SKIP() << tiny.WhyNot();
    SettingsKeeper const keeper;
    {
        TellRegistryDirectory((tiny.Path() / "registry").string());
        ScopedKey key;
        ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "Software\\Full", key));
        LSTATUS status = 0;
        int count = 0;
        while (status == 0 && count < 1000)
            status =
                SetBytes(key, std::to_string(count++).c_str(), REG_BINARY, std::string(1000, 'x'));
        EXPECT_EQ(112, status);
        EXPECT_GT(count, 10);
        EXPECT_EQ(1000u, Query(key, "0").data.size());
        EXPECT_EQ(2, Query(key, std::to_string(count - 1).c_str()).status);
    }
    TellRegistryDirectory("/nowhere");
    Query(HKEY_CURRENT_USER, "");
}
