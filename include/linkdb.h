// The link database: a persistent graph of objects joined by directed typed links.
//
// A process has one database. AttachDatabase gives it out and loads `linkdb.dat`;
// the last CQVUDatabase::Release writes it back when persistent data changed.
// Objects and links are handed out as borrowed pointers: the database owns and
// frees them, and a pointer is good until its object or link is deleted or the
// database goes.
//
// Results are 1 or 0, a null pointer or a zero handle. Nothing here throws, except
// the out-of-memory exception of the index structures.
//
// Threads: one recursive mutex guards the graph. Operations take it for their whole
// work unless their comment says "no lock". Attaching and releasing are for the
// callers to serialise. No lock is held between the steps of a search.
//
// Ids, types, flags and sizes are 32-bit values, whatever the width of unsigned long.
#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>

#include "linkdb_export.h"

class CQVUDatabase;
class CQVUObject;
class CQVULink;
class GraphIndex;
class NameMap;
struct ObjectNode;
template <class Record> class IdMap;

// A search handle holds the address of its search record; 0 stands for no search.
using SearchHandle =
    std::conditional_t<sizeof(unsigned long) >= sizeof(void *), unsigned long, std::uintptr_t>;

// Object types: single bits, so that a search can take a mask of them.
constexpr std::uint32_t OBJ_ROOT = 0;     // the root object: matched by no mask, has no path
constexpr std::uint32_t OBJ_DRIVE = 1;    // root of a file tree; its name is the whole path
constexpr std::uint32_t OBJ_PINNED = 2;   // like OBJ_FILE, but always persistent
constexpr std::uint32_t OBJ_FILE = 4;     // a file or folder below a drive
constexpr std::uint32_t OBJ_HIVE = 8;     // root of a registry tree; its name is the whole path
constexpr std::uint32_t OBJ_KEY = 16;     // a key below a hive
constexpr std::uint32_t OBJ_VALUE = 32;   // a value below a key; not directly below a hive
constexpr std::uint32_t OBJ_VFILE = 4096; // a file known by bare name; see CQVUObject::Resolve
constexpr std::uint32_t OBJ_NAMED_MASK = 0x103f; // the types whose objects are found by name

// Link types: single bits. The library itself tests only this one; all others are
// the callers'. The source is the parent, the target the child.
constexpr std::uint32_t LINK_PARENT = 1;

constexpr std::uint32_t PERSISTENT_BIT = 0x80000000; // in dwType of objects and links
constexpr std::uint32_t LINK_ENTRY_ID_MASK =
    0x3fffffff; // id of a list entry, count of a count word
constexpr std::uint32_t LINK_ENTRY_TRANSIENT = 0x40000000; // in a list entry: the link is transient
constexpr std::uint32_t LINK_LIST_BLOCKED = 0x40000000;    // in a count word: room in blocks of ten
constexpr std::uint32_t OBJ_FLAG_VISITED = 0x40000000; // in dwFlags: seen by a running expansion
constexpr std::uint32_t LINKDB_MAGIC = 4104;           // in the header of linkdb.dat

// The record behind an object. Fields are the database's to change.
struct DBObject {
    std::uint32_t dwID;          // unique, from 1; 1 is the root object
    std::uint32_t dwFlags;       // the caller's word; bits 30 and 31 are cleared by every load
    std::uint32_t dwType;        // OBJ_*, with PERSISTENT_BIT
    std::uint32_t dwDataSize;    // size of pData in bytes
    std::uint32_t dwLinksFrom;   // count word of pdwLinksFrom
    std::uint32_t dwLinksTo;     // count word of pdwLinksTo
    char *pszName;               // the name, or null
    std::uint32_t *pdwLinksFrom; // an entry per link whose source is this object
    std::uint32_t *pdwLinksTo;   // an entry per link whose target is this object
    unsigned char *pData;        // the data block, or null
};

// The record behind a link.
struct DBLink {
    std::uint32_t dwID;     // unique, from 1, in a numbering of its own
    std::uint32_t dwSource; // id of the source object
    std::uint32_t dwTarget; // id of the target object
    std::uint32_t dwType;   // link type, with PERSISTENT_BIT
};

