#include "module/check/ReportPicture.h"

#include "aced.h"
#include "adscodes.h"
#include "afx.h"
#include "dbapserv.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/paper.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>

namespace {

namespace fs = std::filesystem;

constexpr double longestSide = 400.0;        // of the picture, in its millimetres
constexpr double border = 5.0;               // that PICTURE leaves around what it fits into a paper
constexpr std::size_t mostLines = 3'000'000; // bytes of a picture made of lines
constexpr std::size_t mostDots = 12'000'000; // of one made of dots
constexpr std::size_t mostEntities = 40'000; // that are tried as lines

AcDbObjectId ModelSpace() {
    const AcDbBlockTablePointer table(acdbHostApplicationServices()->workingDatabase()->blockTableId(),
                                      AcDb::kForRead);
    AcDbObjectId model;
    if (table.openStatus() == Acad::eOk)
        table->getAt(ACDB_MODEL_SPACE, model);
    return model;
}

// Whether model space has more entities than that.
bool HasMoreThan(std::size_t most, AcDbObjectId space) {
    const AcDbBlockTableRecordPointer block(space, AcDb::kForRead);
    AcDbBlockTableRecordIterator* made = nullptr;
    if (block.openStatus() != Acad::eOk || block->newIterator(made) != Acad::eOk)
        return false;
    std::size_t count = 0;
    for (const std::unique_ptr<AcDbBlockTableRecordIterator> each(made); !each->done() && count <= most;
         each->step())
        ++count;
    return count > most;
}

std::string Base64(std::string_view bytes) {
    constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t three = 0;
        for (std::size_t j = 0; j < 3; ++j)
            three = three << 8 | (i + j < bytes.size() ? static_cast<unsigned char>(bytes[i + j]) : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            text += j <= bytes.size() - i ? letters[three >> (18 - 6 * j) & 63U] : '=';
    }
    return text;
}

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

// What is shown of the drawing, and how large.
struct Window {
    AcDbExtents m_box;
    double m_scale = 1.0;

    double Width() const { return (m_box.maxPoint().x - m_box.minPoint().x) * m_scale + 2 * border; }
    double Height() const { return (m_box.maxPoint().y - m_box.minPoint().y) * m_scale + 2 * border; }
    bool Holds(const AcGePoint3d& at) const {
        return at.x >= m_box.minPoint().x && at.x <= m_box.maxPoint().x && at.y >= m_box.minPoint().y &&
               at.y <= m_box.maxPoint().y;
    }
    double X(const AcGePoint3d& at) const { return border + (at.x - m_box.minPoint().x) * m_scale; }
    double Y(const AcGePoint3d& at) const { return border + (m_box.maxPoint().y - at.y) * m_scale; }
};

// Of all that is drawn. False when that is nothing, or lies too far apart for a picture.
bool FindWindow(AcDbObjectId space, Window& window) {
    constexpr double farthest = 1e12;
    const AcDbBlockReference whole(AcGePoint3d::kOrigin, space);
    if (whole.getGeomExtents(window.m_box) != Acad::eOk)
        return false;
    const AcGePoint3d least = window.m_box.minPoint();
    const AcGePoint3d most = window.m_box.maxPoint();
    const double side = std::max(most.x - least.x, most.y - least.y);
    if (!(side > 0.0 && side < farthest))
        return false;
    const double room = side / 100; // for what is a line only
    window.m_box = {{least.x - room, least.y - room, 0.0}, {most.x + room, most.y + room, 0.0}};
    window.m_scale = longestSide / (side + 2 * room);
    return true;
}

CString PointText(const AcGePoint3d& point) {
    CString text;
    text.Format(L"%.17g,%.17g", point.x, point.y);
    return text;
}

// While one lives the commands that the module calls show nothing.
class CMuted {
public:
    CMuted() {
        resbuf value{};
        if (acedGetVar(L"NOMUTT", &value) == RTNORM && value.restype == RTSHORT)
            m_before = value.resval.rint;
        Set(1);
    }
    ~CMuted() { Set(m_before); }
    CMuted(const CMuted&) = delete;
    CMuted& operator=(const CMuted&) = delete;

private:
    static void Set(short wanted) {
        resbuf value{};
        value.restype = RTSHORT;
        value.resval.rint = wanted;
        acedSetVar(L"NOMUTT", &value);
    }

    short m_before = 0;
};

// The bytes of a picture as PICTURE makes it; none when it can not, or when they are too many.
std::string Drawn(const Window& window, const wchar_t* ending, std::size_t most) {
    const fs::path file =
        sys::temp_folder() / (L"report-" + std::to_wstring(std::random_device()()) + ending);
    CString paper;
    paper.Format(L"%.3fx%.3f", window.Width(), window.Height());
    const CMuted muted;
    const int answer = acedCommandS(RTSTR, L"PICTURE", RTSTR, sys::from_path(file).c_str(), RTSTR, L"Window",
                                    RTSTR, PointText(window.m_box.minPoint()).GetString(), RTSTR,
                                    PointText(window.m_box.maxPoint()).GetString(), RTSTR, paper.GetString(),
                                    RTSTR, L"Fit", RTSTR, L"Greys", RTNONE);
    std::error_code fault;
    std::string bytes;
    if (answer == RTNORM && fs::file_size(file, fault) <= most && !fault)
        if (const auto read = sys::read_file(file))
            bytes = read->view();
    fs::remove(file, fault);
    return bytes;
}

} // namespace

std::string PictureFigure(const std::vector<PictureMark>& marks) {
    const AcDbObjectId space = ModelSpace();
    Window window;
    if (!sys::make_paper({}) || !FindWindow(space, window))
        return {};
    std::string type = "image/svg+xml";
    std::string picture =
        HasMoreThan(mostEntities, space) ? std::string() : Drawn(window, L".svg", mostLines);
    const bool isDots = picture.empty();
    if (isDots) {
        type = "image/png";
        picture = Drawn(window, L".png", mostDots);
    }
    if (picture.empty())
        return {};
    const std::string size = Number(window.Width()) + " " + Number(window.Height());
    std::string text = "<figure><svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + size +
                       "\">\n<image width=\"" + Number(window.Width()) + "\" height=\"" +
                       Number(window.Height()) + "\" href=\"data:" + type + ";base64," + Base64(picture) +
                       "\"/>\n";
    std::size_t shown = 0;
    for (const PictureMark& mark : marks) {
        if (!window.Holds(mark.m_point))
            continue;
        ++shown;
        text += "<circle class=\"m" + std::to_string(mark.m_severity) + "\" cx=\"" +
                Number(window.X(mark.m_point)) + "\" cy=\"" + Number(window.Y(mark.m_point)) +
                "\" r=\"1.5\"><title>" + mark.m_title + "</title></circle>\n";
    }
    text += "</svg><figcaption>模型空间，圆圈为发现问题的位置：" + std::to_string(shown) + " 处";
    if (marks.size() == mostPictureMarks)
        text += "，其余的没有标出";
    if (isDots)
        text += "；图形较大，底图为点阵图";
    return text + "。</figcaption></figure>\n";
}
