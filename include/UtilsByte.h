// UtilsByte: the twin of UtilsString for bytes, of which any may be 0. One object holds one
// run. It has no terminator and can't be measured: a size of 0 counts as one byte, and what
// takes data takes its size as well.
//
// What isn't told here is as with UtilsString. There is one cursor: a parse that is started
// starts the find again, and the other way round.
#pragma once

#include "UtilsString.h"

namespace UTILS {

class UtilsByte;

// The bytes that an operation takes: from a pointer with a size, a run or a UtilsByte.
class QVLINKDB_API ByteOperand {
public:
    ByteOperand(unsigned char const *data, unsigned long size);
    ByteOperand(MemObject<unsigned char> const &source);
    ByteOperand(UtilsByte const &source);

    unsigned char const *Begin() const { return m_data; }
    unsigned char const *End() const { return m_data + m_size; }
    unsigned long Size() const { return m_size; }

private:
    unsigned char const *m_data;
    unsigned long m_size;
};

class QVLINKDB_API UtilsByte : public Utils<unsigned char, int> {
public:
    UtilsByte(unsigned char const *data = nullptr, unsigned long size = 0);
    UtilsByte(MemObject<unsigned char> const &data);
    UtilsByte(UtilsByte const &other);
    UtilsByte &operator=(UtilsByte const &other);
    UtilsByte &operator=(MemObject<unsigned char> const &data);
    UtilsByte &operator=(UtilsAllocator<unsigned char> &data);

    int isupper(unsigned char const &value) const override { return value >= 65 && value <= 90; }
    int islower(unsigned char const &value) const override { return value >= 97 && value <= 122; }
    unsigned char utoupper(unsigned char const &value) const override {
        return static_cast<unsigned char>(value - 32);
    }
    unsigned char utolower(unsigned char const &value) const override {
        return static_cast<unsigned char>(value + 32);
    }
    const char *derived_class() const override;
    ~UtilsByte() override;

    // The run, borrowed; not terminated.
    unsigned char *Retrieve() const { return Run().Retrieve(); }
    unsigned char *GetString() const { return Retrieve(); }
    unsigned char *c_str() const { return Retrieve(); }
    operator unsigned char *() { return Retrieve(); }
    operator unsigned char const *() const { return Retrieve(); }
    // Not checked. This selects nothing: it is the byte.
    unsigned char &operator[](unsigned long index) const { return Retrieve()[index]; }
    unsigned char &RetrieveByte(unsigned long index) const { return Retrieve()[index]; }
    unsigned long size() const { return Run().RetrieveSize(); }
    unsigned long length() const { return size(); }
    unsigned long strlen() const { return size(); }
    int operator!() const { return size() == 0; }

    void Erase() { Run().Empty(); }
    void EraseData() { Erase(); }
    void TruncateString(unsigned long n) { Run().Truncate(n); }
    void TruncateStringAtPosition(unsigned long n, unsigned long position) {
        Run().TruncateAtPosition(n, position);
    }
    UtilsByte &operator--();
    UtilsByte &operator--(int);

    UtilsByte &Append(UtilsByte const &data);
    UtilsByte &Append(MemObject<unsigned char> const &data);
    UtilsByte &Append(unsigned char value);
    UtilsByte &Append(unsigned char const *data, unsigned long size);
    UtilsByte &operator+=(UtilsByte const &data) { return Append(data); }
    UtilsByte &operator+=(MemObject<unsigned char> const &data) { return Append(data); }
    UtilsByte &operator+=(unsigned char value) { return Append(value); }
    // One byte: there is no size to take more by.
    UtilsByte &operator+=(unsigned char const *data) { return Append(data, 0); }

    void Insert(unsigned char const *data, unsigned long size, unsigned long position);
    void Insert(ByteOperand const &data, unsigned long position);
    void Replace(unsigned char const *data, unsigned long size, unsigned long position);
    void Replace(ByteOperand const &data, unsigned long position);
    void Reverse();
    void Sort();

    int GetMatchStyle() const { return matchStyle; }
    void SetMatchStyle(int style) { matchStyle = style; }
    int GetCase() const { return caseMode; }
    void SetCase(int setting) { caseMode = setting; }

    // -1, 0 or 1; of runs of different sizes that are equal so far the shorter is less.
    int Compare(ByteOperand const &other) const;
    int Compare(unsigned char const *data, unsigned long size) const;
    int FriendCompare(ByteOperand const &other) const;
    int FriendCompare(unsigned char const *data, unsigned long size) const;
    int operator==(ByteOperand const &x) const { return Compare(x) == 0; }
    int operator!=(ByteOperand const &x) const { return Compare(x) != 0; }
    int operator<(ByteOperand const &x) const { return Compare(x) < 0; }
    int operator<=(ByteOperand const &x) const { return Compare(x) <= 0; }
    int operator>(ByteOperand const &x) const { return Compare(x) > 0; }
    int operator>=(ByteOperand const &x) const { return Compare(x) >= 0; }

    int FindFirst(unsigned char const *pattern, unsigned long size, unsigned long &index);
    int FindNext(unsigned char const *pattern, unsigned long size, unsigned long &index);
    int FindAll(unsigned char const *pattern, unsigned long size);
    int Search(unsigned char const *pattern, unsigned long size, unsigned long occurrence) const;
    void FindReset() { findIndex = 0; }
    void ParseReset() { findIndex = 0; }
    void ReplaceReset() { findIndex = 0; }

    // Always exact, whatever the case setting.
    int ParseByteString(unsigned char const *separator, unsigned long size, unsigned char *out,
                        unsigned long piece) const;
    int ParseByteString(unsigned char const *separator, unsigned long size, UtilsByte &out,
                        unsigned long piece) const;
    int ParseFirstByteString(unsigned char const *separator, unsigned long size,
                             unsigned char *out);
    int ParseFirstByteString(unsigned char const *separator, unsigned long size, UtilsByte &out);
    int ParseNextByteString(unsigned char const *separator, unsigned long size, unsigned char *out);
    int ParseNextByteString(unsigned char const *separator, unsigned long size, UtilsByte &out);

    int ReplaceFirst(unsigned char const *find, unsigned long findSize, unsigned char const *with,
                     unsigned long withSize);
    int ReplaceNext(unsigned char const *find, unsigned long findSize, unsigned char const *with,
                    unsigned long withSize);
    int ReplaceAll(unsigned char const *find, unsigned long findSize, unsigned char const *with,
                   unsigned long withSize);

    void XORData(unsigned char key);
    void EncryptData(UtilsByte const &key);

protected:
    void Init();
    void CopyData(UtilsByte const &other);

    unsigned long findIndex;        // the one cursor, of find and parse
    unsigned long lastReplaceIndex; // where the last replacement was made
    unsigned long stringCount;      // 1
    int matchStyle;                 // 0: the whole run; 1: containment counts as equal
    int caseMode;                   // 1: exact; 0: blind to case

private:
    MemObject<unsigned char> &Run() const { return RetrieveVectorItem(0); }
    int SearchFor(unsigned char const *pattern, unsigned long size, unsigned long occurrence,
                  unsigned long &index) const;
    void ReplaceAt(unsigned long findSize, ByteOperand const &with, unsigned long index);
    void Assign(unsigned char const *data, unsigned long size);
    void Scramble(unsigned char const *key, unsigned long keyLength);
};

} // namespace UTILS
