// Numbers, distances, angles and points as they are typed, and the calls that ask for them.
#include "geassign.h"
#include "host/ed/coordinates.h"
#include "host/ed/system_variables.h"
#include "host/ed/unit_text.h"
#include "tests/ed_session.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double pi = std::numbers::pi;
constexpr double nothing = -1e99; // where no value is expected

std::filesystem::path any_drawing() {
    return test::drawing("r2018.dxf");
}

} // namespace

TEST(EdPrompts, LengthsAreReadInTheFormsOfTheirUnits) {
    using enum ed::length_form;
    struct row {
        const wchar_t* text;
        ed::length_form form;
        double value;
    };
    for (const row& row : {row{L"12.5", decimal, 12.5},
                           row{L"-12.5", decimal, -12.5},
                           row{L"+.5", decimal, 0.5},
                           row{L"1.25E+2", scientific, 125.0},
                           row{L"3/4", decimal, 0.75},
                           row{L"3-1/2", fractional, 3.5},
                           row{L"-3-1/2", fractional, -3.5},
                           row{L"5'", architectural, 60.0},
                           row{L"5'6", architectural, 66.0},
                           row{L"5'-6.5\"", engineering, 66.5},
                           row{L"5'6-1/2\"", architectural, 66.5},
                           row{L"-1'6\"", architectural, -18.0},
                           row{L"6\"", engineering, 6.0},
                           row{L"5'6", decimal, nothing},
                           row{L"6\"", fractional, nothing},
                           row{L"1/0", decimal, nothing},
                           row{L"1/", decimal, nothing},
                           row{L"3--1/2", fractional, nothing},
                           row{L"--3", decimal, nothing},
                           row{L"", decimal, nothing},
                           row{L"-", decimal, nothing},
                           row{L"'", architectural, nothing},
                           row{L"12a", decimal, nothing}})
        EXPECT_DOUBLE_EQ(ed::parse_length(row.text, row.form).value_or(nothing), row.value) << row.text;
}

TEST(EdPrompts, AnglesAreReadInTheFormsOfTheirUnits) {
    using enum ed::angle_form;
    struct row {
        const wchar_t* text;
        ed::angle_form form;
        double degrees;
    };
    for (const row& row : {row{L"45", degrees, 45.0},
                           row{L"-45", degrees, -45.0},
                           row{L"50", grads, 45.0},
                           row{L"50g", degrees, 45.0},
                           row{L"3.14159265358979", radians, 180.0},
                           row{L"1r", degrees, 180.0 / pi},
                           row{L"45d30'15\"", degrees_minutes_seconds, 45.0 + 30.0 / 60.0 + 15.0 / 3600.0},
                           row{L"45D30'", radians, 45.5},
                           row{L"-45d30'", degrees, -45.5},
                           row{L"45d", grads, 45.0},
                           row{L"N45d30'E", surveyor, 44.5},
                           row{L"s30dw", surveyor, 240.0},
                           row{L"S30dE", surveyor, 300.0},
                           row{L"n30dw", surveyor, 120.0},
                           row{L"W", surveyor, 180.0},
                           row{L"S", surveyor, 270.0},
                           row{L"N", degrees, nothing},
                           row{L"N100dE", surveyor, nothing},
                           row{L"45d30'15\"7", degrees, nothing},
                           row{L"45x", degrees, nothing},
                           row{L"", degrees, nothing}}) {
        const auto read = ed::parse_angle(row.text, row.form);
        EXPECT_NEAR(read ? read->radians * 180.0 / pi : nothing, row.degrees, 1e-9) << row.text;
    }
}

TEST(EdPrompts, PointsAreTakenInTheUsersCoordinates) {
    test::session session(any_drawing());
    test::set_variable(L"ELEVATION", 7.0);
    struct row {
        const wchar_t* typed;
        AcGePoint3d expected;
    };
    // Each is typed behind the one before: "@" counts from there.
    for (const row& row :
         {row{L"10,20", {10, 20, 7}}, row{L"@5,-5", {15, 15, 7}}, row{L"@10<90", {15, 25, 7}},
          row{L"@0,0,3", {15, 25, 10}}, row{L"@", {15, 25, 10}}, row{L"10<0", {10, 0, 7}},
          row{L"10<90,2", {0, 10, 2}}, row{L"10<0<90", {0, 0, 10}}, row{L"#1,2,3", {1, 2, 3}},
          row{L"*1,2,3", {1, 2, 3}}, row{L"1-1/2,1/2", {1.5, 0.5, 7}}}) {
        session.type(std::wstring(row.typed) + L"\n");
        AcGePoint3d point;
        EXPECT_EQ(acedGetPoint(nullptr, nullptr, asDblArray(point)), RTNORM) << row.typed;
        EXPECT_TRUE(point.isEqualTo(row.expected))
            << row.typed << ": " << point.x << " " << point.y << " " << point.z;
        EXPECT_TRUE(ed::variable<AcGePoint3d>(L"LASTPOINT").isEqualTo(row.expected)) << row.typed;
    }
    for (const wchar_t* const typed :
         {L"1", L"1,", L"1,2,3,4", L"a,b", L"1<", L"<90", L"1<2<3<4", L"1<2<3,4", L"@,"})
        EXPECT_FALSE(ed::read_point(typed)) << typed;
}

