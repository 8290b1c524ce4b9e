// The family of Windows that the process runs on.
#pragma once

#include "linkdb_export.h"
#include "platform/wintypes.h"

enum ostype {
    OS_UNKNOWN = 0,
    OS_WIN95 = 1,
    OS_WIN98 = 2,
    OS_WINME = 3,
    OS_NT3 = 4,
    OS_NT4 = 5,
    OS_WIN2000 = 6,
    OS_NT_LATER = 7 // Windows XP, and all that came after it
};

// Asks the system when it is made, and doesn't again: a copy tells what the other was told.
// A system that doesn't answer is of the unknown family. Outside Windows the family is that
// of the version in platform::Settings. Nothing else here throws. No lock: an object may be read
// by many threads, and written by one.
class QVLINKDB_API CNTAdminObject {
public:
    CNTAdminObject();
    CNTAdminObject(const CNTAdminObject &other);
    CNTAdminObject &operator=(const CNTAdminObject &other);
    virtual ~CNTAdminObject();

    ostype GetOS() const;
    int IsNT() const; // 1 for the families from OS_NT3 on, else 0

    // 1 if the thread's token, or else that of the process, holds the Administrators group, if
    // only to be denied by it; 0 if not, if the system doesn't tell, and for the families
    // before OS_NT3. Outside Windows the group is held by root and by the members of the groups
    // that administer the machine. Each call leaves a handle open. Throws std::bad_alloc.
    int IsAdmin();
    int RunningAsAdministrator();

protected:
    void Copy(const CNTAdminObject &other);
    void DetermineOS(); // leaves the family as it is where no version matches

    PSID sid; // of the last RunningAsAdministrator, which freed it: not to be used
    ostype os;

private:
    void Init();
};

// The process's own: made before anything else of the library runs.
extern QVLINKDB_API CNTAdminObject g_NTAdminObject;
