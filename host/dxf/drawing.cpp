#include "host/dxf/drawing.h"
#include "host/dxf/releases.h"

#include "base/utf.h"
#include "host/dwg/drawing_reader.h"
#include "host/dxf/encoding_guess.h"
#include "host/dxf/entry_repair.h"
#include "host/dxf/handle_text.h"
#include "host/dxf/name_repair.h"
#include "host/dxf/record_header.h"
#include "host/dxf/record_repair.h"
#include "host/dxf/sealed_groups.h"
#include "host/dxf/space_repair.h"
#include "sys/atomic_file.h"
#include "sys/folders.h"
#include "sys/regular_file.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <numeric>

namespace dxf {

namespace {

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";

// Files that people take for drawings that can be read; why they can not.
std::wstring other_format(std::string_view bytes) {
    const bool marked = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    if (marked ||
        (bytes.size() > 3 && ((bytes[0] == 0 && bytes[2] == 0) || (bytes[1] == 0 && bytes[3] == 0))))
        return L"line 1: this is text in UTF-16; save it as UTF-8 first";
    return {};
}

// Whether lines end with carriage returns alone: the first one tells.
bool ends_with_returns(std::string_view bytes) {
    const std::size_t first = bytes.find_first_of("\r\n");
    return first != bytes.npos && bytes[first] == '\r' &&
           (first + 1 == bytes.size() || bytes[first + 1] != '\n');
}

bool same_place(std::string_view a, std::string_view b) {
    return a.data() == b.data() && a.size() == b.size();
}

// Line feeds for carriage returns and the other way round: twice gives the same bytes again.
std::string exchanged(std::string_view bytes) {
    std::string text(bytes);
    for (char& byte : text)
        byte = byte == '\r' ? '\n' : byte == '\n' ? '\r' : byte;
    return text;
}

// Judged by the first groups of the file's own records; comments in front may be somebody else's.
group_style style_of(std::string_view bytes, const record_table& records) {
    group_style style;
    const std::size_t feed = bytes.find('\n');
    style.line_end = feed != bytes.npos && feed > 0 && bytes[feed - 1] == '\r' ? "\r\n" : "\n";
    constexpr record_id first = 1; // behind what stands in front of the first record
    style.padded_codes = records.has(first) && records.text(first).starts_with(' ');
    // A long number says nothing of blanks in front of short ones.
    const auto columns = [](std::string_view value) -> std::optional<std::size_t> {
        constexpr std::size_t short_enough = 2;
        if (value.starts_with(' '))
            return value.size();
        return value.size() <= short_enough ? std::optional<std::size_t>(0) : std::nullopt;
    };
    std::optional<std::size_t> shorts;
    std::optional<std::size_t> longs;
    constexpr record_id enough = 100; // the header and the heads of the first tables hold whole numbers
    for (record_id id = first; id < records.size() && id < enough && !(shorts && longs); ++id) {
        group_reader groups(records.text(id));
        raw_group group;
        while (groups.next(group))
            if (group.code == 70 && !shorts)
                shorts = columns(group.value);
            else if (!longs && kind_of_code(group.code) == value_kind::integer)
                longs = columns(group.value);
    }
    const group_style editors;
    style.short_columns = shorts.value_or(style.padded_codes ? editors.short_columns : 0);
    style.long_columns = longs.value_or(style.short_columns == editors.short_columns ? editors.long_columns
                                                                                     : style.short_columns);
    return style;
}

} // namespace

base::result<std::unique_ptr<drawing>> drawing::open(const std::filesystem::path& file, int encoding) {
    if (auto regular = sys::check_regular_file(file); !regular)
        return regular.why();
    auto bytes = sys::read_file(file);
    if (!bytes)
        return bytes.why();
    std::unique_ptr<drawing> opened(new drawing);
    opened->file_ = std::move(*bytes);
    if (auto read = opened->read(padded_text::promised(opened->file_.view()), encoding); !read)
        return read.why().behind(L"'" + sys::from_path(file) + L"': ");
    return opened;
}

base::result<std::unique_ptr<drawing>> drawing::from_bytes(std::string bytes, int encoding) {
    std::unique_ptr<drawing> opened(new drawing);
    opened->memory_ = padded_string(std::move(bytes));
    if (auto read = opened->read(opened->memory_.view(), encoding); !read)
        return read.why();
    return opened;
}

base::result<void> drawing::read(padded_text bytes, int encoding) {
    const auto text = text_of(bytes);
    if (!text)
        return text.why();
    if (auto indexed = index(*text, encoding); !indexed || repairs_.empty())
        return indexed;
    // A repair that would have to be repaired in its turn is none: what was made of the drawing is read
    // again.
    drawing again;
    std::string written;
    write([&](std::string_view piece) {
        written += piece;
        return true;
    });
    again.memory_ = padded_string(std::move(written));
    const auto reread = again.text_of(again.memory_.view());
    if (reread && again.index(*reread, codec_.number()) && again.repairs_.empty())
        return {};
    const repair& first = repairs_.front();
    return base::failure{(is_binary() ? L"byte " : L"line ") + std::to_wstring(first.line) + L": " +
                         first.what + L", and so much else is wrong that it can not be repaired safely"};
}

// The text that a file's bytes stand for.
base::result<padded_text> drawing::text_of(padded_text bytes) {
    if (binary_form::recognises(bytes)) {
        binary_ = std::make_unique<binary_form>();
        if (auto read = binary_->read(bytes); !read)
            return read.why();
        if (const std::size_t cut = binary_->cut_at(); cut < bytes.size())
            repairs_.push_back(
                {repair_kind::cut_end, cut, L"the file ends inside of this group", L"the group is left out"});
        return binary_->text();
    }
    if (dwg::is_dwg(bytes)) {
        auto made = dwg::read_drawing(bytes);
        if (!made)
            return made.why();
        encoding_note_ = dwg::notes(*made);
        mended_ = padded_string(std::move(made->dxf));
        return mended_.view();
    }
    if (std::wstring why = other_format(bytes); !why.empty())
        return base::failure{std::move(why)};
    if (!ends_with_returns(bytes))
        return bytes;
    form_ = line_form::returns;
    mended_ = padded_string(exchanged(bytes));
    return mended_.view();
}

base::result<void> drawing::index(padded_text text, int encoding) {
    std::optional<indexer> index;
    // First zero bytes are taken out, then lines are mended, which may show further damage; soon a look finds
    // nothing.
    constexpr int most_looks = 5;
    for (int look = 1;; ++look) {
        text_ = text;
        records_.emplace();
        // A byte-order mark is no part of the first group code; it is kept with what stands before the first
        // record.
        index.emplace(text.substr(text.starts_with(utf8_mark) ? utf8_mark.size() : 0), *records_);
        if (const auto why = index->run())
            return base::failure{refused(*why)};
        if (!index->damage().in_lines())
            break;
        placed_repairs repairs;
        const auto edits = mend_lines(text, *records_, index->damage(), repairs);
        if (edits.empty()) {
            if (index->parts().header == no_record && index->parts().table_heads.empty() &&
                index->parts().blocks == no_record && index->parts().entities == no_record)
                return base::failure{refused({text.data(), L"no section of a drawing begins here"})};
            break;
        }
        if (binary_ != nullptr || look == most_looks)
            return base::failure{
                refused({repairs.front().at, repairs.front().what + L", and that can not be repaired"})};
        take(repairs);
        shift_lines(edits);
        mended_ = padded_string(edited(text, edits));
        text = mended_.view();
    }
    parts_ = index->parts();
    if (binary_ != nullptr)
        for (record_id id = 0; id < records_->size(); ++id)
            in_binary_.push_back(binary_->record_at(records_->text(id)));
    style_ = style_of(text, *records_);
    if (const auto version = header_value("$ACADVER"); version && version->size() > 2)
        std::from_chars(version->data() + 2, version->data() + version->size(), version_);
    if (const std::uint64_t seed = parse_handle(header_value("$HANDSEED").value_or(""));
        seed > 1 && seed < absurd_handle)
        records_->set_handle_floor(seed - 1);
    take_encoding(encoding);

    placed_repairs repairs;
    const drawing_manner manner{version_, style_, codec_};
    file_places places;
    repair_names(*records_, index->parts(), manner, repairs, places);
    repair_records(*records_, index->parts(), index->damage(), manner, repairs, places);
    repair_spaces(*records_, index->parts(), manner, repairs, places);
    if (!repairs_.empty()) // of lines
        repair_entries(*records_, index->parts(), manner, repairs, places);
    take(repairs);
    index->settle();
    parts_ = std::move(index->parts());
    in_file_ = records_->size();
    return {};
}

// ---- what is told

// For each place in the text the number of its line in the file, or in a binary one of its byte.
std::vector<std::size_t> drawing::lines_of(const std::vector<const char*>& places) const {
    std::vector<std::size_t> lines(places.size());
    if (binary_ != nullptr) {
        std::transform(places.begin(), places.end(), lines.begin(),
                       [this](const char* at) { return binary_->byte_of(at); });
        return lines;
    }
    std::vector<std::size_t> order(places.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return places[a] < places[b]; });
    const char* counted = text_.data();
    std::ptrdiff_t line = 1;
    auto shift = shifts_.begin();
    for (const std::size_t i : order) {
        line += std::count(counted, places[i], '\n');
        counted = places[i];
        for (; shift != shifts_.end() && text_.data() + shift->first <= counted; ++shift)
            line += shift->second;
        lines[i] = static_cast<std::size_t>(line);
    }
    return lines;
}

