// The data of documents: kept in step while documents come, change and go in any order, layers are touched
// and commands end; and the layers' way into the drawing's filters.
#include "accmd.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/ap/documents.h"
#include "host/ed/editor.h"
#include "host/rx/applications.h"
#include "host/rx/editor_reactors.h"
#include "module/frame/DrawingDefaults.h"
#include "module/frame/PerDocData.h"
#include "module/frame/Reactors.h"
#include "module/layertools/LayerControlBar.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_pipewire/TFlange.h"
#include "tests/layer_support.h"
#include "tests/sys_support.h"
#include "ui/presenter.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>

namespace {

// Counts how often the bar was to be shown anew.
class window : public ui::presenter {
public:
    window() : before_(ui::set_presenter(this)) {}
    ~window() override { ui::set_presenter(before_); }
    bool run(ui::dialog&) override { return false; }
    void tell(std::wstring_view) override {}
    void refresh(ui::bar&) override { ++refreshed; }
    void hide(ui::bar&) override {
        if (on_hide)
            on_hide();
    }

    int refreshed = 0;
    std::function<void()> on_hide;

private:
    ui::presenter* before_;
};

// What the data of a document should be.
struct expected {
    std::vector<AcDbObjectId> layers;
    int enabled = 1;
};

class ModuleDocuments : public testing::Test {
protected:
    ModuleDocuments() {
        ed::editor::instance();
        for (const wchar_t* const name : {L"zef_kernal", L"zef_pipeSystem"})
            EXPECT_TRUE(apps.load(name));
    }
    ~ModuleDocuments() override {
        docs.close_all();
        apps.unload_all();
    }

    ap::document* current() { return docs.current(); }
    void end_command(const wchar_t* name) {
        rx::tell_editor([&](AcEditorReactor& reactor) { reactor.commandEnded(name); });
    }
    // A new layer in a drawing, changed once more; its id.
    AcDbObjectId touch(ap::document& document) {
        acDocManager->lockDocument(&document);
        AcDbLayerTablePointer table(document.database()->layerTableId(), AcDb::kForWrite);
        AcDbObjectPointer<AcDbLayerTableRecord> layer;
        AcDbObjectId id;
        layer.create();
        layer->setName((L"L" + std::to_wstring(++made_)).c_str());
        EXPECT_EQ(table->add(id, layer.object()), Acad::eOk);
        layer.close();
        EXPECT_EQ(layer.open(id, AcDb::kForWrite), Acad::eOk);
        layer->setIsLocked(true);
        layer.close();
        table.close();
        acDocManager->unlockDocument(&document);
        return id;
    }

