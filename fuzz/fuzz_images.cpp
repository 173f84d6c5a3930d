// Any bytes as an image: what is read has as many dots as it says, and damage is told.
#include "sys/image_file.h"

#include <cstdlib>
#include <string_view>

extern "C" void zef_read_image(std::string_view bytes,
                               base::result<std::shared_ptr<const sys::image_dots>>& read);

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    base::result<std::shared_ptr<const sys::image_dots>> read = base::failure{L""};
    zef_read_image({reinterpret_cast<const char*>(data), size}, read);
    if (!read) {
        insist(!read.error().empty());
        return 0;
    }
    const sys::image_dots& dots = **read;
    insist(dots.width > 0 && dots.height > 0);
    insist(dots.bytes.size() ==
           std::size_t{4} * static_cast<std::size_t>(dots.width) * static_cast<std::size_t>(dots.height));
    return 0;
}
