#include "sys/paper.h"

#include "sys/dynamic_library.h"
#include "sys/folders.h"

#include <bit>

namespace sys {

// The library that draws is large, and most runs make no picture: it is loaded with the first one, and stays.
base::result<std::unique_ptr<paper>> make_paper(const paper_setup& setup) {
    static const auto& library =
        *new base::result<dynamic_library>(dynamic_library::open(executable_folder() / "libzef_paper.so"));
    if (!library)
        return library.why().behind(L"no pictures can be made here: ");
    using maker = void (*)(const paper_setup&, base::result<std::unique_ptr<paper>>&);
    base::result<std::unique_ptr<paper>> made{base::failure{L"no pictures can be made here"}};
    if (void* const found = library->symbol("zef_make_paper"))
        std::bit_cast<maker>(found)(setup, made);
    return made;
}

} // namespace sys
