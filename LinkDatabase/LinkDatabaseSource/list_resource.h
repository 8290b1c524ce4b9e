// A stored list: a resource of 4 bytes that tell the length of the text (little-endian)
// and the text, compressed by ziplib's rules.
#pragma once

#include "platform/wintypes.h"

// A list that claims a longer text is damaged, and isn't read.
constexpr DWORD MaxListText = 64 << 20;

// Is given a line without the white space around it, in a buffer that lives until it
// returns, and its length.
using LineCallback = void (*)(char *line, unsigned long length);

// Reads a list and hands out its lines, those that end in a line feed. Any step that fails
// ends it without a word. The decompressor is ziplib.dll in this library's own folder and
// nowhere else.
void LoadListResource(WORD id, const char *type, LineCallback callback);
