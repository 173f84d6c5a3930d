#include "module/engines/VRbTree.h"

// The two functions are not exported: the test has its own.
#include "module/engines/VRbTreeXml.cpp"

#include "sys/folders.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

// The items in one line: name=value[attribute=value], children in braces.
std::wstring Shown(const CVRbTreeItem* item) {
    std::wstring line;
    for (; item != nullptr; item = item->GetNext()) {
        line += line.empty() ? L"" : L" ";
        line += item->GetName();
        if (!item->GetValue().IsEmpty())
            line += L'=' + std::wstring(item->GetValue());
        CString name, value;
        for (int at = item->GetAttribIterator(); item->GetNextAttrib(at, name, value);)
            line += L'[' + std::wstring(name) + L'=' + std::wstring(value) + L']';
        if (item->GetChild() != nullptr)
            line += L'{' + Shown(item->GetChild()) + L'}';
        // What is told backwards is the same.
        EXPECT_EQ(item->GetNext() != nullptr ? item->GetNext()->GetPrev() : item, item);
        EXPECT_EQ(item->GetChild() != nullptr ? item->GetChild()->GetParent() : item, item);
    }
    return line;
}

std::wstring Shown(const CVRbTree& tree) {
    return Shown(tree.GetRootItem());
}

// a{b{d} c{e f}} g
CVRbTree Sample() {
    CVRbTree tree;
    CVRbTreeItem* const a = tree.InsertItem(L"a");
    CVRbTreeItem* const b = tree.InsertItem(L"b", a);
    CVRbTreeItem* const c = tree.InsertItem(L"c", a);
    tree.InsertItem(L"d", b);
    tree.InsertItem(L"e", c);
    tree.InsertItem(L"f", c);
    tree.InsertItem(L"g", VRBTREE_ROOT);
    return tree;
}

constexpr int g_deep = 100'000;

// A chain of that many items; the names of the lowest ones differ.
CVRbTree Deep() {
    CVRbTree tree;
    CVRbTreeItem* item = tree.InsertItem(L"n");
    for (int i = 1; i < g_deep; ++i)
        item = tree.InsertItem(i == g_deep - 1 ? L"lowest" : L"n", item);
    item->SetValue(7);
    return tree;
}

TEST(ModuleTree, InsertsAtEveryPlace) {
    CVRbTree tree = Sample();
    CVRbTreeItem* const a = tree.GetRootItem();
    CVRbTreeItem* const b = a->GetChild();
    const struct {
        CVRbTreeItem* parent;
        CVRbTreeItem* after;
        LPCTSTR shown;
    } rows[] = {
        {a, VRBTREE_FIRST, L"a{x b{d} c{e f}} g"},
        {a, VRBTREE_LAST, L"a{b{d} c{e f} x} g"},
        {a, nullptr, L"a{b{d} c{e f} x} g"},
        {a, b, L"a{b{d} x c{e f}} g"},
        {a, b->GetNext(), L"a{b{d} c{e f} x} g"},
        {b->GetChild(), VRBTREE_FIRST, L"a{b{d{x}} c{e f}} g"},
        {VRBTREE_ROOT, VRBTREE_FIRST, L"x a{b{d} c{e f}} g"},
        {nullptr, VRBTREE_LAST, L"a{b{d} c{e f}} g x"},
        {VRBTREE_ROOT, a, L"a{b{d} c{e f}} x g"},
        {a, a, L""},
        {VRBTREE_ROOT, b, L""},
        {VRBTREE_LAST, VRBTREE_LAST, L""},
    };
    for (const auto& row : rows) {
        CVRbTreeItem* const item = tree.InsertItem(L"x", row.parent, row.after);
        ASSERT_EQ(item != nullptr, *row.shown != 0) << row.shown;
        if (item != nullptr) {
            EXPECT_EQ(Shown(tree), row.shown);
        }
        EXPECT_EQ(tree.DeleteItem(item), item != nullptr);
        EXPECT_EQ(Shown(tree), L"a{b{d} c{e f}} g");
    }
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(VRBTREE_ROOT), -65536);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(VRBTREE_FIRST), -65535);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(VRBTREE_LAST), -65534);
}

