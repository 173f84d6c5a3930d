// The command configuration: what is written is read again, from memory and from the file, as a plain model
// has it; what is only read stays as it is.
#include "base/utf.h"
#include "module/frame/CmdConfigTool.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "sys/folders.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

using namespace CmdConfigTool;
using texts = std::vector<std::wstring>;

class ModuleConfig : public testing::Test {
protected:
    ModuleConfig() { g_csSysPath = sys::from_path(sys::profile_folder() / "").c_str(); }
    ~ModuleConfig() override {
        CloseConfigFile();
        g_csSysPath = L"";
    }
    const test::profile folder_;
};

texts list_of(const CStringArray& array) {
    texts all;
    for (INT_PTR i = 0; i < array.GetSize(); ++i)
        all.emplace_back(array[i].GetString());
    return all;
}

struct array : CStringArray {
    array(std::initializer_list<std::wstring> all) {
        for (const std::wstring& text : all)
            Add(text.c_str());
    }
};

// An item, or an element of a list.
struct node {
    std::wstring name = {};
    bool is_value = false;
    std::wstring text = {};
    std::map<std::wstring, std::wstring> attributes = {};
    std::vector<node> below = {};

    node* find(const std::wstring& wanted) {
        const auto found =
            std::ranges::find_if(below, [&](const node& one) { return !one.is_value && one.name == wanted; });
        return found != below.end() ? &*found : nullptr;
    }
    node* find(const texts& path) {
        node* at = this;
        for (const std::wstring& step : path)
            at = at != nullptr ? at->find(step) : nullptr;
        return at;
    }
    node& ensure(const texts& path) {
        node* at = this;
        for (const std::wstring& step : path) {
            if (at->find(step) == nullptr)
                at->below.push_back({.name = step});
            at = at->find(step);
        }
        return *at;
    }
    void set(const std::wstring& value, const texts& values = {}) {
        std::erase_if(below, [](const node& one) { return one.is_value; });
        text = value;
        for (const std::wstring& one : values)
            below.push_back({.is_value = true, .text = one});
    }
    texts all(bool values_only) const {
        texts found;
        for (const node& one : below)
            if (one.is_value || !values_only)
                found.push_back(one.text);
        return found;
    }
    void save() { // a file has no place for the text of an item that has items below it
        if (!below.empty())
            text.clear();
        for (node& one : below)
            one.save();
    }
};

// What a question is answered, "-" when it is refused.
texts answers(const std::wstring& section, const std::wstring& key) {
    CString text(L"as it was");
    array values{L"as it was"};
    CStringArray below;
    LeafNode leaf;
    const bool there = ReadItem(section.c_str(), key.c_str(), text);
    EXPECT_EQ(ReadItem(section.c_str(), key.c_str(), values), there);
    EXPECT_EQ(ReadItem(section.c_str(), key.c_str(), leaf), there);
    EXPECT_EQ(ReadChildItem(section.c_str(), L"name", key.c_str(), below), there);
    texts all = {there ? L"+" : L"-", text.GetString(), leaf.m_value.GetString()};
    for (const AttNode& one : leaf.m_attributes)
        all.push_back(std::wstring(one.m_name) + L"=" + one.m_value.GetString());
    std::ranges::copy(list_of(values), std::back_inserter(all));
    std::ranges::copy(list_of(below), std::back_inserter(all));
    return all;
}

texts answers(node* item) {
    if (item == nullptr)
        return {L"-", L"as it was", L"", L"as it was"};
    texts all = {L"+", item->text, item->text};
    for (const auto& [name, value] : item->attributes)
        all.push_back(name + L"=" + value);
    std::ranges::copy(item->all(true), std::back_inserter(all));
    std::ranges::copy(item->all(false), std::back_inserter(all));
    return all;
}

