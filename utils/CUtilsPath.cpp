// The object: how it is made and copied, what it takes and hands out.
#include "CUtilsPath.h"

#include "PathComponents.h"
#include "std_exception.h"

#include "platform/winapi.h"

namespace UTILS {
namespace {

constexpr const char *installerNames[] = {
    "MsiDecomposeDescriptorA", "MsiOpenDatabaseA",   "MsiDatabaseOpenViewA",
    "MsiViewExecute",          "MsiViewFetch",       "MsiRecordGetStringA",
    "MsiGetComponentPathA",    "MsiGetProductInfoA", "MsiGetShortcutTargetA",
    "MsiCloseHandle"};

int AsFlag(int value) { return value != 0 ? 1 : 0; }

} // namespace

// Once this is through the destructor runs, whatever comes after.
CUtilsPath::CUtilsPath(Bare) : msiModule(nullptr) {
    static_assert(sizeof installerNames / sizeof *installerNames == InstallerCalls);
    Clear(1);
}

CUtilsPath::CUtilsPath() : CUtilsPath(Bare{}) {}

CUtilsPath::CUtilsPath(UtilsString const &text, int searching, int all, int throwing)
    : CUtilsPath(Bare{}) {
    automate = AsFlag(searching);
    scanRO = AsFlag(all);
    exceptionHandling = AsFlag(throwing);
    SetPath(text, "");
}

CUtilsPath::CUtilsPath(CUtilsPath const &other) : CUtilsPath(Bare{}) { CopyData(other); }

CUtilsPath &CUtilsPath::operator=(CUtilsPath const &other) {
    if (this != &other)
        CopyData(other);
    return *this;
}

CUtilsPath &CUtilsPath::operator=(UtilsString const &text) {
    SetPath(text, "");
    return *this;
}

CUtilsPath::~CUtilsPath() { ReleaseInstaller(); }

// State

void CUtilsPath::ForgetSearch() {
    dirSize = 0;
    totalFiles = 0;
    totalSubDirs = 0;
    filePosition = 0;
    dirPosition = 0;
    shellLink = nullptr;
    shellLinkDataList = nullptr;
    persistFile = nullptr;
}

void CUtilsPath::Clear(int full) {
    ForgetSearch();
    if (!full)
        return;
    automate = 0;
    exceptionHandling = 0;
    fileFlag = 0;
    regFlag = 0;
    scanRO = 0;
    uncFlag = 0;
    parentLevel = 0;
    path.Erase();
    pathUNC.Erase();
    for (UtilsStringList *list : {&fileList, &dirList}) {
        list->RemoveAllStrings();
        list->SetCase(0);
        list->SetMatchStyle(0);
    }
    LoadInstaller();
}

// The first entry may be missing: who calls it looks whether it is there.
void CUtilsPath::LoadInstaller() {
    ReleaseInstaller();
    msiAvailable = 0;
    msiModule = win::LoadLibraryA("MSI.DLL");
    if (!msiModule)
        return;
    msiAvailable = 1;
    for (int i = 0; i < InstallerCalls; ++i) {
        installer[i] =
            reinterpret_cast<InstallerEntry>(win::GetProcAddress(msiModule, installerNames[i]));
        if (!installer[i] && i != MsiDecomposeDescriptorA)
            msiAvailable = 0;
    }
}

void CUtilsPath::ReleaseInstaller() {
    if (msiModule)
        win::FreeLibrary(msiModule);
    msiModule = nullptr;
    for (InstallerEntry &entry : installer)
        entry = nullptr;
}

void CUtilsPath::CopyData(CUtilsPath const &other) {
    dirSize = other.dirSize;
    totalFiles = other.totalFiles;
    totalSubDirs = other.totalSubDirs;
    parentLevel = other.parentLevel;
    filePosition = other.filePosition;
    dirPosition = other.dirPosition;
    automate = other.automate;
    exceptionHandling = other.exceptionHandling;
    fileFlag = other.fileFlag;
    regFlag = other.regFlag;
    scanRO = other.scanRO;
    path = other.path;
    pathUNC = other.pathUNC;
    fileList = other.fileList;
    dirList = other.dirList;
    uncFlag = other.uncFlag;
    shellLink = other.shellLink;
    shellLinkDataList = other.shellLinkDataList;
    persistFile = other.persistFile;
    // As a rule both have a reference on one module. If it came or went in between, this object
    // can't live on the other's.
    if (msiModule != other.msiModule) {
        LoadInstaller();
        return;
    }
    msiAvailable = other.msiAvailable;
    for (int i = 0; i < InstallerCalls; ++i)
        installer[i] = other.installer[i];
}

int CUtilsPath::ReportEmpty(unsigned long line) const {
    if (!exceptionHandling)
        return 0;
    throw std_exception("The input pathname is NULL", "CUtilsPath", 173, line, win::GetLastError(),
                        1);
}

// Setting

int CUtilsPath::SetPath(UtilsString const &input, UtilsString const &base) {
    if (input.size() == 0)
        return ReportEmpty(1029);
    if (&base == &path)
        return SetPath(input, Selected(base));
    regFlag = PathIsRegistry(input);
    if (path != input)
        ForgetSearch();
    path = input;
    RemoveAnyWhiteSpace();
    if (path.size() != 0 && path.RetrieveChar(path.size() - 1) == '\\')
        path.TruncateString(1);
    MakeFullPath(base);
    MakeUNCName();
    path.SetCase(0);
    WIN32_FIND_DATAA record;
    if (LookForFile(record))
        dirSize = record.nFileSizeLow;
    return 1;
}

int CUtilsPath::AddToPath(UtilsString const &text) {
    if (text.size() == 0)
        return ReportEmpty(1394);
    if (path.size() == 0)
        return SetPath(text, "");
    UtilsString const base = Selected(path);
    if (text.Search("..", 0))
        return SetPath(text, base);
    bool const hasDrive =
        text.size() > 2 && text.RetrieveChar(1) == ':' && text.RetrieveChar(2) == '\\';
    // The drive goes, and the rest is taken for a relative path.
    SetPath(hasDrive ? UtilsString(text.Retrieve() + 3) : Selected(text), base);
    return 1;
}

CUtilsPath &CUtilsPath::operator+=(UtilsString const &text) {
    AddToPath(text);
    return *this;
}

CUtilsPath &CUtilsPath::operator+=(CUtilsPath const &other) {
    AddToPath(other.path);
    return *this;
}

// Asking the system

bool CUtilsPath::Look(WIN32_FIND_DATAA &record, HANDLE &search) const {
    record = {};
    search = win::FindFirstFileA(path, &record);
    return search != INVALID_HANDLE_VALUE;
}

int CUtilsPath::IsAFile() {
    WIN32_FIND_DATAA record;
    return LookForFile(record);
}

// The search is closed in every case, also one that failed.
int CUtilsPath::LookForFile(WIN32_FIND_DATAA &record) {
    HANDLE search = nullptr;
    if (regFlag)
        return 0;
    bool const found = Look(record, search);
    fileFlag = found && !(record.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ? 1 : 0;
    win::FindClose(search);
    return fileFlag;
}

int CUtilsPath::IsADir() {
    WIN32_FIND_DATAA record;
    return IsADir(record);
}

// The search stays open, and that is kept.
int CUtilsPath::IsAFile(WIN32_FIND_DATAA &record) {
    WIN32_FIND_DATAA found;
    HANDLE search = nullptr;
    if (regFlag)
        return 0;
    fileFlag = Look(found, search) && !(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ? 1 : 0;
    record = found;
    return fileFlag;
}

int CUtilsPath::IsADir(WIN32_FIND_DATAA &record) {
    WIN32_FIND_DATAA found;
    HANDLE search = nullptr;
    if (regFlag)
        return 0;
    bool const isThere = Look(found, search);
    win::FindClose(search);
    if (!isThere || !(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
        return 0;
    fileFlag = 0;
    record = found;
    return 1;
}

unsigned long CUtilsPath::GetFileSize() const {
    WIN32_FIND_DATAA record;
    HANDLE search = nullptr;
    if (regFlag)
        return 0;
    Look(record, search);
    win::FindClose(search);
    return record.nFileSizeLow;
}

int CUtilsPath::SetCurrentDir() const { return regFlag ? 0 : win::SetCurrentDirectoryA(path); }

UtilsString CUtilsPath::UGetCurrentDir() {
    char buffer[MAX_PATH] = "";
    DWORD const length = win::GetCurrentDirectoryA(MAX_PATH, buffer);
    return length != 0 && length < MAX_PATH ? buffer : "";
}

int CUtilsPath::operator==(UtilsString const &text) const {
    UtilsString const &mine = PathIsUNCA(text) ? pathUNC : path;
    return mine.Compare(text) == 0;
}

} // namespace UTILS
