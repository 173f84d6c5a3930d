// System variables: kinds, ranges, where each is kept, and what they leave in the drawing.
#include "acutmem.h"
#include "host/db/core/history.h"
#include "host/ed/system_variables.h"
#include "sys/registry.h"
#include "tests/ed_session.h"

namespace {

std::filesystem::path any_drawing() {
    return test::drawing("r2018.dxf");
}

std::string bytes_of(test::session& session) {
    std::string bytes;
    session.database().drawing().write([&](std::string_view piece) {
        bytes += piece;
        return true;
    });
    return bytes;
}

// Another value of the same kind that a variable may take; false for those whose values are names.
bool another(const ed::variable_value& old, ed::variable_value& value) {
    if (const int* const whole = std::get_if<int>(&old))
        value = *whole == 1 ? 0 : 1;
    else if (const double* const real = std::get_if<double>(&old))
        value = *real == 0.5 ? 0.75 : 0.5;
    else if (const AcGePoint3d* const point = std::get_if<AcGePoint3d>(&old))
        value = AcGePoint3d(point->x + 1.0, point->y + 2.0, 0.0);
    else
        return false;
    return true;
}

} // namespace

TEST(EdVariables, AreOfTheirKindAndRange) {
    test::session session(any_drawing());
    struct row {
        const wchar_t* name;
        int type;
    };
    for (const row& row :
         {row{L"ltscale", RTREAL}, row{L"OSMODE", RTSHORT}, row{L"CLAYER", RTSTR}, row{L"LIMMAX", RTPOINT},
          row{L"UCSORG", RT3DPOINT}, row{L"LASTPOINT", RT3DPOINT}, row{L"CDATE", RTREAL},
          row{L"DIMTXT", RTREAL}, row{L"USERS3", RTSTR}, row{L"WORLDUCS", RTSHORT}}) {
        resbuf value{};
        EXPECT_EQ(acedGetVar(row.name, &value), RTNORM) << row.name;
        EXPECT_EQ(value.restype, row.type) << row.name;
        if (value.restype == RTSTR)
            acutDelString(value.resval.rstring);
    }
    resbuf value{};
    EXPECT_EQ(acedGetVar(L"NO_SUCH", &value), RTERROR);

    struct change {
        const wchar_t* name;
        ed::variable_value value;
        ed::variable_status status;
    };
    using enum ed::variable_status;
    for (const change& change : {change{L"LTSCALE", 2, well},
                                 change{L"LTSCALE", 0.0, out_of_range},
                                 change{L"LTSCALE", std::wstring(L"2"), wrong_type},
                                 change{L"OSMODE", 1.5, wrong_type},
                                 change{L"OSMODE", 32768, out_of_range},
                                 change{L"LUNITS", 6, out_of_range},
                                 change{L"CELWEIGHT", 25, well},
                                 change{L"CELWEIGHT", 26, out_of_range},
                                 change{L"PLINEWID", 0.0, well},
                                 change{L"PLINEWID", -1.0, out_of_range},
                                 change{L"ACADVER", std::wstring(L"R14"), read_only},
                                 change{L"UCSORG", AcGePoint3d(), read_only},
                                 change{L"CLAYER", std::wstring(L"nowhere"), out_of_range},
                                 change{L"CLAYER", std::wstring(L"墙体"), well},
                                 change{L"CECOLOR", std::wstring(L"red"), well},
                                 change{L"CECOLOR", std::wstring(L"300"), out_of_range},
                                 change{L"CELTYPE", std::wstring(L"byblock"), well},
                                 change{L"CELTYPE", std::wstring(L"nowhere"), out_of_range},
                                 change{L"TEXTSTYLE", std::wstring(L"nowhere"), out_of_range},
                                 change{L"LIMMAX", AcGePoint3d(5, 6, 0), well},
                                 change{L"USERS1", std::wstring(L"注"), well},
                                 change{L"NO_SUCH", 1, unknown}}) {
        ed::variable_value before, after;
        ed::get_variable(change.name, before);
        EXPECT_EQ(ed::set_variable(change.name, change.value), change.status) << change.name;
        ed::get_variable(change.name, after);
        if (change.status != well) {
            EXPECT_EQ(before, after) << change.name;
        }
    }
    EXPECT_EQ(ed::variable<std::wstring>(L"CECOLOR"), L"1");
    resbuf wrong{};
    wrong.restype = RTREAL;
    EXPECT_EQ(acedSetVar(L"OSMODE", &wrong), RTREJ);
    wrong.restype = RTSHORT;
    wrong.resval.rint = 9;
    EXPECT_EQ(acedSetVar(L"LUNITS", &wrong), RTERROR);
    EXPECT_EQ(test::error_number(), 22);
    EXPECT_EQ(acedSetVar(L"CMDACTIVE", &wrong), RTERROR);
    EXPECT_EQ(test::error_number(), 20);
}

// What each variable is set to is what it is then, and taking all of it back gives the bytes of the file.
TEST(EdVariables, OfADrawingAreSetAndTakenBack) {
    for (const char* const drawing : {"r2018.dxf", "r12.dxf", "r2000_gbk.dxf"}) {
        test::session session(test::drawing(drawing));
        const std::string before = bytes_of(session);
        session.database().history().begin_step("SETVAR");
        int changed = 0;
        for (const std::wstring& name : ed::variable_names()) {
            ed::variable_value old, wanted, found;
            if (!ed::is_of_drawing(name) || ed::is_read_only(name) || name == L"TILEMODE")
                continue;
            ed::get_variable(name, old);
            EXPECT_EQ(ed::set_variable(name, old) == ed::variable_status::unknown, false);
            if (!another(old, wanted) || ed::set_variable(name, wanted) != ed::variable_status::well)
                continue;
            ed::get_variable(name, found);
            EXPECT_EQ(found, wanted) << drawing << " " << base::narrow(name);
            ++changed;
        }
        EXPECT_GT(changed, 80) << drawing;
        EXPECT_NE(bytes_of(session), before);
        session.database().history().undo();
        EXPECT_TRUE(bytes_of(session) == before) << drawing;
    }
}

TEST(EdVariables, TheSameValueKeepsItsSpelling) {
    test::session session(any_drawing());
    const std::string before = bytes_of(session);
    for (const wchar_t* const name : {L"LTSCALE", L"TEXTSIZE", L"LIMMIN", L"LIMMAX", L"INSBASE", L"CLAYER"}) {
        ed::variable_value value;
        ed::get_variable(name, value);
        EXPECT_EQ(ed::set_variable(name, value), ed::variable_status::well) << name;
    }
    EXPECT_TRUE(bytes_of(session) == before);
}

TEST(EdVariables, OfTheProfileAreInTheRegistry) {
    test::session session(any_drawing());
    const int before = ed::variable<int>(L"APERTURE");
    EXPECT_EQ(ed::set_variable(L"APERTURE", before + 1), ed::variable_status::well);
    const auto kept = sys::registry_read(L"Software\\ZEF\\zefhost\\Variables", L"APERTURE");
    ASSERT_TRUE(kept);
    EXPECT_EQ(std::get<std::uint32_t>(*kept), static_cast<std::uint32_t>(before + 1));
    ed::set_variable(L"APERTURE", before);
}
