// Wide characters.
#pragma once

namespace platform {

// Gives back what the questions about wide characters hold: for the end of the library in
// a process that goes on.
void ReleaseWide();

} // namespace platform
