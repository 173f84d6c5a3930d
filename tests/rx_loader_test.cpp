// Loading, telling and unloading applications. Each of them lies beside the test program.
#include "acutmem.h"
#include "base/utf.h"
#include "dbptrar.h"
#include "host/rx/applications.h"
#include "rxregsvc.h"
#include "sys/folders.h"
#include "tests/rx_message_log.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using events = std::vector<std::string>;

class rx_loader : public testing::Test, public message_log {
protected:
    void SetUp() override {
        Adesk::UInt32 id = 0;
        acrxSysRegistry()->atPut(key, this, id);
        apps.on_loaded = [this](const std::wstring& name) { log.push_back("loaded " + base::narrow(name)); };
        apps.on_unloading = [this](const std::wstring& name) {
            log.push_back("unloading " + base::narrow(name));
        };
    }
    void TearDown() override {
        apps.unload_all();
        apps.on_loaded = nullptr;
        apps.on_unloading = nullptr;
        acrxSysRegistry()->remove(key);
    }

    // What happened since it was asked last.
    events taken() { return std::exchange(log, {}); }

    // Loads rx_willing with its knobs as they are at first: code that stays in memory keeps them.
    [[nodiscard]] bool load_willing() {
        const bool loaded = static_cast<bool>(apps.load(L"rx_willing"));
        if (loaded) {
            knob("willing_refuses") = knob("willing_throws") = -1;
            knob("willing_keeps_its_class") = 0;
        }
        return loaded;
    }
    int& knob(const char* name) {
        return *static_cast<int*>(acrxDynamicLinker->getSymbolAddress(L"rx_willing", name));
    }

    rx::applications& apps = rx::applications::instance();
    std::function<void()> on_heard; // called once, from within the application's entry point

private:
    void heard(const char* application, AcRx::AppMsgCode message) override {
        log.push_back(application + std::string(" ") + std::to_string(message));
        if (on_heard)
            std::exchange(on_heard, nullptr)();
    }

    events log;
};

TEST_F(rx_loader, loads_once_by_any_spelling_and_unloads) {
    for (const std::wstring& name : {std::wstring(L"rx_willing"), std::wstring(L"rx_willing.arx"),
                                     sys::from_path(sys::executable_folder() / "rx_willing.arx")}) {
        const auto loaded = apps.load(name);
        ASSERT_TRUE(loaded) << base::narrow(loaded.error());
        EXPECT_EQ(taken(), (events{"willing 1", "loaded rx_willing.arx"}));
        EXPECT_FALSE(apps.load(L"RX_WILLING.ARX"));
        EXPECT_TRUE(acrxAppIsLoaded(L"/elsewhere/Rx_Willing"));
        EXPECT_TRUE(acrxIsAppMDIAware(L"rx_willing"));
        EXPECT_FALSE(acrxApplicationIsLocked(L"rx_willing"));
        EXPECT_EQ(apps.names(), std::vector<std::wstring>{L"rx_willing.arx"});
        EXPECT_TRUE(acrxUnloadModule(L"rx_WILLING"));
        EXPECT_EQ(taken(), (events{"unloading rx_willing.arx", "willing 2"}));
        EXPECT_FALSE(acrxAppIsLoaded(L"rx_willing"));
        EXPECT_EQ(acrxClassDictionary->at(L"WillingObject"), nullptr);
    }
}

TEST_F(rx_loader, says_why_nothing_was_loaded) {
    struct row {
        std::wstring name;
        std::wstring part_of_the_failure;
    };
    const row rows[] = {
        {L"rx_nowhere", L"rx_nowhere: no such application"},
        {L"", L"no such application"},
        {L"libzef_host.so", L"no acrxEntryPoint"},
        {sys::from_path(std::filesystem::path(ZEF_SOURCE_FOLDER) / "CMakeLists.txt"), L"CMakeLists.txt"},
        {L"rx_refusing", L"rx_refusing refused to be loaded"},
    };
    for (const row& r : rows) {
        const auto loaded = apps.load(r.name);
        ASSERT_FALSE(loaded) << base::narrow(r.name);
        EXPECT_NE(loaded.error().find(r.part_of_the_failure), std::wstring::npos)
            << base::narrow(loaded.error());
        EXPECT_TRUE(apps.names().empty());
    }
    EXPECT_EQ(taken(), events{"refusing 1"}); // and nothing more
    EXPECT_FALSE(acrxLoadModule(nullptr, false));
    EXPECT_FALSE(acrxUnloadModule(L"rx_nowhere"));
    EXPECT_FALSE(acrxUnlockApplication(&apps));
    EXPECT_EQ(acrxDynamicLinker->getSymbolAddress(L"rx_nowhere", "acrxEntryPoint"), nullptr);
}

TEST_F(rx_loader, locked_applications_stay) {
    ASSERT_TRUE(acrxLoadApp(L"rx_locked"));
    EXPECT_TRUE(acrxApplicationIsLocked(L"rx_locked"));
    EXPECT_FALSE(acrxIsAppMDIAware(L"rx_locked"));
    EXPECT_FALSE(acrxUnloadApp(L"rx_locked"));
    EXPECT_EQ(taken(), (events{"locked 1", "loaded rx_locked.arx"})); // not even asked
    rx::application* const app = apps.find(L"rx_locked");
    EXPECT_TRUE(acrxUnlockApplication(app));
    EXPECT_TRUE(acrxLockApplication(app));
    EXPECT_FALSE(acrxUnloadApp(L"rx_locked"));
    EXPECT_TRUE(acrxUnlockApplication(app));
    EXPECT_TRUE(acrxUnloadApp(L"rx_locked"));
}

