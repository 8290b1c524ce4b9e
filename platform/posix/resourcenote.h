// Puts a file into a program or module as a resource: its bytes among the constants, and a
// note that tells type, id, size and where they lie. The note is small because loaders read
// all notes of a module.
#pragma once

#define QVLINKDB_RESOURCE(type, id, file)                                                          \
    asm(".pushsection .rodata.qvlinkdb.resources,\"a\",@progbits\n"                                \
        ".balign 16\n"                                                                             \
        "1: .incbin \"" file "\"\n"                                                                \
        "2:\n"                                                                                     \
        ".popsection\n"                                                                            \
        ".pushsection .note.qvlinkdb.resources,\"a\",@note\n"                                      \
        ".balign 4\n"                                                                              \
        ".long 4f - 3f\n"                                                                          \
        ".long 6f - 5f\n"                                                                          \
        ".long 2\n"                                                                                \
        "3: .asciz \"QVLinkDB\"\n"                                                                 \
        "4: .balign 4\n"                                                                           \
        "5: .long " id "\n"                                                                        \
        ".long 2b - 1b\n"                                                                          \
        ".long 1b - .\n"                                                                           \
        ".asciz \"" type "\"\n"                                                                    \
        "6: .balign 4\n"                                                                           \
        ".popsection\n")
