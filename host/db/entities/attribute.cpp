#include "acutmem.h"
#include "base/number_text.h"
#include "dbents.h"
#include "host/db/core/blocks.h"
#include "host/db/core/first_groups.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/entities/mtext.h"
#include "host/db/entities/text.h"
#include "host/dxf/record_header.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbAttributeDefinition, AcDbText, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        ATTDEF, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbAttribute, AcDbText, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, ATTRIB,
                        "ObjectDBX Classes")

namespace {

constexpr int definition_order[] = {3, 2, 70, 73, 74};
constexpr dxf::group_place definition_place{"AcDbAttributeDefinition", definition_order};
constexpr int attribute_order[] = {2, 70, 73, 74};
constexpr dxf::group_place attribute_place{"AcDbAttribute", attribute_order};

// Bits of group 70.
constexpr int invisible_bit = 1;
constexpr int constant_bit = 2;
constexpr int verify_bit = 4;
constexpr int preset_bit = 8;

bool flag(const AcDbText& text, const dxf::group_place& where, int bit) {
    text.assertReadEnabled();
    return (db::read_integer(text.imp(), where, 70) & bit) != 0;
}

Acad::ErrorStatus set_flag(AcDbText& text, const dxf::group_place& where, int bit, bool on) {
    text.assertWriteEnabled();
    const int flags = db::read_integer(text.imp(), where, 70);
    db::write_integer(text.imp(), where, 70, on ? flags | bit : flags & ~bit);
    return Acad::eOk;
}

ACHAR* text_of(const AcDbText& text, const dxf::group_place& where, int code) {
    text.assertReadEnabled();
    ACHAR* copy = nullptr;
    acutNewString(text.imp().decode(text.imp().groups().text(where, code).value_or("")).c_str(), copy);
    return copy;
}

Acad::ErrorStatus set_tag(AcDbText& text, const dxf::group_place& where, const ACHAR* tag) {
    text.assertWriteEnabled();
    const std::wstring_view wanted = tag != nullptr ? tag : L"";
    if (wanted.empty() || wanted.find_first_of(L" \t\r\n") != wanted.npos)
        return Acad::eInvalidInput;
    if (text.imp().decode(text.imp().groups().text(where, 2).value_or("")) != wanted)
        text.imp().edit().set_text(where, 2, text.imp().encode(wanted));
    return Acad::eOk;
}

Acad::ErrorStatus set_field_length(AcDbText& text, const dxf::group_place& where, Adesk::UInt16 length) {
    text.assertWriteEnabled();
    db::write_integer(text.imp(), where, 73, length);
    return Acad::eOk;
}

// The flag stands behind the tag, in a group whose code another one in front of the tag has too.
constexpr int lock_code = 280;

struct lock_place {
    std::size_t at = dxf::group_list::npos;  // npos: there is none
    std::size_t end = dxf::group_list::npos; // behind the last group of the tag's section
};

lock_place find_lock(const dxf::group_list& groups, const dxf::group_place& where) {
    lock_place found;
    const auto& all = groups.groups();
    std::size_t i = groups.find(where, 2);
    if (i == dxf::group_list::npos)
        return found;
    for (; i < all.size() && all[i].code != 100 && all[i].code != 101 && all[i].code < 1000; ++i)
        if (all[i].code == lock_code)
            found.at = i;
    found.end = i;
    return found;
}

bool is_locked(const AcDbText& text, const dxf::group_place& where) {
    text.assertReadEnabled();
    const dxf::group_list& groups = text.imp().groups();
    const lock_place lock = find_lock(groups, where);
    return lock.at != dxf::group_list::npos &&
           base::parse_integer(groups.groups()[lock.at].value).value_or(0) != 0;
}

Acad::ErrorStatus set_locked(AcDbText& text, const dxf::group_place& where, bool locked) {
    text.assertWriteEnabled();
    if (is_locked(text, where) == locked)
        return Acad::eOk;
    const lock_place lock = find_lock(text.imp().groups(), where);
    if (lock.end == dxf::group_list::npos)
        return Acad::eInvalidInput; // without a tag it is none
    const dxf::group_list::fresh_group fresh[] = {{lock_code, locked ? "1" : "0"}};
    const bool there = lock.at != dxf::group_list::npos;
    text.imp().edit().splice(there ? lock.at : lock.end, there ? lock.at + 1 : lock.end, fresh);
    return Acad::eOk;
}

// Whether the drawing's display of attributes hides one.
bool is_hidden(const AcDbText& text, bool invisible) {
    enum { none, normal, all };
    int mode = normal;
    if (text.imp().database != nullptr)
        if (const auto value = text.imp().database->drawing().header_value("$ATTMODE"))
            mode = static_cast<int>(base::parse_integer(*value).value_or(normal));
    return mode == none || (invisible && mode != all);
}

// One of several lines keeps what it shows in a paragraph text.
bool draw_lines(const AcDbText& text, AcGiWorldDraw& draw) {
    const std::unique_ptr<AcDbMText> lines = db::embedded_mtext(text.imp());
    if (lines == nullptr)
        return false;
    db::draw_mtext(lines->imp(), text.imp().database, draw);
    return true;
}

} // namespace