TEST(EdPrompts, ATurnedCoordinateSystemIsTheUsers) {
    const test::folder folder;
    std::string text = test::read(any_drawing());
    const std::string ucs = "  9\r\n$UCSORG\r\n 10\r\n100.0\r\n 20\r\n200.0\r\n 30\r\n0.0\r\n"
                            "  9\r\n$UCSXDIR\r\n 10\r\n0.0\r\n 20\r\n1.0\r\n 30\r\n0.0\r\n"
                            "  9\r\n$UCSYDIR\r\n 10\r\n-1.0\r\n 20\r\n0.0\r\n 30\r\n0.0\r\n";
    const bool feeds = text.find("\r\n") == std::string::npos;
    std::string added = ucs;
    if (feeds)
        std::erase(added, '\r');
    const std::size_t at =
        text.find("  9\n$ACADVER") != text.npos ? text.find("  9\n$ACADVER") : text.find("  9\r\n$ACADVER");
    ASSERT_NE(at, text.npos);
    text.insert(at, added);
    test::session session(folder.write("turned.dxf", text));

    AcGePoint3d point;
    session.type(L"*100,210\n");
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, asDblArray(point)), RTNORM);
    EXPECT_TRUE(point.isEqualTo({10, 0, 0})) << "along the user's x axis, which points up";
    session.type(L"@*0,5\n");
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, asDblArray(point)), RTNORM);
    EXPECT_TRUE(point.isEqualTo({15, 0, 0}));

    // The line 104 runs at y 450 from x 500: the user sees it at x 250 from y -400 on down.
    session.type(L"250,-900\n");
    ads_name entity;
    EXPECT_EQ(acedEntSel(nullptr, entity, asDblArray(point)), RTNORM);
    AcDbObjectId id;
    acdbGetObjectId(id, entity);
    EXPECT_EQ(id, session.id(0x104));
    EXPECT_TRUE(point.isEqualTo({250, -900, 0}));

    resbuf world{}, user{};
    world.restype = user.restype = RTSHORT;
    user.resval.rint = 1;
    EXPECT_EQ(acedTrans(asDblArray(point), &user, &world, 0, asDblArray(point)), RTNORM);
    EXPECT_TRUE(point.isEqualTo({1000, 450, 0}));
}

