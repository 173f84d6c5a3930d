// What tests of entities share: small drawings made of text, entities by their handles, boxes.
#pragma once

#include "dbmain.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <string_view>

namespace test {

// A drawing of 2000, groups written as test::groups takes them: entries of tables ("0 STYLE|5 20|..."), block
// definitions, entities of model space and objects. Handles from 100 on are free. Each block is named in
// `blocks` by its BLOCK alone; its record has the handle that stands behind the name, "0 BLOCK|2 B|330 B0".
inline std::string modern_drawing(std::string_view entities, std::string_view blocks = {},
                                  std::string_view objects = {}, std::string_view styles = {},
                                  std::string_view header = {}) {
    std::string records = "0 BLOCK_RECORD|5 1F|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|"
                          "2 *Model_Space";
    for (std::size_t at = blocks.find("0 BLOCK|2 "); at != blocks.npos;
         at = blocks.find("0 BLOCK|2 ", at + 1)) {
        const std::size_t name = at + 10;
        const std::size_t owner = blocks.find("|330 ", name);
        records += "|0 BLOCK_RECORD|5 " +
                   std::string(blocks.substr(owner + 5, blocks.find('|', owner + 1) - owner - 5)) +
                   "|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 " +
                   std::string(blocks.substr(name, owner - name));
    }
    const auto section = [](std::string_view name, std::string_view content) {
        return "0 SECTION|2 " + std::string(name) +
               (content.empty() ? "|" : "|" + std::string(content) + "|") + "0 ENDSEC|";
    };
    const std::string model = "0 BLOCK|5 20|330 1F|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 *Model_Space|70 0|"
                              "10 0|20 0|30 0|3 *Model_Space|1 |0 ENDBLK|5 21|330 1F|100 AcDbEntity|8 0|"
                              "100 AcDbBlockEnd";
    return groups(
        section("HEADER", "9 $ACADVER|1 AC1015" + (header.empty() ? "" : "|" + std::string(header))) +
        section("TABLES", "0 TABLE|2 STYLE|5 3|70 9|" + (styles.empty() ? "" : std::string(styles) + "|") +
                              "0 ENDTAB|0 TABLE|2 BLOCK_RECORD|5 1|70 9|" + records + "|0 ENDTAB") +
        section("BLOCKS", model + (blocks.empty() ? "" : "|" + std::string(blocks))) +
        section("ENTITIES", entities) +
        section("OBJECTS", "0 DICTIONARY|5 C" + (objects.empty() ? "" : "|" + std::string(objects))) +
        "0 EOF");
}

// The database of some bytes.
inline std::unique_ptr<AcDbDatabase> database_of(std::string bytes) {
    auto database = std::make_unique<AcDbDatabase>(false, true);
    database->imp().set_drawing(opened(std::move(bytes)));
    return database;
}

// An entity to be read as it stands in the drawing; a failed test when it is none of the class.
template<class Entity = AcDbEntity>
class seen {
public:
    seen(AcDbDatabase& database, std::uint64_t handle) {
        const dxf::record_id record = database.imp().records().find(handle);
        if (record != dxf::no_record)
            object_ = database.imp().objects().view(record);
        EXPECT_NE(Entity::cast(object_.get()), nullptr) << "handle " << std::hex << handle;
    }
    Entity& operator*() const { return *Entity::cast(object_.get()); }
    Entity* operator->() const { return Entity::cast(object_.get()); }

private:
    std::unique_ptr<AcDbObject> object_;
};

// An entity that is open for write, until the end of the scope.
template<class Entity = AcDbEntity>
class written_to {
public:
    written_to(AcDbDatabase& database, std::uint64_t handle) {
        const AcDbObjectId id = database.imp().id(database.imp().records().find(handle));
        EXPECT_EQ(acdbOpenObject(entity_, id, AcDb::kForWrite), Acad::eOk) << "handle " << std::hex << handle;
    }
    written_to(const written_to&) = delete;
    written_to& operator=(const written_to&) = delete;
    ~written_to() { entity_->close(); }
    Entity& operator*() const { return *entity_; }
    Entity* operator->() const { return entity_; }

private:
    Entity* entity_ = nullptr;
};

// The lines that two texts do not share, sorted: "- old", "+ new", blanks around them left out.
inline std::vector<std::string> lines_changed(std::string_view before, std::string_view after) {
    const auto lines_of = [](std::string_view text) {
        std::multiset<std::string> lines;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            std::string_view line = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            while (!line.empty() && line.front() == ' ')
                line.remove_prefix(1);
            while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
                line.remove_suffix(1);
            lines.emplace(line);
        }
        return lines;
    };
    const std::multiset<std::string> old_lines = lines_of(before);
    const std::multiset<std::string> new_lines = lines_of(after);
    std::vector<std::string> changed;
    std::vector<std::string> part;
    std::set_difference(new_lines.begin(), new_lines.end(), old_lines.begin(), old_lines.end(),
                        std::back_inserter(part));
    for (const std::string& line : part)
        changed.push_back("+ " + line);
    part.clear();
    std::set_difference(old_lines.begin(), old_lines.end(), new_lines.begin(), new_lines.end(),
                        std::back_inserter(part));
    for (const std::string& line : part)
        changed.push_back("- " + line);
    return changed;
}

// A box of the plane as people write it; "nothing" for one that holds nothing.
struct box {
    double least_x = 0.0;
    double least_y = 0.0;
    double most_x = 0.0;
    double most_y = 0.0;

    friend bool operator==(const box& a, const box& b) {
        const auto near = [](double x, double y) { return x - y < 1e-6 && y - x < 1e-6; };
        return near(a.least_x, b.least_x) && near(a.least_y, b.least_y) && near(a.most_x, b.most_x) &&
               near(a.most_y, b.most_y);
    }
    friend std::ostream& operator<<(std::ostream& out, const box& b) {
        return out << "(" << b.least_x << ", " << b.least_y << ") to (" << b.most_x << ", " << b.most_y
                   << ")";
    }
};

inline box flat(const AcDbExtents& extents) {
    return {extents.minPoint().x, extents.minPoint().y, extents.maxPoint().x, extents.maxPoint().y};
}

// The box of an entity; far off in the negative for one that draws nothing.
inline box box_of(const AcDbEntity& entity) {
    AcDbExtents extents;
    constexpr double off = -1e9;
    return entity.getGeomExtents(extents) == Acad::eOk ? flat(extents) : box{off, off, off, off};
}
inline constexpr box nothing{-1e9, -1e9, -1e9, -1e9};

// The same as an entity transformed by a matrix would have it, drawn through the matrix.
inline box box_through(const AcDbEntity& entity, const AcGeMatrix3d& matrix) {
    gi::extents_canvas canvas;
    gi::tracer(canvas, kAcGiForExtents, matrix).draw(entity);
    return flat(canvas.extents());
}

} // namespace test
