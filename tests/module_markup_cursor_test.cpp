// The cursor, and what is changed under it.
#include "tests/module_markup_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <random>
#include <vector>

namespace {

MarkupDoc document(const wchar_t* text) {
    MarkupDoc doc;
    doc.SetDocumentText(text);
    return doc;
}

TEST(MarkupCursor, Moves) {
    MarkupDoc doc = document(L"<?p?><a><b x='1'>1</b><c>2<d/></c><b>3</b></a><e/>");
    EXPECT_FALSE(doc.IntoElement() || doc.OutOfElement());
    EXPECT_EQ(doc.GetTagName().size() + doc.GetElementData().size() + doc.GetAttribute(L"x").size(), 0u);
    EXPECT_TRUE(doc.FindElement(L"e"));
    EXPECT_FALSE(doc.FindElement(L"a")) << "only forward";
    EXPECT_EQ(doc.GetTagName(), L"e") << "it stays when nothing is found";
    doc.ResetPosition();
    EXPECT_FALSE(doc.FindElement(L"b")) << "only on the level";
    ASSERT_TRUE(doc.FindElement(L"a") && doc.IntoElement());
    EXPECT_EQ(doc.GetLevel(), 1u);
    EXPECT_EQ(doc.GetTagName(), L"") << "before the first child";
    EXPECT_TRUE(doc.FindElement(L"b") && doc.GetElementData() == L"1" && doc.GetAttribute(L"x") == L"1");
    EXPECT_TRUE(doc.FindElement(L"b") && doc.GetElementData() == L"3" && doc.GetAttribute(L"x") == L"");
    EXPECT_FALSE(doc.FindElement(L"") || doc.FindElement(L"B") || doc.FindElement());
    ASSERT_TRUE(doc.OutOfElement());
    EXPECT_EQ(doc.GetTagName(), L"a");
    ASSERT_TRUE(doc.IntoElement() && doc.FindElement(L"c") && doc.IntoElement() && doc.FindElement(L""));
    EXPECT_EQ(doc.GetTagName(), L"d");
    ASSERT_TRUE(doc.IntoElement());
    EXPECT_FALSE(doc.FindElement());
    EXPECT_EQ(doc.GetLevel(), 3u);
    ASSERT_TRUE(doc.OutOfElement() && doc.OutOfElement() && doc.OutOfElement());
    EXPECT_FALSE(doc.OutOfElement());
    EXPECT_TRUE(doc.GetTagName() == L"a" && doc.GetNodeType() == MarkupNode::Element);
}

TEST(MarkupCursor, Attributes) {
    MarkupDoc doc =
        document(L"<a one='1' two='&lt;2' one='3' Two='' a-very-long-name-for-an-attribute='4'/>");
    ASSERT_TRUE(doc.FindElement());
    const wchar_t* const expected[][2] = {{L"one", L"1"},
                                          {L"two", L"<2"},
                                          {L"one", L"3"},
                                          {L"Two", L""},
                                          {L"a-very-long-name-for-an-attribute", L"4"}};
    for (const int i : {0, 1, 2, 3, 4, 4, 2, 1, 3, 0}) {
        EXPECT_EQ(doc.GetAttributeName(i), expected[i][0]);
        EXPECT_EQ(doc.GetAttributeValue(i), expected[i][1]);
    }
    for (const int i : {5, 6, -1, -2, 1 << 30})
        EXPECT_TRUE(doc.GetAttributeName(i).empty() && doc.GetAttributeValue(i).empty()) << i;
    EXPECT_EQ(doc.GetAttributeValue(1), L"<2");
    EXPECT_EQ(doc.GetAttribute(L"one"), L"1") << "the first of two";
    EXPECT_TRUE(doc.GetAttribute(L"ONE").empty() && doc.GetAttribute(nullptr).empty() &&
                doc.GetAttribute(L"").empty());
    MarkupDoc odd = document(L"<a x='1' 'no name'/>");
    ASSERT_TRUE(odd.FindElement());
    EXPECT_TRUE(odd.GetAttributeName(1).empty() && odd.GetAttributeValue(0) == L"1")
        << "asked too far before";
    const std::wstring_view kept = doc.GetAttribute(L"two");
    doc.GetAttribute(L"Two");
    doc.GetElementData();
    EXPECT_EQ(kept, L"<2") << "told texts stay until the cursor moves";
}

TEST(MarkupCursor, Nodes) {
    MarkupDoc doc =
        document(L"<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY e 'x'>]><a>t&lt;<!-- c --><b/><![CDATA[<&]]>"
                 L"</z ><!x><?p  q r?>u< v</a>");
    const struct {
        MarkupNode node;
        const wchar_t* name;
        const wchar_t* data;
    } top[] = {{MarkupNode::ProcessingInstruction, L"xml", L"version='1.0'"},
               {MarkupNode::Text, L"#text", L"\n"},
               {MarkupNode::DocumentType, L"a", L"[<!ENTITY e 'x'>]"},
               {MarkupNode::Element, L"a", L"t<<&<!x>u< v"}},
      inside[] = {{MarkupNode::Text, L"#text", L"t<"},
                  {MarkupNode::Comment, L"#comment", L" c "},
                  {MarkupNode::Element, L"b", L""},
                  {MarkupNode::CDataSection, L"#cdata-section", L"<&"},
                  {MarkupNode::EndTag, L"z", L""},
                  {MarkupNode::Text, L"#text", L"<!x>"},
                  {MarkupNode::ProcessingInstruction, L"p", L"q r"},
                  {MarkupNode::Text, L"#text", L"u< v"}};
    const auto check = [&doc](const auto& rows) {
        for (const auto& row : rows) {
            ASSERT_TRUE(doc.FindNode());
            EXPECT_EQ(doc.GetNodeType(), row.node);
            EXPECT_EQ(doc.GetTagName(), row.name);
            EXPECT_EQ(doc.GetElementData(), row.data);
            EXPECT_EQ(doc.IntoElement() && doc.OutOfElement(), row.node == MarkupNode::Element);
        }
        EXPECT_FALSE(doc.FindNode());
    };
    check(top);
    ASSERT_TRUE(doc.IntoElement());
    check(inside);
    ASSERT_TRUE(doc.OutOfElement() && doc.IntoElement() && doc.FindNode() && doc.FindNode());
    EXPECT_TRUE(doc.AddElement(L"new")) << "behind the comment";
    EXPECT_FALSE(doc.FindNode() && doc.GetNodeType() == MarkupNode::Element) << "its line end comes first";
    EXPECT_TRUE(doc.FindElement(L"b"));
}

TEST(MarkupChange, Elements) {
    const struct {
        const wchar_t* text;
        const wchar_t* into; // elements to go into, the last one to stand on
        const wchar_t* expected;
    } rows[] = {
        {L"", L"", L"<n>1 &amp; 2</n>\r\n"},
        {L"<?xml version='1.0'?>\r\n", L"", L"<?xml version='1.0'?>\r\n<n>1 &amp; 2</n>\r\n"},
        {L"<a/>", L"a ", L"<a>\r\n<n>1 &amp; 2</n>\r\n</a>"},
        {L"<a x='/' />", L"a ", L"<a x='/' >\r\n<n>1 &amp; 2</n>\r\n</a>"},
        {L"<a></a>", L"a ", L"<a>\r\n<n>1 &amp; 2</n>\r\n</a>"},
        {L"<a>t</a >", L"a ", L"<a>t<n>1 &amp; 2</n>\r\n</a >"},
        {L"<a>\r\n<b/>\r\n<c/>\r\n</a>", L"a ", L"<a>\r\n<b/>\r\n<c/>\r\n<n>1 &amp; 2</n>\r\n</a>"},
        {L"<a>\r\n<b/>\r\n<c/>\r\n</a>", L"ab", L"<a>\r\n<b/>\r\n<n>1 &amp; 2</n>\r\n<c/>\r\n</a>"},
        {L"<a><b/>\n<c/></a>", L"ab", L"<a><b/>\n<n>1 &amp; 2</n>\r\n<c/></a>"},
        {L"<a><b/><c/></a>", L"ac", L"<a><b/><c/><n>1 &amp; 2</n>\r\n</a>"},
        {L"<a><b>", L"ab ", L"<a><b>\r\n<n>1 &amp; 2</n>\r\n</b>"},
    };
    for (const auto& row : rows) {
        MarkupDoc doc = document(row.text);
        for (const wchar_t* name = row.into; *name != L'\0'; ++name) {
            if (name != row.into) {
                ASSERT_TRUE(doc.IntoElement());
            }
            ASSERT_TRUE(*name == L' ' || doc.FindElement(std::wstring(1, *name).c_str()));
        }
        ASSERT_TRUE(doc.AddElement(L"n", L"1 & 2"));
        EXPECT_TRUE(doc.GetTagName() == L"n" && doc.GetElementData() == L"1 & 2");
        EXPECT_EQ(doc.GetDocumentText(), row.expected);
        EXPECT_TRUE(doc.GetTagName() == L"n" && doc.GetElementData() == L"1 & 2") << "the cursor stays";
    }
}

TEST(MarkupChange, DataAndAttributes) {
    MarkupDoc doc = document(L"<a><b x = '1' y='2'  /><c>t<!-- gone --></c></a>");
    ASSERT_TRUE(doc.FindElement());
    EXPECT_FALSE(doc.SetElementData(L"x")) << "it has child elements";
    ASSERT_TRUE(doc.IntoElement());
    EXPECT_FALSE(doc.SetElementData(L"x") || doc.SetAttribute(L"x", L"y")) << "no element";
    ASSERT_TRUE(doc.FindElement());
    EXPECT_TRUE(doc.SetElementData(nullptr) && doc.SetAttribute(L"x", L"<\"'>") &&
                doc.SetAttribute(L"z", nullptr));
    EXPECT_TRUE(doc.GetElementData().empty());
    EXPECT_EQ(doc.GetAttribute(L"x"), L"<\"'>");
    EXPECT_TRUE(doc.SetElementData(L"]]>&") && doc.SetAttribute(L"y", L"2") && doc.FindElement(L"c"));
    EXPECT_TRUE(doc.SetElementData(L"") && doc.SetAttribute(L"水", L"\r\n\t"));
    for (const wchar_t* const name :
         {L"", L"1", L"-a", L"a b", L"a>", L"a=", L"a/", L"<", L"a&", L"a'", L"a\x01"})
        EXPECT_FALSE(doc.AddElement(name, L"") || doc.SetAttribute(name, L"")) << static_cast<int>(name[0]);
    EXPECT_FALSE(doc.AddElement(nullptr) || doc.SetAttribute(nullptr, L""));
    EXPECT_EQ(doc.GetDocumentText(), L"<a><b x=\"&lt;&quot;&apos;&gt;\" y=\"2\" z=\"\">]]&gt;&amp;</b>"
                                     L"<c 水=\"\r\n\t\"></c></a>");
}

// Tags that are none of XML's, but taken: the parser and the changes must see the same in them.
TEST(MarkupChange, OddTags) {
    for (const wchar_t* const text :
         {L"<a\" b>'\"/>", L"<a'<'></a>", L"<a x=1\" y=\"/>", L"<a 'x'\"y\">t</a>", L"<a x=>t</a>",
          L"<a x= />", L"<a x=/>", L"<a//>", L"<a x=1//>", L"<a =/>"}) {
        MarkupDoc doc = document(text);
        ASSERT_TRUE(doc.GetErrorText().empty() && doc.FindElement());
        EXPECT_EQ(doc.GetTagName(), L"a");
        const std::wstring x(doc.GetAttribute(L"x"));
        EXPECT_TRUE(doc.SetElementData(L"1 < 2") && doc.SetAttribute(L"n", L"'\""));
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(doc.GetElementData(), L"1 < 2");
            EXPECT_EQ(doc.GetAttribute(L"n"), L"'\"");
            EXPECT_EQ(doc.GetAttribute(L"x"), x);
            doc = document(std::wstring(doc.GetDocumentText()).c_str());
            ASSERT_TRUE(doc.GetErrorText().empty() && doc.FindElement());
        }
    }
}

