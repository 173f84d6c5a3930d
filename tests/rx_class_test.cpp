// Classes that can be asked for at run time: the macros, the class dictionary, protocol extensions, services.
#include "dbptrar.h"
#include "drawable.h"
#include "rxboiler.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class Fitting : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(Fitting);
};

class Valve : public Fitting {
public:
    ACRX_DECLARE_MEMBERS(Valve);
};

class GateValve : public Valve {
public:
    ACRX_DECLARE_MEMBERS(GateValve);
};

class Cost : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(Cost);
    explicit Cost(int n = 0) : amount(n) {}
    int amount;
};

ACRX_NO_CONS_DEFINE_MEMBERS(Fitting, AcRxObject)
ACRX_CONS_DEFINE_MEMBERS(Valve, Fitting, 1)
ACRX_DXF_DEFINE_MEMBERS(GateValve, Valve, 31, 7, 129, GATEVALVE, "TESTAPP|Product Desc: valves of the test")
ACRX_CONS_DEFINE_MEMBERS(Cost, AcRxObject, 1)

// Registers the classes for one test, the derived ones first, as applications may do in any order.
class rx_class : public testing::Test {
protected:
    void SetUp() override {
        GateValve::rxInit();
        Valve::rxInit();
        Fitting::rxInit();
        Cost::rxInit();
        acrxBuildClassHierarchy();
    }
    void TearDown() override {
        for (AcRxClass* c : {GateValve::desc(), Valve::desc(), Fitting::desc(), Cost::desc()})
            deleteAcRxClass(c);
    }
};

TEST_F(rx_class, isA_isKindOf_and_cast) {
    const std::unique_ptr<AcRxObject> valve(Valve::desc()->create());
    ASSERT_NE(valve, nullptr);
    EXPECT_EQ(valve->isA(), Valve::desc());
    struct row {
        AcRxClass* asked;
        bool is_kind;
    };
    for (const row& r : {row{Valve::desc(), true}, row{Fitting::desc(), true}, row{AcRxObject::desc(), true},
                         row{GateValve::desc(), false}, row{Cost::desc(), false}, row{nullptr, false}})
        EXPECT_EQ(valve->isKindOf(r.asked), r.is_kind);

    const AcRxObject* const looked_on = valve.get();
    Valve* const back = Valve::cast(looked_on);
    EXPECT_EQ(back, valve.get());
    EXPECT_EQ(Fitting::cast(valve.get()), valve.get());
    EXPECT_EQ(GateValve::cast(valve.get()), nullptr);
    EXPECT_EQ(Valve::cast(nullptr), nullptr);
    EXPECT_EQ(AcRxObject::cast(valve.get()), valve.get());

    EXPECT_EQ(valve->clone(), nullptr);
    EXPECT_EQ(valve->copyFrom(back), Acad::eNotImplementedYet);
    EXPECT_TRUE(valve->isEqualTo(back));
    EXPECT_EQ(valve->comparedTo(back), AcRx::kEqual);
    const Cost other;
    EXPECT_EQ(valve->comparedTo(&other), AcRx::kNotOrderable);
}

TEST_F(rx_class, descriptions) {
    const AcRxClass* const c = GateValve::desc();
    EXPECT_STREQ(c->name(), L"GateValve");
    EXPECT_STREQ(c->dxfName(), L"GATEVALVE");
    EXPECT_STREQ(c->appName(), L"TESTAPP|Product Desc: valves of the test");
    int version = 0;
    int maintenance = 0;
    c->getClassVersion(version, maintenance);
    EXPECT_EQ(version, 31);
    EXPECT_EQ(maintenance, 7);
    EXPECT_EQ(c->proxyFlags(), 129);
    EXPECT_EQ(c->myParent(), Valve::desc());
    EXPECT_EQ(Valve::desc()->dxfName(), nullptr);
    EXPECT_EQ(Fitting::desc()->create(), nullptr);
    EXPECT_EQ(acrxClassDictionary->at(L"GateValve"), c);
    EXPECT_EQ(acrxClassDictionary->at(L"gatevalve"), nullptr); // case counts
    EXPECT_EQ(AcGiDrawable::desc()->myParent(), AcRxObject::desc());
    EXPECT_EQ(AcRxObject::desc()->myParent(), nullptr);
}

