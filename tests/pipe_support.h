// A drawing in memory, with the classes of the pipe entities.
#pragma once

#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"
#include "host/rx/applications.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"
#include "siblings/zef_pipewire/TDbPipeAttachment.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TDbText.h"
#include "siblings/zef_pipewire/TDbVerticalSection.h"
#include "tests/dxf_support.h"
#include "tests/record_sections.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace test {

class pipe_drawing : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(rx::applications::instance().load(L"zef_pipewire"));
        database = holding(read(drawing("r2018.dxf")));
    }
    void TearDown() override {
        database->imp().objects().close_all();
        database.reset();
        static_cast<void>(rx::applications::instance().unload(L"zef_pipewire")); // it may be gone
    }

    static std::unique_ptr<AcDbDatabase> holding(std::string bytes) {
        auto made = std::make_unique<AcDbDatabase>(false, true);
        if (auto opened_drawing = opened(std::move(bytes)))
            made->imp().set_drawing(std::move(opened_drawing));
        return made;
    }
    static std::string saved(const AcDbDatabase& of) { return written(of.imp().drawing()); }

    // Puts an entity into model space and closes it.
    static AcDbObjectId append(AcDbDatabase& to, AcDbEntity* entity) {
        AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, &to, AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(model->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        return id;
    }
    AcDbObjectId append(AcDbEntity* entity) const { return append(*database, entity); }

    std::unique_ptr<AcDbDatabase> database;
};

// A pipe of a system between two points.
inline TDbPipe* pipe_between(const AcGePoint3d& start, const AcGePoint3d& end,
                             const wchar_t* system = L"给水") {
    auto* const pipe = new TDbPipe;
    pipe->SetEnds(start, end);
    pipe->SetPipeSystemName(system);
    pipe->ChangeValues().m_dn = 100.0;
    return pipe;
}

} // namespace test
