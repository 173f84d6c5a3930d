// make_pipes DRAWING OUT WORDS: puts pipe entities of all kinds into a drawing's model space, with the words
// as system and text, and tells what each of them draws, figure by figure: handle, kind, numbers or text.
// Tabulators stand between them.
#include "base/utf.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/rx/applications.h"
#include "host/view/tracer.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"
#include "siblings/zef_pipewire/TDbPipeAttachment.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"
#include "siblings/zef_pipewire/TDbText.h"
#include "siblings/zef_pipewire/TDbVerticalSection.h"
#include "sys/folders.h"

#include <cstdio>

namespace {

class telling final : public gi::canvas {
public:
    explicit telling(std::wstring handle) : handle_(std::move(handle)) {}

    void lines(std::span<const AcGePoint3d> points) override { tell("lines", points); }
    void area(std::span<const AcGePoint3d> points) override { tell("area", points); }
    void curve(const gi::arc& arc) override {
        begin(arc.is_whole() ? "circle" : "arc");
        tell(arc.center);
        std::printf("\t%.9g\n", arc.u.length());
    }
    bool text(const gi::text_line& line) override {
        begin("text");
        tell(line.position);
        std::printf("\t%.9g\t%s\n", line.y.length(), base::narrow(line.text).c_str());
        return true;
    }

private:
    void begin(const char* kind) const { std::printf("%s\t%s", base::narrow(handle_).c_str(), kind); }
    static void tell(const AcGePoint3d& point) {
        std::printf("\t%.9g\t%.9g\t%.9g", point.x, point.y, point.z);
    }
    void tell(const char* kind, std::span<const AcGePoint3d> points) const {
        begin(kind);
        for (const AcGePoint3d& point : points)
            tell(point);
        std::printf("\n");
    }

    std::wstring handle_;
};

void append(AcDbDatabase& database, AcDbEntity* entity) {
    AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, &database, AcDb::kForWrite);
    AcDbObjectId id;
    if (model->appendAcDbEntity(id, entity) != Acad::eOk)
        std::fprintf(stderr, "make_pipes: not appended\n");
    ACHAR handle[AcDbHandle::kStrSiz] = L"-";
    id.handle().getIntoAsciiBuffer(handle);
    telling canvas(handle);
    gi::tracer(canvas).draw(*entity);
    entity->close();
}

TDbPipe* pipe_between(const AcGePoint3d& start, const AcGePoint3d& end) {
    auto* const pipe = new TDbPipe;
    pipe->SetEnds(start, end);
    pipe->ChangeValues().m_dn = 100;
    return pipe;
}

void append_all(AcDbDatabase& database, const std::wstring& words) {
    TDbPipe* pipe = pipe_between({0, 0, 100}, {3000, 4000, 200});
    pipe->InitLabelLocation(-150);
    pipe->SetPipeSystemName(words.c_str());
    pipe->SetDimElements({kDimDn, kDimSystem, kDimLength}, 2);
    pipe->ChangeValues().m_flow = kFlowToEnd;
    append(database, pipe);
    for (const double second : {0.0, 0.25, -1.0, -3.0}) {
        pipe = pipe_between({500, second * 1000, 0}, {500, second * 1000, 3000});
        pipe->ChangeValues().m_vPipeSecond = second;
        append(database, pipe);
    }
    auto* const walls = new TDbDoubleLinePipe;
    walls->SetEnds({0, 0, 0}, {1000, 500, 0});
    walls->SetDns(100, 80);
    walls->SetFlange(180, 20);
    append(database, walls);
    for (const int kind : {kGateValve, kCheckValve, kWaterMeter, kReducer}) {
        auto* const symbol = new TDbPipeAttachment;
        symbol->SetPosition({100.0 * kind, 50, 5});
        symbol->SetRotation(0.3);
        symbol->SetKind(kind);
        append(database, symbol);
    }
    append(database, new TDbPipeNode);
    auto* const text = new TDbText;
    text->setTextString(words.c_str());
    text->setHeight(350);
    text->setRotation(0.5);
    append(database, text);
    auto* const section = new TDbVerticalSection;
    section->AddStation({0, 3000, 1500});
    section->AddStation({9000, 3100, 1400});
    section->AddCrossing({L"消防", 4000, 1800, 100});
    append(database, section);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: make_pipes DRAWING OUT WORDS\n");
        return 2;
    }
    AcDbDatabase database(false, true);
    if (!rx::applications::instance().load(L"zef_pipewire"))
        return 7;
    if (const auto read = database.imp().read(sys::from_path(argv[1])); !read) {
        std::fprintf(stderr, "make_pipes: %s\n", base::narrow(read.error()).c_str());
        return 3;
    }
    append_all(database, base::widen(argv[3]));
    return database.dxfOut(sys::from_path(argv[2]).c_str()) == Acad::eOk ? 0 : 6;
}