TEST_F(ModuleConfig, AThousandSequencesAgreeWithAPlainModel) {
    const std::wstring sections[] = {L"DWG默认数据", L"<&>\"'", L""};
    const std::wstring steps[] = {L"a", L"b", L"管长精度"};
    const std::wstring values[] = {L"", L"1", L"  blanks ", L"<a>&amp;\"'", L"𠮷\n二", L"]]>"};
    const std::wstring names[] = {L"id", L"比例"};
    std::mt19937 random(15);
    const auto one_of = [&](const auto& from) { return from[random() % std::size(from)]; };
    for (int sequence = 0; sequence < 1000; ++sequence) {
        const std::filesystem::path file = folder_ / "a.xml";
        std::filesystem::remove(file);
        node model;
        EXPECT_FALSE(OpenConfigFile(L"a.xml"));
        EXPECT_FALSE(WriteItem(L"s", L"k", L"v")) << "without a root path";
        SetRootPath(L"vantrel\\其他");
        EXPECT_TRUE(CreateRootPath(L"\\vantrel\\\\其他\\"));
        bool changed = true;
        for (int step = 0; step < 12; ++step) {
            const std::wstring section = one_of(sections);
            texts path = {section};
            std::wstring key;
            for (auto depth = random() % 3; path.size() < depth + 2; key += path.back() + L"\\")
                path.push_back(one_of(steps));
            const std::wstring value = one_of(values), other = one_of(values), name = one_of(names);
            switch (random() % 8) {
            case 0:
                EXPECT_TRUE(WriteItem(section.c_str(), key.c_str(), value.c_str()));
                model.ensure(path).set(value);
                break;
            case 1:
                EXPECT_TRUE(WriteItem(section.c_str(), key.c_str(), array{value, other}));
                model.ensure(path).set(L"", {value, other});
                break;
            case 2:
                EXPECT_TRUE(WriteItem(section.c_str(), key.c_str(),
                                      LeafNode{value.c_str(), {{name.c_str(), other.c_str()}}}));
                model.ensure(path).set(value);
                model.find(path)->attributes = {{name, other}};
                break;
            case 3:
                EXPECT_TRUE(
                    WriteAttribute(section.c_str(), L"name", key.c_str(), name.c_str(), value.c_str()));
                model.ensure(path).attributes[name] = value;
                break;
            case 4:
                EXPECT_FALSE(WriteItem(section.c_str(), key.c_str(), L"\x01")) << "XML has no such character";
                EXPECT_FALSE(WriteItem(section.c_str(), key.c_str(), L"\xDC80"));
                EXPECT_FALSE(WriteItem(section.c_str(), L"\\", value.c_str()));
                EXPECT_FALSE(WriteItem(section.c_str(), key.c_str(), LeafNode{L"", {{L"a b", L""}}}));
                EXPECT_FALSE(WriteItem(section.c_str(), key.c_str(), LeafNode{L"", {{L"name", L""}}}));
                continue;
            case 5: {
                const std::string before = changed ? "" : test::read(file);
                EXPECT_EQ(CloseConfigFile(), changed);
                EXPECT_TRUE(changed || test::read(file) == before) << "a file only read is not written";
                model.save();
                EXPECT_TRUE(OpenConfigFile(L"a.xml"));
                SetRootPath(L"vantrel\\其他");
                changed = false;
                continue;
            }
            default:
                ASSERT_EQ(answers(section, key), answers(model.find(path)))
                    << sequence << "." << step << " " << base::narrow(section + L"/" + key);
                continue;
            }
            changed = true;
        }
        CloseConfigFile();
    }
}

