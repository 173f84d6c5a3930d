// The pictures that entities leave for programs that do not know them: what is not geometry in them.
#include "acgi.h"
#include "dbmain.h"
#include "host/db/core/imp_object.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/view/tracer.h"

#include <gtest/gtest.h>

namespace {

// Draws a point-sized line in each of the colours: ByLayer for 256, below nought a true colour.
class coloured final : public AcDbEntity {
public:
    explicit coloured(std::vector<int> colors) : colors_(std::move(colors)) {}

    static AcCmEntityColor color_of(int number) {
        AcCmEntityColor color;
        if (number < 0)
            color.setRGB(10, 20, static_cast<Adesk::UInt8>(-number));
        else
            color.setColorIndex(static_cast<Adesk::UInt16>(number));
        return color;
    }

protected:
    Adesk::UInt32 subSetAttributes(AcGiDrawableTraits* traits) override {
        traits->setTrueColor(color());
        return kDrawableNone;
    }
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override {
        const AcGePoint3d line[] = {{0, 0, 0}, {1, 0, 0}};
        for (const int number : colors_) {
            draw->subEntityTraits().setTrueColor(color_of(number));
            draw->geometry().polyline(2, line);
        }
        return true;
    }

private:
    std::vector<int> colors_;
};

// Draws a character that takes two units of UTF-16.
class written final : public AcDbEntity {
protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override {
        draw->geometry().text(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, AcGeVector3d::kXAxis, L"\U00020000",
                              -1, true, AcGiTextStyle());
        return true;
    }
};

// The colours of what is drawn.
class colors_seen final : public gi::canvas {
public:
    void look_at(const AcGiSubEntityTraits& traits) { traits_ = &traits; }
    bool reads_traits() const override { return true; }
    void lines(std::span<const AcGePoint3d>) override { colors.push_back(traits_->trueColor()); }
    void area(std::span<const AcGePoint3d>) override {}
    void curve(const gi::arc&) override {}
    std::vector<AcCmEntityColor> colors;

private:
    const AcGiSubEntityTraits* traits_ = nullptr;
};

} // namespace

TEST(DbProxyGraphics, CountTextInUnits) {
    const std::string data = db::make_proxy_graphics(written(), nullptr);
    // The units, a nought, filled up; how many they are.
    const std::string words("\x40\xD8\x00\xDC\0\0\0\0\x02\0\0\0", 12);
    EXPECT_NE(data.find(words), data.npos);
}

TEST(DbProxyGraphics, KeepTheColoursOfParts) {
    struct row {
        std::vector<int> colors;
        std::size_t chunks;
    };
    const AcDbImpObject unknown;
    for (const row& row : {row{{3, 3}, 2}, row{{3, 1, 1, -5, 256, 0, 3}, 12}, row{{}, 0}}) {
        coloured entity(row.colors);
        entity.setColorIndex(3);
        const std::string data = db::make_proxy_graphics(entity, nullptr);
        EXPECT_EQ(data.empty() ? 0U : static_cast<unsigned char>(data[4]), row.chunks);
        std::vector<AcCmEntityColor> expected;
        for (const int number : row.colors)
            expected.push_back(coloured::color_of(number));
        colors_seen canvas;
        gi::tracer tracer(canvas);
        canvas.look_at(tracer.subEntityTraits());
        tracer.subEntityTraits().setTrueColor(coloured::color_of(3)); // as of the entity
        db::draw_proxy_graphics(data, unknown, tracer);
        EXPECT_TRUE(canvas.colors == expected) << row.colors.size();
    }
}
