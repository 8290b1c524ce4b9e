#include "searches.h"

#include <gtest/gtest.h>

Ids FindObjects(CQVUDatabase *database, std::string const &pattern, unsigned long typeMask) {
    Ids ids;
    CQVUObject *object = nullptr;
    SearchHandle const handle = database->FindFirstObject(Text(pattern), typeMask, &object);
    if (!handle)
        return ids;
    do
        ids.push_back(object->GetUniqueID());
    while (database->FindNextObject(handle, &object));
    database->FindCloseObject(handle);
    return ids;
}

Ids FindLinksTo(CQVUObject *object, unsigned long typeMask) {
    Ids ids;
    CQVULink *link = nullptr;
    SearchHandle const handle = object->FindFirstLinkTo(typeMask, &link);
    if (!handle)
        return ids;
    do
        ids.push_back(link->dwID);
    while (object->FindNextLinkTo(handle, &link));
    object->FindCloseLinkTo(handle);
    return ids;
}

Ids FindLinksFrom(CQVUObject *object, unsigned long typeMask) {
    Ids ids;
    CQVULink *link = nullptr;
    SearchHandle const handle = object->FindFirstLinkFrom(typeMask, &link);
    if (!handle)
        return ids;
    do
        ids.push_back(link->dwID);
    while (object->FindNextLinkFrom(handle, &link));
    object->FindCloseLinkFrom(handle);
    return ids;
}

Ids FindDependents(CQVUObject *object) {
    Ids ids;
    CQVUObject *found = nullptr;
    double value = 0;
    SearchHandle const handle = object->FindFirstDependentObject(&found, &value);
    if (!handle)
        return ids;
    do {
        EXPECT_EQ(value, 1.0);
        value = 0;
        ids.push_back(found->GetUniqueID());
    } while (object->FindNextDependentObject(handle, &found, &value));
    EXPECT_EQ(value, 0.0) << "written without a result";
    object->FindCloseDependentObject(handle);
    return ids;
}

Ids FindReferrers(CQVUObject *object) {
    Ids ids;
    CQVUObject *found = nullptr;
    double value = 0;
    SearchHandle const handle = object->FindFirstReferencingApp(&found, &value);
    if (!handle)
        return ids;
    do {
        EXPECT_EQ(value, 1.0);
        value = 0;
        ids.push_back(found->GetUniqueID());
    } while (object->FindNextReferencingApp(handle, &found, &value));
    EXPECT_EQ(value, 0.0) << "written without a result";
    object->FindCloseReferencingApp(handle);
    return ids;
}

Ids Take(FFDepObjResult *results) {
    Ids ids;
    while (results) {
        FFDepObjResult *const next = results->pNext;
        ids.push_back(results->dwObjectID);
        delete results;
        results = next;
    }
    return ids;
}