TEST(EdPrompts, CallsAnswerByTheRulesThatWereSaid) {
    test::session session(any_drawing());
    struct row {
        const wchar_t* what; // i, r, d, a, o, p: which call
        int bits;
        const wchar_t* keywords;
        const wchar_t* typed;
        int answered;
        double value;         // nothing: untouched
        const wchar_t* input; // what acedGetInput gives; null when it gives nothing
        int refused;          // how many answers were
    };
    constexpr int zero_and_negative = RSG_NOZERO | RSG_NONEG;
    for (const row& row : {
             row{L"i", 0, nullptr, L"12\n", RTNORM, 12.0, nullptr, 0},
             row{L"i", 0, nullptr, L"1.5\nx\n-7\n", RTNORM, -7.0, nullptr, 2},
             row{L"i", 0, nullptr, L"3000000000\n2000000000\n", RTNORM, 2e9, nullptr, 1},
             row{L"i", 0, nullptr, L"\n", RTNONE, nothing, nullptr, 0},
             row{L"i", RSG_NONULL, nullptr, L"\n4\n", RTNORM, 4.0, nullptr, 1},
             row{L"i", zero_and_negative, nullptr, L"0\n-1\n1\n", RTNORM, 1.0, nullptr, 2},
             row{L"i", 0, L"Red", L"r\n", RTKWORD, nothing, L"Red", 0},
             row{L"i", 0, nullptr, L"\x1b", RTCAN, nothing, nullptr, 0},
             row{L"i", 0, nullptr, L"", RTCAN, nothing, nullptr, 0},
             row{L"r", 0, nullptr, L"1.5e2\n", RTNORM, 150.0, nullptr, 0},
             row{L"r", RSG_OTHER, nullptr, L"abc\n", RTKWORD, nothing, L"abc", 0},
             row{L"r", RSG_OTHER | RSG_NONEG, nullptr, L"-1\nabc\n", RTKWORD, nothing, L"abc", 1},
             row{L"d", 0, nullptr, L"3-1/2\n", RTNORM, 3.5, nullptr, 0},
             row{L"d", 0, nullptr, L"0,0\n3,4\n", RTNORM, 5.0, nullptr, 0},
             row{L"d", 0, nullptr, L"0,0,0\n3,4,12\n", RTNORM, 13.0, nullptr, 0},
             row{L"d", RSG_2D, nullptr, L"0,0,0\n3,4,12\n", RTNORM, 5.0, nullptr, 0},
             row{L"d", zero_and_negative, nullptr, L"-1\n0\n2\n", RTNORM, 2.0, nullptr, 2},
             row{L"d", 0, L"Fit", L"1,1\n\x1b", RTCAN, nothing, nullptr, 0},
             row{L"a", 0, nullptr, L"90\n", RTNORM, pi / 2.0, nullptr, 0},
             row{L"a", 0, nullptr, L"-90\n", RTNORM, 1.5 * pi, nullptr, 0},
             row{L"a", 0, nullptr, L"45d30'\n", RTNORM, 45.5 * pi / 180.0, nullptr, 0},
             row{L"a", 0, nullptr, L"1,1\n@5<135\n", RTNORM, 0.75 * pi, nullptr, 0},
             row{L"a", RSG_NOZERO, nullptr, L"360\n1\n", RTNORM, pi / 180.0, nullptr, 1},
             row{L"p", 0, L"Ja Nein _ Yes No", L"_n\n", RTKWORD, nothing, L"No", 0},
             row{L"p", RSG_OTHER, nullptr, L"W1\n", RTKWORD, nothing, L"W1", 0},
             row{L"p", 0, nullptr, L"7\n1,2\n", RTNORM, 1.0, nullptr, 1},
         }) {
        session.type(row.typed);
        acedInitGet(row.bits, row.keywords);
        int whole = 0;
        ads_real real = 0.0;
        ads_point point{};
        int answered = 0;
        bool touched = false;
        const auto after = [&](double value) {
            touched = value != nothing;
            return value;
        };
        double value = nothing;
        whole = -99;
        real = point[X] = nothing;
        switch (*row.what) {
        case L'i':
            answered = acedGetInt(L"\nNumber: ", &whole);
            value = after(whole == -99 ? nothing : whole);
            break;
        case L'r':
            answered = acedGetReal(nullptr, &real);
            value = after(real);
            break;
        case L'd':
            answered = acedGetDist(nullptr, nullptr, &real);
            value = after(real);
            break;
        case L'a':
            answered = acedGetAngle(nullptr, nullptr, &real);
            value = after(real);
            break;
        default:
            answered = acedGetPoint(nullptr, nullptr, point);
            value = after(point[X]);
            break;
        }
        const std::wstring name = std::wstring(row.what) + L" " + row.typed;
        EXPECT_EQ(answered, row.answered) << name;
        EXPECT_NEAR(value, row.value, 1e-9) << name;
        EXPECT_EQ(touched, row.answered == RTNORM) << name;
        EXPECT_EQ(std::count(session.errors.begin(), session.errors.end(), '\n'), row.refused)
            << name << session.errors;
        ACHAR word[133] = L"-";
        EXPECT_EQ(acedGetInput(word), row.input != nullptr ? RTNORM : RTERROR) << name;
        EXPECT_STREQ(word, row.input != nullptr ? row.input : L"-") << name;
        EXPECT_EQ(acedGetInput(word), RTERROR) << "once only";
        acedUsrBrk();
        EXPECT_TRUE(session.all_used()) << name;
    }
}

// The table of the interface's documentation: angles are typed from the drawing's direction and sense,
// what programs get runs counterclockwise, and an orientation counts from the x axis.
TEST(EdPrompts, AnglesAndOrientationsFollowTheDrawingsDirection) {
    test::session session(any_drawing());
    test::set_variable(L"ANGBASE", pi / 2.0);
    test::set_variable(L"ANGDIR", 1.0);
    struct row {
        const wchar_t* typed;
        double angle, orientation; // in degrees
    };
    for (const row& row : {row{L"0\n", 0.0, 90.0}, row{L"-90\n", 90.0, 180.0}, row{L"180\n", 180.0, 270.0},
                           row{L"90\n", 270.0, 0.0}, row{L"0,0,0\n0,5,0\n", 0.0, 90.0}}) {
        ads_real angle = nothing;
        session.type(row.typed);
        EXPECT_EQ(acedGetAngle(nullptr, nullptr, &angle), RTNORM);
        EXPECT_NEAR(angle * 180.0 / pi, row.angle, 1e-9) << row.typed;
        session.type(row.typed);
        EXPECT_EQ(acedGetOrient(nullptr, nullptr, &angle), RTNORM);
        EXPECT_NEAR(angle * 180.0 / pi, row.orientation, 1e-9) << row.typed;
    }
    const ads_point base = {0.0, 0.0, 0.0};
    ads_real value = nothing;
    session.type(L"3,4\n");
    EXPECT_EQ(acedGetDist(base, nullptr, &value), RTNORM) << "the base is the first point";
    EXPECT_DOUBLE_EQ(value, 5.0);
    ads_point corner{};
    EXPECT_EQ(acedGetCorner(nullptr, nullptr, corner), RTERROR);
    session.type(L"3,4\n");
    EXPECT_EQ(acedGetCorner(base, nullptr, corner), RTNORM);
}

