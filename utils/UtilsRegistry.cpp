// The object, its paths, and the keys that it opens and makes.
#include "UtilsRegistry.h"

#include "Diag.h"
#include "PathComponents.h"
#include "std_exception.h"

#include "platform/winapi.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace UTILS {
namespace {

constexpr REGSAM access = KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY;
constexpr unsigned long exceptionType = 204;
constexpr const char *cannotCreate = "Cannot Create Registry Entry:  ";
constexpr const char *cannotOpen = "Cannot Open Registry Entry:  ";

struct Root {
    const char *names[2]; // short and long
    HKEY key;
};

// In the order in which they are tried.
Root const roots[] = {
    {{"HKLM", "HKEY_LOCAL_MACHINE"}, HKEY_LOCAL_MACHINE},
    {{"HKCU", "HKEY_CURRENT_USER"}, HKEY_CURRENT_USER},
    {{"HKCR", "HKEY_CLASSES_ROOT"}, HKEY_CLASSES_ROOT},
    {{"HKU", "HKEY_USERS"}, HKEY_USERS},
    {{"HKCC", "HKEY_CURRENT_CONFIG"}, HKEY_CURRENT_CONFIG},
};

bool IsRoot(HKEY key) {
    for (Root const &root : roots)
        if (root.key == key)
            return true;
    return false;
}

std::string WithValue(const char *condition, const std::string &value) {
    return std::string(condition) + "; value:  " + value;
}

// Without regard to case.
bool IsName(std::string_view text, std::string_view name) {
    return text.size() == name.size() &&
           std::equal(text.begin(), text.end(), name.begin(), [](char left, char right) {
               return (letters::IsLower(left) ? letters::ToUpper(left) : left) == right;
           });
}

// The path below the root as the system takes it: without the backslash at its end.
std::string WithoutSlash(std::string below) {
    if (!below.empty())
        below.pop_back();
    return below;
}

} // namespace

UtilsRegistry::UtilsRegistry() : UtilsRegistry(HKEY_LOCAL_MACHINE, "", 0, 0) {}

UtilsRegistry::UtilsRegistry(const UtilsString &keyPath, int create, int stepwise) {
    Init();
    std::string below(ViewOf(keyPath));
    if (below.empty())
        throw std::invalid_argument(
            FormatThrowText("Inavlid Argument Passed", "Parameter 1 is NULL", SOURCE, 294));
    if (!TakeRoot(below))
        Throw(WithValue("The registry path is invalid.  No Root Key designation", below), 299);
    if (!OpenOrCreate(below, create, stepwise))
        Throw(WithValue(create ? cannotCreate : cannotOpen, below), create ? 307 : 315);
}

UtilsRegistry::UtilsRegistry(HKEY root, const UtilsString &keyPath, int create, int stepwise) {
    Init();
    SetRootKey(root);
    // The path isn't told here, and that is kept.
    if (!OpenOrCreate(keyPath, create, stepwise))
        Throw(create ? cannotCreate : cannotOpen, create ? 249 : 257);
}

UtilsRegistry::UtilsRegistry(const UtilsRegistry &other) {
    Init();
    Copy(other);
}

UtilsRegistry &UtilsRegistry::operator=(const UtilsRegistry &other) {
    if (this != &other)
        Copy(other);
    return *this;
}

UtilsRegistry::~UtilsRegistry() { win::RegCloseKey(currentKey); }

void UtilsRegistry::Init() {
    rootKey = nullptr;
    currentKey = nullptr;
    disposition = 0;
    nameSize = 0;
    valueSize = 0;
    lastError = 0;
    valueType = 0;
    longForm = 0;
    lastWrite = nullptr;
}

// What may throw goes first: a handle that was made by then would be lost.
void UtilsRegistry::Copy(const UtilsRegistry &other) {
    path = other.path;
    rootKey = other.rootKey;
    disposition = other.disposition;
    nameSize = other.nameSize;
    valueSize = other.valueSize;
    lastError = other.lastError;
    valueType = other.valueType;
    longForm = other.longForm;
    lastWrite = other.lastWrite;
    admin = other.admin;
    currentKey = admin.IsNT() ? Duplicate(other.currentKey) : other.currentKey;
}

bool UtilsRegistry::OpenOrCreate(const UtilsString &keyPath, int create, int stepwise) {
    return (create ? RegCreateKeyA(keyPath, stepwise) : RegOpenKeyA(keyPath)) != 0;
}

// From a constructor: no destructor follows that would close the key.
void UtilsRegistry::Throw(const UtilsString &condition, unsigned long line) {
    DWORD const error = win::GetLastError();
    win::RegCloseKey(currentKey);
    throw std_exception(condition, SOURCE, exceptionType, line, error, 1);
}

// Paths

int UtilsRegistry::ParseOutPath(UtilsString &text) {
    std::string below(ViewOf(text));
    int const hasRoot = TakeRoot(below);
    text = below;
    return hasRoot;
}

int UtilsRegistry::TakeRoot(std::string &text) {
    if (text.empty())
        return 0;
    std::vector<std::string> const parts = Components(text);
    for (Root const &root : roots) {
        bool const isShort = IsName(parts.front(), root.names[0]);
        if (!isShort && !IsName(parts.front(), root.names[1]))
            continue;
        rootKey = root.key;
        longForm = isShort ? 0 : 1;
        text.clear();
        for (std::size_t i = 1; i < parts.size(); ++i)
            text += parts[i] + '\\';
        return 1;
    }
    if (text.back() != '\\')
        text += '\\';
    return 0;
}