TEST_F(rx_loader, an_error_takes_an_application_out_but_keeps_one_that_is_to_go) {
    ASSERT_TRUE(load_willing());
    knob("willing_refuses") = AcRx::kUnloadAppMsg;
    taken();
    EXPECT_FALSE(apps.unload(L"rx_willing"));
    EXPECT_EQ(taken(), (events{"unloading rx_willing.arx", "willing 2", "loaded rx_willing.arx"}));
    EXPECT_TRUE(apps.is_loaded(L"rx_willing"));

    knob("willing_refuses") = AcRx::kLoadDwgMsg;
    EXPECT_TRUE(apps.send_to(L"rx_willing", AcRx::kUnloadDwgMsg));
    EXPECT_FALSE(apps.send_to(L"rx_willing", AcRx::kLoadDwgMsg));
    EXPECT_FALSE(apps.is_loaded(L"rx_willing"));
    EXPECT_FALSE(apps.send_to(L"rx_willing", AcRx::kUnloadDwgMsg));
    EXPECT_EQ(taken(), (events{"willing 4", "willing 3", "willing 2"}));

    ASSERT_TRUE(load_willing());
    knob("willing_throws") = AcRx::kSaveMsg;
    apps.send(AcRx::kSaveMsg);
    EXPECT_FALSE(apps.is_loaded(L"rx_willing"));
}

TEST_F(rx_loader, messages_go_in_order_and_the_end_comes_backwards) {
    ASSERT_TRUE(apps.load(L"rx_locked"));
    ASSERT_TRUE(load_willing());
    const std::unique_ptr<AcDbVoidPtrArray> names(static_cast<AcDbVoidPtrArray*>(acrxLoadedApps()));
    ASSERT_EQ(names->length(), 2);
    EXPECT_STREQ(static_cast<ACHAR*>(names->at(0)), L"rx_locked.arx");
    for (void* name : *names) {
        auto* text = static_cast<ACHAR*>(name);
        acutDelString(text);
    }
    taken();
    apps.send(AcRx::kLoadDwgMsg);
    EXPECT_EQ(taken(), (events{"locked 3", "willing 3"}));
    apps.unload_all();
    EXPECT_EQ(taken(), (events{"locked 8", "willing 8", "unloading rx_willing.arx", "willing 2",
                               "unloading rx_locked.arx", "locked 2"}));
    EXPECT_TRUE(apps.names().empty());
}

TEST_F(rx_loader, code_stays_as_long_as_its_classes_are_registered) {
    ASSERT_TRUE(load_willing());
    AcRxClass* const brought = AcRxClass::cast(acrxClassDictionary->at(L"WillingObject"));
    ASSERT_NE(brought, nullptr);
    knob("willing_keeps_its_class") = 1;
    const std::unique_ptr<AcRxObject> object(brought->create());
    ASSERT_TRUE(apps.unload(L"rx_willing"));
    EXPECT_EQ(object->comparedTo(nullptr), AcRx::kLessThan); // its code runs
    EXPECT_TRUE(object->isKindOf(brought));

    ASSERT_TRUE(load_willing()); // and goes on where it was
    EXPECT_EQ(AcRxClass::cast(acrxClassDictionary->at(L"WillingObject")), brought);
    knob("willing_keeps_its_class") = 0;
    EXPECT_TRUE(apps.unload(L"rx_willing"));
    EXPECT_EQ(acrxClassDictionary->at(L"WillingObject"), nullptr);
}

TEST_F(rx_loader, may_be_asked_from_everywhere) {
    // A document that is open, and that the application does not take.
    apps.on_loaded = [this](const std::wstring& name) {
        knob("willing_refuses") = AcRx::kLoadDwgMsg;
        apps.send_to(name, AcRx::kLoadDwgMsg);
    };
    const auto loaded = apps.load(L"rx_willing");
    ASSERT_FALSE(loaded);
    EXPECT_EQ(loaded.error(), L"rx_willing refused the drawings that are open");
    EXPECT_TRUE(apps.names().empty());

    // From within its own entry point: it must stay, also when it answers with an error there.
    apps.on_loaded = nullptr;
    ASSERT_TRUE(load_willing());
    knob("willing_refuses") = AcRx::kCfgMsg;
    on_heard = [this] {
        EXPECT_FALSE(acrxUnloadModule(L"rx_willing"));
        EXPECT_TRUE(apps.send_to(L"rx_willing", AcRx::kCfgMsg));
        EXPECT_TRUE(apps.load(L"rx_locked"));
    };
    EXPECT_TRUE(apps.send_to(L"rx_willing", AcRx::kSaveMsg));
    EXPECT_EQ(apps.names(), (std::vector<std::wstring>{L"rx_willing.arx", L"rx_locked.arx"}));

    // It goes by itself when it is told that a document goes.
    knob("willing_refuses") = AcRx::kUnloadDwgMsg;
    apps.on_unloading = [this](const std::wstring& name) { apps.send_to(name, AcRx::kUnloadDwgMsg); };
    EXPECT_TRUE(apps.unload(L"rx_willing"));
    EXPECT_FALSE(apps.is_loaded(L"rx_willing"));
}

} // namespace