void drawing::shift_lines(const std::vector<text_edit>& edits) {
    std::ptrdiff_t longer = 0; // the text becomes so much, up to here
    for (const text_edit& edit : edits) {
        const std::ptrdiff_t removed = std::count(edit.at, edit.at + edit.count, '\n');
        const std::ptrdiff_t added = std::count(edit.instead.begin(), edit.instead.end(), '\n');
        if (removed != added)
            shifts_.emplace_back(static_cast<std::size_t>(edit.at - text_.data() + longer), removed - added);
        longer += static_cast<std::ptrdiff_t>(edit.instead.size()) - static_cast<std::ptrdiff_t>(edit.count);
    }
}

std::wstring drawing::refused(const refusal& why) const {
    return (binary_ != nullptr ? L"byte " : L"line ") + std::to_wstring(lines_of({why.at}).front()) + L": " +
           why.why;
}

void drawing::take(const placed_repairs& repairs) {
    if (repairs.empty())
        return;
    std::vector<const char*> places;
    for (const placed_repair& one : repairs)
        places.push_back(one.at);
    const std::vector<std::size_t> lines = lines_of(places);
    for (std::size_t i = 0; i < repairs.size(); ++i)
        repairs_.push_back({repairs[i].kind, lines[i], repairs[i].what, repairs[i].done});
}

