#include "module/layertools/EntitySubstitutes.h"

#include "dbelipse.h"
#include "dbents.h"
#include "dbmtext.h"
#include "module/layertools/RecordCopies.h"

namespace {

// A circle or an arc as the ellipse that it is when it is scaled unevenly.
std::unique_ptr<AcDbEntity> AsEllipse(const AcDbEntity& entity) {
    std::unique_ptr<AcDbEllipse> ellipse;
    const auto axis = [](const AcGeVector3d& normal) {
        return AcGeMatrix3d::planeToWorld(normal) * AcGeVector3d::kXAxis;
    };
    if (const auto* circle = AcDbCircle::cast(&entity))
        ellipse = std::make_unique<AcDbEllipse>(circle->center(), circle->normal(),
                                                axis(circle->normal()) * circle->radius(), 1.0);
    else if (const auto* arc = AcDbArc::cast(&entity))
        ellipse =
            std::make_unique<AcDbEllipse>(arc->center(), arc->normal(), axis(arc->normal()) * arc->radius(),
                                          1.0, arc->startAngle(), arc->startAngle() + arc->totalAngle());
    if (ellipse != nullptr)
        ellipse->setPropertiesFrom(&entity);
    return ellipse;
}

} // namespace

std::unique_ptr<AcDbEntity> AsText(const AcDbText& source) {
    const auto* const attribute = AcDbAttribute::cast(&source);
    const auto* const definition = AcDbAttributeDefinition::cast(&source);
    std::unique_ptr<AcDbMText> several(attribute != nullptr    ? attribute->getMTextAttribute()
                                       : definition != nullptr ? definition->getMTextAttributeDefinition()
                                                               : nullptr);
    const AcDbObjectId style = RecordCopies::TextStyle(source.textStyle());
    std::unique_ptr<AcDbEntity> made;
    if (several != nullptr) {
        several->setTextStyle(style);
        made = std::move(several);
    } else {
        auto text = std::make_unique<AcDbText>(source.position(), source.textStringConst(), style,
                                               source.height(), source.rotation());
        text->setNormal(source.normal());
        text->setPosition(source.position());
        text->setRotation(source.rotation());
        text->setWidthFactor(source.widthFactor());
        text->setOblique(source.oblique());
        text->setThickness(source.thickness());
        text->mirrorInX(source.isMirroredInX());
        text->mirrorInY(source.isMirroredInY());
        if (!source.isDefaultAlignment()) {
            text->setHorizontalMode(source.horizontalMode());
            text->setVerticalMode(source.verticalMode());
            text->setAlignmentPoint(source.alignmentPoint());
        }
        made = std::move(text);
    }
    made->setColor(source.color());
    made->setLineWeight(source.lineWeight());
    made->setVisibility(source.visibility());
    return made;
}

std::vector<std::unique_ptr<AcDbEntity>> Substitutes(const AcDbEntity& entity, const AcGeMatrix3d& placing) {
    std::vector<std::unique_ptr<AcDbEntity>> made;
    if (auto ellipse = AsEllipse(entity)) {
        made.push_back(std::move(ellipse));
    } else {
        AcDbVoidPtrArray parts;
        if (entity.explode(parts) == Acad::eOk)
            for (void* const part : parts)
                made.emplace_back(static_cast<AcDbEntity*>(part));
        for (auto& part : made)
            if (auto ellipse2 = AsEllipse(*part))
                part = std::move(ellipse2);
    }
    for (const auto& part : made)
        if (part->transformBy(placing) != Acad::eOk)
            return {};
    return made;
}
