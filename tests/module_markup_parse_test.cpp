// What a text is read as, and what is said when it is not well-formed.
#include "base/utf.h"
#include "module/engines/MarkupScan.h"
#include "tests/module_markup_support.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

std::wstring repeated(std::wstring_view text, int count) {
    std::wstring out;
    for (int i = 0; i < count; ++i)
        out += text;
    return out;
}

TEST(MarkupParse, GoodTexts) {
    const struct {
        std::wstring text;
        std::wstring_view elements;
    } rows[] = {
        {L"<a/>", L"a"},
        {L"<?xml version='1.0'?>\r\n<a></a>\r\n", L"a"},
        {L"<a><b x='1' y=\"2\"/><b>t</b>u</a>", L"a'u'[b{x=1,y=2},b't']"},
        {L"<水 管='径'>给水</水>", L"水{管=径}'给水'"},
        {L"<n:a-b.c _x:y='>/'><n:d/></n:a-b.c>", L"n:a-b.c{_x:y=>/}[n:d]"},
        {L"<a\r\n x = '1'\ty=\"\"\n></a \n>", L"a{x=1,y=}"},
        {L"<a x='it&apos;s \"&lt;b&gt;\"' y=\"'\"/>", L"a{x=it's \"<b>\",y='}"},
        // Resolved are the five and the numeric ones; no blank or line end is touched.
        {L"<a>&lt;&amp;&gt;&quot;&apos;&#65;&#x6c34;&#x1F4A7;</a>", L"a'<&>\"'A水\U0001F4A7'"},
        {L"<a>&amp;lt; &nbsp;&LT;&amp &am;&;&#;&#x;&#0;&#xD800;&#x110000;&#65 &#99999999999;&a\r\n </a>",
         L"a'&lt; &nbsp;&LT;&amp &am;&;&#;&#x;&#0;&#xD800;&#x110000;&#65 &#99999999999;&a\r\n '"},
        {L"<a>x<![CDATA[<b>&lt;]]]>y<!-- - <c> -->z<?p <d> ?>]]></a>", L"a'x<b>&lt;]yz]]>'"},
        {L"<a>1<b>2</b>3<b/>4</a>", L"a'134'[b'2',b]"},
        {L"<!DOCTYPE a PUBLIC \"-//>\" 'x[' [<!-- > ]> ' -->\n<!ELEMENT a (b)*><?p ]> ?>%e;"
         L"<!ENTITY e \"<b>]>\"><!ATTLIST a x CDATA '>'><!NOTATION n SYSTEM \"'\">]><a>&e;</a>",
         L"a'&e;'"},
        {L"<!-- <a> --><a/><!-- </a> --><?p?>", L"a"},
        // What other parsers refuse and real files hold.
        {L"text <a x=1 y z=/p/q w= 'v' w=2/> more", L"a{x=1,y=,z=/p/q,w=v,w=2}"},
        {L"<a x=\"<b>\" \"odd\" =z></a>", L"a{x=<b>,z=}"},
        {L"<a x=1/>", L"a{x=1}"},
        {L"<a>&</a>", L"a'&'"},
    };
    for (const auto& row : rows) {
        MarkupDoc doc;
        EXPECT_TRUE(doc.SetDocumentText(row.text.c_str())) << base::narrow(row.text);
        EXPECT_EQ(doc.GetErrorText(), L"");
        EXPECT_EQ(test::told(doc), row.elements);
        EXPECT_EQ(doc.GetDocumentText(), row.text);
    }
}