void UtilsRegistry::StandOn(std::string below) {
    TakeRoot(below);
    path = below;
}

UtilsString UtilsRegistry::GetRootPath(int form) const {
    int const column = form == 1 ? 0 : form == 2 ? 1 : longForm;
    for (Root const &root : roots)
        if (root.key == rootKey)
            return root.names[column];
    return "";
}

UtilsString UtilsRegistry::GetRegistryPath(int withRoot) const {
    if (!withRoot)
        return path;
    UtilsString whole = GetRootPath(0);
    whole.Append('\\').Append(path);
    return whole;
}

// Keys

void UtilsRegistry::GiveUpKey() {
    if (currentKey && currentKey != rootKey && !IsRoot(currentKey))
        win::CloseHandle(currentKey);
    currentKey = nullptr;
}

// A root isn't a handle that could be duplicated, nor has it to be closed.
HKEY UtilsRegistry::Duplicate(HKEY key) const {
    if (!key || key == rootKey || IsRoot(key))
        return key;
    HANDLE const process = win::GetCurrentProcess();
    HANDLE duplicate = nullptr;
    return win::DuplicateHandle(process, key, process, &duplicate, 0, TRUE, DUPLICATE_SAME_ACCESS)
               ? static_cast<HKEY>(duplicate)
               : nullptr;
}

void UtilsRegistry::Adopt(HKEY fresh) {
    GiveUpKey();
    currentKey = fresh;
    if (!fresh || fresh == rootKey || IsRoot(fresh) || !admin.IsNT())
        return;
    // Where it can't be duplicated the new handle itself will do.
    if (HKEY const duplicate = Duplicate(fresh)) {
        currentKey = duplicate;
        win::CloseHandle(fresh);
    }
}

bool UtilsRegistry::OpenFrom(HKEY key, const char *subKey, HKEY &opened) {
    opened = nullptr;
    lastError = win::RegOpenKeyExA(key, subKey, 0, access, &opened);
    return lastError == ERROR_SUCCESS;
}

bool UtilsRegistry::CreateFrom(HKEY key, const char *subKey, HKEY &created) {
    DWORD done = 0;
    created = nullptr;
    lastError = win::RegCreateKeyExA(key, subKey, 0, nullptr, 0, access, nullptr, &created, &done);
    disposition = done;
    if (lastError != ERROR_SUCCESS)
        created = nullptr;
    return lastError == ERROR_SUCCESS;
}

int UtilsRegistry::RegOpenKeyA(const UtilsString &keyPath) {
    std::string below(ViewOf(keyPath));
    HKEY const rootBefore = rootKey;
    TakeRoot(below);
    below = WithoutSlash(std::move(below));
    HKEY opened = nullptr;
    if (!OpenFrom(rootKey, below.c_str(), opened)) {
        rootKey = rootBefore;
        return 0;
    }
    if (below.empty() && opened != rootKey)
        win::RegCloseKey(opened); // the root itself serves
    Adopt(below.empty() ? rootKey : opened);
    StandOn(std::move(below));
    return 1;
}

int UtilsRegistry::RegOpenSubKey(const UtilsString &subKey) {
    HKEY opened = nullptr;
    if (!CanUse(subKey) || !OpenFrom(currentKey, subKey, opened))
        return 0;
    Adopt(opened);
    StandOn(std::string(ViewOf(path)).append(ViewOf(subKey)));
    return 1;
}

// The path meanwhile grows behind what it was, and is set when all steps are done.
void UtilsRegistry::CreateSteps(const std::string &below) {
    std::vector<std::string> const parts = Components(below);
    HKEY created = nullptr;
    if (!CreateFrom(rootKey, parts.front().c_str(), created))
        return;
    Adopt(created);
    for (std::size_t i = 1; i < parts.size(); ++i)
        if (!RegCreateSubKey(parts[i], 1))
            return;
}

int UtilsRegistry::RegCreateKeyA(const UtilsString &keyPath, int stepwise) {
    std::string below(ViewOf(keyPath));
    HKEY const rootBefore = rootKey;
    if (below.empty())
        return 0;
    TakeRoot(below);
    below = WithoutSlash(std::move(below));
    if (stepwise) {
        CreateSteps(below);
    } else {
        HKEY created = nullptr;
        CreateFrom(rootKey, below.c_str(), created);
        Adopt(created); // after a failure as well: then no key is open
    }
    if (lastError != ERROR_SUCCESS) {
        rootKey = rootBefore;
        return 0;
    }
    StandOn(std::move(below));
    return 1;
}

int UtilsRegistry::RegCreateSubKey(const UtilsString &subKey, int move) {
    HKEY created = nullptr;
    if (!CanUse(subKey) || !CreateFrom(currentKey, subKey, created))
        return 0;
    if (!move) {
        win::CloseHandle(created);
        return 1;
    }
    Adopt(created);
    StandOn(std::string(ViewOf(path)).append(ViewOf(subKey)));
    return 1;
}

} // namespace UTILS
