// Separate objects in separate threads don't meet: what each does comes out as it does alone.
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "std_exception.h"
#include "UtilsByte.h"
#include "UtilsStringList.h"

namespace {

using namespace UTILS;

// A little of everything, in a text that tells it.
std::string Work(unsigned seed) {
    std::string told;
    UtilsStringList list;
    for (unsigned round = 0; round < 40; ++round) {
        UtilsString text("piece");
        text.AddString("other").Append(static_cast<unsigned long>(seed * 1000 + round));
        text += ";last";
        text.ReplaceAll("e", "ee");
        list.AddStringSorted(text);
        UtilsString copy(text);
        copy.SplitData(UtilsString(";"), 0);
        told += copy.GetStringNumber(copy.GetNumberOfStrings() - 1);
        UtilsByte bytes(reinterpret_cast<unsigned char const *>("\0\1\2"), 3);
        bytes.XORData(static_cast<unsigned char>(round));
        told += std::to_string(bytes[2]);
    }
    list.Sort(0);
    for (unsigned long i = 0; i < list.GetNumberOfStrings(); ++i)
        told += list.Retrieve(i);
    told += std_exception("condition", "file", seed, 2, 3, 1).what();
    return told;
}

TEST(StringThreads, with_objects_of_their_own_do_what_each_does_alone) {
    constexpr unsigned count = 4;
    std::vector<std::string> results(count);
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < count; ++i)
        threads.emplace_back([i, &results] { results[i] = Work(i); });
    for (std::thread &thread : threads)
        thread.join();
    for (unsigned i = 0; i < count; ++i)
        EXPECT_EQ(Work(i), results[i]) << i;
}

} // namespace
