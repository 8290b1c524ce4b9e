#include "stored_list.h"

#include <memory>
#include <new>
#include <zlib.h>

namespace lists {
namespace {

constexpr int bareStream = -15; // no wrapper, the largest window
constexpr int bestLevel = 9;
constexpr int mostMemory = 9;
constexpr std::size_t headSize = 4;

struct Deflater : z_stream {
    Deflater() : z_stream() {
        if (deflateInit2(this, bestLevel, Z_DEFLATED, bareStream, mostMemory, Z_DEFAULT_STRATEGY) !=
            Z_OK)
            throw std::bad_alloc();
    }
    ~Deflater() { deflateEnd(this); }
    Deflater(Deflater const &) = delete;
    Deflater &operator=(Deflater const &) = delete;
};

struct Inflater : z_stream {
    Inflater() : z_stream() {
        if (inflateInit2(this, bareStream) != Z_OK)
            throw std::bad_alloc();
    }
    ~Inflater() { inflateEnd(this); }
    Inflater(Inflater const &) = delete;
    Inflater &operator=(Inflater const &) = delete;
};

// The library has no quarrel with what is at most 64 MiB long.
void Feed(z_stream &stream, std::string_view input, char *output, std::size_t room) {
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(input.data()));
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef *>(output);
    stream.avail_out = static_cast<uInt>(room);
}

std::size_t LengthOf(std::string_view head) {
    std::size_t length = 0;
    for (std::size_t i = headSize; i > 0; --i)
        length = length << 8 | static_cast<unsigned char>(head[i - 1]);
    return length;
}

} // namespace

std::string Pack(std::string_view text) {
    if (text.size() > maxText)
        throw ListError("the text is longer than 64 MiB");
    Deflater deflater;
    std::string stored(headSize + deflateBound(&deflater, static_cast<uLong>(text.size())), '\0');
    for (std::size_t i = 0; i < headSize; ++i)
        stored[i] = static_cast<char>(text.size() >> (8 * i) & 0xff);
    Feed(deflater, text, &stored[headSize], stored.size() - headSize);
    if (deflate(&deflater, Z_FINISH) != Z_STREAM_END)
        throw ListError("the text can't be compressed");
    stored.resize(headSize + deflater.total_out);
    return stored;
}

std::string Unpack(std::string_view stored) {
    if (stored.size() < headSize)
        throw ListError("it is shorter than the 4 bytes of its length");
    std::size_t const length = LengthOf(stored);
    if (length > maxText)
        throw ListError("it tells a length of " + std::to_string(length) +
                        " bytes, more than 64 MiB");
    // The stored size is bounded as well: no stream of such a text is longer.
    if (stored.size() - headSize > 2 * maxText)
        throw ListError("it is longer than any stream of its text");
    std::string text(length + 1, '\0'); // a longer text shows by the byte more
    Inflater inflater;
    Feed(inflater, stored.substr(headSize), text.data(), text.size());
    int const code = inflate(&inflater, Z_FINISH);
    if (code == Z_DATA_ERROR)
        throw ListError("its stream is damaged");
    if (inflater.total_out > length)
        throw ListError("its text is longer than the " + std::to_string(length) +
                        " bytes that it tells");
    if (code != Z_STREAM_END)
        throw ListError("its stream has no end");
    if (inflater.total_out < length)
        throw ListError("its text has " + std::to_string(inflater.total_out) +
                        " bytes, and it tells " + std::to_string(length));
    if (inflater.avail_in > 0)
        throw ListError("there are " + std::to_string(inflater.avail_in) +
                        " bytes behind its stream");
    text.resize(length);
    return text;
}

} // namespace lists
