// Reads images: PNG and JPEG by their libraries, BMP by its rows.
#include "base/byte_order.h"
#include "sys/image_file.h"

#include <cstdio>

#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <jpeglib.h>
#include <png.h>
#include <string>
#include <string_view>

namespace sys {

namespace {

using result = base::result<std::shared_ptr<const image_dots>>;

constexpr double most_dots = 64e6;
constexpr std::uint8_t opaque = 255;
constexpr std::size_t dot_bytes = 4;

result too_many(double width, double height) {
    const auto text = [](double side) { return std::to_wstring(static_cast<long long>(side)); };
    return base::failure{L"its " + text(width) + L" x " + text(height) + L" dots are too many"};
}

bool has_size(image_dots& made, double width, double height, std::string_view bytes) {
    // No form packs more into a byte, so nothing is prepared for a few bytes that speak of millions of dots.
    constexpr double most_packed = 10'000.0;
    if (!(width >= 1.0 && height >= 1.0 && width * height <= most_dots &&
          width * height <= most_packed * static_cast<double>(bytes.size())))
        return false;
    made.width = static_cast<int>(width);
    made.height = static_cast<int>(height);
    made.bytes.resize(static_cast<std::size_t>(made.width) * static_cast<std::size_t>(made.height) *
                      dot_bytes);
    return true;
}

result read_png(std::string_view bytes) {
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0)
        return base::failure{L"it is no PNG that can be read"};
    auto made = std::make_shared<image_dots>();
    if (!has_size(*made, image.width, image.height, bytes)) {
        png_image_free(&image);
        return too_many(image.width, image.height);
    }
    image.format = PNG_FORMAT_RGBA;
    if (png_image_finish_read(&image, nullptr, made->bytes.data(), 0, nullptr) == 0) {
        png_image_free(&image);
        return base::failure{L"it is a damaged PNG"};
    }
    return std::shared_ptr<const image_dots>(std::move(made));
}

// The library leaves by a jump; nothing that must be taken down stands between.
struct jpeg_trouble {
    jpeg_error_mgr manager;
    jpeg_progress_mgr progress;
    std::jmp_buf back;
};

extern "C" void leave_jpeg(j_common_ptr state) {
    std::longjmp(reinterpret_cast<jpeg_trouble*>(state->err)->back, 1);
}
extern "C" void say_nothing(j_common_ptr /*state*/) {
}
// Each scan goes over the whole image, and takes a few bytes of a file: real ones have a dozen.
extern "C" void count_scans(j_common_ptr state) {
    constexpr int most_scans = 100;
    if (reinterpret_cast<jpeg_decompress_struct*>(state)->input_scan_number > most_scans)
        leave_jpeg(state);
}

// Into `made`, of which `row` is a line that is read; false when that can not be begun.
bool decode_jpeg(std::string_view bytes, image_dots& made, std::vector<std::uint8_t>& row, double& width,
                 double& height) {
    jpeg_decompress_struct state;
    jpeg_trouble trouble;
    state.err = jpeg_std_error(&trouble.manager);
    trouble.manager.error_exit = leave_jpeg;
    trouble.manager.output_message = say_nothing;
    volatile bool begun = false;
    if (setjmp(trouble.back) != 0) {
        jpeg_destroy_decompress(&state);
        return begun; // what was read is kept
    }
    jpeg_create_decompress(&state);
    state.progress = &trouble.progress;
    trouble.progress.progress_monitor = count_scans;
    jpeg_mem_src(&state, reinterpret_cast<const unsigned char*>(bytes.data()),
                 static_cast<unsigned long>(bytes.size()));
    jpeg_read_header(&state, TRUE);
    width = state.image_width;
    height = state.image_height;
    if (has_size(made, width, height, bytes)) {
        state.out_color_space =
            state.jpeg_color_space == JCS_CMYK || state.jpeg_color_space == JCS_YCCK ? JCS_CMYK : JCS_RGB;
        jpeg_start_decompress(&state);
        const auto parts = static_cast<std::size_t>(state.output_components);
        row.resize(static_cast<std::size_t>(state.output_width) * parts);
        begun = true;
        for (std::size_t at = 0; state.output_scanline < state.output_height;) {
            JSAMPROW rows[] = {row.data()};
            jpeg_read_scanlines(&state, rows, 1);
            for (std::size_t x = 0; x < row.size(); x += parts, at += dot_bytes) {
                const unsigned black = parts == 4 ? row[x + 3] : opaque; // CMYK is stored turned round
                for (std::size_t part = 0; part < 3; ++part)
                    made.bytes[at + part] = static_cast<std::uint8_t>(row[x + part] * black / opaque);
                made.bytes[at + 3] = opaque;
            }
        }
        jpeg_finish_decompress(&state);
    }
    jpeg_destroy_decompress(&state);
    return begun;
}

result read_jpeg(std::string_view bytes) {
    auto made = std::make_shared<image_dots>();
    std::vector<std::uint8_t> row;
    double width = 0.0;
    double height = 0.0;
    const bool read = decode_jpeg(bytes, *made, row, width, height);
    if (width * height > most_dots)
        return too_many(width, height);
    if (!read)
        return base::failure{L"it is no JPEG that can be read"};
    return std::shared_ptr<const image_dots>(std::move(made));
}

// Plain BMPs: of 1, 4 and 8 bits with colours in a table, and of 24 and 32 bits.
result read_bmp(std::string_view bytes) {
    constexpr std::size_t head = 54;
    if (bytes.size() < head)
        return base::failure{L"it is a damaged BMP"};
    const auto signed_at = [&](std::size_t at) {
        return static_cast<double>(static_cast<std::int32_t>(base::little_endian(bytes, at, 4)));
    };
    const double width = signed_at(18);
    const double height = signed_at(22); // below nought: from the top
    const std::size_t start = base::little_endian(bytes, 10, 4);
    const std::size_t table = 14 + static_cast<std::size_t>(base::little_endian(bytes, 14, 4));
    const std::size_t bits = base::little_endian(bytes, 28, 2);
    constexpr std::size_t least_table = 14 + 40;
    if (table < least_table || base::little_endian(bytes, 30, 4) != 0 ||
        (bits != 1 && bits != 4 && bits != 8 && bits != 24 && bits != 32))
        return base::failure{L"it is a BMP of a form that is not read"};
    auto made = std::make_shared<image_dots>();
    const double rows = height < 0.0 ? -height : height;
    if (!has_size(*made, width, rows, bytes))
        return too_many(width, rows);
    const std::size_t row_bytes = (static_cast<std::size_t>(made->width) * bits + 31) / 32 * 4;
    for (int y = 0; y < made->height; ++y) {
        const int from_top = height < 0.0 ? y : made->height - 1 - y;
        const std::size_t row = start + static_cast<std::size_t>(y) * row_bytes;
        std::uint8_t* out = made->bytes.data() + static_cast<std::size_t>(from_top) *
                                                     static_cast<std::size_t>(made->width) * dot_bytes;
        for (std::size_t x = 0; x < static_cast<std::size_t>(made->width); ++x, out += dot_bytes) {
            std::size_t color = row + x * bits / 8;
            if (color >= bytes.size())
                break;
            if (bits <= 8) {
                const unsigned shift = static_cast<unsigned>(8 - bits - x * bits % 8);
                const unsigned number =
                    static_cast<unsigned char>(bytes[color]) >> shift & ((1U << bits) - 1U);
                color = table + number * 4;
            }
            for (std::size_t part = 0; part < 3; ++part)
                out[part] =
                    color + 2 - part < bytes.size() ? static_cast<std::uint8_t>(bytes[color + 2 - part]) : 0;
            out[3] = opaque;
        }
    }
    return std::shared_ptr<const image_dots>(std::move(made));
}

result read_any(std::string_view bytes) {
    if (bytes.starts_with("\x89PNG"))
        return read_png(bytes);
    if (bytes.starts_with("\xFF\xD8"))
        return read_jpeg(bytes);
    if (bytes.starts_with("BM"))
        return read_bmp(bytes);
    return base::failure{L"it is no PNG, JPEG or BMP"};
}

} // namespace

} // namespace sys

extern "C" __attribute__((visibility("default"))) void zef_read_image(std::string_view bytes,
                                                                      sys::result& read) {
    try {
        read = sys::read_any(bytes);
    } catch (const std::bad_alloc&) {
        read = base::failure{L"there is no memory for it"};
    }
}