// Which encoding the text is in: the one that was asked for, or what the bytes and the header tell.
void drawing::take_encoding(int encoding) {
    constexpr int last_of_dos = 1009; // R12; what names no version is as old
    const auto page = header_value("$DWGCODEPAGE");
    const int named = version_ >= releases::release_2007 ? utf8_page : encoding_number(page.value_or(""));
    const int usual = named != 0 ? named : 1252;
    if (encoding != 0 || !parts_.high_bytes) {
        codec_ = text_codec(encoding != 0 ? encoding : usual);
        return;
    }
    const int guess = guess_encoding(lines_with_high_bytes(text_, sealed_groups(*records_)), named,
                                     version_ <= last_of_dos);
    codec_ = text_codec(guess);
    if (guess == usual || (named == 0 && guess == utf8_page))
        return;
    encoding_note_ += (encoding_note_.empty() ? L"" : L"\n") +
                      (L"its text is read as " + encoding_name(guess) + L", " +
                       (version_ >= releases::release_2007 ? L"not UTF-8 as its version says"
                        : named != 0 ? L"not " + base::widen(*page) + L" as its header says"
                                     : std::wstring(L"its header names none that is known")));
}

std::vector<std::wstring> drawing::messages() const {
    std::vector<std::wstring> messages = messages_of(repairs_, is_binary());
    // Of a DWG file there are several lines.
    std::vector<std::wstring> notes;
    for (std::wstring_view left = encoding_note_; !left.empty();) {
        const std::size_t end = std::min(left.find(L'\n'), left.size());
        notes.emplace_back(left.substr(0, end));
        left.remove_prefix(std::min(left.size(), end + 1));
    }
    messages.insert(messages.begin(), notes.begin(), notes.end());
    return messages;
}

