#include "host/db/tables/layer_state_file.h"
#include "host/db/core/file_status.h"

#include "acdblayerstatemanager.h"
#include "base/utf.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/linetype_file.h"
#include "host/dxf/group_list.h"
#include "host/dxf/text_codec.h"
#include "sys/atomic_file.h"
#include "sys/code_page.h"
#include "sys/file.h"

#include <memory>

namespace db {

namespace {

constexpr std::string_view file_type = "LAYERSTATEDICTIONARY";
constexpr std::string_view state_type = "LAYERSTATE";
constexpr int ascii_page = 20127;
constexpr int utf8_page = 65001;

// The groups of a file are those of the record in a drawing, with names in the place of handles.
enum group {
    type = 0,
    state_name = 1,
    plot_style = 2,
    linetype = 6,
    layer_name = 8,
    color = 62,
    flags = 90,
    mask = 91,
    true_color = 92,
    in_viewport = 290,
    description = 301,
    current_layer = 302,
    weight = 370,
    transparency = 440,
};

class file_text {
public:
    void add(int code, std::string_view value) { dxf::append_group(text_, style_, code, value); }
    void add(int code, const std::wstring& value) { add(code, codec_.encode(value)); }
    void add(int code, int value) { add(code, std::to_string(value)); }
    const std::string& text() const { return text_; }

private:
    dxf::group_style style_;
    dxf::text_codec codec_{ascii_page};
    std::string text_;
};

void put_look(file_text& out, const named_look& named, int state_mask) {
    const layer_look& look = named.look;
    out.add(layer_name, named.layer);
    out.add(flags, look.flags);
    out.add(color, static_cast<int>(look.color.colorIndex()));
    out.add(weight, static_cast<int>(look.weight));
    out.add(linetype, named.linetype);
    out.add(plot_style, "Color_" + std::to_string(look.color.colorIndex()));
    if ((state_mask & AcDbLayerStateManager::kTransparency) != 0)
        out.add(transparency, look.transparency);
    if (look.color.isByColor())
        out.add(true_color, packed_true_color(look.color));
}

int number_of(std::string_view value) {
    return static_cast<int>(dxf::leading_real(value).value_or(0.0));
}

void take_look_group(named_look& named, int code, std::string_view value, const dxf::text_codec& codec) {
    const int number = number_of(value);
    switch (code) {
    case flags:
        named.look.flags = number;
        break;
    case color:
        named.look.color.setColorIndex(static_cast<Adesk::UInt16>(number));
        break;
    case true_color:
        unpack_true_color(number, named.look.color);
        break;
    case weight:
        named.look.weight = static_cast<AcDb::LineWeight>(number);
        break;
    case linetype:
        named.linetype = codec.decode(value);
        break;
    case transparency:
        named.look.transparency = number;
        break;
    default:
        break;
    }
}

void take_head_group(named_state& state, int code, std::string_view value, const dxf::text_codec& codec) {
    switch (code) {
    case state_name:
        state.name = codec.decode(value);
        break;
    case mask:
        state.head.mask = number_of(value);
        break;
    case description:
        state.head.description = codec.decode(value);
        break;
    case in_viewport:
        state.head.of_viewport = number_of(value) != 0;
        break;
    case current_layer:
        state.head.current_layer = codec.decode(value);
        break;
    default:
        break;
    }
}

AcDbObjectId linetype_for(AcDbImpDatabase& drawing, const std::wstring& name) {
    if (const dxf::record_id there = drawing.names().find(table_kind::linetype, name);
        there != dxf::no_record)
        return drawing.id(there);
    const AcDbObjectId loaded = find_and_load_linetype(drawing.self(), name);
    return loaded.isNull() ? drawing.id(drawing.names().find(table_kind::linetype, L"Continuous")) : loaded;
}

// Null when the drawing can not have a layer of the name.
AcDbObjectId layer_for(AcDbImpDatabase& drawing, const std::wstring& name) {
    if (const dxf::record_id there = drawing.names().find(table_kind::layer, name); there != dxf::no_record)
        return drawing.id(there);
    AcDbObjectId id;
    auto layer = std::make_unique<AcDbLayerTableRecord>();
    const AcDbLayerTablePointer table(drawing.self().layerTableId(), AcDb::kForWrite);
    if (name.find(L'|') == name.npos && table.openStatus() == Acad::eOk &&
        layer->setName(name.c_str()) == Acad::eOk && table->add(id, layer.get()) == Acad::eOk)
        layer.release()->close(); // the table's now
    return id;
}

} // namespace

Acad::ErrorStatus name_layer_state(AcDbImpDatabase& drawing, const std::wstring& name, named_state& state) {
    state = {};
    if (const Acad::ErrorStatus status = read_layer_state(drawing, name, state.head); status != Acad::eOk)
        return status;
    state.name = name;
    for (const layer_look& look : state.head.looks) {
        const dxf::record_id linetype = drawing.record(look.linetype);
        state.looks.push_back({drawing.names().name_of(drawing.record(look.layer)),
                               linetype != dxf::no_record ? drawing.names().name_of(linetype) : L"Continuous",
                               look});
    }
    state.head.looks.clear();
    return Acad::eOk;
}

Acad::ErrorStatus take_layer_state(AcDbImpDatabase& drawing, const named_state& state) {
    if (layer_state known; read_layer_state(drawing, state.name, known) == Acad::eOk)
        return Acad::eDuplicateKey;
    if (layer_states_dictionary(drawing, true).isNull())
        return Acad::eNotApplicable;
    layer_state taken = state.head;
    for (const named_look& named : state.looks) {
        layer_look look = named.look;
        const bool is_new = drawing.names().find(table_kind::layer, named.layer) == dxf::no_record;
        look.layer = layer_for(drawing, named.layer);
        look.linetype = linetype_for(drawing, named.linetype);
        if (look.layer.isNull())
            continue;
        if (is_new)
            give_look(drawing, look, state.head.mask);
        taken.looks.push_back(look);
    }
    return write_layer_state(drawing, state.name, taken);
}

base::result<void> write_layer_state_file(const std::filesystem::path& file, const named_state& state) {
    file_text out;
    out.add(type, file_type);
    out.add(type, state_type);
    out.add(state_name, state.name);
    out.add(mask, state.head.mask);
    out.add(description, state.head.description);
    out.add(in_viewport, state.head.of_viewport ? 1 : 0);
    out.add(current_layer, state.head.current_layer);
    for (const named_look& named : state.looks)
        put_look(out, named, state.head.mask);
    auto target = sys::atomic_file::create(file);
    if (!target)
        return target.why();
    if (auto written = target->write(out.text()); !written)
        return written;
    return target->commit();
}

Acad::ErrorStatus read_layer_state_file(const std::filesystem::path& file, named_state& state) {
    const auto bytes = sys::read_file(file);
    if (!bytes)
        return status_of(bytes.why(), Acad::eFileAccessErr);
    const dxf::text_codec codec(base::is_utf8(bytes->view()) ? utf8_page : sys::ansi_code_page());
    const dxf::group_list list(dxf::padded_text::promised(bytes->view()));
    const auto& groups = list.groups();
    if (groups.size() < 3 || groups[0].code != type || groups[0].value != file_type ||
        groups[1].code != type || groups[1].value != state_type)
        return Acad::eInvalidInput;
    state = {};
    for (std::size_t i = 2; i < groups.size(); ++i) {
        const std::string_view value = groups[i].value;
        if (groups[i].code == type)
            return Acad::eInvalidInput; // a second state
        if (groups[i].code == layer_name)
            state.looks.emplace_back().layer = codec.decode(value);
        else if (state.looks.empty())
            take_head_group(state, groups[i].code, value, codec);
        else
            take_look_group(state.looks.back(), groups[i].code, value, codec);
    }
    return state.name.empty() ? Acad::eInvalidInput : Acad::eOk;
}

} // namespace db