TEST(MarkupParse, Faults) {
    const struct {
        const wchar_t* text;
        std::wstring_view result;
        std::wstring_view words;
        std::wstring_view elements;
    } rows[] = {
        {L"<a/><b/><c/>", L"<root_has_sibling/>", L"root element has sibling", L"a,b,c"},
        {L"", L"<no_root_element/>", L"no root element", L""},
        {nullptr, L"<no_root_element/>", L"no root element", L""},
        {L"<?xml version='1.0'?>", L"<no_root_element/>", L"no root element", L""},
        {L"<a></b></a>", L"<lone_end_tag tagname=\"b\" offset=\"3\"/>", L"lone end tag 'b' at offset 3",
         L"a"},
        {L"<水>&</&><></水>",
         L"<lone_end_tag tagname=\"&amp;\" offset=\"4\"/><first_tag_syntax offset=\"8\"/>",
         L"lone end tag '&' at offset 4\ntag syntax error at offset 8 expecting tag name / ! or ?",
         L"水'&<>'"},
        {L"<a><b><c>t</a>",
         L"<unended_start_tag tagname=\"c\" offset=\"6\" offset2=\"10\"/>"
         L"<unended_start_tag tagname=\"b\" offset=\"3\" offset2=\"10\"/>",
         L"start tag 'c' at offset 6 expecting end tag at offset 10\n"
         L"start tag 'b' at offset 3 expecting end tag at offset 10",
         L"a[b[c't']]"},
        {L"<a>t", L"<unended_start_tag tagname=\"a\" offset=\"0\" offset2=\"4\"/>",
         L"start tag 'a' at offset 0 expecting end tag at offset 4", L"a't'"},
        {L"<a>1 < 2 <3> <\n</a>",
         L"<first_tag_syntax offset=\"5\"/><first_tag_syntax offset=\"9\"/><first_tag_syntax offset=\"13\"/>",
         L"tag syntax error at offset 5 expecting tag name / ! or ?\n"
         L"tag syntax error at offset 9 expecting tag name / ! or ?\n"
         L"tag syntax error at offset 13 expecting tag name / ! or ?",
         L"a'1 < 2 <3> <\n'"},
        {L"<a><!ELEMENT></a>", L"<exclamation_tag_syntax offset=\"3\"/>",
         L"tag syntax error at offset 3 expecting 'DOCTYPE' [ or -", L"a'<!ELEMENT>'"},
        {L"<!DOCTYPE a [<!ELEMENT a ANY><!ELEMEN b><b>]><a/>", L"<doctype_tag_syntax offset=\"29\"/>",
         L"tag syntax error at offset 29 expecting markup declaration", L"a"},
        {L"<a><!-x--></a>", L"<comment_tag_syntax offset=\"3\"/>",
         L"tag syntax error at offset 3 expecting - to begin comment", L"a'<!-x-->'"},
        {L"<a><![CDAT[x]]></a>", L"<cdata_section_syntax offset=\"3\"/>",
         L"tag syntax error at offset 3 expecting 'CDATA'", L"a'<![CDAT[x]]>'"},
        {L"<a><b <c/></a>", L"<unterminated_tag_syntax offset=\"3\"/>", L"unterminated tag at offset 3",
         L"a'<b '[c]"},
        {L"<a/><!-- ->", L"<unterminated_tag_syntax offset=\"4\"/>", L"unterminated tag at offset 4", L"a"},
        {L"<a></a",
         L"<unterminated_tag_syntax offset=\"3\"/>"
         L"<unended_start_tag tagname=\"a\" offset=\"0\" offset2=\"6\"/>",
         L"unterminated tag at offset 3\nstart tag 'a' at offset 0 expecting end tag at offset 6", L"a"},
        {L"<!DOCTYPE a <a/>", L"<unterminated_tag_syntax offset=\"0\"/>", L"unterminated tag at offset 0",
         L"a"},
        {L"<a><b/><<",
         L"<first_tag_syntax offset=\"7\"/><first_tag_syntax offset=\"8\"/>"
         L"<unended_start_tag tagname=\"a\" offset=\"0\" offset2=\"9\"/>",
         L"tag syntax error at offset 7 expecting tag name / ! or ?\n"
         L"tag syntax error at offset 8 expecting tag name / ! or ?\n"
         L"start tag 'a' at offset 0 expecting end tag at offset 9",
         L"a'<<'[b]"},
    };
    for (const auto& row : rows) {
        MarkupDoc doc;
        EXPECT_FALSE(doc.SetDocumentText(row.text)) << base::narrow(row.words);
        EXPECT_EQ(doc.GetResult(), row.result);
        EXPECT_EQ(doc.GetErrorText(), row.words);
        EXPECT_EQ(test::told(doc), row.elements);
        EXPECT_EQ(doc.GetDocumentText(), row.text != nullptr ? row.text : L"");
        EXPECT_TRUE(doc.SetDocumentText(L"<a/>"));
        EXPECT_EQ(doc.GetErrorText(), L"") << "what was said before is forgotten";
    }
}

// Every text that ends too early is told so, wherever that is, and what began is not read past its end.
TEST(MarkupParse, EveryPrefix) {
    const std::wstring text =
        L"<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e \"x\"><!-- - -->]>"
        L"<a x='1' y=\"&amp;&#65;\"><b>t&lt;</b><![CDATA[ ]] ]]><!-- c --><?p q?><d/></a>";
    const std::size_t end = text.size();
    for (std::size_t size = 0; size < end; ++size) {
        MarkupDoc doc;
        EXPECT_FALSE(doc.SetDocumentText(text.substr(0, size).c_str())) << size;
        EXPECT_NE(doc.GetErrorText(), L"");
        while (doc.FindNode())
            doc.GetElementData();
        test::told(doc);
    }
    EXPECT_EQ(test::told(text), L"a{x=1,y=&A}' ]] '[b't<',d]");
}

