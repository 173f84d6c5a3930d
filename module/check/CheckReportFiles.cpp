// The forms that a report has as a file.
#include "base/utf.h"
#include "dbapserv.h"
#include "module/check/CheckReport.h"
#include "module/check/FindingPlace.h"
#include "module/check/ReportPicture.h"
#include "module/standard/Names.h"
#include "module/standard/PipeSystemTool.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr std::size_t rowsInHtml = 2000; // of each kind: more no browser shows at once

std::string Utf8(const CString& text) {
    return base::narrow(ViewOf(text));
}

CString DrawingName() {
    const ACHAR* name = nullptr;
    acdbHostApplicationServices()->workingDatabase()->getFilename(name);
    return name;
}

// As a string of JSON. Bytes that were no characters become U+FFFD, which is what others would read.
std::string Quoted(const CString& text) {
    std::string quoted = "\"";
    for (std::size_t at = 0; at < ViewOf(text).size();) {
        const char32_t c = base::take_code_point(ViewOf(text), at);
        if (c == U'"' || c == U'\\') {
            quoted += '\\';
            quoted += static_cast<char>(c);
        } else if (c < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
            quoted += escaped;
        } else {
            base::append_utf8(quoted, base::is_escaped_byte(c) ? base::replacement_character : c);
        }
    }
    return quoted + '"';
}

std::string Escaped(const CString& text) {
    CString escaped = text;
    escaped.Replace(L"&", L"&amp;");
    escaped.Replace(L"<", L"&lt;");
    escaped.Replace(L">", L"&gt;");
    escaped.Replace(L"\"", L"&quot;");
    return Utf8(escaped);
}

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

constexpr char htmlHead[] =
    "<!DOCTYPE html>\n<html lang=\"zh\"><head><meta "
    "charset=\"utf-8\">\n<title>图形检查报告</title>\n<style>\n"
    "body{font:14px/1.5 sans-serif;margin:2em;color:#222}table{border-collapse:collapse;width:100%}\n"
    "td,th{border:1px solid #ccc;padding:.25em "
    ".6em;text-align:left;vertical-align:top}th{background:#f2f2f2}\n"
    ".s3{color:#b00020}.s2{color:#9a6700}.s1{color:#57606a}details table{margin:.5em 0}\n"
    "figure{margin:1em 0}figure svg{width:100%;max-height:80vh;border:1px solid #ccc}\n"
    "circle{fill:none;stroke-width:.5}.m3{stroke:#b00020}.m2{stroke:#d9a300}.m1{stroke:#0969da}\n"
    "</style></head><body>\n";

} // namespace

std::string CCheckReport::Json() const {
    std::string text = "{\n\"drawing\": " + Quoted(DrawingName()) +
                       ",\n\"standard\": " + Quoted(PipeSystemTool::GetCurrentStandardName()) +
                       ",\n\"count\": " + std::to_string(m_findings.All().size()) + ",\n\"findings\": [";
    const char* between = "\n";
    for (const FindingKind* const kind : m_kinds)
        for (const std::size_t index : kind->m_findings) {
            const Finding& finding = m_findings.All()[index];
            const FindingPlace place = GetPlace(finding);
            text += between;
            between = ",\n";
            text += std::string("{\"rule\": ") + Quoted(GetRuleInfo(kind->m_rule).m_key) +
                    ", \"severity\": " + Quoted(GetSeverityText(SeverityOf(*kind))) +
                    ", \"text\": " + Quoted(kind->m_text) +
                    ", \"mendable\": " + (kind->CanMend() ? "true" : "false") +
                    ", \"handle\": " + Quoted(place.m_handle) + ", \"type\": " + Quoted(place.m_type) +
                    ", \"layer\": " + Quoted(place.m_layer);
            if (!finding.m_other.isNull())
                text += ", \"other\": " + Quoted(GetHandleText(finding.m_other));
            if (!place.m_block.IsEmpty())
                text += ", \"block\": " + Quoted(place.m_block);
            if (place.m_hasPoint)
                text += ", \"x\": " + Number(place.m_point.x) + ", \"y\": " + Number(place.m_point.y) +
                        ", \"z\": " + Number(place.m_point.z);
            text += "}";
        }
    return text + "\n]\n}\n";
}

// Of what lies in model space the gravest.
std::vector<PictureMark> CCheckReport::Marks() const {
    std::vector<PictureMark> marks;
    for (const FindingKind* const kind : m_kinds)
        for (const std::size_t finding : kind->m_findings) {
            if (marks.size() == mostPictureMarks)
                return marks;
            const FindingPlace place = GetPlace(m_findings.All()[finding]);
            if (place.m_hasPoint && place.m_block.IsEmpty())
                marks.push_back({static_cast<int>(SeverityOf(*kind)),
                                 Escaped(place.m_handle) + " " + Escaped(kind->m_text), place.m_point});
        }
    return marks;
}

std::string CCheckReport::Html() const {
    std::string text = htmlHead;
    text += "<h1>图形检查报告</h1>\n<p>图形：" + Escaped(DrawingName()) + "<br>标准：" +
            Escaped(PipeSystemTool::GetCurrentStandardName()) + "<br>" +
            (m_kinds.empty() ? std::string("没有发现问题。") : Escaped(Sum())) + "</p>\n";
    if (m_kinds.empty())
        return text + "</body></html>\n";
    text += PictureFigure(Marks());
    text += "<table><tr><th>等级</th><th>规则</th><th>数量</th><th>修复</th><th>说明</th></tr>\n";
    for (const FindingKind* const kind : m_kinds) {
        const auto severity = static_cast<int>(SeverityOf(*kind));
        text += "<tr><td class=\"s" + std::to_string(severity) + "\">" +
                Escaped(GetSeverityText(SeverityOf(*kind))) + "</td><td>" +
                Escaped(GetRuleInfo(kind->m_rule).m_title) + "</td><td>" +
                std::to_string(kind->m_findings.size()) + "</td><td>" + (kind->CanMend() ? "可修复" : "") +
                "</td><td><details><summary>" + Escaped(kind->m_text) +
                "</summary><table><tr><th>句柄</th><th>类型</th><th>图层</th><th>块</th><th>位置</th></tr>\n";
        for (std::size_t i = 0; i < std::min(rowsInHtml, kind->m_findings.size()); ++i) {
            const FindingPlace place = GetPlace(m_findings.All()[kind->m_findings[i]]);
            text += "<tr><td>" + Escaped(place.m_handle) + "</td><td>" + Escaped(place.m_type) + "</td><td>" +
                    Escaped(place.m_layer) + "</td><td>" + Escaped(place.m_block) + "</td><td>" +
                    (place.m_hasPoint ? Number(place.m_point.x) + ", " + Number(place.m_point.y)
                                      : std::string()) +
                    "</td></tr>\n";
        }
        if (kind->m_findings.size() > rowsInHtml)
            text += "<tr><td colspan=\"5\">另有 " + std::to_string(kind->m_findings.size() - rowsInHtml) +
                    " 处，全部见 JSON 报告</td></tr>\n";
        text += "</table></details></td></tr>\n";
    }
    return text + "</table>\n</body></html>\n";
}
