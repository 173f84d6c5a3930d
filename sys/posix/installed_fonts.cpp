#include "sys/installed_fonts.h"

#include "sys/dynamic_library.h"
#include "sys/folders.h"

#include <bit>

namespace sys {

// The libraries behind it are large, and most runs ask for no font: they are loaded with the first question.
// Where they are missing there is no font that we could find. They stay to the end: what they keep for
// themselves is nobody's once they are gone.
std::vector<installed_font> installed_fonts() {
    static const auto& library =
        *new base::result<dynamic_library>(dynamic_library::open(executable_folder() / "libzef_fonts.so"));
    std::vector<installed_font> listed;
    using list_fonts = void (*)(std::vector<installed_font>&);
    if (void* const found = library ? library->symbol("zef_list_fonts") : nullptr)
        std::bit_cast<list_fonts>(found)(listed);
    return listed;
}

} // namespace sys
