// Registration files brought into a registry.
#include "flat_registry.h"
#include "registration_text.h"

#include "registry/import.h"

#include <gtest/gtest.h>

using qvlink::Imported;
using qvlink::RegistrationForm;

namespace {

const std::string machine = ";; All keys relative to REGISTRY\\\\Machine\n";
const std::string user = ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n";
const std::string defaultUser = ";; All keys relative to REGISTRY\\\\User\\\\.Default\n";

class Import : public testing::Test {
protected:
    Imported Run(std::string const &file, std::string const &into = "") {
        TestPage const page;
        return qvlink::ImportRegistration(m_registry, file, page, into);
    }
    // The keys that there are, and values as "key: name=type:data".
    Told Now() const {
        Told told;
        for (auto const &[path, values] : m_registry.keys) {
            told.push_back(path);
            for (auto const &[name, value] : values) {
                told.push_back(std::string(path).append(": ").append(name).append("=") +
                               std::to_string(value.first) + ':' + Hex(value.second));
            }
        }
        return told;
    }

    FlatRegistry m_registry;
};

std::vector<std::size_t> LinesOf(Imported const &imported) {
    std::vector<std::size_t> lines;
    for (auto const &fault : imported.faults) {
        lines.push_back(fault.line);
    }
    return lines;
}
using Lines = std::vector<std::size_t>;

// The lines of a key that is a link.
std::string Link(std::string const &key, std::string const &target) {
    std::string lines = "[" + key + "] 1\n#link\n\"SymbolicLinkValue\"=hex(6):";
    for (char const c : Wide(target)) {
        lines += Hex({&c, 1}) + ',';
    }
    return lines + "\n";
}

} // namespace

TEST_F(Import, Keys_and_values_are_made_and_counted) {
    Imported const told = Run(Unicode("[HKEY_CURRENT_USER\\A\\B]\n@=\"a\"\n\"x\"=dword:1\n"
                                      "[HKEY_LOCAL_MACHINE\\C]\n"));
    EXPECT_EQ((Told{"HKCU", "HKCU\\A", "HKCU\\A\\B", "HKCU\\A\\B: =1:61000000",
                    "HKCU\\A\\B: x=4:01000000", "HKLM", "HKLM\\C"}),
              Now());
    EXPECT_EQ(RegistrationForm::unicode, told.form);
    EXPECT_EQ(2u, told.keys);
    EXPECT_EQ(2u, told.values);
    EXPECT_EQ(0u, told.removedKeys + told.removedValues + told.links + told.faults.size());
    EXPECT_EQ("", told.failure);
    EXPECT_EQ(1, m_registry.commits);
    EXPECT_EQ(0, m_registry.rollbacks);
}

TEST_F(Import, Removals_are_counted_where_there_was_something) {
    Run(Unicode("[HKCU\\A]\n\"x\"=\"\"\n\"y\"=\"\"\n[HKCU\\B\\C]\n"));
    Imported const told = Run(Unicode("[HKCU\\A]\n\"x\"=-\n\"z\"=-\n[-HKCU\\B]\n[-HKCU\\D]\n"));
    EXPECT_EQ((Told{"HKCU", "HKCU\\A", "HKCU\\A: y=1:0000"}), Now());
    EXPECT_EQ(1u, told.removedKeys);
    EXPECT_EQ(1u, told.removedValues);
    EXPECT_TRUE(told.faults.empty());
}

TEST_F(Import, Bad_lines_are_told_and_the_rest_goes_in) {
    Imported const told = Run(Unicode("rubbish\n[HKCU\\A]\n\"x\"=zz\n\"y\"=\"\"\n[nowhere]\n"
                                      "\"z\"=\"\"\n[HKCU\\B]\n"));
    EXPECT_EQ((Lines{2, 4, 6}), LinesOf(told));
    EXPECT_EQ((Told{"HKCU", "HKCU\\A", "HKCU\\A: y=1:0000", "HKCU\\B"}), Now());
    EXPECT_EQ(2u, told.keys);
    EXPECT_FALSE(told.faults[0].isRefusal);
    EXPECT_EQ(1, m_registry.commits);
}

