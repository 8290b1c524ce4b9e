// CUtilsPath: one location: a file, a directory, a UNC name or a registry key. It makes what
// it is given a full path, keeps a UNC form of that, knows registry paths by their root's
// name, and climbs from parent to parent. docs/paths.md tells the rules with examples.
//
// The rules are about text, and the same on all systems: the backslash separates. A path has
// no backslash at its end, so a drive's root is held as "C:". Paths are compared without
// regard to case.
//
// Results are 1 for success and 0 for failure unless told otherwise. Texts handed out as
// pointers are borrowed from the object, and good until it changes. Texts are written into a
// char * without a check of its room. With exception handling an empty path is thrown as
// std_exception where it is a failure otherwise. Any operation may throw std::bad_alloc. An
// object is for one thread at a time.
#pragma once

#include "platform/wintypes.h"
#include "UtilsStringList.h"

struct IShellLinkA;
struct IShellLinkDataList;
struct IPersistFile;

namespace UTILS {

class QVLINKDB_API CUtilsPath {
public:
    // Empty, and with all flags off.
    CUtilsPath();
    // As SetDir, with automate, scanRO and exception handling set first: any number but 0 turns
    // one on.
    CUtilsPath(UtilsString const &text, int searching, int all, int throwing);
    CUtilsPath(CUtilsPath const &other);
    CUtilsPath &operator=(CUtilsPath const &other);
    CUtilsPath &operator=(UtilsString const &text);
    virtual ~CUtilsPath();

    // Take a path. One that isn't full is completed with the current directory; an empty one is
    // a failure and changes nothing. A text whose first component is a registry root's name, in
    // upper case, short or long, is a registry path and is left as it is.
    int SetDir(UtilsString const &text) { return SetPath(text, ""); }
    int SetKey(UtilsString const &text) { return SetPath(text, ""); }
    // Go on below the present path; a drive in front of a backslash is dropped. To a registry
    // path only SetKey adds soundly: after this the object doesn't know it for one.
    int AddToPath(UtilsString const &text);
    int AddDirToPath(UtilsString const &text) { return AddToPath(text); }
    CUtilsPath &operator+=(UtilsString const &text);
    CUtilsPath &operator+=(CUtilsPath const &other);

    // Flags: automate and scanRO are for the tree search.
    void SetAutomate() { automate = 1; }
    void ClearAutomate() { automate = 0; }
    void ResetAutomate() { ClearAutomate(); }
    void SetExceptionHandling() { exceptionHandling = 1; }
    void ClearExceptionHandling() { exceptionHandling = 0; }
    void ResetExceptionHandling() { ClearExceptionHandling(); }
    void SetScanRO() { scanRO = 1; }
    void SetScanROKO() { SetScanRO(); }
    void ClearScanRO() { scanRO = 0; }
    void ClearScanROKO() { ClearScanRO(); }
    void ReSetScanRO() { ClearScanRO(); }
    void ReSetScanROKO() { ClearScanRO(); }

    // The path.
    char const *GetDir() const { return path; }
    char const *GetFullPath() const { return path; }
    char const *GetPath() const { return path; }
    operator char const *() const { return path; }
    operator char *() { return path; }
    UtilsString const &UGetDir() const { return path; }
    UtilsString const &UGetFullPath() const { return path; }
    UtilsString const &UGetPath() const { return path; }
    operator UtilsString() const { return path; }
    operator CUtilsPath *() { return this; }
    // Its UNC form: machine and path, without a drive.
    char const *GetDirUNC() const { return pathUNC; }
    char const *GetPathUNC() const { return pathUNC; }
    UtilsString const &UGetDirUNC() const { return pathUNC; }
    UtilsString const &UGetPathUNC() const { return pathUNC; }
    // The first component: a drive, a root's name, or of a UNC path the server. The pointer is
    // good until the next call of either on this object.
    UtilsString UGetDrive() const;
    UtilsString UGetRootKey() const { return UGetDrive(); }
    char const *GetDrive();
    char const *GetRootKey() { return GetDrive(); }
    // The one component at the level of the parent search, counted from the end: 1, or 0 if
    // there is none, the text then being untouched.
    int GetDirFolder(UtilsString &out) const;
    int GetDirFolder(char *out) const;
    int GetKeyFolder(UtilsString &out) const { return GetDirFolder(out); }
    int GetKeyFolder(char *out) const { return GetDirFolder(out); }
    // Divides the last component of a path at its last dot, or with `firstDot` at its first. A
    // component without a dot gives two empty texts: 0, else 1. The char * form divides at the
    // last dot whatever `firstDot` says.
    static int GetFileNameFromPath(UtilsString const &fullPath, UtilsString &name, UtilsString &ext,
                                   int firstDot);
    static int GetFileNameFromPath(char const *fullPath, UtilsString &name, UtilsString &ext,
                                   int firstDot) {
        return GetFileNameFromPath(UtilsString(fullPath), name, ext, firstDot);
    }
    static int GetFileNameFromPath(char const *fullPath, char *name, char *ext, int firstDot);

    // What lies there now; a path with wildcards stands for the first match, and a registry path
    // is neither. IsAFile notes its result for GetFileFlag; IsADir clears that when it is true.
    int IsAFile();
    int IsADir();
    int DirExists() { return IsADir(); }
    // The same with what the system tells of it. That of a file leaves a search open and fills
    // the record in any case, with zeros if there is nothing; that of a directory on success only.
    int IsAFile(WIN32_FIND_DATAA &record);
    int IsADir(WIN32_FIND_DATAA &record);
    unsigned long GetFileSize() const; // in bytes, modulo 4 GiB; 0 if there is no such file
    int GetFileFlag() const { return fileFlag; }
    int GetRegFlag() const { return regFlag; }
    int IsARegEntry() const { return regFlag; }
    int operator!() const { return path.size() == 0; } // 1: empty
    // Make it the process's current directory; 0 for a registry path.
    int SetCurrentDir() const;
    int SetCurrentDirectoryA() const { return SetCurrentDir(); }
    // The process's current directory; "" if the system doesn't tell.
    static UtilsString UGetCurrentDir();

