// What we write is read by the system's own program for it, and the other way round.
#include "registration_text.h"

#include "platform/process.h"
#include "platform/system_registry.h"
#include "registry/export.h"
#include "registry/import.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

using qvlink::RegistrationForm;

namespace {

const std::string top = "HKCU\\Software\\QVLinkDB exchange tests";
constexpr char Program[] = "C:\\windows\\system32\\reg.exe";

class Exchange : public testing::Test {
protected:
    Exchange() : m_registry(qvlink::OpenRegistry()) { m_registry->DeleteTree(top); }
    ~Exchange() override { m_registry->DeleteTree(top); }

    void Fill() {
        ASSERT_EQ(0u, m_registry->Create(top + "\\a]b\\c"));
        ASSERT_EQ(0u, m_registry->Create(top + "\\ \xC3\xA4"));
        std::string const number("\x01\x02\x03\x04", 4);
        Set("", 1, Text("a \"b\" C:\\c"));
        Set("quo\"te\\", 1, Text(""));
        Set("expanded", 2, Text("%a%"));
        Set("bytes", 3, std::string(100, '\x1a'));
        Set("number", 4, number);
        Set("big-endian", 5, number);
        Set("texts", 7, Text("a") + Text("b") + std::string(2, '\0'));
        Set("no texts", 7, std::string(2, '\0'));
        Set("long number", 11, number + number);
        Set("none", 0, "");
        Set("other", 0x1234, number);
        Set("\xC3\xA4", 1, std::string("\xe4\0\0\0", 4));
    }
    void Set(std::string const &name, std::uint32_t type, std::string const &data) {
        ASSERT_EQ(0u, m_registry->SetValue(top, {name, type, data})) << name;
    }
    std::string Export(RegistrationForm form) {
        auto const exported =
            qvlink::ExportRegistration(*m_registry, top, form, *qvlink::OpenCodePage(1252));
        EXPECT_EQ(0u, exported.code);
        EXPECT_TRUE(exported.leftOut.empty());
        return exported.bytes;
    }
    std::string Path(std::string const &name) const { return (m_folder.Path() / name).string(); }

    TempFolder m_folder;
    std::unique_ptr<qvlink::Registry> m_registry;
};

} // namespace

TEST_F(Exchange, Version_5_goes_through_the_systems_program_and_back) {
    Fill();
    std::string const before = Export(RegistrationForm::unicode);
    WriteBytes(Path("out.reg"), BytesOf(before));
    ASSERT_EQ(0u, m_registry->DeleteTree(top));
    ASSERT_EQ(0, RunProgram(Program, {"import", Path("out.reg")}));
    EXPECT_EQ(Read(before), Read(Export(RegistrationForm::unicode)));
    ASSERT_EQ(0, RunProgram(Program, {"export", top, Path("back.reg"), "/y"}));
    ASSERT_EQ(0u, m_registry->DeleteTree(top));
    Bytes const bytes = ReadBytes(Path("back.reg"));
    std::string const back(bytes.begin(), bytes.end());
    auto const told =
        qvlink::ImportRegistration(*m_registry, back, *qvlink::OpenCodePage(1252), "");
    EXPECT_TRUE(told.faults.empty());
    EXPECT_EQ(Read(before), Read(Export(RegistrationForm::unicode)));
}

TEST_F(Exchange, REGEDIT4_is_read_by_the_systems_program) {
    Fill();
    std::string const before = Export(RegistrationForm::unicode);
    WriteBytes(Path("out.reg"), BytesOf(Export(RegistrationForm::ansi)));
    ASSERT_EQ(0u, m_registry->DeleteTree(top));
    ASSERT_EQ(0, RunProgram(Program, {"import", Path("out.reg")}));
    EXPECT_EQ(Read(before), Read(Export(RegistrationForm::unicode)));
}
