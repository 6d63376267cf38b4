#include "model/InsertPlacement.h"

#include "model/DXF.h"
#include "model/InsertMatrix.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using P = GTL::Point3D<double>;
using V = GTL::Vector3D<double>;

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

void ExpectNear(const P& is, const P& should, double tolerance = 1e-12)
{
    EXPECT_NEAR(is.X(), should.X(), tolerance);
    EXPECT_NEAR(is.Y(), should.Y(), tolerance);
    EXPECT_NEAR(is.Z(), should.Z(), tolerance);
}

TEST(InsertPlacement, ObjectAxesFollowTheArbitraryAxisRule)
{
    // Worked out by hand: Ax = Wy x N close to the z axis and Wz x N elsewhere, Ay = N x Ax.
    const double below = 1.0 / 65;
    const double above = 1.0 / 63;
    const double zBelow = std::sqrt(1 - below * below);
    const double zAbove = std::sqrt(1 - above * above);
    const struct {
        V extrusion;
        P x, y, z;
    } rows[] = {
        {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {{0, 0, 7}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {{0, 0, -1}, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
        {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
        {{0, 3, -4}, {-1, 0, 0}, {0, 0.8, 0.6}, {0, 0.6, -0.8}},
        {{below, 0, zBelow}, {zBelow, 0, -below}, {0, 1, 0}, {below, 0, zBelow}},
        {{above, 0, zAbove}, {0, 1, 0}, {-zAbove, 0, above}, {above, 0, zAbove}},
        {{1e300, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
        {{0, 0, -5e-324}, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
        {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {{1, INF, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {{NOT_A_NUMBER, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << row.extrusion.X() << ' ' << row.extrusion.Y() << ' ' << row.extrusion.Z());
        const auto map = ObjectToWorld(row.extrusion);
        ExpectNear(map.Apply(P(1, 0, 0)), row.x);
        ExpectNear(map.Apply(P(0, 1, 0)), row.y);
        ExpectNear(map.Apply(P(0, 0, 1)), row.z);
    }
}

struct Setting {
    P at;
    P scale{1, 1, 1};
    double rotation = 0;
    P extrusion{0, 0, 1};
    double rowSpacing = 0;
    double columnSpacing = 0;
};

DXFInsert Made(const Setting& setting)
{
    DXFInsert insert(L"B", setting.at, setting.rotation);
    insert.SetScale(setting.scale);
    insert.SetExtrusion(setting.extrusion);
    insert.SetRowSpacing(setting.rowSpacing);
    insert.SetColumnSpacing(setting.columnSpacing);
    return insert;
}

TEST(InsertPlacement, PutsBasePointThenScaleCellRotationPointAndExtrusion)
{
    // The point (3, 3, 1) of a block whose base point is (2, 1, 0): (1, 2, 1) from the base point, (2, 6, 4)
    // scaled by (2, 3, 4), (16, 11, 4) in row 1 and column 2 of spacings 5 and 7.
    const P scale(2, 3, 4);
    const struct {
        const char* what;
        Setting setting;
        int row, column;
        P image;
    } rows[] = {
        {"base point", {{10, 20, 0}}, 0, 0, {11, 22, 1}},
        {"scale", {{10, 20, 0}, scale}, 0, 0, {12, 26, 4}},
        {"mirrored", {{10, 20, 0}, {-2, 3, 4}}, 0, 0, {8, 26, 4}},
        {"a quarter turn is counter-clockwise", {{10, 20, 0}, scale, 90}, 0, 0, {4, 22, 4}},
        {"turns add up", {{10, 20, 0}, scale, -270}, 0, 0, {4, 22, 4}},
        {"cells are not scaled", {{10, 20, 0}, scale, 0, {0, 0, 1}, 5, 7}, 1, 2, {26, 31, 4}},
        {"cells turn", {{10, 20, 0}, scale, 90, {0, 0, 1}, 5, 7}, 1, 2, {-1, 36, 4}},
        {"seen from below", {{10, 20, 3}, scale, 0, {0, 0, -1}}, 0, 0, {-12, 26, -7}},
        // (x, y, z) of the object's coordinates lies at (z, x, y) of the world.
        {"extruded along x", {{10, 20, 3}, scale, 90, {1, 0, 0}}, 0, 0, {7, 4, 22}},
        {"first cell, boundless spacing",
         {{10, 20, 0}, scale, 0, {0, 0, 1}, INF, NOT_A_NUMBER},
         0,
         0,
         {12, 26, 4}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const InsertPlacement placement(Made(row.setting), P(2, 1, 0));
        ExpectNear(placement.At(row.row, row.column).Apply(P(3, 3, 1)), row.image);
    }
}

TEST(InsertPlacement, EqualsTheProductOfItsMatrices)
{
    using M = InsertMatrix;
    const Setting setting{{-4, 7, 2}, {1.5, -0.25, 3}, 33, {0.2, -0.5, 0.7}, 11, -6};
    const P base(8, -9, 10);
    const M product = M::Extrude({0.2, -0.5, 0.7}) * M::Move(-4, 7, 2) * M::Turn(33)
                      * M::Move(-6 * 3, 11 * 2, 0) * M::Scale(1.5, -0.25, 3) * M::Move(-8, 9, -10);
    const auto map = InsertPlacement(Made(setting), base).At(2, 3);
    for (const P& p : {P(0, 0, 0), P(1, 0, 0), P(0, 1, 0), P(0, 0, 1), P(100, -200, 300)})
        ExpectNear(map.Apply(p), product(p), 1e-10);
}

TEST(InsertPlacement, TakesTheBasePointOfTheBlockAndCountsOfAtLeastOne)
{
    DXF document;
    document.AddBlock(L"B")->SetBasePoint({2, 1, 0});
    DXFInsert insert(L"B", {10, 20, 0}, 0);
    insert.SetRowCount(-5);
    insert.SetColumnCount(0);
    ExpectNear(InsertPlacement(insert).At(0, 0).Apply(P(0, 0, 0)), {10, 20, 0});
    insert.SetDXF(&document);
    const InsertPlacement placement(insert);
    ExpectNear(placement.At(0, 0).Apply(P(0, 0, 0)), {8, 19, 0});
    EXPECT_EQ(placement.Rows(), 1);
    EXPECT_EQ(placement.Columns(), 1);
}

} // namespace