// A data block of the size that CQVUObject::GetFileData answers for. The library
// moves it as a whole; the fields have the meaning that its writer gives them.
struct FileData {
    std::uint32_t dwSizeLow; // size in bytes
    std::uint32_t dwSizeHigh;
    std::uint32_t dwTimeLow; // last write, 100 ns since 1601 (UTC)
    std::uint32_t dwTimeHigh;
    std::uint32_t dwAttributes; // file attributes as the system numbers them
    std::uint32_t dwReserved;
};

// The record behind a handle of CQVUDatabase::FindFirstObject.
struct DBObjectSearch {
    DBObjectSearch *pNext;    // next open object search of the process
    int bExtensionOnly;       // the pattern is "*.xyz": compare the last four characters only
    char szPattern[100];      // the pattern as given
    std::uint32_t dwTypeMask; // mask of object types
    std::uint64_t cursor;     // lowest id to examine next; past all ids once the end was told
};

// The record behind a handle of FindFirstLinkTo and FindFirstLinkFrom.
struct DBLinkSearch {
    std::uint32_t dwIndex;    // index in the list of the entry last returned
    std::uint32_t dwTypeMask; // mask of link types
};

// One result of dependency expansion. Made with new, freed with delete.
struct FFDepObjResult {
    FFDepObjResult *pNext;    // next result
    std::uint32_t dwObjectID; // id of the object found
};

// The record behind a handle of FindFirstDependentObject and FindFirstReferencingApp.
struct FFDepObjSearch {
    FFDepObjResult *pHead;  // first result
    FFDepObjResult *cursor; // next result to return
};

static_assert(sizeof(DBLink) == 16 && sizeof(FileData) == 24);
static_assert(sizeof(DBObject) == 24 + 4 * sizeof(void *));

// A view of a DBObject: the same record, the same address. Callers neither make nor
// destroy one. A null object is tolerated where an operation's comment says so.
class QVLINKDB_API CQVUObject : public DBObject {
public:
    // Copies all fields of the record, pointers included: both records then name the
    // same parts. Meant for the database's own use.
    CQVUObject &operator=(CQVUObject const &other);

    // The id; 0 for a null object. No lock.
    unsigned long GetUniqueID();
    // 0 if there is no name, the buffer then being untouched. Otherwise 1: a name
    // shorter than `size` is copied whole, a longer one cut to `size` - 1 characters.
    int GetName(char *buffer, unsigned long size);
    // Changes the name; always 1. A new text that fits the old one's length replaces it
    // whole, a longer one is cut to 250 characters. The object stays filed under its
    // old name in the name index and the database isn't marked as changed.
    int SetName(char *name);
    unsigned long GetType();           // the type without PERSISTENT_BIT
    unsigned long GetFlags();          // the caller's word, bits 30 and 31 included
    int SetFlags(unsigned long flags); // stores all 32 bits; always 1; doesn't mark a change
    unsigned long GetDataSize();       // size of the data block in bytes
    // Copies the smaller of `size` and GetDataSize() bytes and returns 1; 0 if that is
    // nothing or there is no data.
    int GetData(unsigned long size, unsigned char *buffer);
    // Replaces the data block by a copy. 0 for a null object, or without memory: the
    // object then has no data. Doesn't mark the database as changed.
    int SetData(unsigned long size, unsigned char *data);
    // 1 and the data block if it is of exactly 24 bytes; 0 otherwise, also for a null
    // object or argument.
    int GetFileData(FileData *data);
    int IsPersistent(); // 1 or 0; 0 for a null object
    // Makes the object persistent, and with it every link whose other end is. 0 for a
    // null object, otherwise 1. There is no way back.
    int MakePersistent();
    // Makes a link of `type` from this object to `target`, persistent if both are. 1;
    // 0 for a null end or without memory. Between persistent objects a second link of
    // the same type and direction isn't made, and that is a success too.
    int LinkTo(CQVUObject *target, unsigned long type);
    // Deletes the object and all its links; this object is gone afterwards. 1, also for
    // a null object; 0 if it is no longer in the database.
    int Delete();

    // Writes the path into a buffer of at least 1000 bytes. 1, or 0 if the object is
    // null, has no path, or has one that doesn't fit; the buffer may then hold leftovers.
    int GetFullPath(char *buffer);
    // For an OBJ_VFILE: the located object of this name in the database, looked for in
    // `basePath` (may be null), the system directory, on NT the SYSTEM folder of the
    // Windows directory, and the Windows directory. Null if there is none, or for a
    // null object or one of another type. Never asks the disk.
    CQVUObject *Resolve(char *basePath);