// What the document should hold, without its line ends.
struct Model {
    std::wstring name;
    std::vector<std::pair<std::wstring, std::wstring>> attributes;
    std::wstring data;
    std::vector<std::unique_ptr<Model>> children;

    std::wstring told() const {
        std::wstring out = name;
        for (const auto& [key, value] : attributes)
            out += (out.size() == name.size() ? L"{" : L",") + key + L"=" + value;
        out += attributes.empty() ? L"" : L"}";
        out += data.empty() ? L"" : L"'" + data + L"'";
        for (const auto& child : children)
            out += (child == children.front() ? L"[" : L",") + child->told();
        return children.empty() ? out : out + L"]";
    }
};

std::wstring told_without_lines(MarkupDoc& doc) {
    std::wstring out = test::told(doc);
    std::erase_if(out, [](wchar_t c) { return c == L'\r' || c == L'\n'; });
    for (std::size_t at; (at = out.find(L"''")) != out.npos;)
        out.erase(at, 2);
    return out;
}

// Changes all over a document, against a plain tree; the text is asked for now and then.
TEST(MarkupChange, ManyAgainstAPlainTree) {
    for (const unsigned seed : {1u, 2u, 3u, 4u}) {
        std::mt19937 random(seed);
        const auto word = [&random] {
            static const wchar_t* const words[] = {L"给水",        L"&",   L"<x>",  L"",
                                                   L"a 'b' \"c\"", L"]]>", L"&#65;"};
            return std::wstring(words[random() % std::size(words)]) + std::to_wstring(random() % 100);
        };
        MarkupDoc doc = document(L"<?xml version='1.0'?>\r\n");
        ASSERT_TRUE(doc.AddElement(L"root"));
        Model root = {L"root", {}, {}, {}};
        for (int step = 0; step < 400; ++step) {
            // A random element, and the way to it.
            doc.ResetPosition();
            ASSERT_TRUE(doc.FindElement());
            Model* at = &root;
            while (!at->children.empty() && random() % 5 != 0) {
                const std::size_t child = random() % at->children.size();
                ASSERT_TRUE(doc.IntoElement());
                for (std::size_t i = 0; i <= child; ++i)
                    ASSERT_TRUE(doc.FindElement());
                at = at->children[child].get();
            }
            ASSERT_EQ(doc.GetTagName(), at->name);
            const std::wstring value = word();
            switch (random() % 8) {
            case 0:
            case 1: {
                const std::wstring key = L"k" + std::to_wstring(random() % 4);
                ASSERT_TRUE(doc.SetAttribute(key.c_str(), value.c_str()));
                const auto old = std::find_if(at->attributes.begin(), at->attributes.end(),
                                              [&](const auto& attribute) { return attribute.first == key; });
                if (old != at->attributes.end())
                    old->second = value;
                else
                    at->attributes.emplace_back(key, value);
                ASSERT_EQ(doc.GetAttribute(key.c_str()), value);
                break;
            }
            case 2:
                ASSERT_EQ(doc.SetElementData(value.c_str()), at->children.empty());
                if (at->children.empty())
                    at->data = value;
                break;
            case 3: {
                const auto text = std::wstring(doc.GetDocumentText());
                ASSERT_EQ(doc.GetTagName(), at->name);
                ASSERT_TRUE(document(text.c_str()).GetErrorText().empty());
                break;
            }
            default: {
                const std::wstring name = L"e" + std::to_wstring(step);
                ASSERT_TRUE(doc.IntoElement());
                std::size_t place = random() % (at->children.size() + 1);
                for (std::size_t i = 0; i < place; ++i)
                    ASSERT_TRUE(doc.FindElement());
                if (place == 0)
                    place = at->children.size();
                ASSERT_TRUE(doc.AddElement(name.c_str(), value.c_str()));
                at->children.insert(at->children.begin() + static_cast<std::ptrdiff_t>(place),
                                    std::make_unique<Model>(Model{name, {}, value, {}}));
            }
            }
        }
        doc.ResetPosition();
        ASSERT_EQ(told_without_lines(doc), root.told()) << seed;
        MarkupDoc again;
        ASSERT_TRUE(again.SetDocumentText(std::wstring(doc.GetDocumentText()).c_str())) << seed;
        doc.ResetPosition();
        ASSERT_EQ(told_without_lines(doc), root.told()) << seed;
        ASSERT_EQ(told_without_lines(again), root.told()) << seed;
    }
}

