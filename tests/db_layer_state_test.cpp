// Layer states by the interface: kept by name in the drawing, given back as far as their masks go.
#include "acdblayerstatemanager.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"

#include <gtest/gtest.h>

namespace {

using manager = AcDbLayerStateManager;

struct DbLayerState : testing::Test {
    DbLayerState() { a = add(L"A"); }

    AcDbObjectId add(const wchar_t* name) {
        const AcDbLayerTablePointer table(database.layerTableId(), AcDb::kForWrite);
        auto layer = std::make_unique<AcDbLayerTableRecord>();
        layer->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, layer.get()), Acad::eOk);
        layer.release()->close();
        return id;
    }
    // Off, frozen, locked, colour 3, 0.5 mm; or on, thawed, free, colour 7, default.
    void set(AcDbObjectId id, bool other) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
        AcCmColor color;
        color.setColorIndex(other ? 3 : 7);
        layer->setColor(color);
        layer->setIsOff(other);
        layer->setIsFrozen(other);
        layer->setIsLocked(other);
        layer->setLineWeight(other ? AcDb::kLnWt050 : AcDb::kLnWtByLwDefault);
    }
    std::string look(AcDbObjectId id) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
        return std::string(layer->isOff() ? "off " : "") + (layer->isFrozen() ? "frozen " : "") +
               (layer->isLocked() ? "locked " : "") + std::to_string(layer->color().colorIndex()) + " " +
               std::to_string(layer->lineWeight());
    }

    AcDbDatabase database;
    AcDbLayerStateManager states{&database};
    AcDbObjectId a;
};

} // namespace

TEST_F(DbLayerState, GivesBackWhatItsMaskAndTheClientsName) {
    set(a, true);
    const struct {
        int mask;
        int client;
        const char* given;
    } rows[] = {
        {manager::kAll, manager::kAll, "off frozen locked 3 50"},
        {manager::kOn | manager::kColor, manager::kAll, "off 3 -3"},
        {manager::kAll, manager::kLocked | manager::kLineWeight, "locked 7 50"},
        {manager::kFrozen, manager::kOn, "7 -3"},
    };
    for (const auto& row : rows) {
        set(a, true);
        ASSERT_EQ(states.saveLayerState(L"*one*", static_cast<manager::LayerStateMask>(row.mask)), Acad::eOk);
        set(a, false);
        const auto client = static_cast<manager::LayerStateMask>(row.client);
        EXPECT_EQ(states.compareLayerStateToDb(L"*one*"), false);
        EXPECT_EQ(states.restoreLayerState(L"*ONE*", {}, manager::kUndefDoNothing, &client), Acad::eOk);
        EXPECT_EQ(look(a), row.given);
    }
    set(a, true);
    EXPECT_TRUE(states.compareLayerStateToDb(L"*one*"));
    // Layers that came since then stay, unless something else is asked for.
    const AcDbObjectId later = add(L"B");
    states.restoreLayerState(L"*one*");
    EXPECT_EQ(look(later), "7 -3");
    states.restoreLayerState(L"*one*", {}, manager::kUndefTurnOff | manager::kUndefFreeze);
    EXPECT_EQ(look(later), "off frozen 7 -3");
    AcStringArray layers;
    states.getLayerStateLayers(layers, L"*one*", true);
    ASSERT_EQ(layers.length(), 1);
    EXPECT_EQ(layers[0], L"B");
}

TEST_F(DbLayerState, IsRenamedDescribedAndDeleted) {
    EXPECT_EQ(states.restoreLayerState(L"one"), Acad::eKeyNotFound);
    EXPECT_EQ(states.saveLayerState(L"a/b", manager::kAll), Acad::eInvalidKey);
    states.saveLayerState(L"one", manager::kAll);
    states.saveLayerState(L"hidden",
                          static_cast<manager::LayerStateMask>(manager::kOn | manager::kStateIsHidden));
    EXPECT_EQ(states.setLayerStateDescription(L"one", L"地下室"), Acad::eOk);
    EXPECT_EQ(states.renameLayerState(L"one", L"HIDDEN"), Acad::eDuplicateKey);
    EXPECT_EQ(states.renameLayerState(L"two", L"three"), Acad::eKeyNotFound);
    EXPECT_EQ(states.renameLayerState(L"one", L"two"), Acad::eOk);
    states.saveLayerState(L"two", manager::kColor); // anew; the description stays
    AcString description;
    manager::LayerStateMask mask{};
    EXPECT_EQ(states.getLayerStateDescription(L"two", description), Acad::eOk);
    EXPECT_EQ(description, L"地下室");
    EXPECT_EQ(states.getLayerStateMask(L"two", mask), Acad::eOk);
    EXPECT_EQ(mask, manager::kColor);
    for (const auto& [hidden, count] : {std::pair(true, 2), std::pair(false, 1)}) {
        AcStringArray names;
        states.getLayerStateNames(names, hidden);
        EXPECT_EQ(names.length(), count);
    }
    EXPECT_EQ(states.deleteLayerState(L"two"), Acad::eOk);
    EXPECT_FALSE(states.hasLayerState(L"two"));
    EXPECT_EQ(states.deleteLayerState(L"two"), Acad::eKeyNotFound);
}