TEST(EdPrompts, LimitsRefuseWhereTheDrawingSaysSo) {
    test::session session(any_drawing());
    test::set_variable(L"LIMCHECK", 1.0);
    const AcGePoint3d most = ed::variable<AcGePoint3d>(L"LIMMAX");
    const std::wstring outside = std::to_wstring(most.x + 1.0) + L",0\n";
    ads_point point{};
    session.type(outside + L"0,0\n");
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, point), RTNORM);
    EXPECT_EQ(point[X], 0.0);
    session.type(outside);
    acedInitGet(RSG_NOLIM, nullptr);
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, point), RTNORM);
    EXPECT_DOUBLE_EQ(point[X], most.x + 1.0);
}

TEST(EdPrompts, TextsKeepWithinTheirBuffers) {
    test::session session(any_drawing());
    ACHAR small[6] = L"-----";
    session.type(L"one two three\n");
    EXPECT_EQ(acedGetString(1, nullptr, small), RTNORM);
    EXPECT_STREQ(small, L"one t");
    session.type(L"one two\n");
    AcString text;
    EXPECT_EQ(acedGetString(0, nullptr, text), RTNORM);
    EXPECT_STREQ(text.constPtr(), L"one") << "a blank ends it";
    session.type(L"\n");
    acedInitGet(RSG_NONULL, L"Word");
    EXPECT_EQ(acedGetString(0, nullptr, small), RTNORM) << "Enter is an empty text";
    EXPECT_STREQ(small, L"");
    session.type(L"word\n");
    acedInitGet(0, L"Word");
    EXPECT_EQ(acedGetString(0, nullptr, text), RTNORM) << "no keywords here";
    EXPECT_STREQ(text.constPtr(), L"word");

    session.type(L"w\n");
    acedInitGet(0, L"Wordlike");
    EXPECT_EQ(acedGetKword(nullptr, small), RTNORM);
    EXPECT_STREQ(small, L"Wordl");
    ACHAR kept[] = L"kept";
    session.type(L"\n");
    acedInitGet(0, L"Wordlike");
    EXPECT_EQ(acedGetKword(nullptr, kept), RTNONE);
    EXPECT_STREQ(kept, L"kept");
    session.type(L"w\n");
    EXPECT_EQ(acedGetKword(nullptr, kept), RTCAN) << "the words of the call before are forgotten: refused";
}

TEST(EdPrompts, AnEscapeThatNobodyAskedForEndsTheNextQuestion) {
    test::session session(any_drawing());
    int number = 0;
    session.type(L"\x1b");
    EXPECT_EQ(acedGetInt(nullptr, &number), RTCAN);
    EXPECT_EQ(acedUsrBrk(), 1);
    EXPECT_EQ(acedUsrBrk(), 0);
    session.type(L"\x1b");
    EXPECT_EQ(acedGetInt(nullptr, &number), RTCAN);
    session.type(L"5\n");
    EXPECT_EQ(acedGetInt(nullptr, &number), RTCAN) << "at once";
    EXPECT_FALSE(session.all_used());
    session.type(L"5\n");
    EXPECT_EQ(acedGetInt(nullptr, &number), RTNORM) << "and only that one";
}

TEST(EdPrompts, FilesAreAskedForOnTheCommandLine) {
    test::session session(any_drawing());
    const test::folder folder;
    const std::wstring there = folder.write("there.dxf", "x").wstring();
    resbuf file{};
    session.type(folder.path().wstring() + L"/missing\n" + there.substr(0, there.size() - 4) + L"\n");
    EXPECT_EQ(acedGetFileD(L"Open", nullptr, L"dxf", 0, &file), RTNORM);
    EXPECT_EQ(file.resval.rstring, there);
    acutDelString(file.resval.rstring);
    EXPECT_NE(session.errors.find("missing"), std::string::npos);
    session.type(L"\n");
    EXPECT_EQ(acedGetFileD(L"Save", L"new.dxf", L"dxf", 1, &file), RTNORM);
    EXPECT_STREQ(file.resval.rstring, L"new.dxf");
    acutDelString(file.resval.rstring);
    EXPECT_EQ(acedDragGen(nullptr, nullptr, 0, nullptr, nullptr), RTERROR);
}