// ---- definitions

AcDbAttributeDefinition::AcDbAttributeDefinition() {
    imp().begin_as(
        "0\nATTDEF\n100\nAcDbEntity\n8\n0\n100\nAcDbText\n10\n0.0\n20\n0.0\n30\n0.0\n40\n1.0\n1\n\n"
        "100\nAcDbAttributeDefinition\n3\n\n2\n\n70\n0\n");
}

AcDbAttributeDefinition::AcDbAttributeDefinition(const AcGePoint3d& position, const ACHAR* text,
                                                 const ACHAR* tag, const ACHAR* prompt, AcDbObjectId style)
    : AcDbAttributeDefinition() {
    setPosition(position);
    setTextString(text);
    setTag(tag);
    setPrompt(prompt);
    if (!style.isNull())
        setTextStyle(style);
}

AcDbAttributeDefinition::~AcDbAttributeDefinition() = default;

ACHAR* AcDbAttributeDefinition::prompt() const {
    return text_of(*this, definition_place, 3);
}

Acad::ErrorStatus AcDbAttributeDefinition::setPrompt(const ACHAR* prompt) {
    assertWriteEnabled();
    const std::wstring wanted = prompt != nullptr ? prompt : L"";
    if (imp().decode(imp().groups().text(definition_place, 3).value_or("")) != wanted)
        imp().edit().set_text(definition_place, 3, imp().encode(wanted));
    return Acad::eOk;
}

ACHAR* AcDbAttributeDefinition::tag() const {
    return text_of(*this, definition_place, 2);
}

Acad::ErrorStatus AcDbAttributeDefinition::setTag(const ACHAR* tag) {
    return set_tag(*this, definition_place, tag);
}

Adesk::Boolean AcDbAttributeDefinition::isInvisible() const {
    return flag(*this, definition_place, invisible_bit);
}

Acad::ErrorStatus AcDbAttributeDefinition::setInvisible(Adesk::Boolean invisible) {
    return set_flag(*this, definition_place, invisible_bit, invisible);
}

Adesk::Boolean AcDbAttributeDefinition::isConstant() const {
    return flag(*this, definition_place, constant_bit);
}

Acad::ErrorStatus AcDbAttributeDefinition::setConstant(Adesk::Boolean constant) {
    return set_flag(*this, definition_place, constant_bit, constant);
}

Adesk::Boolean AcDbAttributeDefinition::isVerifiable() const {
    return flag(*this, definition_place, verify_bit);
}

Acad::ErrorStatus AcDbAttributeDefinition::setVerifiable(Adesk::Boolean verifiable) {
    return set_flag(*this, definition_place, verify_bit, verifiable);
}

Adesk::Boolean AcDbAttributeDefinition::isPreset() const {
    return flag(*this, definition_place, preset_bit);
}

Acad::ErrorStatus AcDbAttributeDefinition::setPreset(Adesk::Boolean preset) {
    return set_flag(*this, definition_place, preset_bit, preset);
}

Adesk::UInt16 AcDbAttributeDefinition::fieldLength() const {
    assertReadEnabled();
    return static_cast<Adesk::UInt16>(db::read_integer(imp(), definition_place, 73));
}

Acad::ErrorStatus AcDbAttributeDefinition::setFieldLength(Adesk::UInt16 length) {
    return set_field_length(*this, definition_place, length);
}

bool AcDbAttributeDefinition::lockPositionInBlock() const {
    return is_locked(*this, definition_place);
}

Acad::ErrorStatus AcDbAttributeDefinition::setLockPositionInBlock(bool locked) {
    return set_locked(*this, definition_place, locked);
}

bool AcDbAttributeDefinition::isMTextAttributeDefinition() const {
    assertReadEnabled();
    return db::embedded_mtext(imp()) != nullptr;
}

AcDbMText* AcDbAttributeDefinition::getMTextAttributeDefinition() const {
    assertReadEnabled();
    return db::embedded_mtext(imp()).release(); // the caller's
}

Adesk::Boolean AcDbAttributeDefinition::subWorldDraw(AcGiWorldDraw* draw) {
    const bool shows_text =
        isConstant() && imp().database != nullptr && !imp().database->blocks().in_space(imp().record);
    if (shows_text && draw_lines(*this, *draw))
        return true;
    db::draw_text(imp(),
                  shows_text
                      ? std::wstring(textStringConst())
                      : imp().decode(dxf::trimmed(imp().groups().text(definition_place, 2).value_or(""))),
                  *draw);
    return true;
}