TEST_F(ModuleConfig, ListsOfRecordsAndOtherIdentifyingAttributes) {
    OpenConfigFile(L"a.xml");
    ASSERT_TRUE(CreateRootPath(L"vantrel\\kol"));
    EXPECT_FALSE(CreateRootPath(L"other\\kol")) << "a file has one root";
    const std::vector<LeafNode> written = {{L"1", {{L"name", L"一"}, {L"b", L""}}}, {L"", {}}};
    EXPECT_TRUE(WriteItem(L"s", L"list", written));
    EXPECT_TRUE(WriteItem(L"s", L"id", L"7\\8", L"deep"));
    EXPECT_TRUE(WriteItem(L"s", L"id", L"7", LeafNode{L"", {{L"name", L"n"}}}));
    EXPECT_TRUE(CloseConfigFile());
    EXPECT_EQ(test::read(folder_ / "a.xml"),
              "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\"?>\r\n"
              "<vantrel>\r\n<kol>\r\n<cmd name=\"s\">\r\n"
              "<item name=\"list\">\r\n"
              "<val b=\"\" name=\"一\">1</val>\r\n<val/>\r\n</item>\r\n"
              "<item id=\"7\" name=\"n\">\r\n<item id=\"8\">deep</item>\r\n"
              "</item>\r\n</cmd>\r\n</kol>\r\n</vantrel>\r\n");
    ASSERT_TRUE(OpenConfigFile(L"A.XML"));
    std::vector<LeafNode> read;
    EXPECT_TRUE(ReadItem(L"s", L"list", read));
    ASSERT_EQ(read.size(), 2u);
    EXPECT_TRUE(read[0].HasAttribute(L"b"));
    EXPECT_STREQ(read[0].GetAttribute(L"name"), L"一");
    EXPECT_FALSE(read[1].HasAttribute(L"name"));
    CString text;
    EXPECT_TRUE(ReadItem(L"s", L"id", L"7\\8", text));
    EXPECT_STREQ(text, L"deep");
    EXPECT_TRUE(ReadAttribute(L"s", L"id", L"7", L"name", text));
    EXPECT_STREQ(text, L"n");
    EXPECT_FALSE(ReadAttribute(L"s", L"id", L"7", L"none", text));
    EXPECT_STREQ(text, L"n");
}

TEST_F(ModuleConfig, FilesInOtherFormsAndBrokenOnes) {
    const std::string body =
        "<vantrel><kol><cmd name=\"s\"><item name=\"k\">\xB9\xDC</item></cmd></kol></vantrel>";
    const struct {
        std::string bytes;
        bool opens, saves;
        std::string_view kept; // beside what was written over
    } rows[] = {
        {"<?xml version=\"1.0\" encoding=\"GBK\"?><!-- \xB9\xDC -->" + body, true, true, ""},
        {body, true, true, ""},
        {"\xEF\xBB\xBF<vantrel><kol><cmd name=\"s\"><item name=\"k\">管</item></cmd></kol></vantrel>", true,
         true, ""},
        {"<?xml version=\"1.0\" encoding=\"utf-8\"?>" + body, true, true, ""}, // it is GBK all the same
        {"<?xml version=\"1.0\" encoding=\"utf-8\"?><vantrel>\xFF\xFF</vantrel>", false, false, ""},
        {"<vantrel><kol>", false, true, "<vantrel><kol>"},
        {"", false, true, ""},
    };
    for (const auto& row : rows) {
        const auto file = folder_ / "a.xml";
        test::put(file, row.bytes);
        std::filesystem::remove(folder_ / "a.xml.bak");
        CString text(L"管");
        EXPECT_EQ(OpenConfigFile(L"a.xml"), row.opens) << row.bytes;
        EXPECT_EQ(ReadItem(L"s", L"k", text), row.opens);
        EXPECT_STREQ(text, L"管");
        EXPECT_FALSE(CloseConfigFile());
        EXPECT_EQ(test::read(file), row.bytes) << "only read";

        OpenConfigFile(L"a.xml");
        EXPECT_TRUE(CreateRootPath(L"vantrel\\kol"));
        EXPECT_TRUE(WriteItem(L"s", L"new", L"值"));
        EXPECT_EQ(CloseConfigFile(), row.saves) << row.bytes;
        EXPECT_EQ(test::read(folder_ / "a.xml.bak"), row.kept);
        if (!row.saves)
            EXPECT_EQ(test::read(file), row.bytes);
        else
            EXPECT_TRUE(OpenConfigFile(L"a.xml") && ReadItem(L"s", L"new", text));
        CloseConfigFile();
    }
    for (const wchar_t* const name : {L"", L"../a.xml", L"x/../../a.xml", L"/etc/hostname"})
        EXPECT_FALSE(OpenConfigFile(name));
    std::filesystem::remove_all(sys::profile_folder()); // it vanishes meanwhile
    OpenConfigFile(L"a.xml");
    EXPECT_TRUE(CreateRootPath(L"vantrel\\kol") && WriteItem(L"s", L"k", L"v"));
    EXPECT_FALSE(CloseConfigFile());
}

} // namespace
