// The exceptions of this library's classes: one composed line tells file, line, class, type,
// error number and condition.
#pragma once

#include <exception>

#include "UtilsString.h"

namespace UTILS {

// Text, where `describe` isn't 0 and the error number isn't either:
//
//   File:  F; Line Number:  L; Exception Name:  class UTILS::std_exception; Type:  T;
//   Error Number: E; WinError Description: D; Error Condition:  C
//
// in one line, but for the line break that ends the system's description. Where the system
// has none the file's name stands in for it. Without an error number neither is told.
class QVLINKDB_API std_exception : public virtual std::exception {
public:
    std_exception(); // the class name only
    std_exception(const std_exception &other);
    std_exception(const char *condition, const char *file, unsigned long type, unsigned long line,
                  unsigned long error, int describe);
    std_exception(const UtilsString &condition, const char *file, unsigned long type,
                  unsigned long line, unsigned long error, int describe);
    // The numbers as texts, which pass unchanged; an empty error isn't told, and none described.
    std_exception(const UtilsString &condition, const UtilsString &file, const UtilsString &type,
                  const UtilsString &line, const UtilsString &error);
    std_exception &operator=(const std_exception &other);

    // Throws a copy, always as std_exception.
    [[noreturn]] virtual void _Doraise() const;
    // The name of the object's class, good for the life of the process.
    virtual const char *derived_class() const;
    ~std_exception() override;
    const char *what() const noexcept override; // borrowed from the object
    operator const char *() const { return what(); }

protected:
    void CopyData(const std_exception &other);

    UtilsString message;

private:
    void Compose(TextOperand const &condition, TextOperand const &file, TextOperand const &type,
                 TextOperand const &line, TextOperand const &error, TextOperand const &description);
};

// What disk operations throw.
class QVLINKDB_API DiskIoException : public virtual std_exception {
public:
    DiskIoException(unsigned long kind, unsigned long code, unsigned long sourceLine,
                    const char *sourceFile, const char *text);
    DiskIoException(unsigned long kind, unsigned long code, unsigned long sourceLine,
                    const char *sourceFile, const UtilsString &text);
    ~DiskIoException() override;
    const char *what() const noexcept override;
    const char *derived_class() const override;

    CCriticalSection lock; // held while the texts are written
    unsigned long type;    // which operation failed
    unsigned long error;   // the system's code
    unsigned long line;    // source line
    UtilsString name;      // class name
    UtilsString message;   // the caller's message
    UtilsString file;      // source file

private:
    void Fill(TextOperand const &text, TextOperand const &source);
};

} // namespace UTILS
