#include "lists/capture.h"

#include <stdexcept>

namespace qvlink {

Capture CaptureList(CaptureRequest const &) {
    throw std::runtime_error("lists can't be captured yet");
}

} // namespace qvlink
