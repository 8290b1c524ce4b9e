#include "modules/ziplib/ziplib.h"

#include <climits>
#include <zlib.h>

namespace {

constexpr int bareStream = -15; // no wrapper, the largest window

int Result(int code, z_stream const &stream) {
    if (code == Z_STREAM_END)
        return stream.total_out <= INT_MAX ? static_cast<int>(stream.total_out) : INT_MAX;
    return code == Z_OK || code == Z_NEED_DICT ? Z_BUF_ERROR : code;
}

} // namespace

int EtUnCompress(const void *input, DWORD inputSize, void *output, DWORD capacity) {
    if (!input || !output)
        return Z_STREAM_ERROR;
    z_stream stream = {};
    // zlib takes the input from a pointer to what it could change, and doesn't.
    stream.next_in = static_cast<Bytef *>(const_cast<void *>(input));
    stream.avail_in = inputSize;
    stream.next_out = static_cast<Bytef *>(output);
    stream.avail_out = capacity;
    int const begun = inflateInit2(&stream, bareStream);
    if (begun != Z_OK)
        return begun;
    int const result = Result(inflate(&stream, Z_FINISH), stream);
    inflateEnd(&stream);
    return result;
}