    // By the text of the path, or with two leading backslashes by that of the UNC form.
    int operator==(CUtilsPath const &other) const { return path.Compare(other.path) == 0; }
    int operator!=(CUtilsPath const &other) const { return path.Compare(other.path) != 0; }
    int operator<(CUtilsPath const &other) const { return path.Compare(other.path) < 0; }
    int operator>(CUtilsPath const &other) const { return path.Compare(other.path) > 0; }
    int operator<=(CUtilsPath const &other) const { return path.Compare(other.path) < 1; }
    int operator>=(CUtilsPath const &other) const { return path.Compare(other.path) >= 0; }
    int operator==(UtilsString const &text) const;
    int operator==(char const *text) const { return *this == UtilsString(text); }

    // Parent search, by text alone: the ancestor at the present level, which begins with 0, the
    // immediate parent. Next goes one level up first, Prev one down: levels are counted by failed
    // steps too. Nothing is written on failure. The Key forms of Next and Prev stay where they
    // are, and that is kept: climb with GetNextParentDir in a registry path too.
    int GetParentDir(UtilsString &out) const;
    int GetParentDir(char *out) const;
    int GetParentDir(CUtilsPath &out) const;
    int GetNextParentDir(UtilsString &out) { return Next(out); }
    int GetNextParentDir(char *out) { return Next(out); }
    int GetNextParentDir(CUtilsPath &out) { return Next(out); }
    int GetPrevParentDir(UtilsString &out) { return Prev(out); }
    int GetPrevParentDir(char *out) { return Prev(out); }
    int GetPrevParentDir(CUtilsPath &out) { return Prev(out); }
    template <typename Out> int GetParentKey(Out &&out) const { return GetParentDir(out); }
    template <typename Out> int GetNextParentKey(Out &&out) const { return GetParentDir(out); }
    template <typename Out> int GetPrevParentKey(Out &&out) const { return GetParentDir(out); }
    void CloseParentSearch() { parentLevel = 0; }
    void ResetParentSearch() { CloseParentSearch(); }
    // Moves to the parent at the present level, in spite of the name.
    int SetPathToSubDir();
    int SetPathToSubKey() { return SetPathToSubDir(); }

protected:
    // Takes a path; what isn't full is completed with `base`, or if that is empty with the
    // current directory.
    int SetPath(UtilsString const &input, UtilsString const &base);
    // Forgets searches and shortcuts; with `full` everything, and looks for the installer anew.
    void Clear(int full);
    void CopyData(CUtilsPath const &other);
    void MakeFullPath(UtilsString const &base);
    void MakeUNCName();
    // The component at the level of the parent search, counted from the end, or with `keepFront`
    // the whole tail that begins with it. 0 if the path has only one.
    int UpperDirParse(UtilsString &out, int keepFront) const;

    using InstallerEntry = void (*)();
    enum InstallerCall {
        MsiDecomposeDescriptorA, // may be missing
        MsiOpenDatabaseA,
        MsiDatabaseOpenViewA,
        MsiViewExecute,
        MsiViewFetch,
        MsiRecordGetStringA,
        MsiGetComponentPathA,
        MsiGetProductInfoA,
        MsiGetShortcutTargetA,
        MsiCloseHandle,
        InstallerCalls
    };

    int automate;          // 1: a path that is set is searched at once
    int exceptionHandling; // 1: an empty path is thrown
    LONGLONG dirSize;      // bytes: of the last search, or of the file
    unsigned long totalFiles;
    unsigned long totalSubDirs;
    UtilsString path;
    UtilsString pathUNC;
    UtilsStringList fileList;
    UtilsStringList dirList;
    unsigned long parentLevel; // of the parent search; 0: the immediate parent
    unsigned long filePosition;
    unsigned long dirPosition;
    int fileFlag; // result of the last IsAFile
    int regFlag;  // the text last set is a registry path
    int scanRO;
    int uncFlag;      // the path was given in UNC form
    int msiAvailable; // the installer's entries were found
    IShellLinkA *shellLink;
    IShellLinkDataList *shellLinkDataList;
    IPersistFile *persistFile;
    HMODULE msiModule; // the installer's module, one reference, or null
    InstallerEntry installer[InstallerCalls];

private:
    struct Bare {};
    explicit CUtilsPath(Bare);

    void Init() { Clear(1); }
    void LoadInstaller();
    void ReleaseInstaller();
    void ForgetSearch();
    static int PathIsRegistry(UtilsString const &text);
    static int PathIsUNCA(UtilsString const &text);
    void RemoveAnyWhiteSpace();
    void CutEndingSlash();
    void AddEndingSlash();
    void RemoveAnyWhiteSpaceUNC();
    void CutEndingSlashUNC();
    void AddEndingSlashUNC();
    void Strip();
    void Join(UtilsString const &base);
    void WalkUp(UtilsString const &base);
    bool Look(WIN32_FIND_DATAA &record, HANDLE &search) const;
    int LookForFile(WIN32_FIND_DATAA &record);
    int ReportEmpty(unsigned long line) const;

    template <typename Out> int Next(Out &&out) {
        ++parentLevel;
        return GetParentDir(out);
    }
    template <typename Out> int Prev(Out &&out) {
        if (parentLevel == 0)
            return 0;
        --parentLevel;
        return GetParentDir(out);
    }

    UtilsString firstComponent; // what GetDrive handed out
};

} // namespace UTILS