// ---- what the file says

record_id drawing::table(std::string_view name) const {
    for (const record_id head : parts_.table_heads)
        if (value_of(records_->text(head), 2) == name)
            return head;
    return no_record;
}

std::optional<std::string_view> drawing::header_value(std::string_view variable) const {
    if (parts_.header == no_record)
        return std::nullopt;
    const padded_text text = records_->text(parts_.header);
    if (!same_place(text, variables_of_)) {
        variables_of_ = text;
        variables_.clear();
        group_reader groups(text);
        raw_group group;
        std::string_view name;
        while (groups.next(group)) {
            if (group.code != 9 && !name.empty())
                variables_.try_emplace(name, trimmed(group.value));
            name = group.code == 9 ? trimmed(group.value) : std::string_view();
        }
    }
    const auto at = variables_.find(variable);
    return at != variables_.end() ? std::optional(at->second) : std::nullopt;
}

bool drawing::set_header_value(std::string_view variable, int code, std::string_view value) {
    if (ensure_section("HEADER") == no_record)
        return false;
    group_list header(records_->text(parts_.header));
    const auto& groups = header.groups();
    std::size_t at = 0;
    while (at < groups.size() && (groups[at].code != 9 || trimmed(groups[at].value) != variable))
        ++at;
    if (at + 1 < groups.size() && groups[at + 1].code != 9) {
        if (trimmed(groups[at + 1].value) == value)
            return true;
        const group_list::fresh_group fresh[] = {{groups[at + 1].code, std::string(value)}};
        header.splice(at + 1, at + 2, fresh);
    } else {
        const std::size_t end = groups.size();
        const group_list::fresh_group fresh[] = {{9, std::string(variable)}, {code, std::string(value)}};
        header.splice(at < end ? at : end, end, fresh);
    }
    records_->replace(parts_.header, header.write(style_));
    return true;
}

record_id drawing::last_in(record_id container) const {
    const record_kind kind = records_->kind(container);
    const std::uint32_t closing = kind == record_kind::table   ? type_endtab
                                  : kind == record_kind::block ? type_endblk
                                                               : type_endsec;
    record_id& last = last_.try_emplace(container, container).first->second;
    for (record_id next = records_->next(last); next != no_record; next = records_->next(last)) {
        if (records_->type(next) == closing)
            return last;
        last = next;
    }
    last = container;
    return no_record;
}

// The header with a $HANDSEED above every handle that was given since the file was read; empty when the one
// that stands there will do. Only what is saved counts: what was undone took no handle.
std::string drawing::header_with_seed() const {
    const auto seed = header_value("$HANDSEED");
    if (!seed)
        return {};
    std::uint64_t needed = 0;
    for (record_id id = in_file_; id < records_->size(); ++id)
        if (is_saved(id))
            needed = std::max(needed, records_->handle(id) + 1);
    if (needed <= parse_handle(*seed))
        return {};
    group_list header(records_->text(parts_.header));
    for (std::size_t i = 0; i + 1 < header.groups().size(); ++i)
        if (header.groups()[i].code == 9 && trimmed(header.groups()[i].value) == "$HANDSEED") {
            const group_list::fresh_group fresh[] = {{5, handle_text(needed)}};
            header.splice(i + 1, i + 2, fresh);
            break;
        }
    return header.write(style_);
}