    // Whether its path is that of a file (see IsProtectedPath) or key of the operating system: 1
    // or 0. 0 for a null object or one without a path. Which of the two is told by the path's
    // first component, not by the object's type. A path of 260 characters or more ends the
    // process. The database is locked for as long as the path takes.
    int IsProtected();

    // Walk the links that point at this object (To) or leave it (From) and have a bit of
    // `typeMask` in their type. First gives a handle, or 0 for none and nothing to close;
    // Next gives 1 or 0 at the end; `out` is written on success only. The links come in
    // list order; an entry deleted during a walk lets the following one be skipped. Each
    // non-zero handle has to be closed, before the object or the database goes.
    SearchHandle FindFirstLinkTo(unsigned long typeMask, CQVULink **out);
    int FindNextLinkTo(SearchHandle handle, CQVULink **out);
    void FindCloseLinkTo(SearchHandle handle);
    SearchHandle FindFirstLinkFrom(unsigned long typeMask, CQVULink **out);
    int FindNextLinkFrom(SearchHandle handle, CQVULink **out);
    void FindCloseLinkFrom(SearchHandle handle);
    // 1 if an object of this name and of a type in `typeMask` has a link, of any type,
    // that points at this object. 0 for a null object.
    int DoesObjectLinkTo(char *name, unsigned long typeMask);

    // Walk all objects that this one depends on (Dependent), along outgoing links of all
    // types, or its direct referrers and all they depend on (Referencing). The last
    // object discovered comes first, each at most once. 0 if the object is null, has no
    // path or nothing is found. `pdValue` may be null; it receives 1.0 with each result.
    // One expansion at a time: it marks objects in their flags while it runs.
    SearchHandle FindFirstDependentObject(CQVUObject **out, double *pdValue);
    int FindNextDependentObject(SearchHandle handle, CQVUObject **out, double *pdValue);
    void FindCloseDependentObject(SearchHandle handle); // no lock
    SearchHandle FindFirstReferencingApp(CQVUObject **out, double *pdValue);
    int FindNextReferencingApp(SearchHandle handle, CQVUObject **out, double *pdValue);
    void FindCloseReferencingApp(SearchHandle handle); // no lock

private:
    CQVUObject(int, int, int, int, int);
    CQVUObject(CQVUObject const &) = delete;
    ~CQVUObject();
};

// A view of a DBLink: the same record, the same address.
class QVLINKDB_API CQVULink : public DBLink {
public:
    CQVULink &operator=(CQVULink const &other); // copies all fields

    unsigned long GetType() const; // the type without PERSISTENT_BIT. No lock.
    CQVUObject *GetSource();       // null for a null link or a missing object
    CQVUObject *GetTarget();       // likewise
    // Deletes the link and its entries in both objects. 1, also for a null link; 0 if it
    // is no longer in the database.
    int Delete();

private:
    CQVULink(int, int, int, int, int);
    CQVULink(CQVULink const &) = delete;
    ~CQVULink();
};

// The database. Get it from AttachDatabase.
class QVLINKDB_API CQVUDatabase {
public:
    CQVUDatabase();
    ~CQVUDatabase(); // writes the file if persistent data changed and saving is allowed
    CQVUDatabase(CQVUDatabase const &) = delete;
    CQVUDatabase &operator=(CQVUDatabase const &) = delete;

    // Attachment count, new value. Release at 0 destroys the instance. No lock.
    unsigned long AddRef();
    unsigned long Release();
    // Loads `linkdb.dat` from `directory`, which isn't empty. Always 1: a missing or
    // unusable file gives an empty database with a root object.
    int Initialize(const char *directory);
    // Writes the file now, whether anything changed or not; a database of a bare root is
    // never written. The old file stays until the new one is whole and on the disk, and
    // for good if anything fails.
    void Flush();
    void SetSaveFlag(int save); // whether the destructor may write. No lock.