TEST(ModuleTree, WalksAndDeletes) {
    CVRbTree tree = Sample();
    CVRbTreeItem* const a = tree.GetRootItem();
    CVRbTreeItem* const c = tree.GetLastChildItem(a);
    EXPECT_EQ(c->GetName(), L"c");
    EXPECT_EQ(tree.GetChildItem(VRBTREE_ROOT), a);
    EXPECT_EQ(tree.GetChildItem(nullptr), nullptr);
    EXPECT_EQ(tree.GetValidChildItem(nullptr), a);
    EXPECT_EQ(tree.GetLastChildItem(VRBTREE_ROOT), tree.GetNextSiblingItem(a));
    EXPECT_EQ(tree.GetPrevSiblingItem(c), a->GetChild());
    EXPECT_EQ(tree.GetPrevSiblingItem(a), nullptr);
    EXPECT_EQ(tree.GetParentItem(c), a);
    EXPECT_EQ(tree.GetParentItem(a), nullptr);
    EXPECT_TRUE(tree.ItemHasChildren(c) && !tree.ItemHasChildren(c->GetChild()));
    EXPECT_EQ(a->GetLevel(), 0);
    EXPECT_EQ(c->GetChild()->GetLevel(), 2);
    EXPECT_TRUE(a->IsKindOf(RUNTIME_CLASS(CVRbTreeItem)) && tree.IsKindOf(RUNTIME_CLASS(CVRbTree)));

    EXPECT_TRUE(tree.DeleteChildren(c));
    EXPECT_EQ(Shown(tree), L"a{b{d} c} g");
    EXPECT_TRUE(tree.DeleteItem(a->GetChild()));
    EXPECT_EQ(Shown(tree), L"a{c} g");
    EXPECT_FALSE(tree.DeleteItem(nullptr) || tree.DeleteChildren(nullptr) || tree.DeleteItem(VRBTREE_FIRST));
    // Items that come in the place of destroyed ones hold nothing of them.
    c->SetAttrib(L"k", L"v");
    c->SetValue(L"old");
    tree.DeleteItem(c);
    tree.InsertItem(L"new", a);
    EXPECT_EQ(Shown(tree), L"a{new} g");
    EXPECT_TRUE(tree.DeleteItem(VRBTREE_ROOT));
    EXPECT_EQ(tree.GetRootItem(), nullptr);
    tree = Sample();
    tree.DeleteAllItems();
    EXPECT_EQ(tree.GetRootItem(), nullptr);
}

TEST(ModuleTree, Finds) {
    CVRbTree tree = Sample();
    CVRbTreeItem* const a = tree.GetRootItem();
    CVRbTreeItem* const b = a->GetChild();
    CVRbTreeItem* const c = b->GetNext();
    CVRbTreeItem* const e = c->GetChild();
    e->SetAttrib(L"only", L"here");
    CVRbTreeItem* const second = tree.InsertItem(L"d", a);
    const struct {
        LPCTSTR name;
        CVRbTreeItem* from;
        CVRbTreeItem* found;
    } rows[] = {
        {L"a", nullptr, a},
        {L"d", nullptr, b->GetChild()},
        {L"d", VRBTREE_ROOT, b->GetChild()},
        {L"d", c, second},
        {L"e", b, e},
        {L"g", a, a->GetNext()},
        {L"g", b, nullptr},
        {L"a", b, nullptr},
        {L"b", b, b},
        {L"D", a, nullptr},
        {L"only", nullptr, nullptr},
        {L"a", VRBTREE_LAST, nullptr},
    };
    for (const auto& row : rows)
        EXPECT_EQ(tree.FindItem(row.name, row.from), row.found) << row.name;
    EXPECT_EQ(tree.FindItemBy(L"only", L"here"), e);
    EXPECT_EQ(tree.FindItemBy(L"only", L"here", e->GetNext()), nullptr);
    EXPECT_EQ(tree.FindItemBy(L"only", L""), nullptr);
    EXPECT_EQ(CVRbTree().FindItem(L"a"), nullptr);

    EXPECT_EQ(a->FindSubItem(L"d"), second);
    EXPECT_EQ(a->FindSubItem(L"e"), nullptr);
    EXPECT_EQ(e->FindTopSubItem(L"c"), c);
    EXPECT_EQ(a->FindTopSubItem(L"c"), c);
    b->SetAttrib(L"dn", 2.0, 1);
    c->SetAttrib(L"dn", 2);
    EXPECT_EQ(a->FindSubItemBy(L"dn", 2), c);
    EXPECT_EQ(a->FindSubItemBy(L"dn", L"2.0"), b);
    EXPECT_EQ(a->FindSubItemBy(L"dn", 1.96, 1), b);
    EXPECT_EQ(a->FindSubItemBy(L"dn", 2.0, 2), nullptr);
    EXPECT_EQ(a->FindSubItemBy(L"none", L""), nullptr);
    EXPECT_EQ(e->FindTopSubItemBy(L"dn", 2), c);
    EXPECT_EQ(e->FindTopSubItemBy(L"dn", L"2.0"), b);
    EXPECT_EQ(e->FindTopSubItemBy(L"dn", 2.0, 1), b);
    EXPECT_EQ(e->GetPath(), L"a/c/e/");
    EXPECT_EQ(e->GetPathBy(L"dn"), L"/2//");
}

