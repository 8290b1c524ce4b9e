// A scan into a stored database: one writer, and nothing taken for written unseen.
#include <chrono>
#include <fstream>
#include <memory>

#include "platform/interrupt.h"
#include "platform/store.h"
#include "platform/walk.h"
#include "readers/byte_source.h"
#include "scan/scan.h"

namespace qvlink {
namespace {

constexpr std::size_t HEADER_SIZE = 28;

struct StoredFile {
    std::optional<FileIdentity> identity; // nothing: there is no file
    bool whole = false;                   // its own length and mark are right
    std::uint32_t objects = 0;
    std::uint32_t links = 0;
};

StoredFile Look(std::string const &path) {
    StoredFile file;
    file.identity = IdentityOf(path);
    char header[HEADER_SIZE] = {};
    std::ifstream stream(path, std::ios::binary);
    if (!file.identity || !stream.read(header, sizeof header)) {
        return file;
    }
    MemorySource source(std::string_view(header, sizeof header));
    file.whole = source.Get<std::uint32_t>(0) == file.identity->size &&
                 source.Get<std::uint32_t>(16) == LINKDB_MAGIC;
    file.objects = *source.Get<std::uint32_t>(20);
    file.links = *source.Get<std::uint32_t>(24);
    return file;
}

std::unique_ptr<WriterLock> Lock(std::string const &directory) {
    std::string why;
    if (!MakeFolders(directory, why)) {
        throw ScanError("cannot make the folder " + directory + ": " + why);
    }
    LockFailure failure;
    auto lock = WriterLock::Take(directory, failure);
    if (!lock && failure.held) {
        throw ScanError("the database in " + directory + " is being written by another process" +
                        (failure.holder ? " (" + std::to_string(failure.holder) + ")" : "") +
                        "; wait until it is done, or name another folder with --db");
    }
    if (!lock) {
        throw ScanError("cannot write to the folder " + directory + ": " + failure.why);
    }
    return lock;
}

struct Detach {
    void operator()(CQVUDatabase *database) const {
        database->SetSaveFlag(0);
        database->Release();
    }
};
using Attachment = std::unique_ptr<CQVUDatabase, Detach>;

void Save(CQVUDatabase &database, std::string const &path) {
    StoredFile const before = Look(path);
    database.Flush();
    StoredFile const after = Look(path);
    bool const isNew = after.identity && !(before.identity && *before.identity == *after.identity);
    if (!isNew) {
        throw ScanError("the database could not be written to " + path +
                        "; see that there is room on the disk and that you may write there");
    }
    if (!after.whole) {
        throw ScanError("the database written to " + path + " does not read back; scan again");
    }
}

} // namespace

ScanSummary ScanInto(std::string const &directory, ScanOptions const &options,
                     ScanObserver &observer) {
    auto const start = std::chrono::steady_clock::now();
    InterruptWatch const watch;
    auto const lock = Lock(directory);
    std::string const path = JoinPath(directory, "linkdb.dat");
    StoredFile const before = Look(path);
    if (before.identity && !before.whole) {
        throw ScanError(path + " is damaged or can't be read; delete it to scan anew");
    }
    Attachment const database(AttachDatabase(directory.c_str()));
    if (!database) {
        throw ScanError("no memory for the database");
    }
    ScanOptions own = options;
    own.databaseFolder = directory;
    bool changed = false;
    ScanSummary summary = Scan(*database, own, observer, changed);
    if (InterruptWatch::Requested()) {
        throw ScanInterrupted("stopped; the stored graph is as it was");
    }
    if (changed) {
        Save(*database, path);
    }
    StoredFile const after = Look(path);
    summary.objects = after.objects;
    summary.links = after.links;
    summary.saved = changed;
    summary.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return summary;
}

} // namespace qvlink
