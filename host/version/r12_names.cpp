#include "host/version/r12_names.h"

#include "base/case_fold.h"
#include "host/dxf/record_header.h"

namespace version {

namespace {

constexpr std::size_t longest = 31;

// Whether R12 takes a letter; a star begins names of blocks that nobody gave, a bar parts those of
// references.
bool is_taken(wchar_t c) {
    return (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'$' || c == L'-' || c == L'_' ||
           c == L'*' || c == L'|' || c > 0x7F;
}

} // namespace

std::string r12_names::made_of(std::wstring_view name, names_of_table& names) {
    std::string bytes;
    bool changed = false;
    for (wchar_t c : name) {
        if (c >= L'a' && c <= L'z')
            c = static_cast<wchar_t>(c - L'a' + L'A');
        std::string letter = is_taken(c) ? job_.codec.encode({&c, 1}) : std::string();
        if (letter.empty() || letter.front() == '\\' || letter.front() == '^') {
            letter = "_";
            changed = true;
        }
        if (bytes.size() + letter.size() > longest) {
            changed = true;
            break;
        }
        bytes += letter;
    }
    std::string tried = bytes;
    for (int number = 1; !names.taken.insert(tried).second; ++number) {
        changed = true;
        const std::string behind = "_" + std::to_string(number);
        tried = bytes;
        // Back to where a letter begins, which is not always a byte.
        for (std::wstring shorter = job_.codec.decode(tried); tried.size() + behind.size() > longest;) {
            shorter.pop_back();
            tried = job_.codec.encode(shorter);
        }
        tried += behind;
    }
    if (changed)
        job_.lost.add(L"name that R12 does not take", L"changed");
    return tried;
}

const std::string& r12_names::of(db::table_kind table, std::string_view bytes) {
    names_of_table& names = tables_[static_cast<std::size_t>(table)];
    bytes = dxf::trimmed(bytes);
    const auto known = names.by_bytes.find(bytes);
    if (known != names.by_bytes.end())
        return known->second;
    const std::wstring name = job_.source.codec().decode(bytes);
    const auto [made, fresh] = names.by_name.try_emplace(base::folded(name));
    if (fresh && !name.empty())
        made->second = made_of(name, names);
    return names.by_bytes.emplace(bytes, made->second).first->second;
}

} // namespace version
