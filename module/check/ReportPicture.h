// A picture of model space with the places of findings in it, for a report.
#pragma once

#include "gepnt3d.h"

#include <cstddef>
#include <string>
#include <vector>

// A place to be marked.
struct PictureMark {
    int m_severity = 0;
    std::string m_title; // what a browser tells of it, as it stands in HTML
    AcGePoint3d m_point;
};

// As a figure of an HTML file, which needs no other file: model space as it is drawn, lines of a drawing of
// some ten thousand entities, dots of a larger one, and circles for the marks. Empty when nothing can be
// drawn.
std::string PictureFigure(const std::vector<PictureMark>& marks);

// More circles no browser shows at once: of so many marks the figure says that there are others.
constexpr std::size_t mostPictureMarks = 2000;