    const test::profile profile_;
    rx::applications& apps = rx::applications::instance();
    ap::documents& docs = ap::documents::instance();
    int made_ = 0;
};

TEST_F(ModuleDocuments, AreFollowedInEveryOrder) {
    std::mt19937 random(15);
    const window seen;
    bool enabled = false;
    std::map<const AcApDocument*, expected> model;
    const auto touched = [&] {
        const AcDbObjectId id = touch(*current());
        if (model[current()].enabled != 0)
            model[current()].layers.push_back(id);
    };
    { const TBanReactor without_document; }
    for (int step = 0; step < 3000; ++step) {
        const auto count = docs.all().size();
        ap::document* const any = count != 0 ? docs.all()[random() % count].get() : nullptr;
        const auto act = random() % 10;
        if (count == 0 || (act == 0 && count < 5)) {
            ASSERT_TRUE(docs.open(count % 2 != 0 ? test::drawing("r2018.dxf").wstring() : L"", false));
            model[current()];
            enabled = enabled || (count == 0 && CLayerControlBar::Get() != nullptr);
        } else if (act == 1) {
            model.erase(any);
            enabled = enabled && count > 1;
            ASSERT_TRUE(docs.close(*any));
        } else if (act == 2) {
            docs.activate(*any);
        } else if (act == 3) {
            if (random() % 2 != 0) {
                enabled = CLayerControlBar::Get() == nullptr || enabled;
                CLayerControlBar::Create();
            } else {
                CLayerControlBar::Release();
            }
        } else if (act == 4) {
            constexpr const wchar_t* names[] = {L"LINE", L"insert", L"QSAVE", L"SETDOLMOLAYTAG"};
            const auto* const name = names[random() % std::size(names)];
            const int before = seen.refreshed;
            end_command(name);
            EXPECT_EQ(seen.refreshed - before, CLayerControlBar::Get() != nullptr &&
                                                   (name == names[3] || !model[current()].layers.empty()));
            model[current()].layers.clear();
        } else if (act == 5) {
            rx::tell_editor([&](AcEditorReactor& reactor) {
                reactor.commandCancelled(L"LINE");
                reactor.commandFailed(L"LINE");
            });
        } else if (act == 6) {
            const int saved = model[current()].enabled;
            const TBanReactor ban;
            model[current()].enabled = 0;
            touched();
            if (random() % 2 != 0)
                docs.activate(*any);
            model[current()].enabled = saved; // as the ban goes
        } else if (act == 7 && any != current()) {
            touch(*any); // not the current document's
        } else {
            touched();
        }
        if (const auto* const bar = CLayerControlBar::Get(); bar != nullptr && act < 4) {
            ASSERT_EQ(bar->content().enabled, enabled) << step;
        }
        const TPipeAppDocGlobals& data = *TPipeAppDocGlobals::Get();
        ASSERT_EQ(data.GetCount(), static_cast<int>(model.size()));
        for (const auto& [document, wanted] : model) {
            TPipePerDocData* const found = data.Find(document);
            ASSERT_TRUE(found != nullptr && found->IsListening());
            ASSERT_EQ(found->GetReactionsEnabled(), wanted.enabled) << step;
            std::vector<AcDbObjectId> layers;
            AcDbObjectId id;
            for (found->Layers().GoToFirst(); found->Layers().Next(id);)
                layers.push_back(id);
            ASSERT_EQ(layers, wanted.layers) << step << " after " << act;
        }
        ASSERT_EQ(TPipeAppDocGlobals::CurrentData(), data.Find(current()));
    }
    ASSERT_TRUE(apps.unload(L"zef_pipeSystem"));
    EXPECT_EQ(TPipeAppDocGlobals::Get(), nullptr);
    EXPECT_EQ(CLayerControlBar::Get(), nullptr);
    const TBanReactor without_module;
}

// The bar goes after the commands and before all that is told otherwise only from outside.
TEST_F(ModuleDocuments, TheBarGoesWhileTheRestIsThere) {
    window seen;
    ASSERT_TRUE(docs.open(L"", false));
    CLayerControlBar::Create();
    const auto flanges = g_pfnGetFlangeDataByDn;
    int told = 0;
    seen.on_hide = [&] {
        ++told;
        EXPECT_EQ(acedRegCmds->lookupCmd(L"tckz", L"ZEF_PIPESTSTEM"), nullptr);
        EXPECT_NE(CStandardManager::Loaded(), nullptr);
        EXPECT_NE(TPipeAppDocGlobals::Get(), nullptr);
        EXPECT_EQ(g_pfnGetFlangeDataByDn, flanges);
    };
    ASSERT_TRUE(apps.unload(L"zef_pipeSystem"));
    EXPECT_EQ(told, 1);
    EXPECT_NE(g_pfnGetFlangeDataByDn, flanges);
}

// Sessions of the program whose user wants layers sorted.
class ModuleGrouping : public testing::Test {
protected:
    // What a script on a drawing makes of it: what changed, layers by their names in the place of handles.
    std::string changed_by(const std::string& script, const char* drawing = "r2018.dxf",
                           const char* grouping = "1") {
        const auto sys = folder_ / "profile" / "sys";
        std::filesystem::create_directories(sys);
        const std::string share = std::string(ZEF_SOURCE_FOLDER) + "/share/";
        std::filesystem::copy_file(share + "kol.vrsl", sys / "kol.vrsl",
                                   std::filesystem::copy_options::skip_existing);
        std::string config = test::read(share + "CmdConfig.xml");
        const std::string key = "\"图层自动分组\">";
        config.replace(config.find(key) + key.size(), 1, grouping);
        test::put(sys / "CmdConfig.xml", config);
        const auto out = folder_ / "out.dxf";
        const auto run = test::zefhost({test::drawing(drawing).string(), "-o", out.string(), "--profile",
                                        (folder_ / "profile").string(), "--keep-going"},
                                       script);
        std::string text;
        std::map<std::string, std::string> layers;
        std::string saved = test::read(out);
        std::erase(saved, '\r');
        const auto objects = test::objects(saved);
        for (const auto& [name, groups] : objects)
            if (groups.size() > 1 && groups[0] == "0 LAYER" && groups[1].starts_with("5 "))
                layers[groups[1].substr(2)] = name;
        for (const auto& [name, groups] : objects) {
            if (std::ranges::find(groups, "1 AcLyLayerGroup") == groups.end())
                continue;
            bool behind = false;
            for (const std::string& group : groups) {
                behind = behind || group == "1 AcLyLayerGroup";
                if (behind)
                    text += group.starts_with("330 ") ? layers[group.substr(4)] + " " : group + " ";
            }
            text += "| ";
        }
        return text;
    }
    const test::folder folder_;
};

TEST_F(ModuleGrouping, TouchedLayersGoIntoTheFilterOfTheirGroup) {
    const std::string sewage = "1 AcLyLayerGroup 90 1 300 排水系统 ";
    const struct {
        const char* script;
        std::string filters;
        const char* drawing = "r2018.dxf";
        const char* grouping = "1";
    } rows[] = {
        // Of the systems' own layers, and by a name rule.
        {"-LAYER N PIPE-污水,other,vpipe-污水\n\n", sewage + "PIPE-污水 vpipe-污水 | "},
        {"-LAYER N dim_压力污水,DIM_,DIM_none\n\n", sewage + "dim_压力污水 | "},
        {"-LAYER N PIPE-污水\n\n-LAYER OFF PIPE-污水\n\n-LAYER N VPIPE-污水\n\n",
         sewage + "PIPE-污水 VPIPE-污水 | "},
        {"-LAYER N PIPE-污水\n\n", "", "r2018.dxf", "0"},
        {"-LAYER N PIPE-污水\n\nU\n", ""},
        {"-LAYER N PIPE-污水\n\nU\nREDO\n", sewage + "PIPE-污水 | "},
        {"-LAYER N PIPE-污水\n^C\nU\nREDO\n", ""}, // undoing sorts nothing
        {"cjkg N\n-LAYER N PIPE-污水\n\n", ""},
        {"-LAYER N PIPE-污水\n^C\nREGEN\n", sewage + "PIPE-污水 | "}, // cancelled: it waits
        // What a button does inside of a command; while double-line pipes are drawn nothing is noted.
        {"tckz\ncjkg N\n-LAYER N PIPE-污水\n\ncjkg Y\nLINE 0,0 'BAR 污水管线 LOCK\n9,9\n\n",
         sewage + "PIPE-污水 | "},
        {"tckz\ncjkg N\n-LAYER N PIPE-污水\n\ncjkg Y\ngxgd 0,0 'BAR 污水管线 LOCK\n3000,0\n\n", ""},
        {"-LAYER N PIPE-污水\n\n", "", "r12.dxf"}, // no place for filters
    };
    for (const auto& row : rows)
        EXPECT_EQ(changed_by(row.script, row.drawing, row.grouping), row.filters) << row.script;
}

} // namespace
