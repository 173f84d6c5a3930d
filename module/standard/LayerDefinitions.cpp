#include "module/standard/LayerDefinitions.h"

#include "base/utf.h"
#include "sys/atomic_file.h"
#include "sys/code_page.h"
#include "sys/file.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {

constexpr int gbk = 936;
constexpr std::string_view lineEnd = "\r\n";

std::string Bytes(const CString& text) {
    const sys::code_page* const page = sys::code_page::find(gbk);
    std::string bytes;
    const std::wstring_view units = ViewOf(text);
    for (std::size_t at = 0; at < units.size();) {
        const char32_t c = base::take_code_point(units, at);
        if (c == U' ' || c == U'\t' || c == U'\r' || c == U'\n')
            bytes += '_';
        else if (page == nullptr || !page->encode(c, bytes))
            bytes += '?';
    }
    return bytes.empty() ? "_" : bytes;
}

struct Line {
    std::string key; // system and layer type
    std::string text;
};

std::vector<Line> LinesOf(const PipeStandard& standard) {
    std::vector<Line> lines;
    for (const auto& group : standard.m_groups)
        for (const auto& system : group->Systems()) {
            const std::string name = Bytes(system->m_name);
            for (const auto& layer : system->Layers()) {
                std::string key = name + ' ' + Bytes(layer->m_layerType);
                std::string text = key + ' ' + std::to_string(layer->m_color.colorIndex()) + ' ' +
                                   Bytes(layer->m_layerName) + ' ' + Bytes(layer->m_linetype);
                lines.push_back({std::move(key), std::move(text)});
            }
        }
    return lines;
}

std::string Joined(const std::vector<Line>& lines) {
    std::string bytes;
    for (const Line& line : lines)
        (bytes += line.text) += lineEnd;
    return bytes;
}

// The lines of a file; of one that names no layer the key is empty.
std::vector<Line> LinesIn(std::string_view bytes) {
    std::vector<Line> lines;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        std::string_view text = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (text.ends_with('\r'))
            text.remove_suffix(1);
        const std::size_t first = text.find(' ');
        const std::size_t second = first == text.npos ? first : text.find(' ', first + 1);
        lines.push_back({std::string(second == text.npos ? std::string_view() : text.substr(0, second)),
                         std::string(text)});
    }
    return lines;
}

} // namespace

bool WriteLayerDefinitions(const std::filesystem::path& path, const PipeStandard& standard, bool keep) {
    const auto old = sys::read_file(path);
    if (keep && !old && !old.failed(base::failure_kind::not_found))
        return false; // what is to be kept of it is not known
    std::vector<Line> lines = LinesOf(standard);
    if (keep && old) {
        std::vector<Line> kept = LinesIn(old->view());
        for (Line& line : lines) {
            const auto same = std::ranges::find(kept, line.key, &Line::key);
            if (same != kept.end())
                *same = std::move(line);
            else
                kept.push_back(std::move(line));
        }
        lines = std::move(kept);
    }
    const std::string bytes = Joined(lines);
    if (old && old->view() == bytes)
        return true;
    auto file = sys::atomic_file::create(path);
    return file && file->write(bytes) && file->commit();
}
