// Diagnostics: what reaches the receiver, and what a missing or failing one costs.
#include "diag_folder.h"

#include "Diag.h"
#include "platform/testing.h"
#include "platform/winapi.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "platform/own_path.h"

using Facts = std::map<std::string, std::string>;

TEST(Diag, without_a_receiver_costs_one_failed_load) {
    DiagFolder const folder;
    Facts const facts = folder.Run({"report", "report", "report"});
    EXPECT_EQ("1", facts.at("loads"));
    EXPECT_EQ("0", facts.at("handles"));
    EXPECT_EQ("0", facts.at("entries"));
}

TEST(Diag, loads_nothing_before_the_first_report) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({});
    EXPECT_EQ("0", facts.at("loads"));
    EXPECT_EQ("0", facts.at("reports"));
}

TEST(Diag, reaches_the_receiver_with_every_report) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({"report", "report", "report"});
    EXPECT_EQ("3", facts.at("reports"));
    EXPECT_EQ("1", facts.at("loads"));
    EXPECT_EQ("3", facts.at("handles"));
    EXPECT_EQ("1", facts.at("entries"));
}

TEST(Diag, hands_its_arguments_on) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({"report"});
    EXPECT_EQ("3", facts.at("level"));
    EXPECT_EQ(OwnPathOf(folder.Program()), facts.at("modulePath"));
    EXPECT_EQ("some file", facts.at("file"));
    EXPECT_EQ("Some::Function", facts.at("function"));
    EXPECT_EQ("790", facts.at("line"));
    EXPECT_EQ("Fri May  4 13:58:19 2012", facts.at("timestamp"));
    EXPECT_EQ("%s - %lu", facts.at("format"));
    EXPECT_EQ("x == 1 - 4711", facts.at("text"));
}

TEST(Diag, with_a_receiver_without_entry_asks_for_it_once) {
    DiagFolder const folder;
    folder.Place("Mute");
    Facts const facts = folder.Run({"report", "report", "report"});
    EXPECT_EQ("1", facts.at("loads"));
    EXPECT_EQ("3", facts.at("handles"));
    EXPECT_EQ("1", facts.at("entries"));
}

TEST(Diag, isnt_tried_again_when_the_receiver_comes_late) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({"delete", "report", "restore", "report"});
    EXPECT_EQ("1", facts.at("loads"));
    EXPECT_EQ("0", facts.at("handles"));
    EXPECT_EQ("0", facts.at("reports"));
}

TEST(Diag, falls_silent_for_good_when_the_receiver_has_gone) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({"report", "hide", "report", "show", "report", "report"});
    EXPECT_EQ("1", facts.at("reports"));
    EXPECT_EQ("1", facts.at("loads"));
    EXPECT_EQ("2", facts.at("handles"));
    EXPECT_EQ("1", facts.at("entries"));
}

TEST(Diag, falls_silent_for_good_when_the_receivers_file_is_renamed) {
    if (IsWindows())
        GTEST_SKIP() << "Windows goes on to know a loaded module whose file is renamed";
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({"report", "delete", "report", "restore", "report"});
    EXPECT_EQ("1", facts.at("reports"));
    EXPECT_EQ("2", facts.at("handles"));
}

TEST(Diag, asks_for_no_entry_when_the_receiver_goes_before_the_first_use) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({"hide", "report", "show", "report"});
    EXPECT_EQ("1", facts.at("loads"));
    EXPECT_EQ("1", facts.at("handles"));
    EXPECT_EQ("0", facts.at("entries"));
    EXPECT_EQ("0", facts.at("reports"));
}

TEST(Diag, swallows_what_the_receiver_throws) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts =
        folder.Run({"throw1", "report", "throw2", "report", "throw0", "report", "report"});
    EXPECT_EQ("4", facts.at("reports"));
    EXPECT_EQ("x == 1 - 4711", facts.at("text"));
}

TEST(Diag, may_be_called_by_many_threads_from_the_start) {
    DiagFolder const folder;
    folder.Place("QVDebug");
    Facts const facts = folder.Run({"threads", "report"});
    EXPECT_EQ("1", facts.at("loads"));
    EXPECT_EQ("1", facts.at("entries"));
    int const reports = std::stoi(facts.at("reports"));
    EXPECT_GE(reports, 1);
    EXPECT_LE(reports, 81);
}
