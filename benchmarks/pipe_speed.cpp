// pipe_speed make DRAWING OUT COUNT: puts that many pipes of six systems, one of ten a riser, into a
// drawing's model space. pipe_speed update DRAWING STANDARD: opens a drawing and a standard in which layers,
// materials and widths are others than when the pipes were drawn, and has all pipes follow it. pipe_speed
// label DRAWING STANDARD labels them instead, pipe_speed read DRAWING STANDARD only reads them. They print
// the pipes, the seconds that it takes, and by how much memory grew (kB).
#include "base/utf.h"
#include "benchmarks/stop_watch.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/rx/applications.h"
#include "module/annotation/PipeLabels.h"
#include "module/annotation/PipeTexts.h"
#include "module/standard/PipeSystemUpdates.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "sys/folders.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace {

using namespace PipeSystemTool;

constexpr const wchar_t* systems[] = {L"给水", L"热给水", L"消防", L"喷淋", L"污水", L"雨水"};

std::unique_ptr<TDbPipe> MakePipe(int number) {
    constexpr int inRow = 100;
    const double x = number % inRow * 1000.0;
    const double y = number / inRow * 1000.0;
    auto pipe = std::make_unique<TDbPipe>();
    pipe->SetEnds({x, y, 0}, number % 10 == 0 ? AcGePoint3d(x, y, 3000) : AcGePoint3d(x + 900, y + 100, 0));
    pipe->ChangeValues().m_dn = 50;
    const wchar_t* const system = systems[number % static_cast<int>(std::size(systems))];
    SetPipeSystemName(pipe.get(), system);
    UpdateMaterialLineWeight(pipe.get(), true, true, kIndoorMaterial);
    UpdatePipeInfo(pipe.get());
    UpdatePipeLabel(pipe.get());
    UpdateVPipeRadius(pipe.get());
    SetPipeLayer(pipe.get(), system);
    return pipe;
}

int Make(AcDbDatabase& drawing, const wchar_t* out, int count) {
    {
        AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, &drawing, AcDb::kForWrite);
        for (int i = 0; i < count; ++i) {
            AcDbObjectId id;
            std::unique_ptr<TDbPipe> pipe = MakePipe(i);
            if (model->appendAcDbEntity(id, pipe.get()) != Acad::eOk)
                return 1;
            pipe.release()->close();
        }
    }
    return drawing.dxfOut(out) == Acad::eOk ? 0 : 6;
}

// Peak, since memory that was given back and taken again is none that grew.
long PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::atol(line.c_str() + 6);
    return 0;
}

// All that the standard says of a pipe. False for what is none.
bool Update(AcDbObjectId id) {
    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
    if (pipe.openStatus() != Acad::eOk)
        return false;
    UpdateMaterialLineWeight(pipe.object(), true, true, kIndoorMaterial);
    UpdatePipeInfo(pipe.object());
    UpdateVPipeRadius(pipe.object());
    SetPipeLayer(pipe.object(), pipe->GetPipeSystemName());
    return true;
}

// All that a pipe holds, without a change.
bool Read(AcDbObjectId id) {
    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
    return pipe.openStatus() == Acad::eOk && pipe->GetValues().m_dn > 0;
}

bool Label(AcDbObjectId id) {
    constexpr int dn = 65;
    constexpr double height = 3.5;
    KolTool::DoDimPipeDn(TEntitySet({id}), dn, L"外径壁厚2", height, 0, 1);
    return true;
}

int Change(AcDbDatabase& drawing, const wchar_t* standard, bool (*change)(AcDbObjectId)) {
    if (!CStandardManager::Create().Load(standard, false))
        return 3;
    PipeTexts::Load();
    AcDbImpDatabase& imp = drawing.imp();
    const auto records = imp.blocks().entities(imp.blocks().find(ACDB_MODEL_SPACE));
    int pipes = 0;
    const long before = PeakMemory();
    const auto begin = std::chrono::steady_clock::now();
    for (const dxf::record_id record : records)
        if (const AcDbObjectId id = imp.id(record); id.objectClass() == TDbPipe::desc() && change(id))
            ++pipes;
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    std::printf("%d\t%.6f\t%ld\n", pipes, seconds, PeakMemory() - before);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "";
    bool (*const change)(AcDbObjectId) = what == "update"  ? Update
                                         : what == "label" ? Label
                                         : what == "read"  ? Read
                                                           : nullptr;
    if (!(what == "make" && argc == 5) && !(change != nullptr && argc == 4)) {
        std::fprintf(stderr,
                     "usage: pipe_speed make DRAWING OUT COUNT | update|label|read DRAWING STANDARD\n");
        return 2;
    }
    if (!rx::applications::instance().load(L"zef_pipewire"))
        return 7;
    AcDbDatabase drawing(false, true);
    if (const auto read = drawing.imp().read(sys::from_path(argv[2])); !read) {
        std::fprintf(stderr, "pipe_speed: %s\n", base::narrow(read.error()).c_str());
        return 3;
    }
    acdbHostApplicationServices()->setWorkingDatabase(&drawing);
    const std::wstring file = sys::from_path(argv[3]);
    CStandardManager::Create().Load(sys::from_path(sys::executable_folder() / "../share/kol.vrsl").c_str(),
                                    false);
    return what == "make" ? Make(drawing, file.c_str(), std::atoi(argv[4]))
                          : Change(drawing, file.c_str(), change);
}
