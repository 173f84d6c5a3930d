#include "sys/image_file.h"

#include "sys/dynamic_library.h"
#include "sys/file.h"
#include "sys/folders.h"

#include <bit>
#include <string_view>

namespace sys {

// It is read where pictures are drawn.
base::result<std::shared_ptr<const image_dots>> read_image(const std::filesystem::path& file) {
    constexpr std::uintmax_t largest = 512U << 20;
    std::error_code error;
    if (std::filesystem::file_size(file, error) > largest || error)
        return base::failure{L"it is larger than 512 MB"};
    const auto bytes = read_file(file);
    if (!bytes)
        return bytes.why();
    static const auto& library =
        *new base::result<dynamic_library>(dynamic_library::open(executable_folder() / "libzef_paper.so"));
    if (!library)
        return library.why();
    using reader = void (*)(std::string_view, base::result<std::shared_ptr<const image_dots>>&);
    base::result<std::shared_ptr<const image_dots>> read{base::failure{L"no images can be read here"}};
    if (void* const found = library->symbol("zef_read_image"))
        std::bit_cast<reader>(found)(bytes->view(), read);
    return read;
}

} // namespace sys
