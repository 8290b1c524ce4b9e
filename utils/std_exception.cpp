#include "std_exception.h"

#include <cstdio>
#include <string>

namespace UTILS {
namespace {

std::string Decimal(unsigned long number) {
    char text[25];
    std::snprintf(text, sizeof text, "%lu", number);
    return text;
}

std::string NumberOrNothing(unsigned long error) {
    return error != 0 ? Decimal(error) : std::string();
}

// The field with the system's text for an error, or where it has none with the file's name.
UtilsString Description(unsigned long error, int describe, const char *file) {
    UtilsString field;
    if (error != 0 && describe != 0) {
        field.Append("WinError Description: ");
        if (field.SetErrorMsg(error, 0) == 0) {
            field.Append(file);
        }
        field.Append("; ");
    }
    return field;
}

} // namespace

std_exception::std_exception() {
    message.Append("Exception Name:  ").Append(ClassName(typeid(std_exception)));
}

std_exception::std_exception(const std_exception &other) = default;

std_exception::std_exception(const char *condition, const char *file, unsigned long type,
                             unsigned long line, unsigned long error, int describe) {
    Compose(condition, file, Decimal(type), Decimal(line), NumberOrNothing(error),
            Description(error, describe, file));
}

std_exception::std_exception(const UtilsString &condition, const char *file, unsigned long type,
                             unsigned long line, unsigned long error, int describe) {
    Compose(condition, file, Decimal(type), Decimal(line), NumberOrNothing(error),
            Description(error, describe, file));
}

std_exception::std_exception(const UtilsString &condition, const UtilsString &file,
                             const UtilsString &type, const UtilsString &line,
                             const UtilsString &error) {
    Compose(condition, file, type, line, error, "");
}

std_exception &std_exception::operator=(const std_exception &other) {
    CopyData(other);
    return *this;
}

std_exception::~std_exception() = default;

void std_exception::CopyData(const std_exception &other) { message = other.message; }

// The name is that of this class, also within derived ones: theirs isn't there yet.
void std_exception::Compose(TextOperand const &condition, TextOperand const &file,
                            TextOperand const &type, TextOperand const &line,
                            TextOperand const &error, TextOperand const &description) {
    message.Append("File:  ").Append(file).Append("; ");
    message.Append("Line Number:  ").Append(line).Append("; ");
    message.Append("Exception Name:  ").Append(ClassName(typeid(std_exception))).Append("; ");
    message.Append("Type:  ").Append(type).Append("; ");
    if (error.Size() != 0) {
        message.Append("Error Number: ").Append(error).Append("; ");
    }
    message.Append(description).Append("Error Condition:  ").Append(condition);
}

void std_exception::_Doraise() const { throw std_exception(*this); }

const char *std_exception::derived_class() const { return ClassName(typeid(*this)); }

const char *std_exception::what() const noexcept { return message.Retrieve(); }

// A disk fault is never described, whatever its number.
DiskIoException::DiskIoException(unsigned long kind, unsigned long code, unsigned long sourceLine,
                                 const char *sourceFile, const char *text)
    // NOLINTNEXTLINE(bugprone-throw-keyword-missing): the base of this one
    : std_exception(text, sourceFile, kind, sourceLine, code, 0), type(kind), error(code),
      line(sourceLine) {
    Fill(text, sourceFile);
}

DiskIoException::DiskIoException(unsigned long kind, unsigned long code, unsigned long sourceLine,
                                 const char *sourceFile, const UtilsString &text)
    // NOLINTNEXTLINE(bugprone-throw-keyword-missing): the base of this one
    : std_exception(text, sourceFile, kind, sourceLine, code, 0), type(kind), error(code),
      line(sourceLine) {
    Fill(text, sourceFile);
}

DiskIoException::~DiskIoException() = default;

void DiskIoException::Fill(TextOperand const &text, TextOperand const &source) {
    ScopedLock const held(lock);
    message.Append(text);
    file.Append(source);
    name.Append(ClassName(typeid(*this)));
}

const char *DiskIoException::what() const noexcept { return std_exception::what(); }

const char *DiskIoException::derived_class() const { return ClassName(typeid(*this)); }

} // namespace UTILS