TEST_F(rx_class, names_are_registered_once) {
    const AcRxClass* const first = Valve::desc();
    Valve::rxInit();
    EXPECT_EQ(Valve::desc(), first);
    EXPECT_EQ(newAcRxClass(L"Valve", L"AcRxObject"), nullptr);
    EXPECT_EQ(newAcRxClass(L"", L"AcRxObject"), nullptr);
    EXPECT_EQ(newAcRxClass(nullptr, L"AcRxObject"), nullptr);
    EXPECT_EQ(acrxClassDictionary->at(L"Valve"), first);

    Cost impostor;
    Adesk::UInt32 id = 1;
    EXPECT_EQ(acrxClassDictionary->atPut(L"Valve", &impostor, id), first);
    EXPECT_EQ(id, 0u);
    EXPECT_EQ(acrxClassDictionary->at(L"Valve"), first);
    EXPECT_EQ(acrxSysRegistry()->atPut(ACRX_CLASS_DICTIONARY, &impostor, id), acrxClassDictionary);
}

TEST_F(rx_class, a_deleted_class_leaves_nothing_behind) {
    const GateValve gate;
    Cost price(5);
    GateValve::desc()->addX(Valve::desc(), &price);
    deleteAcRxClass(Valve::desc());
    EXPECT_EQ(acrxClassDictionary->at(L"Valve"), nullptr);
    EXPECT_EQ(GateValve::desc()->myParent(), nullptr);
    EXPECT_FALSE(gate.isKindOf(Fitting::desc()));

    Valve::rxInit(); // comes back
    acrxBuildClassHierarchy();
    EXPECT_TRUE(gate.isKindOf(Fitting::desc()));
    EXPECT_EQ(gate.queryX(Valve::desc()), nullptr); // the extension was one for the class that went
    deleteAcRxClass(nullptr);
}

TEST_F(rx_class, the_nearest_protocol_extension_answers) {
    Cost for_all(1);
    Cost for_valves(2);
    const GateValve gate;
    EXPECT_EQ(gate.queryX(Cost::desc()), nullptr);
    EXPECT_EQ(Fitting::desc()->addX(Cost::desc(), &for_all), nullptr);
    EXPECT_EQ(ACRX_X_CALL(&gate, Cost)->amount, 1);
    EXPECT_EQ(Valve::desc()->addX(Cost::desc(), &for_valves), nullptr);
    EXPECT_EQ(ACRX_X_CALL(&gate, Cost)->amount, 2);
    EXPECT_EQ(GateValve::desc()->getX(Cost::desc()), nullptr); // not its own
    EXPECT_EQ(Valve::desc()->addX(Cost::desc(), &for_all), &for_valves);
    EXPECT_EQ(Valve::desc()->delX(Cost::desc()), &for_all);
    EXPECT_EQ(Valve::desc()->delX(Cost::desc()), nullptr);
    EXPECT_EQ(ACRX_PE_PTR(&gate, Cost)->amount, 1);
    EXPECT_EQ(Fitting::desc()->addX(nullptr, &for_all), nullptr);
    EXPECT_EQ(Fitting::desc()->delX(Cost::desc()), &for_all);
    EXPECT_DEATH(gate.x(Cost::desc()), "GateValve has no extension Cost");
}

TEST(rx_service, is_registered_once) {
    EXPECT_FALSE(acrxServiceIsRegistered(L"PipeService"));
    AcRxService* const service = AcRxService::cast(acrxRegisterService(L"PipeService"));
    ASSERT_NE(service, nullptr);
    EXPECT_TRUE(acrxServiceIsRegistered(L"PipeService"));
    EXPECT_EQ(acrxRegisterService(L"PipeService"), nullptr);
    EXPECT_EQ(acrxRegisterService(nullptr), nullptr);
    service->addDependency();
    EXPECT_FALSE(service->unloadable());
    service->removeDependency();
    service->removeDependency();
    EXPECT_TRUE(service->unloadable());
    const std::unique_ptr<AcRxObject> removed(acrxServiceDictionary->remove(L"PipeService"));
    EXPECT_EQ(removed.get(), service);
    EXPECT_FALSE(acrxServiceIsRegistered(L"PipeService"));
}

} // namespace
