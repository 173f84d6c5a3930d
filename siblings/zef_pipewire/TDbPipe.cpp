#include "siblings/zef_pipewire/TDbPipe.h"

#include "dbobjptr.h"
#include "dbproxy.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"
#include "siblings/zef_pipewire/TDxfFields.h"

#include <algorithm>
#include <cmath>

namespace {

// Whether another pipe than this one ends in the joint.
bool IsUsed(const TDbPipeNode& node, AcDbObjectId pipe) {
    const AcDbObjectIdArray& pipes = node.GetPipes();
    for (int i = 0; i < pipes.length(); ++i)
        if (pipes[i] != pipe && pipes[i].isValid() && !pipes[i].isErased())
            return true;
    return false;
}

void EraseNode(AcDbObjectId id, AcDbObjectId pipe, bool erasing) {
    const AcDbObjectPointer<TDbPipeNode> node(id, AcDb::kForWrite, !erasing);
    if (node.openStatus() != Acad::eOk || node->IsShown() || node->isErased() == erasing)
        return;
    if (!erasing || !IsUsed(*node.object(), pipe))
        node->erase(erasing);
}

} // namespace

ACRX_DXF_DEFINE_MEMBERS(TDbPipe, TDbPipePrototype, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        AcDbProxyEntity::kAllAllowedBits, ZEF_PIPE, "ZEF_PIPEWIRE|pipe entities")

TDbPipe::~TDbPipe() = default;

AcGePoint3d TDbPipe::GetStartPoint() const {
    assertReadEnabled();
    return m_start;
}

AcGePoint3d TDbPipe::GetEndPoint() const {
    assertReadEnabled();
    return m_end;
}

void TDbPipe::SetEnds(const AcGePoint3d& start, const AcGePoint3d& end) {
    assertWriteEnabled();
    m_start = start;
    m_end = end;
}

double TDbPipe::GetLength() const {
    assertReadEnabled();
    return m_start.distanceTo(m_end);
}

bool TDbPipe::IsVertical() const {
    assertReadEnabled();
    constexpr double nearBy = 0.1;
    return std::fabs(m_end.x - m_start.x) < nearBy && std::fabs(m_end.y - m_start.y) < nearBy;
}

AcDbObjectId TDbPipe::GetStartNode() const {
    assertReadEnabled();
    return m_startNode;
}

AcDbObjectId TDbPipe::GetEndNode() const {
    assertReadEnabled();
    return m_endNode;
}

void TDbPipe::SetNodes(AcDbObjectId start, AcDbObjectId end) {
    assertWriteEnabled();
    m_startNode = start;
    m_endNode = end;
}

const AcDbObjectIdArray& TDbPipe::GetPassingPipes() const {
    assertReadEnabled();
    return m_passingPipes;
}

void TDbPipe::SetPassingPipes(const AcDbObjectIdArray& pipes) {
    assertWriteEnabled();
    m_passingPipes = pipes;
}

const TPipeValues& TDbPipe::GetValues() const {
    assertReadEnabled();
    return m_values;
}

TPipeValues& TDbPipe::ChangeValues() {
    assertWriteEnabled();
    return m_values;
}

double TDbPipe::GetOuterDn() const {
    assertReadEnabled();
    return m_outerDn;
}

void TDbPipe::SetOuterDn(double outer) {
    assertWriteEnabled();
    m_outerDn = outer;
}

AcDbObjectId TDbPipe::GetArrowLayerId() const {
    assertReadEnabled();
    return m_arrowLayer;
}

void TDbPipe::SetArrowLayerId(AcDbObjectId layer) {
    assertWriteEnabled();
    m_arrowLayer = layer;
}

double TDbPipe::GetOldDimType() const {
    return GetValues().m_oldDimType;
}

bool TDbPipe::GetField(LPCTSTR name, double& value) const {
    assertReadEnabled();
    const auto found = std::ranges::find(m_fieldNames, CString(name));
    if (found == m_fieldNames.end())
        return false;
    value = m_fieldValues[static_cast<std::size_t>(found - m_fieldNames.begin())];
    return true;
}

void TDbPipe::SetField(LPCTSTR name, double value) {
    assertWriteEnabled();
    const auto found = std::ranges::find(m_fieldNames, CString(name));
    if (found != m_fieldNames.end()) {
        m_fieldValues[static_cast<std::size_t>(found - m_fieldNames.begin())] = value;
        return;
    }
    m_fieldNames.emplace_back(name);
    m_fieldValues.push_back(value);
}

TDxfFields TDbPipe::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbPipe",
            version,
            {{10, &m_start},
             {11, &m_end},
             {40, &m_values.m_dn},
             {41, &m_outerDn},
             {71, &m_values.m_material},
             {42, &m_values.m_lineWidth},
             {43, &m_values.m_vPipeRadius},
             {44, &m_values.m_vPipeSecond},
             {72, &m_values.m_flow},
             {45, &m_values.m_labelHeight},
             {1, &m_values.m_labelPrefix},
             {2, &m_values.m_labelFormat},
             {47, &m_values.m_thickness},
             {290, &m_values.m_isChanged},
             {291, &m_values.m_isOldLabel},
             {46, &m_values.m_oldDimType},
             {330, &m_startNode},
             {331, &m_endNode},
             {332, &m_passingPipes},
             {340, &m_values.m_labelLayer},
             {341, &m_arrowLayer},
             {342, &m_values.m_labelStyle},
             {300, &m_fieldNames},
             {140, &m_fieldValues},
             {90, &m_dimElements},
             {73, &m_elementsInLine},
             {91, &m_styledElements},
             {301, &m_prefixes},
             {302, &m_suffixes},
             {92, &m_precisions},
             {93, &m_keepZeros}}};
}

Acad::ErrorStatus TDbPipe::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = TDbPipePrototype::dxfInFields(filer);
    if (status == Acad::eOk)
        status = Fields().Read(filer);
    CutToShortest(m_fieldNames, m_fieldValues);
    CutToShortest(m_styledElements, m_prefixes, m_suffixes, m_precisions, m_keepZeros);
    return status;
}

Acad::ErrorStatus TDbPipe::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = TDbPipePrototype::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbPipe*>(this)->Fields().Write(filer) : status;
}

Acad::ErrorStatus TDbPipe::subTransformBy(const AcGeMatrix3d& matrix) {
    if (!matrix.isUniScaledOrtho())
        return Acad::eCannotScaleNonUniformly;
    SetEnds(matrix * m_start, matrix * m_end);
    return Acad::eOk;
}

Acad::ErrorStatus TDbPipe::subErase(bool erasing) {
    const Acad::ErrorStatus status = TDbPipePrototype::subErase(erasing);
    if (status == Acad::eOk)
        for (const AcDbObjectId node : {m_startNode, m_endNode})
            EraseNode(node, objectId(), erasing);
    return status;
}
