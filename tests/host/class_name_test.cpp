// The names of classes, the same on both systems.
#include "CSyncObject.h"
#include "linkdb.h"

#include <cstring>
#include <string>
#include <thread>

#include <gtest/gtest.h>

using UTILS::ClassName;

namespace UTILS {
struct NamePart {};
template <class...> struct NamePack {
    struct Inner {};
};
} // namespace UTILS

namespace OTHER_UTILS {
struct Part {};
} // namespace OTHER_UTILS

namespace outer::UTILS {
struct Part {};
} // namespace outer::UTILS

using UTILS::NamePack;
using UTILS::NamePart;

TEST(ClassName, has_the_keyword_in_front) {
    EXPECT_STREQ("class UTILS::CCriticalSection", ClassName(typeid(UTILS::CCriticalSection)));
    EXPECT_STREQ("class UTILS::CSyncObject", ClassName(typeid(UTILS::CSyncObject)));
    EXPECT_STREQ("class CQVUDatabase", ClassName(typeid(CQVUDatabase)));
}

TEST(ClassName, has_it_in_front_of_our_classes_among_arguments) {
    EXPECT_STREQ("class UTILS::NamePack<class UTILS::NamePart>",
                 ClassName(typeid(NamePack<NamePart>)));
    EXPECT_STREQ("class UTILS::NamePack<class UTILS::NamePack<char> >",
                 ClassName(typeid(NamePack<NamePack<char>>)));
    EXPECT_STREQ("class UTILS::NamePack<int, class UTILS::NamePart>",
                 ClassName(typeid(NamePack<int, NamePart>)));
    EXPECT_STREQ("class UTILS::NamePack<class UTILS::NamePack<class UTILS::NamePart>, "
                 "class UTILS::NamePart*>",
                 ClassName(typeid(NamePack<NamePack<NamePart>, NamePart *>)));
}

TEST(ClassName, has_it_once_for_a_class_within_ours) {
    EXPECT_STREQ("class UTILS::NamePack<class UTILS::NamePart>::Inner",
                 ClassName(typeid(NamePack<NamePart>::Inner)));
}

TEST(ClassName, leaves_other_arguments_as_they_are) {
    EXPECT_STREQ("class UTILS::NamePack<>", ClassName(typeid(NamePack<>)));
    EXPECT_STREQ("class UTILS::NamePack<unsigned char>",
                 ClassName(typeid(NamePack<unsigned char>)));
    EXPECT_STREQ("class UTILS::NamePack<unsigned short>",
                 ClassName(typeid(NamePack<unsigned short>)));
    EXPECT_STREQ("class UTILS::NamePack<OTHER_UTILS::Part>",
                 ClassName(typeid(NamePack<OTHER_UTILS::Part>)));
    EXPECT_STREQ("class UTILS::NamePack<outer::UTILS::Part>",
                 ClassName(typeid(NamePack<outer::UTILS::Part>)));
}

TEST(ClassName, stays_where_it_is) {
    const char *const name = ClassName(typeid(NamePart));
    EXPECT_EQ(name, ClassName(typeid(NamePart)));
    EXPECT_NE(name, ClassName(typeid(NamePack<>)));
    EXPECT_STREQ("class UTILS::NamePart", name);
}

TEST(ClassName, is_told_to_all_threads_alike) {
    std::vector<std::thread> threads(4);
    std::vector<const char *> told(threads.size());
    for (std::size_t i = 0; i < threads.size(); ++i)
        threads[i] = std::thread([&told, i] {
            for (int round = 0; round < 1000; ++round)
                told[i] = ClassName(typeid(NamePack<NamePart, int>));
        });
    for (std::thread &thread : threads)
        thread.join();
    for (const char *const name : told)
        EXPECT_EQ(told[0], name);
    EXPECT_STREQ("class UTILS::NamePack<class UTILS::NamePart, int>", told[0]);
}