    // Makes an object. The first 250 characters of `name` count; it may be null. `data`
    // is copied. Null without memory. Type OBJ_PINNED is always persistent.
    CQVUObject *AddObject(const char *name, unsigned long type, unsigned long flags,
                          unsigned long dataSize, void *data, int persistent);
    // Makes a link record that stands in no object's lists; see CQVUObject::LinkTo. Null
    // without memory. No lock: the caller is alone on the database.
    DBLink *MakeNewLink(unsigned long source, unsigned long target, unsigned long type,
                        int persistent);
    DBObject *LookupObject(unsigned long id);   // the record or null
    DBLink *LookupLink(unsigned long id) const; // the record or null. No lock.
    CQVUObject *GetRootObject();                // object 1 or null
    // 1, or 0 if there is no such object. No lock: the caller is alone on the database.
    int DeleteObject(unsigned long id);
    // Deletes a link, and its entries in the source's and the target's lists as told.
    // 1, or 0 if there is no such link.
    int DeleteLink(unsigned long id, int fromSource, int fromTarget);

    // The path of an object, into a buffer of at least 1000 bytes: 1, or 0 if it has none
    // or one that doesn't fit. Pass 0 as `depth`. SafeGetFullPath takes no lock.
    int SafeGetFullPath(DBObject *object, char *buffer, int depth);
    int GetFullPath(DBObject *object, char *buffer);
    // The object with this path, without regard to case, or null. The separator is the
    // backslash. Drives are found as "C:", files as "C:\folder\file", hives by names of
    // at most 4 characters, keys and values by longer paths.
    CQVUObject *GetObjectByPath(const char *path);
    // The OBJ_VFILE object of this name or null. No lock.
    CQVUObject *LookupVFILE(char *name);

    // Walk all objects by name pattern (stars and question marks, without regard to case,
    // below 100 characters) and type mask, in order of id. Objects without a name and of
    // type 0 are never found. First gives a handle, or 0 for none and nothing to close.
    SearchHandle FindFirstObject(char *pattern, unsigned long typeMask, CQVUObject **out);
    int FindNextObject(SearchHandle handle, CQVUObject **out);
    void FindCloseObject(SearchHandle handle); // does nothing with an unknown handle

    // Gather what `object` depends on (or what refers to it, and what that depends on) at
    // the head of `results`. The caller owns the results and clears OBJ_FLAG_VISITED in
    // the objects they name; CQVUObject::FindFirstDependentObject does both.
    void ExpandObjectRef(CQVUObject *object, char *basePath, FFDepObjResult **results);
    void ExpandObjectRefBackwards(CQVUObject *object, char *basePath, FFDepObjResult **results);

protected:
    // These are called with the mutex held.
    DBObject *MakeNewObject(const char *name, unsigned long type, unsigned long flags,
                            unsigned long dataSize, unsigned char *data, int persistent);
    void IndexObject(DBObject *pObj);
    DBObject *FindSupport(SearchHandle handle);
    int DoesObjectHaveCorrectPath(DBObject *object, char *parentPath);

private:
    friend class CQVUObject;
    friend class CQVULink;
    friend class DatabaseReader;
    friend class DatabaseSteps;
    friend class DatabaseWriter;
    friend class Expansion;

    void *m_hMutex;                             // the database's one mutex, or null
    int m_bDirty;                               // persistent data changed; never cleared
    std::uint32_t m_dwRefCount;                 // attachment count
    std::uint32_t m_dwLastObjectID;             // highest object id handed out
    std::uint32_t m_dwLastLinkID;               // highest link id handed out
    std::unique_ptr<IdMap<ObjectNode>> m_idmap; // all objects by id
    std::unique_ptr<NameMap> m_namemap;         // objects by name
    std::unique_ptr<IdMap<DBLink>> m_linkmap;   // all links by id
    char *m_pszFileName;                        // path of the database file, or null
    int m_bSaveFlag;                            // whether the destructor may write
    std::unique_ptr<GraphIndex> m_index;        // what makes operations fast; no result rests on it
};

extern "C" {
// The database of this process. The first call makes it and loads `linkdb.dat` from
// `directory`; later calls only add to its count and ignore their argument. Null on
// failure. Each call pairs with one CQVUDatabase::Release. Callers serialise.
QVLINKDB_API CQVUDatabase *AttachDatabase(const char *directory);

// Whether a file belongs to the operating system: 1 or 0. The path is a full one, with
// drive and folders spelled as the system tells its own, but for case; a protected folder
// doesn't protect what is below it. Asking isn't without effect: a folder that only leads
// to protected files answers 0 the first time and 1 every time after that, for as long as
// the process lives. A path of 260 characters or more ends the process; null answers 0.
// Any thread, no lock.
QVLINKDB_API int IsProtectedPath(const char *path);
}
