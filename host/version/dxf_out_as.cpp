#include "dbdxfas.h"
#include "host/db/core/imp_database.h"
#include "host/rx/events.h"
#include "host/version/saving.h"
#include "sys/folders.h"

namespace {

Acad::ErrorStatus write_as(AcDbDatabase* database, const ACHAR* name, const ACHAR* version) {
    if (database == nullptr || name == nullptr || !database->imp().has_drawing())
        return Acad::eInvalidInput;
    rx::event_reactors().tell([&](AcRxEventReactor& reactor) { reactor.beginDxfOut(database); });
    const bool written(
        version::save_as_version(database->imp(), version::version_by_name(version), sys::to_path(name)));
    rx::event_reactors().tell([&](AcRxEventReactor& reactor) {
        written ? reactor.dxfOutComplete(database) : reactor.abortDxfOut(database);
    });
    return written ? Acad::eOk : Acad::eFileAccessErr;
}

} // namespace

Acad::ErrorStatus acdbDxfOutAsR12(AcDbDatabase* database, const ACHAR* fileName, int /*precision*/) {
    return write_as(database, fileName, L"R12");
}
Acad::ErrorStatus acdbDxfOutAs2000(AcDbDatabase* database, const ACHAR* fileName, int /*precision*/) {
    return write_as(database, fileName, L"2000");
}
Acad::ErrorStatus acdbDxfOutAs2004(AcDbDatabase* database, const ACHAR* fileName, int /*precision*/) {
    return write_as(database, fileName, L"2004");
}
Acad::ErrorStatus acdbDxfOutAs2007(AcDbDatabase* database, const ACHAR* fileName, int /*precision*/) {
    return write_as(database, fileName, L"2007");
}
Acad::ErrorStatus acdbDxfOutAs2010(AcDbDatabase* database, const ACHAR* fileName, int /*precision*/) {
    return write_as(database, fileName, L"2010");
}
Acad::ErrorStatus acdbDxfOutAs2013(AcDbDatabase* database, const ACHAR* fileName, int /*precision*/) {
    return write_as(database, fileName, L"2013");
}
Acad::ErrorStatus acdbDxfOutAs2018(AcDbDatabase* database, const ACHAR* fileName, int /*precision*/) {
    return write_as(database, fileName, L"2018");
}
