#include "host/db/tables/layer_state.h"

#include "acdblayerstatemanager.h"
#include "acutmem.h"
#include "adscodes.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"

#include <memory>

namespace db {

namespace {

// The groups of a state: in front the mask of what it holds, its description, whether it is of a viewport and
// the current layer; then for each layer its handle, flags, colour, lineweight, linetype, plot style and
// transparency, and a true colour. Source: drawings that the editor has saved.
enum group : short {
    layer_handle = 330,
    linetype_handle = 331,
    mask = 91,
    description = 301,
    current_layer = 302,
    flags = 90,
    color = 62,
    true_color = 92, // with its method in the highest byte
    weight = 370,
    in_viewport = 290,
    plot_style = 1,
    transparency = 440,
};
constexpr unsigned true_color_method = 0xC2000000u;

constexpr const wchar_t* dictionary_name = L"ACAD_LAYERSTATES";

using chain = std::unique_ptr<resbuf, int (*)(resbuf*)>;

AcDbObjectId extension_dictionary(AcDbImpDatabase& drawing, bool makes) {
    const AcDbObjectPointer<AcDbLayerTable> table(drawing.self().layerTableId());
    if (table.openStatus() != Acad::eOk)
        return {};
    if (table->extensionDictionary().isNull() && makes && table->upgradeOpen() == Acad::eOk)
        table->createExtensionDictionary();
    return table->extensionDictionary();
}

class chain_writer {
public:
    void add(short code, int value) { next(code)->resval.rlong = value; }
    void add_short(short code, int value) { next(code)->resval.rint = static_cast<short>(value); }
    void add(short code, const std::wstring& text) {
        acutNewString(text.c_str(), next(code)->resval.rstring);
    }
    void add(short code, AcDbObjectId id) { next(code)->resval.rlname[0] = id.asOldId(); }
    const resbuf* first() const { return first_.get(); }

private:
    resbuf* next(short code) {
        resbuf* const made = acutNewRb(code);
        if (last_ == nullptr)
            first_.reset(made);
        else
            last_->rbnext = made;
        return last_ = made;
    }

    chain first_{nullptr, acutRelRb};
    resbuf* last_ = nullptr;
};

void write_look(chain_writer& out, const layer_look& look, int state_mask) {
    out.add(layer_handle, look.layer);
    out.add(flags, look.flags);
    out.add_short(color, look.color.colorIndex());
    out.add_short(weight, look.weight);
    out.add(linetype_handle, look.linetype);
    out.add(plot_style, L"Color_" + std::to_wstring(look.color.colorIndex()));
    if ((state_mask & AcDbLayerStateManager::kTransparency) != 0)
        out.add(transparency, look.transparency);
    if (look.color.isByColor())
        out.add(true_color, packed_true_color(look.color));
}

AcDbObjectId id_of(const resbuf& node) {
    AcDbObjectId id;
    id.setFromOldId(node.resval.rlname[0]);
    return id;
}

void read_look(layer_look& look, const resbuf& node) {
    switch (node.restype) {
    case flags:
        look.flags = node.resval.rlong;
        break;
    case color:
        look.color.setColorIndex(static_cast<Adesk::UInt16>(node.resval.rint));
        break;
    case true_color:
        unpack_true_color(node.resval.rlong, look.color);
        break;
    case weight:
        look.weight = static_cast<AcDb::LineWeight>(node.resval.rint);
        break;
    case linetype_handle:
        look.linetype = id_of(node);
        break;
    case transparency:
        look.transparency = node.resval.rlong;
        break;
    default:
        break;
    }
}

void read_head(layer_state& state, const resbuf& node) {
    switch (node.restype) {
    case mask:
        state.mask = node.resval.rlong;
        break;
    case description:
        state.description = node.resval.rstring;
        break;
    case in_viewport:
        state.of_viewport = node.resval.rint != 0;
        break;
    case current_layer:
        state.current_layer = node.resval.rstring;
        break;
    default:
        break;
    }
}

} // namespace

int packed_true_color(const AcCmColor& color) {
    return static_cast<int>(true_color_method | static_cast<unsigned>(color.red()) << 16 |
                            static_cast<unsigned>(color.green()) << 8 | color.blue());
}

bool unpack_true_color(int packed, AcCmColor& color) {
    const auto number = static_cast<unsigned>(packed);
    return (number & 0xFF000000u) == true_color_method &&
           color.setRGB(static_cast<Adesk::UInt8>(number >> 16), static_cast<Adesk::UInt8>(number >> 8),
                        static_cast<Adesk::UInt8>(number)) == Acad::eOk;
}

AcDbObjectId layer_states_dictionary(AcDbImpDatabase& drawing, bool makes) {
    const AcDbDictionaryPointer owner(extension_dictionary(drawing, makes),
                                      makes ? AcDb::kForWrite : AcDb::kForRead);
    AcDbObjectId id;
    if (owner.openStatus() != Acad::eOk || owner->getAt(dictionary_name, id) == Acad::eOk || !makes)
        return id;
    auto made = std::make_unique<AcDbDictionary>();
    if (owner->setAt(dictionary_name, made.get(), id) == Acad::eOk)
        made.release()->close(); // the drawing's now
    return id;
}

Acad::ErrorStatus write_layer_state(AcDbImpDatabase& drawing, const std::wstring& name,
                                    const layer_state& state) {
    const AcDbDictionaryPointer states(layer_states_dictionary(drawing, true), AcDb::kForWrite);
    if (states.openStatus() != Acad::eOk)
        return Acad::eNotApplicable;
    chain_writer out;
    out.add(mask, state.mask);
    out.add(description, state.description);
    out.add_short(in_viewport, state.of_viewport ? 1 : 0);
    out.add(current_layer, state.current_layer);
    for (const layer_look& look : state.looks)
        write_look(out, look, state.mask);
    auto record = std::make_unique<AcDbXrecord>();
    AcDbObjectId id;
    if (const Acad::ErrorStatus status = states->setAt(name.c_str(), record.get(), id); status != Acad::eOk)
        return status;
    const Acad::ErrorStatus status = record->setFromRbChain(*out.first(), &drawing.self());
    record.release()->close(); // the drawing's now
    return status;
}

Acad::ErrorStatus read_layer_state(AcDbImpDatabase& drawing, const std::wstring& name, layer_state& state) {
    const AcDbDictionaryPointer states(layer_states_dictionary(drawing, false));
    AcDbObjectId id;
    if (states.openStatus() != Acad::eOk || states->getAt(name.c_str(), id) != Acad::eOk)
        return Acad::eKeyNotFound;
    const AcDbXrecordPointer record(id);
    resbuf* data = nullptr;
    if (record.openStatus() != Acad::eOk || record->rbChain(&data, &drawing.self()) != Acad::eOk)
        return Acad::eKeyNotFound;
    const chain kept(data, acutRelRb);
    state = {};
    bool in_head = true;
    for (const resbuf* node = data; node != nullptr; node = node->rbnext)
        if (node->restype == layer_handle) {
            in_head = false;
            state.looks.emplace_back().layer = id_of(*node);
        } else if (in_head) {
            read_head(state, *node);
        } else {
            read_look(state.looks.back(), *node);
        }
    std::erase_if(state.looks, [](const layer_look& look) { return look.layer.isErased(); });
    return Acad::eOk;
}

} // namespace db
