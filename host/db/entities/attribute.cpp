#include "base/number_text.h"
#include "dbents.h"
#include "host/db/core/blocks.h"
#include "host/db/core/fields.h"
#include "host/db/core/first_groups.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/entities/mtext.h"
#include "host/db/entities/text.h"
#include "host/dxf/record_header.h"

namespace {

// Bits of group 70.
constexpr int invisible_bit = 1;
constexpr int constant_bit = 2;
constexpr int verify_bit = 4;
constexpr int preset_bit = 8;

Acad::ErrorStatus set_tag(AcDbText& text, const dxf::group_place& where, const ACHAR* tag) {
    text.assertWriteEnabled();
    const std::wstring_view wanted = tag != nullptr ? tag : L"";
    if (wanted.empty() || wanted.find_first_of(L" \t\r\n") != wanted.npos)
        return Acad::eInvalidInput;
    if (text.imp().decode(text.imp().groups().text(where, 2).value_or("")) != wanted)
        text.imp().edit().set_text(where, 2, text.imp().encode(wanted));
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

ENTITY_CLASS(AcDbAttributeDefinition, AcDbText, ATTDEF, db::text_place, db::definition_place)

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

FIELD_GETTER(AcDbAttributeDefinition, prompt, db::definition_place, 3)

Acad::ErrorStatus AcDbAttributeDefinition::setPrompt(const ACHAR* prompt) {
    assertWriteEnabled();
    const std::wstring wanted = prompt != nullptr ? prompt : L"";
    if (imp().decode(imp().groups().text(db::definition_place, 3).value_or("")) != wanted)
        imp().edit().set_text(db::definition_place, 3, imp().encode(wanted));
    return Acad::eOk;
}

FIELD_GETTER(AcDbAttributeDefinition, tag, db::definition_place, 2)

Acad::ErrorStatus AcDbAttributeDefinition::setTag(const ACHAR* tag) {
    return set_tag(*this, db::definition_place, tag);
}

BIT_MEMBERS(AcDbAttributeDefinition, isInvisible, setInvisible, db::definition_place, 70, invisible_bit)
BIT_MEMBERS(AcDbAttributeDefinition, isConstant, setConstant, db::definition_place, 70, constant_bit)
BIT_MEMBERS(AcDbAttributeDefinition, isVerifiable, setVerifiable, db::definition_place, 70, verify_bit)
BIT_MEMBERS(AcDbAttributeDefinition, isPreset, setPreset, db::definition_place, 70, preset_bit)
FIELD_MEMBERS(AcDbAttributeDefinition, fieldLength, setFieldLength, db::definition_place, 73)

bool AcDbAttributeDefinition::lockPositionInBlock() const {
    return is_locked(*this, db::definition_place);
}

Acad::ErrorStatus AcDbAttributeDefinition::setLockPositionInBlock(bool locked) {
    return set_locked(*this, db::definition_place, locked);
}

VALUE_GETTER(AcDbAttributeDefinition, isMTextAttributeDefinition, db::embedded_mtext(imp()) != nullptr)

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
                      : imp().decode(dxf::trimmed(imp().groups().text(db::definition_place, 2).value_or(""))),
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

ENTITY_CLASS(AcDbAttribute, AcDbText, ATTRIB, db::text_place, db::attribute_place)

AcDbAttribute::AcDbAttribute(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag,
                             AcDbObjectId style)
    : AcDbAttribute() {
    setPosition(position);
    setTextString(text);
    setTag(tag);
    if (!style.isNull())
        setTextStyle(style);
}

FIELD_GETTER(AcDbAttribute, tag, db::attribute_place, 2)

Acad::ErrorStatus AcDbAttribute::setTag(const ACHAR* tag) {
    return set_tag(*this, db::attribute_place, tag);
}

BIT_MEMBERS(AcDbAttribute, isInvisible, setInvisible, db::attribute_place, 70, invisible_bit)
BIT_GETTER(AcDbAttribute, isConstant, db::attribute_place, 70, constant_bit)
BIT_GETTER(AcDbAttribute, isVerifiable, db::attribute_place, 70, verify_bit)
BIT_GETTER(AcDbAttribute, isPreset, db::attribute_place, 70, preset_bit)
FIELD_MEMBERS(AcDbAttribute, fieldLength, setFieldLength, db::attribute_place, 73)

bool AcDbAttribute::lockPositionInBlock() const {
    return is_locked(*this, db::attribute_place);
}

Acad::ErrorStatus AcDbAttribute::setLockPositionInBlock(bool locked) {
    return set_locked(*this, db::attribute_place, locked);
}

Acad::ErrorStatus AcDbAttribute::setAttributeFromBlock(const AcDbAttributeDefinition* definition,
                                                       const AcGeMatrix3d& blockTransform) {
    assertWriteEnabled();
    if (definition == nullptr)
        return Acad::eNullObjectPointer;
    setPropertiesFrom(definition, false);
    // What stands in the groups of the text is the same for both.
    const db::first_groups from(definition->imp().groups());
    for (const int code : db::text_place.order) {
        if (!from.has(code))
            imp().edit().remove(db::text_place, code);
        else if (code == 1 || code == 7)
            imp().edit().set_text(db::text_place, code,
                                  imp().encode(definition->imp().decode(from.text(code))));
        else
            imp().edit().set_text(db::text_place, code, dxf::trimmed(from.text(code)));
    }
    imp().edit().set_text(db::attribute_place, 2, imp().encode(definition->imp().decode(from.text(2))));
    for (const int code : {70, 73, 74})
        db::write_integer(imp(), db::attribute_place, code, from.integer(code));
    set_locked(*this, db::attribute_place, definition->lockPositionInBlock());
    return transformBy(blockTransform);
}

VALUE_GETTER(AcDbAttribute, isMTextAttribute, db::embedded_mtext(imp()) != nullptr)

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
