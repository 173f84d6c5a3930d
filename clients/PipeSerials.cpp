#include "clients/PipeSerials.h"

#include "acdbads.h"
#include "acutmem.h"
#include "dbobjptr.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TDbText.h"
#include "siblings/zef_public/SharedOptions.h"

#include <cmath>
#include <memory>

namespace {

constexpr wchar_t application[] = L"PIPE-SERIAL";
constexpr double usualHeight = 3.5; // of texts, and how far they stand from the pipe, mm on paper
constexpr double gap = 1.0;

CString SerialOf(const TDbPipe& pipe) {
    const std::unique_ptr<resbuf, int (*)(resbuf*)> data(pipe.xData(application), acutRelRb);
    for (const resbuf* one = data.get(); one != nullptr; one = one->rbnext)
        if (one->restype == AcDb::kDxfXdAsciiString)
            return one->resval.rstring;
    return {};
}

bool WriteSerial(TDbPipe& pipe, LPCTSTR serial) {
    acdbRegApp(application);
    const std::unique_ptr<resbuf, int (*)(resbuf*)> data(
        acutBuildList(AcDb::kDxfRegAppName, application, AcDb::kDxfXdAsciiString, serial, 0), acutRelRb);
    return pipe.setXData(data.get()) == Acad::eOk;
}

// Has the text about a pipe that shows its old serial show the new one. False when there is none.
bool ShowSerial(const TDbPipe& pipe, const CString& before, LPCTSTR serial) {
    const AcDbObjectIdArray& texts = pipe.GetAttachments();
    for (int i = 0; i < texts.length() && !before.IsEmpty(); ++i) {
        const AcDbObjectPointer<TDbText> text(texts[i], AcDb::kForWrite);
        if (text.openStatus() == Acad::eOk && text->GetSubject() == pipe.objectId() &&
            before == text->textStringConst())
            return text->setTextString(serial) == Acad::eOk;
    }
    return false;
}

// Where the texts about a pipe stand: the base line of the first one, from where downwards.
struct Place {
    AcGePoint3d m_start;
    double m_angle = 0.0;
    double m_scale = 1.0; // millimetres of the model for one on paper
    AcDb::TextHorzMode m_mode = AcDb::kTextLeft;
};

// Right above a riser; of other pipes on the side where there is no label.
Place PlaceBeside(const TDbPipe& pipe, double height) {
    Place place;
    place.m_scale = DocGetSettings().m_isAbsoluteSize ? 1.0 : pipe.GetPlotScale();
    const AcGePoint3d start = pipe.GetStartPoint();
    if (pipe.IsVertical()) {
        const double away = pipe.GetValues().m_vPipeRadius * pipe.GetPlotScale() + gap * place.m_scale;
        place.m_start = start + AcGeVector3d(away, away, 0.0);
        return place;
    }
    AcGeVector3d along = pipe.GetEndPoint() - start;
    const AcGePoint3d middle = start + along / 2;
    if (along.x < 0.0 || (along.x == 0.0 && along.y < 0.0))
        along = -along;
    place.m_angle = std::atan2(along.y, along.x);
    const double away = pipe.GetLabelDistance() < 0.0 ? gap * place.m_scale : -(gap + height) * place.m_scale;
    place.m_start = middle + AcGeVector3d(-std::sin(place.m_angle), std::cos(place.m_angle), 0.0) * away;
    place.m_mode = AcDb::kTextCenter;
    return place;
}

// A text about a pipe, `down` millimetres on paper below the place.
bool AddText(TDbPipe& pipe, const Place& place, double down, LPCTSTR says, TextStyleEnum use) {
    const AcGeVector3d up(-std::sin(place.m_angle), std::cos(place.m_angle), 0.0);
    const AcGePoint3d at = place.m_start - up * (down * place.m_scale);
    const double height = PipeSystemTool::GetTextStyleHeight(use, usualHeight) * place.m_scale;
    const CString system = pipe.GetPipeSystemName();
    auto text = std::make_unique<TDbText>();
    text->setTextString(says);
    if (const AcDbObjectId style = PipeSystemTool::InitTextStyle(use); !style.isNull())
        text->setTextStyle(style);
    text->setWidthFactor(PipeSystemTool::GetTextStyleScale(use, 1.0));
    text->setHeight(height);
    text->setRotation(place.m_angle);
    text->setPosition(at);
    if (place.m_mode != AcDb::kTextLeft) {
        text->setHorizontalMode(place.m_mode);
        text->setAlignmentPoint(at);
    }
    if (const AcDbObjectId layer = PipeSystemTool::InitLayer(system, L"立管标注", nullptr); !layer.isNull())
        text->setLayer(layer);
    text->SetPipeSystemName(system);
    text->SetSubject(pipe.objectId());
    const AcDbObjectId id = AppendToCurrentSpace(std::move(text));
    if (!id.isNull())
        pipe.AddAttachment(id);
    return !id.isNull();
}

} // namespace

CString SerialOf(AcDbObjectId id) {
    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
    return pipe.openStatus() == Acad::eOk ? SerialOf(*pipe.object()) : CString();
}

bool SetSerial(AcDbObjectId id, LPCTSTR serial, bool withDiameter) {
    const AcDbObjectPointer<TDbPipe> opened(id, AcDb::kForWrite);
    if (opened.openStatus() != Acad::eOk)
        return false;
    TDbPipe& pipe = *opened.object();
    const CString before = SerialOf(pipe);
    if (!WriteSerial(pipe, serial))
        return false;
    if (ShowSerial(pipe, before, serial))
        return true;
    const double height = PipeSystemTool::GetTextStyleHeight(kSerialTextStyle, usualHeight);
    const Place place = PlaceBeside(pipe, height);
    const double down =
        PipeSystemTool::GetTextStyleHeight(kPipeDnTextStyle, usualHeight) + g_dVPipeDimDn2Label;
    return AddText(pipe, place, 0.0, serial, kSerialTextStyle) &&
           (!withDiameter || AddText(pipe, place, down, pipe.GetLabelText(), kPipeDnTextStyle));
}