// Texts that were made to be slow or deep: each is read in time that grows with its size.
TEST(MarkupParse, HardTexts) {
    const int many = 100'000;
    const std::wstring mega(4'000'000, L'x');
    const struct {
        const char* what;
        std::wstring text;
        bool is_good;
    } rows[] = {
        {"deep", repeated(L"<a>", many) + repeated(L"</a>", many), true},
        {"deep and never closed", repeated(L"<a>", many), false},
        {"deep, then lone end tags", repeated(L"<a>", many) + repeated(L"</b>", many), false},
        {"deep, then end tags in the wrong order", repeated(L"<a><b>", many) + repeated(L"</a></b>", many),
         false},
        {"a long attribute", L"<a x='" + mega + L"'/>", true},
        {"a long attribute without its end", L"<a x='" + mega, false},
        {"a long name", L"<" + mega + L"></" + mega + L">", true},
        {"a long text", L"<a>" + mega + L"</a>", true},
        {"many attributes", L"<a" + repeated(L" x='1'", many) + L"/>", true},
        {"many quotes", L"<a>" + repeated(L"<a x='", many), false},
        {"many comments without an end", repeated(L"<!--", many), false},
        {"many documents types", repeated(L"<!DOCTYPE \"", many), false},
        {"many stray signs", repeated(L"<&", many), false},
        {"many ampersands", L"<a>" + repeated(L"&#x", many) + L"</a>", true},
        {"many siblings", L"<a>" + repeated(L"<b/>", many) + L"</a>", true},
    };
    for (const auto& row : rows) {
        const auto start = std::chrono::steady_clock::now();
        MarkupDoc doc;
        EXPECT_EQ(doc.SetDocumentText(row.text.c_str()), row.is_good) << row.what;
        EXPECT_LT(doc.GetResult().size(), 100'000'000u / sizeof(wchar_t)) << row.what;
        EXPECT_FALSE(test::told(doc).empty() && row.is_good) << row.what;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << row.what;
    }
}

// The scanner of units of either width against a plain loop, the characters near others and near borders.
template<class Unit>
void check_scan() {
    std::basic_string<Unit> text;
    for (unsigned i = 0; i < 3000; ++i)
        text += static_cast<Unit>(U"<a>\"b'&c\0d="[i * i % 11] + (i % 7 == 0 ? 0x100 * (i % 0xFF) : 0));
    for (const unsigned unit : {0x3Fu, 0x7Fu, 0x80u, 0xFFu, 0x7FFFu, 0x8000u, 0x803Cu, 0xFF3Cu, 0xFFFFu})
        text += static_cast<Unit>(unit);
    const std::size_t size = text.size();
    text.append(MarkupScan<Unit>::blockSize, Unit());
    const auto is_sign = [](Unit unit) {
        return unit == '<' || unit == '>' || unit == '"' || unit == '\'' || unit == '&' || unit == 0;
    };
    MarkupScan<Unit> scan(text.data());
    for (std::size_t at = 0; at < size; ++at) {
        if (is_sign(text[at])) {
            const Unit* found = scan.Next();
            while (!is_sign(*found))
                found = scan.Next();
            ASSERT_EQ(found - text.data(), static_cast<std::ptrdiff_t>(at));
        }
        const Unit* const begin = text.data() + at;
        const Unit* const end = text.data() + std::min(size, at + 40);
        for (const Unit wanted : {Unit('='), Unit('"'), Unit(0xFF3C)})
            ASSERT_EQ(FindUnit(begin, end, wanted), std::find(begin, end, wanted));
        const auto is_equal_sign = [](Unit unit) { return unit == '='; };
        ASSERT_EQ(FindLowUnit(begin, end, is_equal_sign), std::find_if(begin, end, is_equal_sign));
        const TagFront front = MarkTagFront(begin);
        for (unsigned i = 0; i < 16; ++i) {
            ASSERT_EQ((front.low >> i & 1) != 0, begin[i] < 64);
            ASSERT_EQ((front.quotes >> i & 1) != 0, begin[i] == '"');
        }
    }
}

TEST(MarkupParse, UnitsOfSixteenAndThirtyTwoBits) {
    check_scan<char16_t>();
    check_scan<char32_t>();
}

} // namespace