TEST(ModuleTree, TypedValues) {
    CVRbTree tree;
    CVRbTreeItem* const item = tree.InsertItem(L"a");
    const struct {
        LPCTSTR text;
        int integer; // with the default -1
        double real; // with the default -0.5
    } read[] = {
        {L"", -1, -0.5},          {L"25", 25, 25.0},
        {L" -3.75mm", -3, -3.75}, {L"DN25", -1, -0.5},
        {L"1e2", 1, 100.0},       {L"+7", 7, 7.0},
        {L".5", -1, 0.5},         {L"99999999999", 2147483647, 99999999999.0},
    };
    for (const auto& row : read) {
        item->SetValue(row.text);
        item->SetAttrib(L"k", row.text);
        EXPECT_EQ(item->GetValue(-1), row.integer) << row.text;
        EXPECT_EQ(item->GetValue(-0.5), row.real) << row.text;
        EXPECT_EQ(item->GetAttrib(L"k", -1), row.integer) << row.text;
        EXPECT_EQ(item->GetAttrib(L"k", -0.5), row.real) << row.text;
    }
    const struct {
        double value;
        int precision;
        LPCTSTR text;
    } written[] = {{1.5, 2, L"1.50"},
                   {2.0, 0, L"2"},
                   {2.0, 3, L"2.000"},
                   {-0.125, 2, L"-0.12"},
                   {1e20, 0, L"100000000000000000000"}};
    for (const auto& row : written) {
        item->SetValue(row.value, row.precision);
        item->SetAttrib(L"k", row.value, row.precision);
        EXPECT_EQ(item->GetValue(), row.text);
        EXPECT_EQ(item->GetAttrib(L"k"), row.text);
    }
    item->SetValue(-2147483647 - 1);
    EXPECT_EQ(item->GetValue(), L"-2147483648");
    item->SetValue(L"");
    item->SetAttrib(L"k", L"");
    EXPECT_EQ(item->GetValue(L"default"), L"default");
    EXPECT_EQ(item->GetAttrib(L"k", L"default"), L"");
    EXPECT_EQ(item->GetAttrib(L"no", L"default"), L"default");
    EXPECT_EQ(item->GetAttrib(L"no", 5), 5);
    EXPECT_EQ(item->GetAttrib(nullptr), L"");
    item->SetName(nullptr);
    EXPECT_EQ(item->GetName(), L"");
}

TEST(ModuleTree, AttributesAreSortedByName) {
    CVRbTree tree;
    CVRbTreeItem* const item = tree.InsertItem(L"a");
    for (const LPCTSTR name : {L"m", L"b", L"z", L"B", L"b", L"管", L"bb"})
        item->SetAttrib(name, name);
    item->SetAttrib(L"m", L"changed");
    EXPECT_EQ(Shown(tree), L"a[B=B][b=b][bb=bb][m=changed][z=z][管=管]");
    EXPECT_EQ(item->GetAttribCount(), 6);
    EXPECT_TRUE(item->DeleteAttrib(L"bb") && item->DeleteAttrib(L"B") && item->DeleteAttrib(L"管"));
    EXPECT_FALSE(item->DeleteAttrib(L"B"));
    EXPECT_EQ(Shown(tree), L"a[b=b][m=changed][z=z]");
    item->DeleteAllAttribs();
    EXPECT_EQ(item->GetAttribCount(), 0);
}

// `act` is what is done to the sample: a function, an item, its new parent and what it shall come behind,
// each item by its name, "" being the top, or null for the last place and "<" for the first.
bool Act(CVRbTree& tree, std::wstring_view act, LPCTSTR item, LPCTSTR parent, LPCTSTR after) {
    const auto at = [&](LPCTSTR name) { return *name != 0 ? tree.FindItem(name) : VRBTREE_ROOT; };
    if (act == L"copy")
        return tree.CopyTreeItem(at(item), at(parent)) != nullptr;
    if (act == L"tree")
        return tree.AppendTree(tree, at(parent)), true;
    if (act == L"make")
        return tree.MakeTree(at(item), tree);
    CVRbTreeItem* const place = after == nullptr ? VRBTREE_LAST : *after == L'<' ? VRBTREE_FIRST : at(after);
    return tree.MoveItemTo(at(item), at(parent), place);
}

