// client FOLDER: stores a small graph in FOLDER, takes it up again and asks it a question; asks
// which files are the system's; and uses the containers.
#include "containers.h"

#include <QVLinkDB.h>

#include <cstdio>
#include <cstring>

namespace {

int Expect(bool condition, const char *what) {
    if (!condition)
        std::fprintf(stderr, "client: not so: %s\n", what);
    return condition ? 0 : 1;
}

int Store(CQVUDatabase &database) {
    CQVUObject *drive = database.AddObject("C:", OBJ_DRIVE, 0, 0, nullptr, 1);
    CQVUObject *program = database.AddObject("a.exe", OBJ_FILE, 0, 0, nullptr, 1);
    CQVUObject *library = database.AddObject("b.dll", OBJ_FILE, 0, 0, nullptr, 1);
    int wrong = Expect(drive && program && library, "three objects are made");
    wrong += Expect(drive->LinkTo(program, LINK_PARENT) == 1, "the drive holds the program");
    wrong += Expect(drive->LinkTo(library, LINK_PARENT) == 1, "the drive holds the library");
    wrong += Expect(program->LinkTo(library, 2) == 1, "the program needs the library");
    return wrong;
}

int Ask(CQVUDatabase &database) {
    CQVUObject *program = database.GetObjectByPath("c:\\A.EXE");
    CQVUObject *needed = nullptr;
    SearchHandle walk = program->FindFirstDependentObject(&needed, nullptr);
    int wrong = Expect(walk != 0, "the program is found and depends on something");
    char path[1000] = "";
    if (walk)
        needed->GetFullPath(path);
    wrong += Expect(std::strcmp(path, "C:\\b.dll") == 0, "what it depends on is the library");
    if (walk)
        program->FindCloseDependentObject(walk);
    return wrong;
}

// The lists of the running system, which come with the library.
int AskForProtection() {
    int wrong = Expect(IsProtectedPath("C:\\windows\\SYSTEM32\\Kernel32.dll") == 1,
                       "the system's own library is protected");
    wrong += Expect(IsProtectedPath("C:\\windows\\system32\\of-nobody.dll") == 0,
                    "another file isn't protected");
    return wrong;
}

// A path and a key, without touching the disk or the registry.
int UsePaths() {
    UTILS::CUtilsPath path("C:\\folder\\file.txt", 0, 0, 0);
    UTILS::UtilsString text;
    int wrong = Expect(path.GetParentDir(text) == 1 && text == "C:\\folder", "a file has a parent");
    wrong += Expect(path.SetKey("HKLM\\Software") == 1 && path.GetRegFlag() == 1, "a key is known");
    UTILS::UtilsRegistry registry;
    wrong += Expect(registry.GetRootPath(2) == "HKEY_LOCAL_MACHINE", "the root of the machine");
    return wrong;
}

} // namespace

int main(int count, char **arguments) {
    if (count != 2)
        return 2;
    int wrong = 0;
    for (int (*step)(CQVUDatabase &) : {Store, Ask}) {
        CQVUDatabase *database = AttachDatabase(arguments[1]);
        if (!database)
            return 2;
        wrong += step(*database);
        wrong += Expect(database->Release() == 0, "the last release ends the database");
    }
    wrong += AskForProtection();
    wrong += UsePaths();
    wrong += Expect(ContainersHold(), "the containers hold");
    return wrong ? 1 : 0;
}
