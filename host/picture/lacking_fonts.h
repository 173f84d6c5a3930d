// Fonts that a picture wanted and this machine lacks.
#pragma once

#include "sys/paper.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace picture {

// Filled by all who draw parts of a picture.
class lacking_fonts {
public:
    // A file of shapes that is not here: its signs stand in another hand, or nowhere when that has no name.
    void add(const std::wstring& file, std::wstring_view stands_in);
    // A font that `chosen` stands for. With its own name wanted it lacks only when that is not found.
    void add(const std::wstring& name, const sys::sheet_font& chosen, bool may_be_here);

    // For each the font, a colon and what stands in, as the paper finds it.
    std::vector<std::wstring> told(sys::paper& paper) const;

private:
    struct lacking {
        std::wstring stands_in;
        std::optional<sys::sheet_font> chosen;
        bool may_be_here = false;
    };

    std::mutex lock_;
    std::map<std::wstring, lacking> all_;
};

} // namespace picture
