// UtilsString on plain strings: the strings of one object, its cursors and settings.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "text_model.h"

struct StringModel {
    std::vector<std::string> strings{""};
    unsigned long current = 0;
    unsigned long findIndex = 0;
    unsigned long parseIndex = 0;
    unsigned long fastParseFound = 0;
    unsigned long fastParseStart = 0;
    unsigned long lastReplaceIndex = 0;
    int matchStyle = 0;
    int caseMode = 1;

    std::string &Text() { return strings[current]; }
    std::string const &Text() const { return strings[current]; }
    unsigned long Size() const { return static_cast<unsigned long>(Text().size()); }

    void RemoveString(unsigned long index);
    void RemoveString();
    void AssignAll(std::vector<std::string> const &texts);
    void Scramble(std::string const &key);

    text_model::Hit FindFirst(std::string const &pattern);
    text_model::Hit FindNext(std::string const &pattern);
    bool FindAll(std::string const &pattern);
    text_model::Hit Search(std::string const &pattern, unsigned long occurrence) const;

    std::optional<std::string> Parse(std::string const &separator, unsigned long piece,
                                     bool keepFront) const;
    std::optional<std::string> ParseFast(std::string const &separator, unsigned long piece);
    std::optional<std::string> ParseFirstFast(std::string const &separator);
    std::optional<std::string> ParseNextFast(std::string const &separator);

    bool ReplaceFirst(std::string const &find, std::string const &with);
    bool ReplaceNext(std::string const &find, std::string const &with);
    // Nothing if the text is still growing or the end far after so many replacements.
    std::optional<bool> ReplaceAll(std::string const &find, std::string const &with,
                                   int patience = 100);

    void SplitData(std::string const &text, int textCase, std::string const &separator,
                   bool append);

private:
    void ReplaceAt(unsigned long index, std::string const &find, std::string const &with);
};
