// needs FOLDER PATH: prints all that PATH depends on, out of the database in FOLDER.
#include <QVLinkDB.h>

#include <cstdio>

int main(int count, char **arguments) {
    CQVUDatabase *database = count == 3 ? AttachDatabase(arguments[1]) : nullptr;
    if (!database)
        return 2;
    char path[1000];
    CQVUObject *needed = nullptr;
    CQVUObject *object = database->GetObjectByPath(arguments[2]);
    SearchHandle walk = object->FindFirstDependentObject(&needed, nullptr);
    for (int more = walk != 0; more; more = object->FindNextDependentObject(walk, &needed, nullptr))
        if (needed->GetFullPath(path))
            std::puts(path);
    if (walk)
        object->FindCloseDependentObject(walk);
    database->Release();
    return walk ? 0 : 1;
}
