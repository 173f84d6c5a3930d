#include "host/ed/saved_layer_states.h"

#include "acutmem.h"
#include "adscodes.h"
#include "dbobjptr.h"
#include "host/db/imp_database.h"

#include <memory>

namespace ed {

namespace {

// The groups of a state: in front the mask of what it holds, its description and the current layer; then for
// each layer its handle, flags, colour, lineweight, linetype, plot style. Source: drawings that the editor
// has saved.
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
};
enum flag { off = 1, frozen = 2, locked = 4, plotted = 8, frozen_in_new = 16 };
constexpr unsigned true_color_method = 0xC2000000u;
constexpr int everything = 1 | 2 | 4 | 8 | 16 | 32 | 64 | 128;

constexpr const wchar_t* dictionary_name = L"ACAD_LAYERSTATES";

using chain = std::unique_ptr<resbuf, int (*)(resbuf*)>;

AcDbObjectId extension_dictionary(AcDbDatabase& drawing, bool makes) {
    const AcDbObjectPointer<AcDbLayerTable> table(drawing.layerTableId());
    if (table.openStatus() != Acad::eOk)
        return {};
    if (table->extensionDictionary().isNull() && makes && table->upgradeOpen() == Acad::eOk)
        table->createExtensionDictionary();
    return table->extensionDictionary();
}

// Of the layer table; null when there is none, and it is not to be made or can not be.
AcDbObjectId dictionary_of_states(AcDbDatabase& drawing, bool makes) {
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

void write_layer(chain_writer& out, const AcDbLayerTableRecord& layer) {
    out.add(layer_handle, layer.objectId());
    out.add(flags, (layer.isOff() ? off : 0) | (layer.isFrozen() ? frozen : 0) |
                       (layer.isLocked() ? locked : 0) | (layer.isPlottable() ? plotted : 0) |
                       (layer.VPDFLT() ? frozen_in_new : 0));
    const AcCmColor shown = layer.color();
    out.add_short(color, shown.colorIndex());
    out.add_short(weight, layer.lineWeight());
    out.add(linetype_handle, layer.linetypeObjectId());
    out.add(plot_style, L"Color_" + std::to_wstring(shown.colorIndex()));
    if (shown.isByColor())
        out.add(true_color, static_cast<int>(true_color_method | static_cast<unsigned>(shown.red()) << 16 |
                                             static_cast<unsigned>(shown.green()) << 8 | shown.blue()));
}

AcDbObjectId id_of(const resbuf& node) {
    AcDbObjectId id;
    id.setFromOldId(node.resval.rlname[0]);
    return id;
}

void take_flags(AcDbLayerTableRecord& layer, int bits) {
    layer.setIsOff((bits & off) != 0);
    layer.setIsFrozen((bits & frozen) != 0); // the current one stays thawed
    layer.setIsLocked((bits & locked) != 0);
    layer.setIsPlottable((bits & plotted) != 0);
    layer.setVPDFLT((bits & frozen_in_new) != 0);
}

void take_property(AcDbLayerTableRecord& layer, const resbuf& node) {
    AcCmColor shown;
    switch (node.restype) {
    case flags:
        take_flags(layer, node.resval.rlong);
        break;
    case color:
        shown.setColorIndex(static_cast<Adesk::UInt16>(node.resval.rint));
        layer.setColor(shown);
        break;
    case true_color:
        if ((static_cast<unsigned>(node.resval.rlong) & 0xFF000000u) != true_color_method)
            break;
        shown.setRGB(static_cast<Adesk::UInt8>(node.resval.rlong >> 16),
                     static_cast<Adesk::UInt8>(node.resval.rlong >> 8),
                     static_cast<Adesk::UInt8>(node.resval.rlong));
        layer.setColor(shown);
        break;
    case weight:
        layer.setLineWeight(static_cast<AcDb::LineWeight>(node.resval.rint));
        break;
    case linetype_handle:
        layer.setLinetypeObjectId(id_of(node));
        break;
    default:
        break;
    }
}

} // namespace

std::vector<std::wstring> layer_state_names(AcDbDatabase& drawing) {
    std::vector<std::wstring> names;
    const AcDbDictionaryPointer states(dictionary_of_states(drawing, false));
    if (states.openStatus() != Acad::eOk)
        return names;
    for (const std::unique_ptr<AcDbDictionaryIterator> at(states->newIterator()); !at->done(); at->next())
        names.emplace_back(at->name());
    return names;
}

Acad::ErrorStatus save_layer_state(AcDbDatabase& drawing, const std::wstring& name) {
    const AcDbDictionaryPointer states(dictionary_of_states(drawing, true), AcDb::kForWrite);
    if (states.openStatus() != Acad::eOk)
        return Acad::eNotApplicable;
    chain_writer out;
    out.add(mask, everything);
    out.add(description, std::wstring());
    out.add_short(in_viewport, 0);
    AcDbImpDatabase& imp = drawing.imp();
    out.add(current_layer, imp.name_of(imp.record(drawing.clayer())));
    for (const dxf::record_id entry : imp.entries(db::table_kind::layer)) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(imp.id(entry));
        if (layer.openStatus() == Acad::eOk && !layer->isDependent())
            write_layer(out, *layer.object());
    }
    if (states->has(name.c_str()))
        states->remove(name.c_str());
    auto state = std::make_unique<AcDbXrecord>();
    AcDbObjectId id;
    if (const Acad::ErrorStatus status = states->setAt(name.c_str(), state.get(), id); status != Acad::eOk)
        return status;
    const Acad::ErrorStatus status = state->setFromRbChain(*out.first(), &drawing);
    state.release()->close(); // the drawing's now
    return status;
}

Acad::ErrorStatus restore_layer_state(AcDbDatabase& drawing, const std::wstring& name) {
    const AcDbDictionaryPointer states(dictionary_of_states(drawing, false));
    AcDbObjectId id;
    if (states.openStatus() != Acad::eOk || states->getAt(name.c_str(), id) != Acad::eOk)
        return Acad::eKeyNotFound;
    const AcDbXrecordPointer state(id);
    resbuf* data = nullptr;
    if (state.openStatus() != Acad::eOk || state->rbChain(&data, &drawing) != Acad::eOk)
        return Acad::eKeyNotFound;
    const chain kept(data, acutRelRb);
    AcDbObjectPointer<AcDbLayerTableRecord> layer;
    for (const resbuf* node = data; node != nullptr; node = node->rbnext)
        if (node->restype == layer_handle)
            layer.open(id_of(*node), AcDb::kForWrite);
        else if (layer.openStatus() == Acad::eOk)
            take_property(*layer.object(), *node);
    return Acad::eOk;
}

Acad::ErrorStatus delete_layer_state(AcDbDatabase& drawing, const std::wstring& name) {
    const AcDbDictionaryPointer states(dictionary_of_states(drawing, false), AcDb::kForWrite);
    return states.openStatus() == Acad::eOk ? states->remove(name.c_str()) : Acad::eKeyNotFound;
}

} // namespace ed
