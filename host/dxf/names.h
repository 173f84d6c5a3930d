// Gives each different text of a set a small number, in the order in which they are first met.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dxf {

// The texts themselves are looked on, not copied: they must outlive this.
class name_set {
public:
    std::uint32_t put(std::string_view name) {
        // Runs of one name are the rule in a drawing.
        if (last_ < names_.size() && names_[last_] == name)
            return last_;
        const auto [at, added] = index_.try_emplace(name, static_cast<std::uint32_t>(names_.size()));
        if (added)
            names_.push_back(name);
        last_ = at->second;
        return last_;
    }

    std::string_view operator[](std::uint32_t number) const { return names_[number]; }
    std::uint32_t size() const { return static_cast<std::uint32_t>(names_.size()); }

private:
    std::vector<std::string_view> names_;
    std::unordered_map<std::string_view, std::uint32_t> index_;
    std::uint32_t last_ = 0;
};

} // namespace dxf
