// Letters and signs that are drawn by strokes, as shape files (.shx) hold them.
//
// Source: the editor's manual of shapes, which gives their codes and what they mean.
#pragma once

#include "adesk.h"
#include "base/result.h"
#include "gepnt2d.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace gi {

// In units of the file, from where the pen begins, y upwards.
struct shape {
    std::vector<std::vector<AcGePoint2d>> strokes;
    AcGePoint2d end; // of the pen: where the next letter begins
    AcGePoint2d least;
    AcGePoint2d most;
};

class ACGI_PORT shape_font {
public:
    // Reads a file: plain shapes, a Unicode font or a big font. Fails for what is none, or is cut off before
    // its shapes; of one that is damaged the shapes that are whole can be drawn.
    static base::result<std::shared_ptr<const shape_font>> read(std::string bytes);

    shape_font(const shape_font&) = delete;
    shape_font& operator=(const shape_font&) = delete;

    bool is_big() const { return kind_ == kind::big; }
    // Its numbers are those of Unicode, not of a code page.
    bool is_unicode() const { return kind_ == kind::unicode; }
    // How high capitals are; 0 for shapes that are no letters.
    double height() const { return height_; }

    // Null for a number that it does not hold. Drawn when it is first asked for; may be asked by several
    // threads.
    const shape* find(unsigned number) const;
    // The number of a shape by its name, whatever the case of its letters.
    std::optional<unsigned> number_of(std::string_view name) const;

private:
    enum class kind { plain, unicode, big };
    struct place {
        std::size_t begin = 0; // of its name, among the bytes
        std::size_t size = 0;
    };
    class pen;

    explicit shape_font(std::string bytes) : bytes_(std::move(bytes)) {}
    std::string_view name_at(const place& where) const;
    std::string_view codes_at(const place& where) const;
    std::uint32_t number_at(std::size_t at, std::size_t size) const;
    bool index_plain(std::size_t at);
    bool index_unicode(std::size_t at);
    bool index_big(std::size_t at);
    void read_height();

    std::string bytes_;
    kind kind_ = kind::plain;
    double height_ = 0.0;
    double wide_ = 0.0; // of the letters of a big font that has one width
    std::unordered_map<unsigned, place> places_;
    mutable std::mutex busy_;
    mutable std::map<unsigned, shape> drawn_;
};

} // namespace gi
