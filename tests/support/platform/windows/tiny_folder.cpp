#include "platform/tiny_folder.h"

TinyFolder::TinyFolder(std::size_t) : m_whyNot("small file systems are mounted on Linux only") {}

TinyFolder::~TinyFolder() = default;
