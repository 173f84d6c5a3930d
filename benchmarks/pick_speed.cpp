// pick_speed DRAWING: opens a drawing, picks by points along its diagonal and selects all entities of a
// layer, and prints what each took: "what milliseconds" lines.
#include "acedads.h"
#include "acutads.h"
#include "adscodes.h"
#include "dbmain.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/ed/pick.h"
#include "host/view/extents.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <vector>

namespace {

double milliseconds_of(const auto& work) {
    const auto before = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - before).count();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    ap::documents& documents = ap::documents::instance();
    bool opened = false;
    std::printf("open %.3f\n", milliseconds_of([&] {
                    opened = static_cast<bool>(
                        documents.open(std::filesystem::path(arguments[1]).wstring(), true));
                }));
    if (!opened)
        return 3;
    AcDbDatabase& drawing = *documents.current_database();
    AcDbImpDatabase& database = drawing.imp();

    const dxf::record_table& records = database.records();
    std::size_t entities = 0;
    std::map<std::uint32_t, std::size_t> layers;
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.kind(id) == dxf::record_kind::entity) {
            ++entities;
            ++layers[records.layer(id)];
        }
    std::printf("entities %zu\n", entities);

    std::size_t hits = 0;
    const auto pick = [&](double x, double y) { hits += ed::pick(database, {x, y, 0.0}) ? 1 : 0; };
    std::printf("first_pick %.3f\n", milliseconds_of([&] { pick(0.0, 0.0); }));
    AcDbExtents extents;
    const dxf::record_id space = database.record(drawing.currentSpaceId());
    extents = gi::extents_of_block(database, space);
    std::vector<double> times;
    constexpr int picks = 101;
    for (int i = 0; i < picks; ++i) {
        const double share = static_cast<double>(i) / (picks - 1);
        const AcGePoint3d least = extents.minPoint();
        const AcGePoint3d most = extents.maxPoint();
        times.push_back(milliseconds_of(
            [&] { pick(least.x + share * (most.x - least.x), least.y + share * (most.y - least.y)); }));
    }
    std::sort(times.begin(), times.end());
    std::printf("next_pick %.3f\nslowest_pick %.3f\nhits %zu\n", times[picks / 2], times.back(), hits);

    // The layer with the most entities, as a filter of a selection names it.
    const auto most = std::max_element(layers.begin(), layers.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    const std::wstring name = database.drawing().codec().decode(records.layer_names()[most->first]);
    ads_name set;
    resbuf* const filter = acutBuildList(8, name.c_str(), RTNONE);
    std::printf("layer %.3f\n",
                milliseconds_of([&] { acedSSGet(ACRX_T("X"), nullptr, nullptr, filter, set); }));
    acutRelRb(filter);
    Adesk::Int32 found = 0;
    acedSSLength(set, &found);
    std::printf("of_layer %d\n", found);
    ap::documents::instance().close_all();
}
