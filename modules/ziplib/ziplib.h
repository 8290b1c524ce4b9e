// The module ziplib: decompresses what was packed by DEFLATE (RFC 1951), without the
// wrappers of zlib or gzip.
#pragma once

#include "linkdb_export.h"
#include "platform/wintypes.h"

// Decompresses a whole stream into the room given; what follows the stream is left alone.
// Above 0: the length of the output. 0: there is none. Below 0: zlib's number for what is
// wrong, -3 for a damaged stream, -5 for one that ends too early or an output that is
// longer than its room; what the room holds then means nothing. Sizes in bytes. Any thread.
extern "C" QVLINKDB_API int EtUnCompress(const void *input, DWORD inputSize, void *output,
                                         DWORD capacity);