TEST(ModuleTree, CopiesAndMoves) {
    const CVRbTree sample = Sample();
    const struct {
        LPCTSTR act, item, parent, after, shown; // refused when nothing is shown
    } rows[] = {
        {L"copy", L"b", L"g", nullptr, L"a{b{d} c{e f}} g{b{d}}"},
        {L"copy", L"b", L"", nullptr, L"a{b{d} c{e f}} g b{d}"},
        {L"copy", L"a", L"b", nullptr, L"a{b{d a{b{d} c{e f}}} c{e f}} g"},
        {L"copy", L"", L"b", nullptr, L""},
        {L"tree", L"", L"c", nullptr, L"a{b{d} c{e f a{b{d} c{e f}} g}} g"},
        {L"tree", L"", L"", nullptr, L"a{b{d} c{e f}} g a{b{d} c{e f}} g"},
        {L"make", L"c", L"", nullptr, L"c{e f}"},
        {L"make", L"", L"", nullptr, L""},
        {L"move", L"b", L"c", nullptr, L"a{c{e f b{d}}} g"},
        {L"move", L"b", L"", L"<", L"b{d} a{c{e f}} g"},
        {L"move", L"b", L"a", L"c", L"a{c{e f} b{d}} g"},
        {L"move", L"g", L"a", L"<", L"a{g b{d} c{e f}}"},
        {L"move", L"a", L"g", nullptr, L"g{a{b{d} c{e f}}}"},
        {L"move", L"a", L"b", nullptr, L""},
        {L"move", L"a", L"a", nullptr, L""},
        {L"move", L"b", L"a", L"b", L""},
        {L"move", L"b", L"a", L"g", L""},
        {L"move", L"", L"c", nullptr, L""},
    };
    for (const auto& row : rows) {
        CVRbTree tree(sample);
        // Places of destroyed items are used again.
        tree.InsertItem(L"gone", tree.InsertItem(L"gone"));
        tree.DeleteItem(tree.FindItem(L"gone"));
        EXPECT_EQ(Act(tree, row.act, row.item, row.parent, row.after), *row.shown != 0) << row.shown;
        EXPECT_EQ(Shown(tree), *row.shown != 0 ? row.shown : L"a{b{d} c{e f}} g") << row.act << row.item;
    }
    EXPECT_EQ(Shown(sample), L"a{b{d} c{e f}} g");

    // A change of the copy is none of the original's.
    CVRbTree first = Sample();
    first.GetRootItem()->SetAttrib(L"k", L"v");
    first.GetRootItem()->SetValue(L"1");
    CVRbTree second;
    second.InsertItem(L"gone");
    second = first;
    second.GetRootItem()->SetAttrib(L"k", L"w");
    second.GetRootItem()->SetValue(L"2");
    second.GetRootItem()->SetName(L"x");
    EXPECT_EQ(Shown(first), L"a=1[k=v]{b{d} c{e f}} g");
    EXPECT_EQ(Shown(second), L"x=2[k=w]{b{d} c{e f}} g");
}

TEST(ModuleTree, DeepTreesNeedNoStack) {
    const CVRbTree tree = Deep();
    CVRbTree copy(tree);
    CVRbTreeItem* const lowest = copy.FindItem(L"lowest");
    ASSERT_NE(lowest, nullptr);
    EXPECT_EQ(lowest->GetLevel(), g_deep - 1);
    EXPECT_EQ(lowest->GetPath().GetLength(), 2 * (g_deep - 1) + 7);
    EXPECT_EQ(copy.FindItem(L"none"), nullptr);
    EXPECT_FALSE(copy.MoveItemTo(copy.GetRootItem(), lowest));

    const test::folder folder;
    const std::wstring path = sys::from_path(folder / "deep.xml");
    ASSERT_TRUE(SaveTreeToXml(copy, path.c_str(), L"utf-8", true));
    CVRbTree loaded;
    ASSERT_TRUE(LoadTreeFromXml(path.c_str(), loaded));
    const CVRbTreeItem* item = loaded.GetRootItem();
    for (int i = 1; i < g_deep; ++i)
        item = item->GetChild();
    EXPECT_EQ(item->GetName(), L"lowest");
    EXPECT_EQ(item->GetValue(0), 7);
    EXPECT_TRUE(copy.DeleteItem(copy.GetRootItem()));
    EXPECT_EQ(copy.GetRootItem(), nullptr);
}

