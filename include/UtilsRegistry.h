// UtilsRegistry: a cursor over the registry. It holds a root, one open current key, and the
// path between them.
//
// A path is a root's name, short or long and in any case, and the names of keys below it,
// separated by backslashes:
//
//   HKLM  HKEY_LOCAL_MACHINE      HKCR  HKEY_CLASSES_ROOT      HKCC  HKEY_CURRENT_CONFIG
//   HKCU  HKEY_CURRENT_USER       HKU   HKEY_USERS
//
// A path without a root's name is taken from the present root, not from the current key.
//
// A quirk: the path below the root is parsed anew after each move, so a key directly below
// the root that bears a root's name (HKLM\HKCU) is taken for that root.
//
// Results are 1 for success and 0 for failure unless told otherwise; the system's code of the
// last call is kept (GetLastRegistryError). Only constructors throw for the registry's sake:
// std_exception, and std::invalid_argument for an empty path. Any operation may throw
// std::bad_alloc. An object is for one thread at a time; keys are opened for reading, setting
// values and making subkeys.
#pragma once

#include "CNTAdminObject.h"
#include "platform/wintypes.h"
#include "UtilsString.h"

namespace UTILS {

class QVLINKDB_API UtilsRegistry {
public:
    // Stands on HKEY_LOCAL_MACHINE itself.
    UtilsRegistry();
    // Open a key, or with `create` make it and what is above it. With a root given apart a path
    // that begins with a root's name replaces it, and an empty path opens the root; a root can't
    // be created. `stepwise`: as RegCreateKeyA.
    UtilsRegistry(const UtilsString &keyPath, int create, int stepwise);
    UtilsRegistry(HKEY root, const UtilsString &keyPath, int create, int stepwise);
    // On NT a copy has a key handle of its own; on the Windows 95 line both share one value.
    // An assignment doesn't close the key that the target held.
    UtilsRegistry(const UtilsRegistry &other);
    UtilsRegistry &operator=(const UtilsRegistry &other);
    virtual ~UtilsRegistry();

    // The root's name: 1 short, 2 long, anything else as the path was given; "" if unknown.
    UtilsString GetRootPath(int form) const;
    // The path below the root, which ends in a backslash unless it is empty; with anything but
    // 0 the root's name and a backslash in front.
    UtilsString GetRegistryPath(int withRoot) const;
    // The system's code of the last registry call; 0: it succeeded.
    long GetLastRegistryError() const { return lastError; }

    // Open a key and move there; a failure leaves the object as it was. An empty path is the
    // present root.
    int RegOpenKeyA(const UtilsString &keyPath);
    int OpenKey(const UtilsString &keyPath) { return RegOpenKeyA(keyPath); }
    // The same below the current key.
    int RegOpenSubKey(const UtilsString &subKey);
    int OpenSubKey(const UtilsString &subKey) { return RegOpenSubKey(subKey); }
    // Makes or opens a key and moves there: in one call, or with `stepwise` by one for each
    // component. After a failure no key is open, or with `stepwise` the last that was made.
    int RegCreateKeyA(const UtilsString &keyPath, int stepwise);
    int CreateKey(const UtilsString &keyPath, int stepwise) {
        return RegCreateKeyA(keyPath, stepwise);
    }
    // Makes or opens a key below the current one; moves there unless `move` is 0.
    int RegCreateSubKey(const UtilsString &subKey, int move);

    // Values of the current key. They need a name.

    // A number: of any type, if it has at most 4 bytes; fewer leave the others of `value`.
    int RegQueryValueA(const UtilsString &name, unsigned long &value);
    int GetValue(const UtilsString &name, unsigned long &value) {
        return RegQueryValueA(name, value);
    }
    int QueryValue(const UtilsString &name, unsigned long &value) {
        return RegQueryValueA(name, value);
    }
    // A text of at most 255 bytes: a longer one is a failure, for which GetLastRegistryError
    // tells 0. Of a number or bytes it is the decimal text of the first byte.
    int RegQueryValueA(const UtilsString &name, UtilsString &value);
    int GetValue(const UtilsString &name, UtilsString &value) {
        return RegQueryValueA(name, value);
    }
    int QueryValue(const UtilsString &name, UtilsString &value) {
        return RegQueryValueA(name, value);
    }
    // Written as REG_DWORD, and as REG_SZ with its NUL.
    int RegSetValueA(const UtilsString &name, unsigned long value);
    int SetValue(const UtilsString &name, unsigned long value) { return RegSetValueA(name, value); }
    int RegSetValueA(const UtilsString &name, const UtilsString &value);
    int SetValue(const UtilsString &name, const UtilsString &value) {
        return RegSetValueA(name, value);
    }
    int RegDeleteValueA(const UtilsString &name);
    int DeleteValue(const UtilsString &name) { return RegDeleteValueA(name); }