// A text that is written may stand in the document, which moves when it grows.
TEST(MarkupChange, TextsOfItsOwn) {
    MarkupDoc doc;
    ASSERT_TRUE(doc.AddElement(L"a"));
    std::wstring expected;
    for (int i = 0; i < 8; ++i) {
        const std::wstring whole(doc.GetDocumentText());
        doc.ResetPosition();
        ASSERT_TRUE(doc.FindElement() && doc.IntoElement());
        ASSERT_TRUE(doc.AddElement(L"e", doc.GetDocumentText().data()));
        EXPECT_EQ(doc.GetElementData(), whole);
        expected += whole;
    }
    std::wstring told;
    doc.ResetPosition();
    ASSERT_TRUE(doc.FindElement() && doc.IntoElement());
    while (doc.FindElement())
        told += doc.GetElementData();
    EXPECT_EQ(told, expected);
}

// Time and memory grow with the number of changes, not with its square.
TEST(MarkupChange, Many) {
    const auto start = std::chrono::steady_clock::now();
    MarkupDoc doc;
    ASSERT_TRUE(doc.AddElement(L"root") && doc.IntoElement());
    for (int i = 0; i < 100'000; ++i)
        ASSERT_TRUE(doc.AddElement(L"e", L"some text of an element"));
    EXPECT_EQ(doc.GetDocumentText().size(), 17u + 100'000 * 32);
    const std::wstring value(1000, L'v');
    for (int i = 0; i < 20'000; ++i)
        ASSERT_TRUE(doc.SetElementData(value.c_str()) && doc.SetAttribute(L"a", value.c_str()));
    EXPECT_EQ(doc.GetDocumentText().size(), 17u + 100'000 * 32 - 23 + 2005);
    for (int depth = 0; depth < 100'000; ++depth)
        ASSERT_TRUE(doc.IntoElement() && doc.AddElement(L"d"));
    EXPECT_EQ(doc.GetLevel(), 100'001u);
    EXPECT_TRUE(document(std::wstring(doc.GetDocumentText()).c_str()).GetErrorText().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace
