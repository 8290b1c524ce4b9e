#include "prefix.h"

#include <algorithm>
#include <stdexcept>

void Disk::Put(std::string const &path, std::string const &text) {
    std::filesystem::create_directories(At(path).parent_path());
    WriteBytes(At(path), BytesOf(text));
}

std::string PrefixText(std::string const &root, std::vector<std::string> const &keys) {
    std::string text = "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\" + root +
                       "\n\n#arch=win64\n";
    for (std::string const &key : keys) {
        text += "\n[" + key + "] 1700000000\n#time=1dd79f6478f078c\n";
    }
    return text;
}

std::string PrefixLink(std::string const &key, std::string const &target) {
    constexpr const char *digits = "0123456789abcdef";
    std::string lines = key + "] 1700000000\n#link\n\"SymbolicLinkValue\"=hex(6):";
    for (char const c : target) {
        lines += {digits[c >> 4 & 15], digits[c & 15], ',', '0', '0', ','};
    }
    lines.pop_back();
    return lines + "\n\n[" + key;
}

qvlink::Capture CaptureFiles(std::string const &from, std::vector<std::string> const &without) {
    return qvlink::CaptureList({lists::Kind::files, from, without});
}

qvlink::Capture CaptureKeys(std::string const &from, std::vector<std::string> const &without) {
    return qvlink::CaptureList({lists::Kind::keys, from, without});
}

std::string TextOf(std::vector<std::string> const &lines) {
    std::string text;
    for (std::string const &line : lines) {
        text += line + "\r\n";
    }
    return text;
}

std::string Refusal(lists::Kind kind, std::string const &from) {
    try {
        qvlink::CaptureList({kind, from, {}});
    } catch (std::runtime_error const &error) {
        return error.what();
    }
    return {};
}

bool HasWords(std::vector<std::string> const &texts, std::string const &words) {
    return std::any_of(texts.begin(), texts.end(), [&](std::string const &text) {
        return text.find(words) != std::string::npos;
    });
}