    // By index, from 0, while nothing changes. `form`: 0 the bare name, 1 with the path below
    // the root in front, more with the root's name as well. At the end GetLastRegistryError tells
    // 259 (ERROR_NO_MORE_ITEMS). A name or text that doesn't fit 256 bytes with its NUL is a
    // failure for which it tells 0.
    int RegEnumKeyA(unsigned long index, UtilsString &name, unsigned long form);
    int EnumKey(unsigned long index, UtilsString &name, unsigned long form) {
        return RegEnumKeyA(index, name, form);
    }
    int RegEnumValueA(unsigned long index, UtilsString &name, UtilsString &value,
                      unsigned long form);
    int EnumValue(unsigned long index, UtilsString &name, UtilsString &value, unsigned long form) {
        return RegEnumValueA(index, name, value, form);
    }
    int RegEnumValueA(unsigned long index, UtilsString &name, unsigned long &value,
                      unsigned long form);
    int EnumValue(unsigned long index, UtilsString &name, unsigned long &value,
                  unsigned long form) {
        return RegEnumValueA(index, name, value, form);
    }

    // Deletes the key that the object stands on, with `recursive` all below it too; never a root.
    // Moves to its parent. A recursive deletion that fails goes back to the key; what it had
    // deleted stays deleted. Without `recursive` it is on the parent after a failure too.
    int RegDeleteKeyA(int recursive);
    int DeleteKey(int recursive) { return RegDeleteKeyA(recursive); }
    // The same for another key, by its path; goes back if it deleted it and the place is there.
    int RegDeleteKeyA(const UtilsString &keyPath, int recursive);
    int DeleteKey(const UtilsString &keyPath, int recursive) {
        return RegDeleteKeyA(keyPath, recursive);
    }

protected:
    void Init();
    void Copy(const UtilsRegistry &other);
    // Takes the root's name off a path and notes the root; what is left ends in a backslash, or
    // is empty. 1 if there was a root's name.
    int ParseOutPath(UtilsString &text);

    HKEY rootKey;
    HKEY currentKey;           // null while nothing is open; may be the root
    unsigned long disposition; // of the last creation
    unsigned long nameSize;
    unsigned long valueSize;
    long lastError;
    unsigned long valueType; // of the last value read
    int longForm;            // 1: the path was given with a root's long name
    UtilsString path;        // below the root; ends in a backslash unless empty

private:
    CNTAdminObject admin;

protected:
    FILETIME *lastWrite; // null

private:
    static constexpr const char *SOURCE = "UtilsRegistry";

    HKEY GetRootKey() const { return rootKey; }
    void SetRootKey(HKEY root) { rootKey = root; }
    void Adopt(HKEY fresh);
    void GiveUpKey();
    HKEY Duplicate(HKEY key) const;
    int TakeRoot(std::string &text); // as ParseOutPath
    void StandOn(std::string below);
    bool OpenFrom(HKEY key, const char *subKey, HKEY &opened);
    bool CreateFrom(HKEY key, const char *subKey, HKEY &created);
    void CreateSteps(const std::string &below);
    bool OpenOrCreate(const UtilsString &keyPath, int create, int stepwise);
    [[noreturn]] void Throw(const UtilsString &condition, unsigned long line);
    bool CanUse(const UtilsString &name) const { return name.size() != 0 && currentKey; }
    void TakeName(UtilsString &name, const char *found, unsigned long form) const;
    bool Note(unsigned long size, unsigned long type);
    void DeleteValues();
};

} // namespace UTILS
