// A paper that keeps what is drawn on it, so that it can be drawn elsewhere later: parts of a picture are
// made by several cores and put on the sheet one after the other.
#pragma once

#include "sys/paper.h"

#include <cstdint>
#include <string>
#include <vector>

namespace picture {

class recorded_paper final : public sys::paper {
public:
    void stroke(std::span<const sys::sheet_point> points, const sys::pen& pen) override;
    void fill(std::span<const std::vector<sys::sheet_point>> rims, const sys::ink& color) override;
    void fill_shaded(std::span<const std::vector<sys::sheet_point>> rims,
                     const sys::shading& colors) override;
    void text(const sys::sheet_text& line, const sys::sheet_font& font) override;
    void image(const std::shared_ptr<const sys::image_dots>& dots, const sys::image_place& place) override;
    // Known where it is drawn.
    std::wstring stand_in(const sys::sheet_font& /*font*/, std::wstring_view /*wanted*/) override {
        return {};
    }
    void push_clip(std::span<const sys::sheet_point> rim) override;
    void pop_clip() override;
    void on_layer(std::wstring_view name) override;
    // Not kept: only whole sheets follow each other, and only those who ask for them are given their bytes.
    void next_sheet(double /*width*/, double /*height*/) override {}
    base::result<std::string> finish() override { return std::string(); }

    // Draws all of it, in its order.
    void draw_on(sys::paper& target) const;
    // Begins anew, with the memory that it has.
    void clear();

private:
    enum class act : std::uint8_t { stroke, fill, shaded, text, image, push_clip, pop_clip, layer };
    // Each takes from the lists below what is its own, behind what those before it took.
    struct entry {
        act kind;
        std::uint32_t count = 0; // of points, rims or signs
        std::uint32_t which = 0; // pen, ink, shading, text, image
    };
    struct line {
        sys::sheet_text text; // its signs lie in signs_
        std::uint32_t font = 0;
    };

    std::uint32_t number_of(const sys::pen& pen);
    std::uint32_t number_of(const sys::sheet_font& font);
    void keep(std::span<const sys::sheet_point> points);
    void keep_rims(std::span<const std::vector<sys::sheet_point>> rims);

    std::vector<entry> entries_;
    std::vector<sys::sheet_point> points_;
    std::vector<std::uint32_t> rims_; // points of each
    std::wstring signs_;              // of texts and names of layers
    std::vector<sys::pen> pens_;
    std::vector<line> lines_;
    std::vector<sys::sheet_font> fonts_;
    std::vector<sys::shading> shadings_;
    std::vector<std::pair<std::shared_ptr<const sys::image_dots>, sys::image_place>> images_;
};

} // namespace picture
