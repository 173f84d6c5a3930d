// What a file of another version does not hold, or holds in another form, counted by kind.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace version {

class losses {
public:
    // `kind` is what users call it ("lineweight", "MTEXT"), `fate` what became of it ("written as TEXT").
    void add(std::wstring_view kind, std::wstring_view fate = L"left out", std::size_t count = 1) {
        if (count == 0)
            return;
        auto of_kind = counts_.find(kind);
        if (of_kind == counts_.end())
            of_kind = counts_.try_emplace(std::wstring(kind)).first;
        const auto at = of_kind->second.find(fate);
        if (at != of_kind->second.end())
            at->second += count;
        else
            of_kind->second.emplace(fate, count);
    }

    // One line a kind, in the order of their names: "MTEXT: 14 written as TEXT".
    std::vector<std::wstring> lines() const {
        std::vector<std::wstring> all;
        for (const auto& [kind, fates] : counts_)
            for (const auto& [fate, count] : fates) {
                std::wstring& line = all.emplace_back(kind);
                line += L": ";
                line += std::to_wstring(count);
                line += L" ";
                line += fate;
            }
        return all;
    }

private:
    std::map<std::wstring, std::map<std::wstring, std::size_t, std::less<>>, std::less<>> counts_;
};

} // namespace version
