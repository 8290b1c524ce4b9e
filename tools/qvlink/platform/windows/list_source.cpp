#include "platform/list_source.h"

#include <windows.h>

#include <stdexcept>

#include "platform/walk.h"
#include "platform/windows/text.h"

namespace qvlink {
namespace {

constexpr DWORD nameRoom = 256; // the longest name has 255 characters
constexpr const wchar_t *linkValue = L"SymbolicLinkValue";

struct KeyClose {
    using pointer = HKEY;
    void operator()(HKEY key) const { ::RegCloseKey(key); }
};
using OpenKey = std::unique_ptr<HKEY, KeyClose>;

OpenKey Open(HKEY parent, std::wstring const &name, DWORD options, LSTATUS &status) {
    HKEY key = nullptr;
    status = ::RegOpenKeyExW(parent, name.c_str(), options, KEY_READ | KEY_WOW64_64KEY, &key);
    return OpenKey(status == ERROR_SUCCESS ? key : nullptr);
}

std::string Reason(LSTATUS status) {
    ::SetLastError(static_cast<DWORD>(status));
    return LastErrorText();
}

// Where a key leads that was opened as a link, or nothing if it is none.
std::string TargetOf(HKEY key) {
    wchar_t target[32768];
    DWORD size = sizeof target;
    DWORD type = 0;
    if (::RegQueryValueExW(key, linkValue, nullptr, &type, reinterpret_cast<BYTE *>(target),
                           &size) != ERROR_SUCCESS ||
        type != REG_LINK) {
        return {};
    }
    bool lossless = true;
    std::string text = FromWide({target, size / sizeof *target}, lossless);
    return lossless && !text.empty() ? text : "?";
}

class Reader {
public:
    explicit Reader(std::vector<std::string> &skipped) : m_skipped(skipped) {}

    // Depth is bounded: nothing is read whose line is too long for a list.
    void ReadBelow(HKEY key, Key &to, std::string const &line);

private:
    void Read(HKEY parent, std::wstring const &name, Key &to, std::string const &line);
    void Skip(std::string const &line, std::string const &why) {
        m_skipped.push_back(line + ": " + why);
    }

    std::vector<std::string> &m_skipped;
    bool m_abroad = false; // below a link to what is in neither root
};

void Reader::ReadBelow(HKEY key, Key &to, std::string const &line) {
    for (DWORD index = 0;; ++index) {
        wchar_t name[nameRoom];
        DWORD length = nameRoom;
        LSTATUS const status =
            ::RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return;
        }
        if (status != ERROR_SUCCESS) {
            Skip(line, Reason(status));
            return;
        }
        bool lossless = true;
        std::string const text = FromWide({name, length}, lossless);
        std::string const below = line + '\\' + text;
        if (!lossless) {
            Skip(below, "its name has characters that the code page doesn't know");
            continue;
        }
        Key &child = to.At(text);
        if (!IsTooLong(below)) {
            Read(key, {name, length}, child, below);
        }
    }
}

void Reader::Read(HKEY parent, std::wstring const &name, Key &to, std::string const &line) {
    LSTATUS status = ERROR_SUCCESS;
    OpenKey key = Open(parent, name, REG_OPTION_OPEN_LINK, status);
    std::string const target = key ? TargetOf(key.get()) : std::string();
    auto const place = LineOfSystemPath(target, {});
    bool const isAbroad = !target.empty() && !place;
    if (place) {
        to.link = *place;
        return;
    }
    if (isAbroad && m_abroad) {
        to.link = target; // told as one that isn't followed
        return;
    }
    if (isAbroad) {
        key = Open(parent, name, 0, status);
    }
    if (!key) {
        Skip(line, Reason(status));
        return;
    }
    bool const wasAbroad = m_abroad;
    m_abroad = m_abroad || isAbroad;
    ReadBelow(key.get(), to, line);
    m_abroad = wasAbroad;
}

using FolderCall = UINT(WINAPI *)(LPWSTR, UINT);

std::string FolderBy(FolderCall call) {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(call(path.data(), MAX_PATH));
    bool lossless = true;
    std::string const text = FromWide(path, lossless);
    Presence presence = Presence::absent;
    auto const folder = lossless ? CanonicalPath(text, presence) : std::nullopt;
    if (!folder) {
        throw std::runtime_error("this system's folder " + text + " can't be reached");
    }
    return *folder;
}

} // namespace

SystemFolders SystemFoldersInUse() {
    std::string const windows = FolderBy(::GetWindowsDirectoryW);
    std::string const system = FolderBy(::GetSystemDirectoryW);
    // The spelling that the folder itself gives, where it lies in the Windows folder.
    SplitPath const parts = SplitLastName(system);
    auto const found = FindBelow(windows, {parts.name});
    bool const isBelow = CompareNames(parts.folder.c_str(), windows.c_str()) == 0;
    return {windows, isBelow && found ? *found : system};
}

void ReadKeysInUse(KeyTree &tree, std::vector<std::string> &skipped) {
    Reader reader(skipped);
    LSTATUS status = ERROR_SUCCESS;
    if (OpenKey const machine = Open(HKEY_LOCAL_MACHINE, L"", 0, status)) {
        reader.ReadBelow(machine.get(), tree.machine, "HKLM");
    } else {
        throw std::runtime_error("HKLM can't be read: " + Reason(status));
    }
    if (OpenKey const user = Open(HKEY_CURRENT_USER, L"", 0, status)) {
        reader.ReadBelow(user.get(), tree.user, "HKCU");
    } else {
        throw std::runtime_error("HKCU can't be read: " + Reason(status));
    }
}

void ReadKeyFiles(std::string const &windows, KeyTree &, std::vector<std::string> &) {
    throw std::runtime_error(
        windows + ": the registry of a Windows that doesn't run isn't read on Windows; capture the "
                  "keys on that Windows itself, or on Linux from its disk");
}

} // namespace qvlink
