// A module with a copy of the library's platform layer in it, for tests that load and
// unload such copies.
#include "linkdb.h"
#include "platform/settings.h"
#include "platform/winapi.h"

extern "C" {

__attribute__((visibility("default"))) unsigned long long ProbeCreation() {
    FILETIME creation{}, exit{}, kernel{}, user{};
    win::GetProcessTimes(win::GetCurrentProcess(), &creation, &exit, &kernel, &user);
    return static_cast<unsigned long long>(creation.dwHighDateTime) << 32 | creation.dwLowDateTime;
}

// Leaves mutexes, one of them owned, a token, a message, a search and an open file behind.
__attribute__((visibility("default"))) int ProbeLeave(const char *file) {
    for (int i = 0; i < 200; ++i)
        if (!win::CreateMutexA(nullptr, i == 0, nullptr))
            return 0;
    HANDLE token = nullptr;
    char *message = nullptr;
    WIN32_FIND_DATAA found;
    if (win::FindFirstFileA("/dev/*", &found) == INVALID_HANDLE_VALUE ||
        !win::OpenProcessToken(win::GetCurrentProcess(), TOKEN_QUERY, &token) ||
        !win::FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                             ERROR_FILE_NOT_FOUND, 1024, reinterpret_cast<char *>(&message), 0,
                             nullptr))
        return 0;
    return win::CreateFileA(file, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr) != INVALID_HANDLE_VALUE;
}

// Leaves keys of a registry open, of which the directory holds the store.
__attribute__((visibility("default"))) int ProbeLeaveKeys(const char *directory) {
    platform::Settings settings = platform::CurrentSettings();
    settings.registryDirectory = directory;
    platform::ApplySettings(settings);
    for (int i = 0; i < 5; ++i) {
        HKEY key = nullptr;
        if (win::RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Left", 0, nullptr, 0, KEY_READ,
                                 nullptr, &key, nullptr) != 0)
            return 0;
    }
    return 1;
}

// Leaves a database attached that has something to write.
__attribute__((visibility("default"))) int ProbeAttach(const char *directory) {
    CQVUDatabase *const database = AttachDatabase(directory);
    return database && database->AddObject("C:", OBJ_DRIVE, 0, 0, nullptr, 1);
}
}