TEST_F(Import, What_no_registry_holds_is_a_fault) {
    std::string const longName(256, 'a');
    Imported const told = Run(Unicode("[HKCU\\" + longName +
                                      "]\n\"x\"=\"\"\n[HKCU\\A\\\\B]\n[-HKCU\\A\\\\B]\n[-HKCU]\n"
                                      "[HKCU\\A]\n\"" +
                                      std::string(16384, 'x') + "\"=\"\"\n\"y\"=\"\"\n"));
    EXPECT_EQ((Lines{2, 4, 5, 6, 8}), LinesOf(told));
    EXPECT_EQ((Told{"HKCU", "HKCU\\A", "HKCU\\A: y=1:0000"}), Now());
}

TEST_F(Import, A_refused_key_is_told_once_and_its_values_are_passed_over) {
    m_registry.refused = {{"HKLM\\A", 5}, {"HKLM\\C: x", 112}};
    Imported const told = Run(Unicode("[HKLM\\A]\n\"x\"=\"\"\n[HKLM\\B]\n[HKLM\\C]\n\"x\"=\"\"\n"));
    EXPECT_EQ((Lines{2, 6}), LinesOf(told));
    EXPECT_TRUE(told.faults[0].isRefusal && told.faults[1].isRefusal);
    EXPECT_EQ("HKLM\\A: access is denied", told.faults[0].message);
    EXPECT_EQ("HKLM\\C: x: the disk is full", told.faults[1].message);
    EXPECT_EQ((Told{"HKLM", "HKLM\\B", "HKLM\\C"}), Now());
}

TEST_F(Import, A_removal_that_is_refused_is_told) {
    Run(Unicode("[HKCU\\A]\n"));
    m_registry.refused = {{"HKCU\\A", 5}};
    Imported const told = Run(Unicode("[-HKCU\\A]\n"));
    EXPECT_EQ(Lines{2}, LinesOf(told));
    EXPECT_EQ(0u, told.removedKeys);
}

TEST_F(Import, Without_a_transaction_nothing_goes_in) {
    m_registry.beginCode = 170;
    Imported const told = Run(Unicode("[HKCU\\A]\n"));
    EXPECT_EQ("another process writes the registry", told.failure);
    EXPECT_EQ(Told{}, Now());
}

TEST_F(Import, A_file_that_fails_at_its_end_is_undone) {
    m_registry.commitCode = 112;
    Imported const told = Run(Unicode("[HKCU\\A]\n"));
    EXPECT_EQ("the disk is full", told.failure);
    EXPECT_EQ(1, m_registry.rollbacks);
    EXPECT_EQ(Told{}, Now());
}

TEST_F(Import, What_is_no_registration_file_begins_nothing) {
    Imported const told = Run("rubbish");
    EXPECT_NE("", told.failure);
    EXPECT_EQ(RegistrationForm::none, told.form);
    EXPECT_EQ(0, m_registry.commits);
}

TEST_F(Import, Files_of_a_prefix_go_below_the_roots_they_tell) {
    EXPECT_EQ("HKLM", Run(OfPrefix(machine + "[A] 1\n")).root);
    EXPECT_EQ("HKCU", Run(OfPrefix(user + "[A\\\\B] 1\n\"x\"=\"\"\n")).root);
    EXPECT_EQ("HKU\\.Default", Run(OfPrefix(defaultUser + "[A] 1\n")).root);
    EXPECT_EQ((Told{"HKCU", "HKCU\\A", "HKCU\\A\\B", "HKCU\\A\\B: x=1:0000", "HKLM", "HKLM\\A",
                    "HKU", "HKU\\.Default", "HKU\\.Default\\A"}),
              Now());
}

TEST_F(Import, A_file_that_tells_no_root_needs_a_key_to_go_into) {
    for (std::string const &root :
         {std::string(), std::string(";; All keys relative to REGISTRY\\\\X\n")}) {
        Imported const told = Run(OfPrefix(root + "[A] 1\n"));
        EXPECT_NE(std::string::npos, told.failure.find("--into")) << told.failure;
        EXPECT_EQ(Told{}, Now());
    }
    EXPECT_EQ("", Run(OfPrefix("[A] 1\n"), "HKCU\\T").failure);
    EXPECT_EQ((Told{"HKCU", "HKCU\\T", "HKCU\\T\\A"}), Now());
}

