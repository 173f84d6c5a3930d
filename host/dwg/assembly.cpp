#include "host/dwg/assembly.h"

#include "base/ordered_work.h"
#include "base/utf.h"
#include "host/dwg/data_store.h"
#include "sys/memory.h"

#include <algorithm>
#include <memory>

namespace dwg {

assembly::assembly(const container& file, drawing_text& out)
    : file_(file), out_(out), main_(out.dxf, index_, source_) {
    source_.objects = file.objects;
    source_.version = file.version;
    source_.maintenance = file.maintenance;
    const std::string_view page = code_page_name(file.code_page);
    source_.two_byte_text = file.version < r2007 && (page.ends_with("932") || page.ends_with("936") ||
                                                     page.ends_with("949") || page.ends_with("950") ||
                                                     page == "GB2312" || page == "BIG5" || page == "KSC5601");
}

void assembly::run() {
    read_classes();
    header_.read(file_, source_, out_.damage);
    index_.read_map(file_.handles, file_.objects.size(), out_.damage);
    out_.objects = index_.all().size();
    out_.version = file_.version;
    constexpr std::size_t growth = 5; // of what is packed
    constexpr std::size_t frame = 100000;
    out_.dxf.reserve(file_.objects.size() * growth + frame);
    index_.look_at_all(source_, header_.handle("MODEL_SPACE"), header_.handle("PAPER_SPACE"), out_.damage);
    find_linetypes();
    name_blocks();
    header_.write(main_.write, file_, source_);
    section("CLASSES");
    for (const class_entry& one : source_.classes)
        write_class(one);
    const std::size_t classes_end = out_.dxf.size();
    main_.write.text(0, "ENDSEC");
    write_tables();
    write_blocks();
    write_objects();
    write_data_store(main_.write, read_data_store(file_.data_store, out_.damage));
    main_.write.text(0, "EOF");
    take(main_, out_.dxf);
    // Only now it is known which classes there must be besides those of the file.
    if (more_classes_.empty())
        return;
    std::string whole = std::move(out_.dxf);
    out_.dxf.clear();
    for (const std::string& kind : more_classes_) {
        class_entry made;
        made.dxf_name = kind;
        made.cpp_name = class_without_row(kind);
        made.application = "ObjectDBX Classes";
        made.was_proxy = true;
        made.instances = source_.version >= r2004 ? 0 : -1;
        write_class(made);
    }
    whole.insert(classes_end, out_.dxf);
    out_.dxf = std::move(whole);
}

// Takes over how many proxies were written, and fills in the classes of those that have none in the file.
void assembly::take(object_writer& from, std::string& text) {
    for (const auto& [kind, count] : from.proxies)
        out_.proxies[kind] += count;
    from.proxies.clear();
    for (const auto& [at, kind] : from.classless) {
        const auto found =
            std::find(more_classes_.begin(), more_classes_.end(), kind) - more_classes_.begin();
        const auto index = static_cast<std::size_t>(found);
        if (index == more_classes_.size())
            more_classes_.push_back(kind);
        constexpr std::size_t columns = 9;
        const std::string number = std::to_string(first_class + source_.classes.size() + index);
        text.replace(at + columns - number.size(), number.size(), number);
    }
    from.classless.clear();
}

// ---- sections

void assembly::section(std::string_view name) {
    main_.write.text(0, "SECTION");
    main_.write.text(2, name);
}

void assembly::write_class(const class_entry& one) {
    record_writer& write = main_.write;
    write.text(0, "CLASS");
    write.text(1, one.dxf_name);
    write.text(2, one.cpp_name);
    write.text(3, one.application);
    write.integer(90, one.proxy_flags);
    if (one.instances >= 0)
        write.integer(91, one.instances);
    write.integer(280, one.was_proxy ? 1 : 0);
    write.integer(281, one.is_entity ? 1 : 0);
}

void assembly::write_tables() {
    constexpr std::pair<std::string_view, int> tables[] = {
        {"VPORT", 64}, {"LTYPE", 56}, {"LAYER", 50},    {"STYLE", 52},       {"VIEW", 60},
        {"UCS", 62},   {"APPID", 66}, {"DIMSTYLE", 68}, {"BLOCK_RECORD", 48}};
    section("TABLES");
    for (const auto& [name, number] : tables)
        write_table(name, number);
    main_.write.text(0, "ENDSEC");
}

void assembly::write_table(std::string_view name, int control_number) {
    const entry* const head = index_.first_of(control_number);
    record_writer& write = main_.write;
    object_reader& object = main_.object;
    std::vector<entry*> all;
    const auto add = [&](std::uint64_t handle) {
        entry* const of = index_.find(handle);
        if (of != nullptr && !of->is_damaged && !of->is_placed && of->number == control_number + 1) {
            of->is_placed = true;
            all.push_back(of);
        }
    };
    bool is_read = false;
    if (control_number == type_block_control)
        for (const block& one : blocks_)
            add(one.handle);
    else if (head != nullptr && main_.reopen(*head, is_read))
        for (const std::uint64_t handle : std::vector<std::uint64_t>(object.owned))
            add(handle);
    for (const entry* const one : index_.others())
        if (one->number == control_number + 1)
            add(one->handle);
    if (head == nullptr && all.empty())
        return;
    write.text(0, "TABLE");
    write.text(2, name);
    if (head != nullptr && main_.reopen(*head, is_read)) {
        const std::size_t at = out_.dxf.size();
        write.begin("", object, 0); // the name stands between type and handle
        out_.dxf.erase(at, out_.dxf.find('\n', out_.dxf.find('\n', at) + 1) + 1 - at);
    }
    write.text(100, "AcDbSymbolTable");
    write.integer(70, static_cast<std::int64_t>(all.size()));
    constexpr int dimension_styles = 68;
    if (control_number == dimension_styles) {
        const auto count = std::count_if(object.fields.all().begin(), object.fields.all().end(),
                                         [](const value& one) { return one.code == 340; });
        write.text(100, "AcDbDimStyleTable");
        write.integer(71, count);
        write.segment(object.fields, 0);
    }
    if (head != nullptr)
        main_.end_record();
    for (entry* const one : all)
        write_entry(*one, name, head != nullptr ? head->handle : 0);
    write.text(0, "ENDTAB");
}

void assembly::write_entry(entry& of, std::string_view name, std::uint64_t owner) {
    bool is_read = false;
    if (!main_.reopen(of, is_read) || !is_read) {
        out_.damage.push_back(left_out(of, L"what this " + base::widen(name) + L" holds can not be read"));
        return;
    }
    constexpr int dimension_style = 69;
    main_.write.begin(name, main_.object, owner, of.number == dimension_style ? 105 : 5);
    main_.write.fields(main_.object, of.type->order);
    main_.end_record();
}

void assembly::write_blocks() {
    std::vector<place> places;
    for (const block& one : blocks_) {
        places.push_back({&one, nullptr, false});
        if (one.handle != index_.model_space && one.handle != index_.paper_space)
            add_members(one, places);
        places.push_back({&one, nullptr, true});
    }
    section("BLOCKS");
    write_places(places);
    main_.write.text(0, "ENDSEC");
    places.clear();
    for (const block& one : blocks_)
        if (one.handle == index_.model_space || one.handle == index_.paper_space)
            add_members(one, places);
    section("ENTITIES");
    write_places(places);
    main_.write.text(0, "ENDSEC");
    for (const entry& one : index_.all())
        if (one.is_entity && !one.is_damaged && !one.is_placed && !one.is_block_end() &&
            one.number != type_seqend)
            out_.damage.push_back(left_out(one, L"what it belongs to, " + hexadecimal(index_.owner_of(one)) +
                                                    L", is not there"));
}

void assembly::add_members(const block& of, std::vector<place>& places) {
    for (entry* const one : index_.members(of.handle, of.owned, source_.version))
        places.push_back({&of, one, false});
}

// New memory is made ready in large steps.
void assembly::make_room(std::size_t size) {
    constexpr std::size_t step = std::size_t(16) << 20;
    std::string& text = out_.dxf;
    ready_ = std::max(ready_, text.size());
    if (text.size() + size <= ready_)
        return;
    if (text.size() + size > text.capacity())
        text.reserve(std::max(text.size() + size, text.capacity() + text.capacity() / 2));
    const std::size_t more = std::min(text.capacity() - ready_, std::max(size, step));
    if (more >= step)
        sys::expect_writes(text.data() + ready_, more);
    ready_ += more;
}

// Entities do not depend on each other; those that belong to one another are written in one.
void assembly::write_places(const std::vector<place>& places) {
    constexpr std::size_t in_a_part = 1000;
    struct text_part {
        std::string text;
        object_writer writer;
        text_part(object_index& index, const object_source& source) : writer(text, index, source) {}
    };
    using part = std::unique_ptr<text_part>;
    const auto worker = [&] {
        return [&](std::size_t number, part& out) {
            if (out == nullptr)
                out = std::make_unique<text_part>(index_, source_);
            out->text.clear();
            const std::size_t end = std::min(places.size(), (number + 1) * in_a_part);
            for (std::size_t i = number * in_a_part; i < end; ++i)
                if (const place& one = places[i]; one.what != nullptr)
                    out->writer.entity(*one.what, one.of->is_paper);
                else
                    out->writer.block_end(*one.of, one.is_end);
        };
    };
    const auto take_part = [&](std::size_t, part& of) {
        take(of->writer, of->text);
        make_room(of->text.size());
        out_.dxf += of->text;
    };
    base::work_in_order<part>((places.size() + in_a_part - 1) / in_a_part, worker, take_part);
}

void assembly::write_objects() {
    section("OBJECTS");
    std::vector<std::uint64_t> waiting = {header_.handle("NAMED_OBJECTS")};
    if (index_.find(waiting.front()) == nullptr) // its header is damaged: the dictionary that nobody owns
        for (const entry* const one : index_.others())
            if (one->number == type_dictionary && one->owner == 0)
                waiting.push_back(one->handle);
    for (std::size_t i = 0; i < waiting.size(); ++i) // level by level from the root
        if (entry* const of = index_.find(waiting[i]))
            write_object(*of, waiting);
    for (entry* const one : index_.others())
        write_object(*one, waiting);
    main_.write.text(0, "ENDSEC");
}

void assembly::write_object(entry& of, std::vector<std::uint64_t>& children) {
    constexpr int first_header_object = 70; // those of the views that R2000 keeps for sheets
    const bool is_other = of.type != nullptr && of.type->row->role != role::object;
    const bool is_view_header = of.number == first_header_object || of.number == first_header_object + 1;
    if (of.is_entity || of.is_damaged || of.is_placed || is_other || is_view_header)
        return;
    of.is_placed = true;
    bool is_read = false;
    if (!main_.reopen(of, is_read))
        return;
    main_.write.begin(is_read ? of.type->row->record : "ACAD_PROXY_OBJECT", main_.object,
                      main_.object.common.owner);
    if (is_read) {
        constexpr int dictionary_entry = 350;
        constexpr int owned_entry = 360;
        if (of.type->row->record.find("DICTIONARY") != std::string_view::npos)
            for (const value& one : main_.object.fields.all())
                if (one.code == dictionary_entry || one.code == owned_entry)
                    children.push_back(one.number);
        main_.write.fields(main_.object, of.type->order);
    } else {
        main_.proxy();
    }
    main_.end_record();
}

} // namespace dwg
