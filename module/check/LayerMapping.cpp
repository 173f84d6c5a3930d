#include "module/check/LayerMapping.h"
#include "module/layertools/DrawingWalk.h"

#include "base/case_fold.h"
#include "base/utf.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/standard/Names.h"
#include "sys/atomic_file.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/plain_text.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace {

bool IsWildcard(wchar_t c) {
    return c == L'*' || c == L'?';
}

// The wildcards of a name in their order.
std::wstring WildcardsOf(const CString& name) {
    std::wstring found;
    for (const wchar_t c : ViewOf(name))
        if (IsWildcard(c))
            found += c;
    return found;
}

// What the wildcards of a pattern stand for in a name; nothing when the pattern does not fit it. Of several
// ways the stars in front take the least.
std::optional<std::vector<std::wstring_view>> Captures(std::wstring_view name, std::wstring_view pattern) {
    struct Taken {
        std::size_t first;
        std::size_t length;
    };
    std::vector<Taken> taken;
    std::size_t at = 0;
    std::size_t in = 0;
    std::size_t star = pattern.npos; // the last star's place in the pattern, and how much is taken up to it
    std::size_t takenAtStar = 0;
    while (at < name.size() || in < pattern.size()) {
        if (in < pattern.size() && pattern[in] == L'*') {
            star = in++;
            takenAtStar = taken.size();
            taken.push_back({at, 0});
        } else if (in < pattern.size() && at < name.size() &&
                   (pattern[in] == L'?' || base::fold_case(pattern[in]) == base::fold_case(name[at]))) {
            if (pattern[in] == L'?')
                taken.push_back({at, 1});
            ++in;
            ++at;
        } else if (star != pattern.npos &&
                   taken[takenAtStar].first + taken[takenAtStar].length < name.size()) {
            taken.resize(takenAtStar + 1);
            ++taken[takenAtStar].length;
            at = taken[takenAtStar].first + taken[takenAtStar].length;
            in = star + 1;
        } else {
            return std::nullopt;
        }
    }
    std::vector<std::wstring_view> captures;
    captures.reserve(taken.size());
    for (const Taken& one : taken)
        captures.push_back(name.substr(one.first, one.length));
    return captures;
}

CString Filled(const CString& pattern, const std::vector<std::wstring_view>& captures) {
    std::wstring name;
    std::size_t next = 0;
    for (const wchar_t c : ViewOf(pattern))
        if (!IsWildcard(c))
            name += c;
        else if (next < captures.size())
            name += captures[next++];
    return name.c_str();
}

// Calls `take` with the handle and the layer of each entity of a drawing, and with the handle and the name of
// each layer.
template<class Take>
void ForLayered(AcDbDatabase& database, Take take) {
    const auto nameOf = [](const AcDbSymbolTableRecord& record) {
        AcString name;
        record.getName(name);
        return CString(name.kACharPtr());
    };
    for (const AcDbObjectId id : RecordsOf(database.layerTableId())) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
        if (layer.openStatus() == Acad::eOk && !layer->isDependent())
            take(id.handle(), nameOf(*layer.object()), true);
    }
    for (const AcDbObjectId id : RecordsOf(database.blockTableId())) {
        const AcDbBlockTableRecordPointer block(id, AcDb::kForRead);
        if (block.openStatus() != Acad::eOk || block->isFromExternalReference())
            continue;
        for (const AcDbObjectId entityId : EntitiesOf(*block.object())) {
            const AcDbEntityPointer entity(entityId, AcDb::kForRead);
            AcString layer;
            if (entity.openStatus() == Acad::eOk && entity->layer(layer) == Acad::eOk)
                take(entityId.handle(), CString(layer.kACharPtr()), false);
        }
    }
}

} // namespace

void CLayerMapping::Add(const LayerMapRow& row) {
    if (WildcardsOf(row.m_from).empty())
        m_exact.try_emplace(base::folded(ViewOf(row.m_from)), m_rows.size());
    else
        m_patterns.push_back(m_rows.size());
    m_rows.push_back(row);
}

