#include "module/layertools/RecordCopies.h"

#include "acutmem.h"
#include "afx.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <memory>

namespace {

AcDbDatabase& Drawing() {
    return *acdbHostApplicationServices()->workingDatabase();
}

bool FillLinetype(const AcDbLinetypeTableRecord& from, AcDbLinetypeTableRecord& to) {
    ACHAR* comments = from.comments();
    to.setComments(comments);
    acutDelString(comments);
    to.setNumDashes(from.numDashes());
    to.setPatternLength(from.patternLength());
    for (int dash = 0; dash < from.numDashes(); ++dash) {
        ACHAR* text = nullptr;
        const bool hasText = from.textAt(dash, text) == Acad::eOk;
        acutDelString(text);
        if (hasText || from.shapeNumberAt(dash) != 0)
            return false;
        to.setDashLengthAt(dash, from.dashLengthAt(dash));
    }
    return true;
}

bool FillStyle(const AcDbTextStyleTableRecord& from, AcDbTextStyleTableRecord& to) {
    AcString file;
    AcString bigFont;
    from.fileName(file);
    from.bigFontFileName(bigFont);
    to.setFileName(file);
    to.setBigFontFileName(bigFont);
    to.setTextSize(from.textSize());
    to.setXScale(from.xScale());
    to.setObliquingAngle(from.obliquingAngle());
    to.setFlagBits(from.flagBits());
    AcString typeface;
    bool isBold = false;
    bool isItalic = false;
    Charset charset{};
    Autodesk::AutoCAD::PAL::FontUtils::FontPitch pitch{};
    Autodesk::AutoCAD::PAL::FontUtils::FontFamily family{};
    if (from.font(typeface, isBold, isItalic, charset, pitch, family) == Acad::eOk && !typeface.isEmpty())
        to.setFont(typeface, isBold, isItalic, charset, pitch, family);
    return true;
}

template<class Record, class Fill>
AcDbObjectId Find(AcDbObjectId source, AcDbObjectId tableId, Fill fill) {
    const AcDbObjectPointer<Record> from(source, AcDb::kForRead);
    AcString given;
    if (from.openStatus() != Acad::eOk || from->getName(given) != Acad::eOk)
        return {};
    CString name = given.kACharPtr();
    name = name.Mid(name.ReverseFind(L'|') + 1);
    AcDbObjectPointer<typename Record::TableType> table(tableId, AcDb::kForRead);
    AcDbObjectId found;
    if (table.openStatus() != Acad::eOk || table->getAt(name, found) == Acad::eOk ||
        table->upgradeOpen() != Acad::eOk)
        return found;
    auto made = std::make_unique<Record>();
    made->setName(name);
    if (fill(*from.object(), *made) && table->add(found, made.get()) == Acad::eOk)
        made.release()->close(); // the table's now
    return found;
}

} // namespace

AcDbObjectId RecordCopies::Linetype(AcDbObjectId source) {
    return Find<AcDbLinetypeTableRecord>(source, Drawing().linetypeTableId(), FillLinetype);
}

AcDbObjectId RecordCopies::TextStyle(AcDbObjectId source) {
    return Find<AcDbTextStyleTableRecord>(source, Drawing().textStyleTableId(), FillStyle);
}