TEST_F(Import, A_key_to_go_into_takes_the_place_of_every_root) {
    EXPECT_EQ("HKCU\\T", Run(OfPrefix(machine + "[A] 1\n"), "HKCU\\T").root);
    Run(Unicode("[HKLM\\B]\n[HKEY_USERS]\n\"x\"=\"\"\n[-HKCR\\A]\n"), "HKCU\\T");
    EXPECT_EQ((Told{"HKCU", "HKCU\\T", "HKCU\\T: x=1:0000", "HKCU\\T\\B"}), Now());
    EXPECT_EQ(Lines{2}, LinesOf(Run(Unicode("[-HKLM]\n"), "HKCU\\T")));
}

TEST_F(Import, A_link_gets_what_it_leads_to) {
    Imported const told = Run(OfPrefix(machine + Link("L", "\\Registry\\Machine\\T") +
                                       "[T] 1\n\"x\"=\"\"\n[T\\\\B] 1\n"));
    EXPECT_EQ((Told{"HKLM", "HKLM\\L", "HKLM\\L: x=1:0000", "HKLM\\L\\B", "HKLM\\T",
                    "HKLM\\T: x=1:0000", "HKLM\\T\\B"}),
              Now());
    EXPECT_EQ(1u, told.links);
    EXPECT_EQ(3u, told.keys);
    EXPECT_EQ(1u, told.values);
    EXPECT_TRUE(told.faults.empty());
}

TEST_F(Import, A_link_to_a_link_or_past_one_gets_what_that_leads_to) {
    // L -> M, M\N -> T.
    Imported const told = Run(OfPrefix(
        machine + Link("L", "\\Registry\\Machine\\M") + Link("M\\\\N", "\\Registry\\Machine\\T") +
        Link("O", "\\Registry\\Machine\\M\\N\\B") + "[T\\\\B\\\\C] 1\n"));
    EXPECT_EQ(3u, told.links);
    EXPECT_TRUE(told.faults.empty());
    for (const char *const key :
         {"HKLM\\L\\N\\B\\C", "HKLM\\M\\N\\B\\C", "HKLM\\O\\C", "HKLM\\T\\B\\C"}) {
        EXPECT_EQ(1u, m_registry.keys.count(key)) << key;
    }
}

TEST_F(Import, Links_in_a_circle_or_out_of_the_registry_are_faults) {
    Imported const told = Run(
        OfPrefix(machine + Link("A", "\\Registry\\Machine\\B") +
                 Link("B", "\\Registry\\Machine\\A") + Link("C\\\\D", "\\Registry\\Machine\\C") +
                 Link("E", "\\Device\\X") + Link("G", "\\Registry\\Machine\\G\\H")));
    EXPECT_EQ(0u, told.links);
    EXPECT_EQ((Lines{5, 8, 11, 14, 17}), LinesOf(told));
    EXPECT_EQ(1, m_registry.commits);
}

TEST_F(Import, A_link_to_a_key_that_is_not_there_is_an_empty_key) {
    Imported const told = Run(OfPrefix(machine + Link("L", "\\Registry\\Machine\\Missing")));
    EXPECT_EQ((Told{"HKLM", "HKLM\\L"}), Now());
    EXPECT_EQ(0u, told.links);
    EXPECT_TRUE(told.faults.empty());
}

TEST_F(Import, Links_follow_the_keys_to_where_they_went) {
    Imported const told =
        Run(OfPrefix(machine + Link("L", "\\Registry\\Machine\\T") + "[T\\\\B] 1\n"), "HKCU\\X");
    EXPECT_EQ(1u, told.links);
    EXPECT_EQ(1u, m_registry.keys.count("HKCU\\X\\L\\B"));
}

TEST_F(Import, Links_that_multiply_keys_come_to_an_end) {
    std::string file = machine + "[T0\\\\a] 1\n[T0\\\\b] 1\n";
    for (int i = 1; i < 40; ++i) {
        std::string const target = "\\Registry\\Machine\\T" + std::to_string(i - 1);
        std::string const key = "T" + std::to_string(i);
        file += Link(key + "\\\\a", target) + Link(key + "\\\\b", target);
    }
    Imported const told = Run(OfPrefix(file));
    EXPECT_FALSE(told.faults.empty());
    EXPECT_LE(told.links, 78u);
    EXPECT_EQ("", told.failure);
}