Adesk::UInt32 AcDbAttributeDefinition::subSetAttributes(AcGiDrawableTraits* traits) {
    const bool in_block = imp().database != nullptr && !imp().database->blocks().in_space(imp().record);
    if (in_block && isConstant() && is_hidden(*this, isInvisible()))
        return kDrawableIsInvisible;
    return AcDbText::subSetAttributes(traits);
}

// ---- attributes

AcDbAttribute::AcDbAttribute() {
    imp().begin_as(
        "0\nATTRIB\n100\nAcDbEntity\n8\n0\n100\nAcDbText\n10\n0.0\n20\n0.0\n30\n0.0\n40\n1.0\n1\n\n"
        "100\nAcDbAttribute\n2\n\n70\n0\n");
}

AcDbAttribute::AcDbAttribute(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag,
                             AcDbObjectId style)
    : AcDbAttribute() {
    setPosition(position);
    setTextString(text);
    setTag(tag);
    if (!style.isNull())
        setTextStyle(style);
}

AcDbAttribute::~AcDbAttribute() = default;

ACHAR* AcDbAttribute::tag() const {
    return text_of(*this, attribute_place, 2);
}

Acad::ErrorStatus AcDbAttribute::setTag(const ACHAR* tag) {
    return set_tag(*this, attribute_place, tag);
}

Adesk::Boolean AcDbAttribute::isInvisible() const {
    return flag(*this, attribute_place, invisible_bit);
}

Acad::ErrorStatus AcDbAttribute::setInvisible(Adesk::Boolean invisible) {
    return set_flag(*this, attribute_place, invisible_bit, invisible);
}

Adesk::Boolean AcDbAttribute::isConstant() const {
    return flag(*this, attribute_place, constant_bit);
}

Adesk::Boolean AcDbAttribute::isVerifiable() const {
    return flag(*this, attribute_place, verify_bit);
}

Adesk::Boolean AcDbAttribute::isPreset() const {
    return flag(*this, attribute_place, preset_bit);
}

Adesk::UInt16 AcDbAttribute::fieldLength() const {
    assertReadEnabled();
    return static_cast<Adesk::UInt16>(db::read_integer(imp(), attribute_place, 73));
}

Acad::ErrorStatus AcDbAttribute::setFieldLength(Adesk::UInt16 length) {
    return set_field_length(*this, attribute_place, length);
}

bool AcDbAttribute::lockPositionInBlock() const {
    return is_locked(*this, attribute_place);
}

Acad::ErrorStatus AcDbAttribute::setLockPositionInBlock(bool locked) {
    return set_locked(*this, attribute_place, locked);
}

Acad::ErrorStatus AcDbAttribute::setAttributeFromBlock(const AcDbAttributeDefinition* definition,
                                                       const AcGeMatrix3d& blockTransform) {
    assertWriteEnabled();
    if (definition == nullptr)
        return Acad::eNullObjectPointer;
    setPropertiesFrom(definition, false);
    // What stands in the groups of the text is the same for both.
    static constexpr int copied[] = {39, 10, 20, 30, 40, 1, 50, 41, 51, 7, 71, 72, 11, 21, 31, 210, 220, 230};
    static constexpr dxf::group_place text_place{"AcDbText", copied};
    const db::first_groups from(definition->imp().groups());
    for (const int code : copied) {
        if (!from.has(code))
            imp().edit().remove(text_place, code);
        else if (code == 1 || code == 7)
            imp().edit().set_text(text_place, code, imp().encode(definition->imp().decode(from.text(code))));
        else
            imp().edit().set_text(text_place, code, dxf::trimmed(from.text(code)));
    }
    imp().edit().set_text(attribute_place, 2, imp().encode(definition->imp().decode(from.text(2))));
    for (const int code : {70, 73, 74})
        db::write_integer(imp(), attribute_place, code, from.integer(code));
    set_locked(*this, attribute_place, definition->lockPositionInBlock());
    return transformBy(blockTransform);
}

bool AcDbAttribute::isMTextAttribute() const {
    assertReadEnabled();
    return db::embedded_mtext(imp()) != nullptr;
}

AcDbMText* AcDbAttribute::getMTextAttribute() const {
    assertReadEnabled();
    return db::embedded_mtext(imp()).release(); // the caller's
}

Adesk::Boolean AcDbAttribute::subWorldDraw(AcGiWorldDraw* draw) {
    return draw_lines(*this, *draw) || AcDbText::subWorldDraw(draw);
}

Adesk::UInt32 AcDbAttribute::subSetAttributes(AcGiDrawableTraits* traits) {
    return is_hidden(*this, isInvisible()) ? static_cast<Adesk::UInt32>(kDrawableIsInvisible)
                                           : AcDbText::subSetAttributes(traits);
}
