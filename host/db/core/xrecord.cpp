#include "dbxrecrd.h"

#include "host/db/core/extended_data.h"
#include "host/db/core/imp_object.h"

ACRX_CONS_DEFINE_MEMBERS(AcDbXrecord, AcDbObject, 0)

AcDbXrecord::AcDbXrecord() {
    imp().begin_new("0\nXRECORD\n100\nAcDbXrecord\n280\n1\n");
}

AcDbXrecord::~AcDbXrecord() = default;

namespace {

// The data stands behind the marker, and behind the rule for double keys (280) that R2000 put first there.
// The first 280 is that rule; one further on is data.
std::pair<std::size_t, std::size_t> data_extent(const dxf::group_list& list) {
    const auto& groups = list.groups();
    std::size_t first = 0;
    while (first < groups.size() && groups[first].code != 100)
        ++first;
    first = std::min(first + 1, groups.size());
    if (first < groups.size() && groups[first].code == 280)
        ++first;
    std::size_t last = first;
    while (last < groups.size() && groups[last].code < 1000)
        ++last;
    return {first, last};
}

} // namespace

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** chain, AcDbDatabase* /*auxDb*/) const {
    assertReadEnabled();
    if (chain == nullptr)
        return Acad::eInvalidInput;
    const auto [first, last] = data_extent(imp().groups());
    *chain = db::chain_of(imp(), std::span(imp().groups().groups()).subspan(first, last - first));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf& chain, AcDbDatabase* /*auxDb*/) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    std::vector<dxf::group_list::fresh_group> fresh;
    // The reference allows codes to 369; the editor's own layer states hold 370 and 440.
    constexpr auto allowed = [](int code) { return code >= 1 && code <= 481 && code != 5 && code != 105; };
    if (!db::groups_of(imp(), &chain, allowed, fresh))
        return Acad::eInvalidResBuf;
    const auto [first, last] = data_extent(imp().groups());
    imp().edit().splice(first, last, fresh);
    return Acad::eOk;
}