// The CLASS records whose number of objects (group 91) is another one since objects of theirs came or went.
void drawing::count_classes(std::unordered_map<record_id, padded_string>& texts) const {
    if (parts_.classes == no_record || records_->journal().empty())
        return;
    std::vector<std::int64_t> counts(records_->type_names().size(), -1); // -1: none of the type came or went
    for (const record_id id : records_->journal())
        if ((records_->kind(id) == record_kind::entity || records_->kind(id) == record_kind::object) &&
            is_saved(id) != (id < in_file_))
            counts[records_->type(id)] = 0;
    for (record_id id = 0; id < records_->size(); ++id)
        if (std::int64_t& count = counts[records_->type(id)]; count >= 0 && is_saved(id))
            ++count;
    const std::uint32_t known = records_->type_names().size();
    for (record_id id = records_->next(parts_.classes); records_->type(id) == type_class;
         id = records_->next(id)) {
        group_list groups(records_->text(id));
        const std::string_view name = trimmed(groups.text({"*"}, 1).value_or(""));
        std::uint32_t type = 0;
        while (type < known && records_->type_names()[type] != name)
            ++type;
        constexpr int count_code = 91;
        if (type == known || counts[type] < 0 || groups.find({"*"}, count_code) == group_list::npos)
            continue;
        groups.set_integer({"*"}, count_code, counts[type]);
        if (groups.changed())
            texts.emplace(id, groups.write(style_));
    }
}

bool drawing::write(const std::function<bool(std::string_view)>& put) const {
    std::unordered_map<record_id, padded_string> instead; // texts that are settled only now
    if (std::string header = header_with_seed(); !header.empty())
        instead.emplace(parts_.header, std::move(header));
    count_classes(instead);
    const auto give = [&](std::string_view bytes) {
        return bytes.empty() || (form_ == line_form::feeds ? put(bytes) : put(exchanged(bytes)));
    };
    // What stands before the first record, a byte-order mark or that of binary files, is not in the table.
    // Neighbours that lie side by side are given as one.
    std::string_view run =
        binary_ != nullptr
            ? binary_->mark()
            : text_.substr(0, static_cast<std::size_t>(records_->text(0).data() - text_.data()));
    for (record_id id = 0; id != no_record; id = records_->next(id)) {
        if (!is_saved(id))
            continue;
        const auto settled = instead.empty() ? instead.end() : instead.find(id);
        const padded_text text =
            settled != instead.end() ? settled->second.view() : records_->text_to_save(id);
        std::string_view bytes = text;
        if (binary_ != nullptr) {
            const std::size_t record = id < in_binary_.size() ? in_binary_[id] : binary_form::npos;
            if (record == binary_form::npos || !same_place(bytes, binary_->record_text(record))) {
                if (!give(run) || !give(binary_->bytes_of(text, record)))
                    return false;
                run = {};
                continue;
            }
            bytes = binary_->record_bytes(record);
        }
        if (run.data() + run.size() == bytes.data()) {
            run = {run.data(), run.size() + bytes.size()};
            continue;
        }
        if (!give(run))
            return false;
        run = bytes;
    }
    return give(run);
}

base::result<void> drawing::write_file(const std::filesystem::path& file,
                                       const std::filesystem::path& backup) const {
    auto target = sys::atomic_file::create(file);
    if (!target)
        return target.why();
    base::result<void> written;
    write([&](std::string_view piece) {
        written = target->write(piece);
        return static_cast<bool>(written);
    });
    if (!written)
        return written;
    return target->commit(backup);
}

} // namespace dxf