TEST(ModuleTree, LoadsXml) {
    const test::folder folder;
    const std::pair<std::string_view, LPCTSTR> rows[] = {
        {"<a/>", L"a"},
        {"<?xml version='1.0' encoding='utf-8'?>\n<管线 z='1' b='&lt;&#x7BA1;'>x &amp; y</管线>\n",
         L"管线=x & y[b=<管][z=1]"},
        {"<a>\r\n\t<b>1</b>\r\n\t<!-- c --><c k=''/>\r\n</a>", L"a{b=1 c[k=]}"},
        {"<a>text<b/></a>", L"a=text{b}"},
        {"<a> <b>  </b></a>", L"a{b=  }"},
        {"<a><![CDATA[<x>]]></a>", L"a=<x>"},
        {"<a k='1' j='2' k='3'/>", L"a[j=2][k=3]"},
        {"<a><b><c><d/></c></b><e/></a>", L"a{b{c{d}} e}"},
        {"<a><b k='xx12'/><b k='xx13'/><b k='xx12'>v</b><b k='xx12' /></a>",
         L"a{b[k=xx12] b[k=xx13] b=v[k=xx12] b[k=xx12]}"},
    };
    for (const auto& [text, shown] : rows) {
        CVRbTree tree;
        EXPECT_TRUE(LoadTreeFromXml(sys::from_path(folder.write("t.xml", text)).c_str(), tree)) << text;
        EXPECT_EQ(Shown(tree), shown);
    }
    // What was not cleared before stays beside.
    CVRbTree tree = Sample();
    tree.GetRootItem()->SetAttrib(L"k", L"old");
    tree.GetRootItem()->SetAttrib(L"m", L"old");
    EXPECT_TRUE(LoadTreeFromXml(sys::from_path(folder.write("t.xml", "<n k='new'>v<h/></n>")).c_str(), tree));
    EXPECT_EQ(Shown(tree), L"n=v[k=new][m=old]{b{d} c{e f} h} g");
}

TEST(ModuleTree, FailedLoadsChangeNothing) {
    const test::folder folder;
    CVRbTree tree = Sample();
    EXPECT_EQ(LoadTreeFromXml(sys::from_path(folder / "none.xml").c_str(), tree), 0);
    for (const std::string_view text : {"", "<?xml version='1.0'?>", "<a><b></a>", "<a/><b/>", "no element"})
        EXPECT_EQ(LoadTreeFromXml(sys::from_path(folder.write("t.xml", text)).c_str(), tree), 0) << text;
    EXPECT_EQ(Shown(tree), L"a{b{d} c{e f}} g");
}

TEST(ModuleTree, SavesXml) {
    const test::folder folder;
    const auto path = folder / "t.xml";
    const std::wstring name = sys::from_path(path);
    CVRbTree tree = Sample();
    CVRbTreeItem* const a = tree.GetRootItem();
    a->SetValue(L"lost");
    a->SetAttrib(L"z", L"<&>\"'");
    a->SetAttrib(L"b", 1);
    a->GetChild()->GetChild()->SetValue(L"x < 管");
    ASSERT_TRUE(SaveTreeToXml(tree, name.c_str(), L"utf-8", true));
    const std::string text = test::read(path);
    EXPECT_TRUE(text.starts_with("<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\r\n<a "
                                 "b=\"1\" z=\"&lt;&amp;&gt;&quot;&apos;\">"))
        << text;
    EXPECT_NE(text.find("<d>x &lt; 管</d>"), std::string::npos) << text;
    CVRbTree loaded;
    ASSERT_TRUE(LoadTreeFromXml(name.c_str(), loaded));
    EXPECT_EQ(Shown(loaded), L"a[b=1][z=<&>\"']{b{d=x < 管} c{e f}}");
    // Written again it is the same file.
    ASSERT_TRUE(SaveTreeToXml(loaded, name.c_str(), L"utf-8", true));
    EXPECT_EQ(test::read(path), text);

    ASSERT_TRUE(SaveTreeToXml(tree, name.c_str(), L"gb2312", false));
    const std::string chinese = test::read(path);
    EXPECT_TRUE(chinese.starts_with("<?xml version=\"1.0\" encoding=\"gb2312\" standalone=\"no\"?>\r\n"))
        << chinese;
    EXPECT_NE(chinese.find("<d>x &lt; \xB9\xDC</d>"), std::string::npos) << chinese;

    // Nothing is written then.
    EXPECT_EQ(SaveTreeToXml(CVRbTree(), name.c_str(), L"utf-8", true), 0);
    a->GetChild()->SetName(L"no name");
    EXPECT_EQ(SaveTreeToXml(tree, name.c_str(), L"utf-8", true), 0);
    a->GetChild()->SetName(L"b");
    EXPECT_EQ(SaveTreeToXml(tree, sys::from_path(folder / "no" / "t.xml").c_str(), L"utf-8", true), 0);
    EXPECT_EQ(test::read(path), chinese);
}

} // namespace
