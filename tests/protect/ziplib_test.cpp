// The decompressor as the library meets it: a module that is loaded from beside it.
#include "modules/ziplib/ziplib.h"

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <zlib.h>

#include <gtest/gtest.h>

#include "platform/module_file.h"
#include "platform/process.h"

namespace {

// What stands for a whole stream of "hello" in one stored block, and of "abc" in a fixed one.
std::string const storedHello("\x01\x05\x00\xfa\xff"
                              "hello",
                              10);
std::string const fixedAbc("\x4b\x4c\x4a\x06\x00", 5);
std::string const nothing("\x03\x00", 2); // a fixed block without contents

class Module {
public:
    Module() {
        m_module = LoadModule(
            std::filesystem::path(ProgramPath()).replace_filename("ziplib" MODULE_ENDING).string());
        if (m_module)
            call = reinterpret_cast<decltype(&EtUnCompress)>(FindSymbol(m_module, "EtUnCompress"));
    }
    ~Module() {
        if (m_module)
            UnloadModule(m_module);
    }
    Module(Module const &) = delete;
    Module &operator=(Module const &) = delete;

    decltype(&EtUnCompress) call = nullptr;

private:
    void *m_module;
};

class Decompressor : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(nullptr, m_ziplib.call); }

    // Into exactly so much room, from exactly so many bytes.
    int Run(std::string const &stream, std::size_t room) {
        auto const input = std::make_unique<char[]>(stream.size());
        std::copy(stream.begin(), stream.end(), input.get());
        auto const output = std::make_unique<char[]>(room);
        int const result = m_ziplib.call(input.get(), static_cast<DWORD>(stream.size()),
                                         output.get(), static_cast<DWORD>(room));
        text = result > 0 ? std::string(output.get(), static_cast<std::size_t>(result)) : "";
        return result;
    }

    std::string text;
    Module m_ziplib;
};

std::string Deflated(std::string const &text, int level, int strategy) {
    z_stream stream{};
    EXPECT_EQ(Z_OK, deflateInit2(&stream, level, Z_DEFLATED, -15, 9, strategy));
    std::string bytes(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(Z_STREAM_END, deflate(&stream, Z_FINISH));
    bytes.resize(stream.total_out);
    deflateEnd(&stream);
    return bytes;
}

std::string SomeText(std::size_t size) {
    std::mt19937 random(1);
    std::string text;
    while (text.size() < size)
        text += "HKLM\\Software\\" + std::to_string(random() % 5000) + "\r\n";
    text.resize(size);
    return text;
}

} // namespace

TEST_F(Decompressor, Gives_the_length_of_what_it_made) {
    EXPECT_EQ(5, Run(storedHello, 100));
    EXPECT_EQ("hello", text);
    EXPECT_EQ(3, Run(fixedAbc, 100));
    EXPECT_EQ("abc", text);
}

TEST_F(Decompressor, Gives_0_for_a_stream_of_nothing) {
    EXPECT_EQ(0, Run(nothing, 100));
    EXPECT_EQ(0, Run(std::string("\x01\x00\x00\xff\xff", 5), 100));
}

TEST_F(Decompressor, Takes_stored_fixed_and_dynamic_blocks) {
    std::string const original = SomeText(200000);
    struct {
        int level, strategy;
    } const kinds[] = {{0, Z_DEFAULT_STRATEGY},
                       {9, Z_FIXED},
                       {9, Z_DEFAULT_STRATEGY},
                       {1, Z_HUFFMAN_ONLY},
                       {6, Z_RLE}};
    for (auto const &kind : kinds) {
        std::string const stream = Deflated(original, kind.level, kind.strategy);
        EXPECT_EQ(200000, Run(stream, original.size())) << kind.level << ' ' << kind.strategy;
        EXPECT_EQ(original, text);
    }
}

TEST_F(Decompressor, Needs_room_for_the_whole_text_and_no_more) {
    EXPECT_EQ(5, Run(storedHello, 5));
    EXPECT_EQ("hello", text);
    EXPECT_GT(0, Run(storedHello, 4));
    EXPECT_EQ(3, Run(fixedAbc, 3));
    for (std::size_t room = 0; room < 3; ++room)
        EXPECT_GT(0, Run(fixedAbc, room)) << room;
    std::string const original = SomeText(50000);
    std::string const stream = Deflated(original, 9, Z_DEFAULT_STRATEGY);
    EXPECT_EQ(50000, Run(stream, 50000));
    EXPECT_EQ(50000, Run(stream, 50010));
    EXPECT_GT(0, Run(stream, 49999));
}

TEST_F(Decompressor, Refuses_a_stream_that_ends_too_early) {
    std::string const stream = Deflated(SomeText(3000), 9, Z_DEFAULT_STRATEGY);
    for (std::size_t size = 0; size < stream.size(); ++size)
        EXPECT_GT(0, Run(stream.substr(0, size), 5000)) << size;
    EXPECT_EQ(3000, Run(stream, 5000));
}

TEST_F(Decompressor, Leaves_alone_what_follows_the_stream) {
    EXPECT_EQ(5, Run(storedHello + "rubbish", 100));
    EXPECT_EQ("hello", text);
}

TEST_F(Decompressor, Refuses_what_is_no_stream) {
    EXPECT_EQ(-3, Run(std::string(50, '\xff'), 100));                      // a block of no kind
    EXPECT_EQ(-3, Run(std::string("\x01\x05\x00\x00\x00hello", 10), 100)); // a wrong length
    EXPECT_EQ(-3, Run(std::string("\x03\x02\x00\x00", 4), 100)); // from before the beginning
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes(random() % 200, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random());
        EXPECT_GE(100, Run(bytes, 100));
    }
}

TEST_F(Decompressor, Refuses_the_wrappers_of_zlib_and_gzip) {
    EXPECT_GT(0, Run("\x78\x9c" + fixedAbc + std::string("\x02\x4d\x01\x27", 4), 100));
    EXPECT_GT(0, Run(std::string("\x1f\x8b\x08\0\0\0\0\0\0\3", 10) + fixedAbc, 100));
}

TEST_F(Decompressor, Refuses_null) {
    char room[10] = {};
    EXPECT_GT(0, m_ziplib.call(nullptr, 5, room, sizeof room));
    EXPECT_GT(0, m_ziplib.call(fixedAbc.data(), 5, nullptr, sizeof room));
    EXPECT_GT(0, m_ziplib.call(nullptr, 0, nullptr, 0));
}
