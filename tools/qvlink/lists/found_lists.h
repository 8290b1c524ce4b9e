// What the readers of both kinds of libraries share.
#pragma once

#include "lists/library_lists.h"
#include "readers/byte_source.h"
#include "readers/pe_image.h"

#include <optional>

namespace qvlink {

// Bounds what a file made with ill intent can cost: tables may overlap and be read anew
// from each that names them.
class Steps {
public:
    void Take() {
        if (m_left-- == 0) {
            throw Malformed{"it has too many resources"};
        }
    }

private:
    std::size_t m_left = std::size_t{1} << 17;
};

// Nothing for resources that aren't lists. The case of letters makes no difference.
std::optional<lists::Kind> KindOfResource(std::string_view type);

// Add what they find. Throw Malformed.
void FindPeLists(ByteSource &source, std::string_view bytes, std::vector<LibraryList> &found);
void FindElfLists(ByteSource &source, std::string_view bytes, std::vector<LibraryList> &found);

} // namespace qvlink
