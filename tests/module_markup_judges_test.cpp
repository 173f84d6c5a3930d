// Independent parsers over documents that a script makes: judge_markup.py tells what they are asked.
#include "base/utf.h"
#include "sys/folders.h"
#include "tests/module_markup_support.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace {

std::string escaped(std::wstring_view text) {
    std::wstring out;
    for (const wchar_t c : text)
        out += c == L'\n' ? L"\\n" : c == L'\r' ? L"\\r" : c == L'\\' ? L"\\\\" : std::wstring(1, c);
    return base::narrow(out);
}

void tell(MarkupDoc& doc, std::ostream& out) {
    bool goes_down = false;
    for (int depth = 0; depth >= 0;) {
        if (goes_down ? doc.IntoElement() && doc.FindElement() : doc.FindElement()) {
            depth += goes_down;
            out << '<' << escaped(doc.GetTagName()) << '\n';
            for (int i = 0; !doc.GetAttributeName(i).empty(); ++i)
                out << '@' << escaped(doc.GetAttributeName(i)) << '=' << escaped(doc.GetAttributeValue(i))
                    << '\n';
            out << '=' << escaped(doc.GetElementData()) << '\n';
            goes_down = true;
        } else {
            if (!goes_down)
                --depth;
            if (doc.OutOfElement())
                out << ">\n";
            goes_down = false;
        }
    }
}

TEST(MarkupJudges, AgreeOnThousandsOfDocuments) {
    const std::string script = "python3 '" ZEF_SOURCE_FOLDER "/tests/judge_markup.py' ";
    if (std::system("python3 -c 'import xml.parsers.expat'") != 0)
        GTEST_SKIP() << "no judge: python3 with expat";
    const test::folder folder;
    const std::string place = "'" + folder.path().string() + "'";
    // Others by hand, now and then: of three thousand documents one may show a difference that nobody has
    // explained yet.
    const char* const wanted = std::getenv("ZEF_MARKUP_SEED");
    const int seed = wanted != nullptr ? std::atoi(wanted) : 1;
    ASSERT_EQ(std::system((script + "make " + place + " 3000 " + std::to_string(seed)).c_str()), 0);
    std::vector<std::filesystem::path> files(std::filesystem::directory_iterator(folder.path()), {});
    for (std::filesystem::path file : files) {
        MarkupDoc doc;
        const bool is_good = doc.LoadFile(sys::from_path(file).c_str());
        std::ofstream told(file.replace_extension(".told"), std::ios::binary);
        told << (is_good ? "good" : "bad") << '\n';
        tell(doc, told);
    }
    EXPECT_EQ(std::system((script + "judge " + place).c_str()), 0) << "documents of seed " << seed;
}

} // namespace
