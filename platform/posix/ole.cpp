#include "platform/winapi.h"

namespace win::host {

HRESULT OleInitialize(LPVOID) { return E_NOTIMPL; }

void OleUninitialize() {}

} // namespace win::host
