#include "registry/export.h"

#include "registry/reasons.h"
#include "registry/registration_writer.h"

namespace qvlink {
namespace {

constexpr int deepest = 512; // no system has deeper keys

class Exporter {
public:
    Exporter(Registry &registry, RegistrationForm form, CodePage const &page)
        : m_registry(registry), m_writer(form, page) {}

    std::uint32_t Write(std::string const &key, int depth);
    Exported Finish() {
        m_result.bytes = m_writer.Bytes();
        return std::move(m_result);
    }

private:
    void WriteValues(std::string const &key, std::vector<RegistryValue> const &values);
    void LeaveOut(std::string const &what, std::string const &why) {
        m_result.leftOut.push_back(what + ": " + why);
    }

    Registry &m_registry;
    RegistrationWriter m_writer;
    Exported m_result;
};

void Exporter::WriteValues(std::string const &key, std::vector<RegistryValue> const &values) {
    for (RegistryValue const &value : values) {
        std::string const why = m_writer.Value(value);
        if (why.empty()) {
            ++m_result.values;
        } else {
            LeaveOut(key + ": " + (value.name.empty() ? "@" : value.name), why);
        }
    }
}

std::uint32_t Exporter::Write(std::string const &key, int depth) {
    std::vector<RegistryValue> values;
    std::vector<std::string> names;
    std::uint32_t code = m_registry.ReadValues(key, values);
    if (code == 0) {
        code = m_registry.ReadKeys(key, names);
    }
    if (code != 0) {
        return code;
    }
    std::string const why = m_writer.Key(key);
    if (why.empty()) {
        ++m_result.keys;
        WriteValues(key, values);
    } else {
        LeaveOut(key, why);
    }
    for (std::string const &name : names) {
        std::string const below = std::string(key).append("\\").append(name);
        std::uint32_t const failed = depth < deepest ? Write(below, depth + 1) : 0;
        if (failed != 0) {
            LeaveOut(below, ReasonOf(failed));
        }
    }
    return 0;
}

} // namespace

Exported ExportRegistration(Registry &registry, std::string const &key, RegistrationForm form,
                            CodePage const &page) {
    Exporter exporter(registry, form, page);
    std::uint32_t const code = exporter.Write(key, 1);
    Exported result = exporter.Finish();
    result.code = code;
    return result;
}

} // namespace qvlink
