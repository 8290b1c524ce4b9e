// The layout of the public records, as a client's compiler sees it: fixed numbers, by
// the width of a pointer.
#include <QVLinkDB.h>

#include <cstddef>

namespace {

constexpr bool wide = sizeof(void *) == 8;

static_assert(sizeof(DBObject) == (wide ? 56 : 40));
static_assert(offsetof(DBObject, dwID) == 0 && offsetof(DBObject, dwFlags) == 4);
static_assert(offsetof(DBObject, dwType) == 8 && offsetof(DBObject, dwDataSize) == 12);
static_assert(offsetof(DBObject, dwLinksFrom) == 16 && offsetof(DBObject, dwLinksTo) == 20);
static_assert(offsetof(DBObject, pszName) == 24);
static_assert(offsetof(DBObject, pdwLinksFrom) == (wide ? 32 : 28));
static_assert(offsetof(DBObject, pdwLinksTo) == (wide ? 40 : 32));
static_assert(offsetof(DBObject, pData) == (wide ? 48 : 36));
static_assert(sizeof(CQVUObject) == sizeof(DBObject));

static_assert(sizeof(DBLink) == 16 && sizeof(CQVULink) == 16);
static_assert(offsetof(DBLink, dwID) == 0 && offsetof(DBLink, dwSource) == 4);
static_assert(offsetof(DBLink, dwTarget) == 8 && offsetof(DBLink, dwType) == 12);

static_assert(sizeof(FileData) == 24);
static_assert(sizeof(FFDepObjResult) == 2 * sizeof(void *));
static_assert(sizeof(FFDepObjSearch) == 2 * sizeof(void *));
static_assert(sizeof(DBLinkSearch) == 8);
static_assert(sizeof(SearchHandle) == sizeof(void *));

} // namespace
