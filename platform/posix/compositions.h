// Letters with a mark, which code pages have whole.
#pragma once

namespace platform {

// The character that a letter and a mark behind it are together; 0 if no code page has it.
char16_t Composed(char16_t letter, char16_t mark);

} // namespace platform