base::result<CLayerMapping> CLayerMapping::Read(const std::filesystem::path& file) {
    const auto bytes = sys::read_file(file);
    if (!bytes)
        return bytes.why();
    const std::wstring text = sys::plain_text(bytes->view());
    CLayerMapping mapping;
    std::size_t at = 0;
    std::wstring_view line;
    for (int number = 1; sys::next_line(text, at, line); ++number) {
        CString whole(line.data(), static_cast<int>(line.size()));
        whole.Trim();
        if (whole.IsEmpty() || whole[0] == L'#' || whole[0] == L';')
            continue;
        const int sign = whole.Find(L'=');
        LayerMapRow row{whole.Left(std::max(sign, 0)), whole.Mid(sign + 1)};
        row.m_from.Trim();
        row.m_to.Trim();
        const std::wstring left = WildcardsOf(row.m_from);
        if (sign < 0 || row.m_from.IsEmpty() || row.m_to.IsEmpty() || row.m_to.Find(L'=') >= 0 ||
            WildcardsOf(row.m_to).size() > left.size()) {
            CString why;
            why.Format(L"%s 第 %d 行不是\"图层=图层\"：%s", sys::from_path(file).c_str(), number, whole);
            return base::failure{why.GetString()};
        }
        mapping.Add(row);
    }
    return mapping;
}

base::result<void> CLayerMapping::Write(const std::filesystem::path& file) const {
    std::wstring text = L"# 图层映射：原图层=新图层，可用 * 和 ?\r\n";
    for (const CString& remark : m_remarks)
        text += std::wstring(L"# ") + remark.GetString() + L"\r\n";
    for (const LayerMapRow& row : m_rows)
        text += std::wstring(row.m_from) + L"=" + row.m_to.GetString() + L"\r\n";
    auto written = sys::atomic_file::create(file);
    if (!written)
        return written.why();
    if (auto done = written->write(base::narrow(text)); !done)
        return done;
    return written->commit();
}

CLayerMapping CLayerMapping::Learn(AcDbDatabase& before, AcDbDatabase& after) {
    struct Name {
        CString text;
        bool isLayer = false;
    };
    std::map<Adesk::UInt64, Name> old;
    ForLayered(before, [&](Adesk::UInt64 handle, const CString& layer, bool isLayer) {
        old[handle] = {layer, isLayer};
    });
    struct Votes {
        CString renamed; // what the layer itself is called now
        std::map<CString, int> counts;
    };
    std::map<CString, Votes, NoCaseOrder> votes;
    ForLayered(after, [&](Adesk::UInt64 handle, const CString& layer, bool isLayer) {
        const auto was = old.find(handle);
        if (was == old.end() || was->second.isLayer != isLayer)
            return;
        Votes& one = votes[was->second.text];
        if (isLayer)
            one.renamed = layer;
        else
            ++one.counts[layer];
    });
    CLayerMapping learnt;
    for (const auto& [from, vote] : votes) {
        const auto most = std::ranges::max_element(
            vote.counts, [](const auto& a, const auto& b) { return a.second < b.second; });
        const CString to = most != vote.counts.end() ? most->first : vote.renamed;
        if (to.IsEmpty() || to == from || from.Find(L'|') >= 0 || to.Find(L'|') >= 0)
            continue;
        learnt.Add({from, to});
        if (vote.counts.size() > 1) {
            CString remark = from;
            for (const auto& [layer, count] : vote.counts)
                remark.AppendFormat(L"  %s：%d", layer, count);
            learnt.m_remarks.push_back(remark);
        }
    }
    return learnt;
}

CLayerMapping CLayerMapping::Reversed() const {
    CLayerMapping turned;
    std::map<CString, bool, NoCaseOrder> given;
    for (const LayerMapRow& row : m_rows) {
        const bool isWhole = WildcardsOf(row.m_from) == WildcardsOf(row.m_to);
        if (isWhole && given.try_emplace(row.m_to, true).second) {
            turned.Add({row.m_to, row.m_from});
            continue;
        }
        turned.m_remarks.push_back(row.m_to + L"=" + row.m_from);
        ++turned.m_lost;
    }
    return turned;
}

CString CLayerMapping::Map(const CString& name) const {
    if (const auto exact = m_exact.find(base::folded(ViewOf(name))); exact != m_exact.end())
        return m_rows[exact->second].m_to;
    for (const std::size_t row : m_patterns)
        if (const auto captures = Captures(ViewOf(name), ViewOf(m_rows[row].m_from)))
            return Filled(m_rows[row].m_to, *captures);
    return {};
}
