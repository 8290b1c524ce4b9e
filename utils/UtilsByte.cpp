#include "UtilsByte.h"

#include <vector>

namespace UTILS {

ByteOperand::ByteOperand(unsigned char const *data, unsigned long size)
    : m_data(data), m_size(!data       ? 0
                           : size == 0 ? 1
                                       : size) {}

ByteOperand::ByteOperand(MemObject<unsigned char> const &source)
    : m_data(source.Retrieve()), m_size(source.RetrieveSize()) {}

ByteOperand::ByteOperand(UtilsByte const &source)
    : m_data(source.Retrieve()), m_size(source.size()) {}

UtilsByte::UtilsByte(unsigned char const *data, unsigned long size) : lastReplaceIndex(0) {
    Init();
    BuildVector(1, data, size);
}

UtilsByte::UtilsByte(MemObject<unsigned char> const &data) : UtilsByte() { Append(data); }

UtilsByte::UtilsByte(UtilsByte const &other)
    // NOLINTNEXTLINE(readability-redundant-member-init): the compiler wants it told
    : UtilsBase<unsigned char>(), Utils<unsigned char, int>(other), lastReplaceIndex(0) {
    CopyData(other);
}

UtilsByte &UtilsByte::operator=(UtilsByte const &other) {
    if (this != &other) {
        VectorCopy(other);
        CopyData(other);
    }
    return *this;
}

UtilsByte &UtilsByte::operator=(MemObject<unsigned char> const &data) {
    Assign(data.Retrieve(), data.RetrieveSize());
    return *this;
}

UtilsByte &UtilsByte::operator=(UtilsAllocator<unsigned char> &data) {
    Assign(data.GetMemoryBlock(), data.GetLength());
    return *this;
}

UtilsByte::~UtilsByte() = default;

const char *UtilsByte::derived_class() const { return ClassName(typeid(*this)); }

void UtilsByte::Init() {
    findIndex = 0;
    stringCount = 1;
    matchStyle = 0;
    caseMode = 1;
}

// The memory of the last replacement stays with its object.
void UtilsByte::CopyData(UtilsByte const &other) {
    findIndex = other.findIndex;
    stringCount = other.stringCount;
    matchStyle = other.matchStyle;
    caseMode = other.caseMode;
}

// The data may be of the run that goes.
void UtilsByte::Assign(unsigned char const *data, unsigned long size) {
    std::vector<unsigned char> const kept(data, data + size);
    Run().Empty();
    if (size != 0) {
        Run().Append(kept.data(), size);
    }
}

UtilsByte &UtilsByte::operator--() {
    TruncateString(1);
    return *this;
}

UtilsByte &UtilsByte::operator--(int) { return --*this; }

UtilsByte &UtilsByte::Append(UtilsByte const &data) { return Append(data.Run()); }

UtilsByte &UtilsByte::Append(MemObject<unsigned char> const &data) {
    return data.RetrieveSize() == 0 ? *this : Append(data.Retrieve(), data.RetrieveSize());
}

UtilsByte &UtilsByte::Append(unsigned char value) { return Append(&value, 1); }

UtilsByte &UtilsByte::Append(unsigned char const *data, unsigned long size) {
    Run().Append(data, size);
    return *this;
}

void UtilsByte::Insert(unsigned char const *data, unsigned long size, unsigned long position) {
    Run().Insert(data, position, 0, size);
}

void UtilsByte::Insert(ByteOperand const &data, unsigned long position) {
    if (data.Size() != 0) {
        Insert(data.Begin(), data.Size(), position);
    }
}

void UtilsByte::Replace(unsigned char const *data, unsigned long size, unsigned long position) {
    Run().Insert(data, position, 1, size);
}

void UtilsByte::Replace(ByteOperand const &data, unsigned long position) {
    if (data.Size() != 0) {
        Replace(data.Begin(), data.Size(), position);
    }
}

void UtilsByte::Reverse() { reverse(Retrieve(), Retrieve() + size()); }

void UtilsByte::Sort() { selection_sort(Retrieve(), Retrieve() + size()); }

// Comparison

int UtilsByte::Compare(ByteOperand const &other) const {
    return compare(Retrieve(), other.Begin(), caseMode, matchStyle, size(), other.Size());
}

int UtilsByte::Compare(unsigned char const *data, unsigned long size) const {
    return Compare(ByteOperand(data, size));
}

int UtilsByte::FriendCompare(ByteOperand const &other) const {
    return compare(other.Begin(), Retrieve(), caseMode, matchStyle, other.Size(), size());
}

int UtilsByte::FriendCompare(unsigned char const *data, unsigned long size) const {
    return FriendCompare(ByteOperand(data, size));
}

// Find

int UtilsByte::SearchFor(unsigned char const *pattern, unsigned long size, unsigned long occurrence,
                         unsigned long &index) const {
    ByteOperand const sought(pattern, size);
    return search(sought.Begin(), sought.End(), Retrieve(), Retrieve() + this->size(), index,
                  caseMode, occurrence, nullptr);
}

int UtilsByte::FindFirst(unsigned char const *pattern, unsigned long size, unsigned long &index) {
    findIndex = 0;
    return SearchFor(pattern, size, findIndex, index);
}

int UtilsByte::FindNext(unsigned char const *pattern, unsigned long size, unsigned long &index) {
    ++findIndex;
    return SearchFor(pattern, size, findIndex, index);
}

int UtilsByte::FindAll(unsigned char const *pattern, unsigned long size) {
    unsigned long index = 0;
    return FindFirst(pattern, size, index);
}

int UtilsByte::Search(unsigned char const *pattern, unsigned long size,
                      unsigned long occurrence) const {
    unsigned long index = 0;
    return SearchFor(pattern, size, occurrence, index);
}

// Parse

int UtilsByte::ParseByteString(unsigned char const *separator, unsigned long size,
                               unsigned char *out, unsigned long piece) const {
    ByteOperand const by(separator, size);
    return parse(Retrieve(), Retrieve() + this->size(), out, by.Begin(), by.End(), piece, 1, 0,
                 nullptr, 1);
}

int UtilsByte::ParseByteString(unsigned char const *separator, unsigned long size, UtilsByte &out,
                               unsigned long piece) const {
    ByteOperand const by(separator, size);
    unsigned long begin = 0;
    unsigned long end = 0;
    bool const found = FindPiece(Retrieve(), Retrieve() + this->size(), by.Begin(), by.End(), piece,
                                 1, 0, nullptr, 1, begin, end);
    out.Assign(Retrieve() + begin, found ? end - begin : 0);
    return found ? 1 : 0;
}

int UtilsByte::ParseFirstByteString(unsigned char const *separator, unsigned long size,
                                    unsigned char *out) {
    findIndex = 0;
    return ParseByteString(separator, size, out, 0);
}

int UtilsByte::ParseFirstByteString(unsigned char const *separator, unsigned long size,
                                    UtilsByte &out) {
    findIndex = 0;
    return ParseByteString(separator, size, out, 0);
}

int UtilsByte::ParseNextByteString(unsigned char const *separator, unsigned long size,
                                   unsigned char *out) {
    ++findIndex;
    return ParseByteString(separator, size, out, findIndex);
}

int UtilsByte::ParseNextByteString(unsigned char const *separator, unsigned long size,
                                   UtilsByte &out) {
    ++findIndex;
    return ParseByteString(separator, size, out, findIndex);
}

// Replace

// The data may be of the run that changes.
void UtilsByte::ReplaceAt(unsigned long findSize, ByteOperand const &with, unsigned long index) {
    std::vector<unsigned char> const kept(with.Begin(), with.End());
    if (findSize == with.Size()) {
        Run().Insert(kept.data(), index, 1, with.Size());
    } else {
        Run().TruncateAtPosition(findSize, index);
        if (with.Size() != 0) {
            Run().Insert(kept.data(), index, 0, with.Size());
        }
    }
    lastReplaceIndex = index;
}

int UtilsByte::ReplaceFirst(unsigned char const *find, unsigned long findSize,
                            unsigned char const *with, unsigned long withSize) {
    ByteOperand const sought(find, findSize);
    ByteOperand const put(with, withSize);
    if (sought.Size() == size()) {
        // Of one length is enough: the contents aren't compared.
        Assign(put.Begin(), put.Size());
        return 1;
    }
    unsigned long index = 0;
    if (!FindFirst(sought.Begin(), sought.Size(), index)) {
        return 0;
    }
    ReplaceAt(sought.Size(), put, index);
    return 1;
}

int UtilsByte::ReplaceNext(unsigned char const *find, unsigned long findSize,
                           unsigned char const *with, unsigned long withSize) {
    ByteOperand const sought(find, findSize);
    unsigned long index = 0;
    if (sought.Size() == size() || !FindFirst(sought.Begin(), sought.Size(), index) ||
        index == lastReplaceIndex) {
        return 0;
    }
    ReplaceAt(sought.Size(), ByteOperand(with, withSize), index);
    return 1;
}

int UtilsByte::ReplaceAll(unsigned char const *find, unsigned long findSize,
                          unsigned char const *with, unsigned long withSize) {
    ByteOperand const sought(find, findSize);
    ByteOperand const put(with, withSize);
    std::vector<unsigned char> const keptFind(sought.Begin(), sought.End());
    std::vector<unsigned char> const keptWith(put.Begin(), put.End());
    if (!ReplaceFirst(keptFind.data(), sought.Size(), keptWith.data(), put.Size())) {
        return 0;
    }
    while (ReplaceNext(keptFind.data(), sought.Size(), keptWith.data(), put.Size())) {
    }
    findIndex = 0;
    return 1;
}

// Scrambling

void UtilsByte::Scramble(unsigned char const *key, unsigned long keyLength) {
    unsigned char *const data = Retrieve();
    for (unsigned long i = 0; i < size(); ++i) {
        data[i] = static_cast<unsigned char>(data[i] ^ key[i % keyLength]);
    }
}

void UtilsByte::XORData(unsigned char key) { Scramble(&key, 1); }

// An empty key is a division by zero, and that stays.
void UtilsByte::EncryptData(UtilsByte const &key) { Scramble(key.Retrieve(), key.size()); }

void UtilsString::EncryptString(UtilsByte const &key) { Scramble(key.Retrieve(), key.size()); }

} // namespace UTILS
