#include "import/FaceCutter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <string>
#include <utility>

namespace {

using P3 = FaceCutter::P3;
using Ring = FaceCutter::Ring;
using Rings = std::vector<Ring>;
using Piece = FaceCutter::Piece;

/// "0 0, 4 0, 0 4" at height 0.
Ring Flat(std::initializer_list<std::pair<double, double>> corners)
{
    Ring ring;
    for (const auto& [x, y] : corners) ring.emplace_back(x, y, 0);
    return ring;
}

/// Twice the area with its sign, in plan.
double PlanArea(const Ring& ring)
{
    double area = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const P3 &a = ring[i], &b = ring[(i + 1) % ring.size()];
        area += a.X() * b.Y() - a.Y() * b.X();
    }
    return area;
}

double FaceArea(const Rings& rings)
{
    double area = std::abs(PlanArea(rings[0]));
    for (std::size_t i = 1; i < rings.size(); ++i) area -= std::abs(PlanArea(rings[i]));
    return area;
}

double PiecesArea(const std::vector<Piece>& pieces)
{
    double area = 0;
    for (const Piece& piece : pieces) area += std::abs(PlanArea(Ring(piece.begin(), piece.end())));
    return area;
}

/// By the number of edges to the right of the point.
bool IsInside(const Ring& ring, double x, double y)
{
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const P3 &a = ring[i], &b = ring[(i + 1) % ring.size()];
        if ((a.Y() > y) != (b.Y() > y) && x < a.X() + (y - a.Y()) / (b.Y() - a.Y()) * (b.X() - a.X()))
            inside = !inside;
    }
    return inside;
}

/// Points of a fine grid lie in one piece where they lie in the face, in none elsewhere; the areas agree;
/// every corner of a piece is one of the face.
void ExpectCovered(const Rings& rings, const std::vector<Piece>& pieces, const std::string& what)
{
    EXPECT_NEAR(PiecesArea(pieces), FaceArea(rings), 1e-9 * FaceArea(rings)) << what;
    double low = 1e300, high = -1e300;
    for (const P3& p : rings[0]) low = std::min({low, p.X(), p.Y()}), high = std::max({high, p.X(), p.Y()});
    constexpr int STEPS = 40;
    for (int i = 0; i < STEPS * STEPS; ++i) {
        // Off the places where corners and edges usually are.
        const double x = low + (high - low) * (i % STEPS + 0.4142) / STEPS,
                     y = low + (high - low) * (i / STEPS + 0.2718) / STEPS;
        bool inFace = false;
        for (const Ring& ring : rings) inFace = inFace != IsInside(ring, x, y);
        const auto holding = std::count_if(pieces.begin(), pieces.end(), [x, y](const Piece& piece) {
            return IsInside(Ring(piece.begin(), piece.end()), x, y);
        });
        ASSERT_EQ(holding, inFace ? 1 : 0) << what << " at " << x << ", " << y;
    }
    for (const Piece& piece : pieces)
        for (const P3& corner : piece)
            ASSERT_TRUE(std::any_of(rings.begin(), rings.end(), [&corner](const Ring& ring) {
                return std::find(ring.begin(), ring.end(), corner) != ring.end();
            })) << what;
}

/// A ring of so many corners about a point, its radius going in and out.
Ring Star(int corners, double x, double y, double radius, double depth, unsigned seed)
{
    Ring ring;
    for (int i = 0; i < corners; ++i) {
        seed = seed * 1103515245 + 12345;
        const double r = radius * (1 - depth * (seed / 65536 % 1000) / 1000.0);
        const double angle = 2 * std::numbers::pi * i / corners;
        ring.emplace_back(x + r * std::cos(angle), y + r * std::sin(angle), 0);
    }
    return ring;
}

TEST(FaceCutter, ConvexTrianglesAndQuadsAreOnePiece)
{
    FaceCutter cutter;
    std::vector<Piece> pieces;
    const Ring triangle = Flat({{0, 0}, {4, 0}, {0, 4}});
    ASSERT_TRUE(cutter.Cut({triangle}, pieces));
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_EQ(pieces[0], (Piece{triangle[0], triangle[1], triangle[2], triangle[2]}));
    // Turning clockwise, upright, with a corner in the middle of a side.
    const Ring quad = {P3(0, 7, 0), P3(0, 7, 2), P3(5, 7, 2), P3(5, 7, 0)};
    ASSERT_TRUE(cutter.Cut({quad}, pieces));
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_NE(std::find(pieces[0].begin(), pieces[0].end(), quad[3]), pieces[0].end());
}

TEST(FaceCutter, PiecesCoverTheFaceOnce)
{
    const Ring square = Flat({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    const Ring hole = Flat({{4, 4}, {6, 4}, {6, 6}, {4, 6}});
    Rings sieve{square}, stars{Star(200, 0, 0, 10, 0.2, 5)};
    for (int i = 0; i < 64; ++i) {
        const double x = i % 8 + 1, y = i / 8 + 1;
        sieve.push_back(Flat({{x, y}, {x + 0.5, y}, {x + 0.5, y + 0.5}, {x, y + 0.5}}));
    }
    for (unsigned i = 0; i < 12; ++i)
        stars.push_back(Star(17, i % 4 * 3.0 - 4.5, i / 4 * 3.0 - 3.0, 1.4, 0.8, i));
    Ring comb;
    for (int i = 0; i < 30; ++i) comb.emplace_back(i, i % 2 == 0 ? 1 : 28, 0);
    comb.emplace_back(29, 0, 0);
    comb.emplace_back(0, 0, 0);
    struct {
        const char* what;
        Rings rings;
    } const rows[] = {
        {"an arrow of four corners", {Flat({{0, 0}, {5, 1}, {0, 10}, {1, 1}})}},
        {"a bow of a quad that turns back", {Flat({{0, 0}, {10, 0}, {5, 1}, {10, 10}})}},
        {"an L", {Flat({{0, 0}, {9, 0}, {9, 1}, {1, 1}, {1, 9}, {0, 9}})}},
        {"a comb", {comb}},
        {"a ragged star", {Star(101, 0, 0, 10, 0.9, 1)}},
        {"corners along straight sides",
         {Flat({{0, 0}, {3, 0}, {5, 0}, {10, 0}, {10, 5}, {10, 10}, {5, 10}, {0, 10}, {0, 3}})}},
        {"repeated corners",
         {Flat({{0, 0}, {0, 0}, {9, 0}, {9, 9}, {9, 9}, {9, 9}, {4, 3}, {0, 9}, {0, 0}})}},
        {"a hole", {square, hole}},
        {"a hole turning the other way", {square, Ring(hole.rbegin(), hole.rend())}},
        {"64 holes in rows", sieve},
        {"stars in a star", stars},
        {"a hole with a corner on a side", {square, Flat({{0, 5}, {4, 4}, {4, 6}})}},
        {"a hole with a corner in a corner", {square, Flat({{0, 0}, {3, 2}, {2, 3}})}},
        {"a hole with a corner in the upper corner", {square, Flat({{10, 10}, {7, 8}, {8, 7}})}},
        {"a hole with a corner on the right side", {square, Flat({{10, 5}, {6, 6}, {6, 4}})}},
        {"a hole with a corner on the upper side", {square, Flat({{5, 10}, {4, 6}, {6, 6}})}},
        {"a hole that cuts the face in two", {square, Flat({{0, 0}, {4, 6}, {10, 10}, {6, 4}})}},
        {"holes in a ring around an island",
         {square, Flat({{5, 2}, {8, 5}, {7, 2}}), Flat({{8, 5}, {5, 8}, {7, 7}}),
          Flat({{5, 8}, {2, 5}, {2, 8}}), Flat({{2, 5}, {5, 2}, {2, 2}})}},
        {"holes that touch in a corner", {square, hole, Flat({{6, 6}, {8, 6}, {8, 8}})}},
        {"a chain of holes",
         {square, Flat({{1, 5}, {3, 4}, {3, 6}}), Flat({{3, 4}, {5, 3}, {5, 5}}),
          Flat({{5, 5}, {7, 4}, {7, 6}})}},
        {"holes one above the other",
         {square, hole, Flat({{4, 7}, {6, 7}, {6, 8}}), Flat({{4, 1}, {6, 1}, {6, 2}})}},
    };
    FaceCutter cutter;
    std::vector<Piece> pieces;
    for (const auto& row : rows) {
        EXPECT_TRUE(cutter.Cut(row.rings, pieces)) << row.what;
        ExpectCovered(row.rings, pieces, row.what);
    }
}

TEST(FaceCutter, ManyRandomStarsAreCovered)
{
    FaceCutter cutter;
    std::vector<Piece> pieces;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        const Rings rings{Star(5 + static_cast<int>(seed % 40), 0, 0, 10, 0.6, seed),
                          Star(9, 1.5, 0, 1.4, 0.9, seed + 7), Star(4, -1.6, 1, 1.2, 0.5, seed + 9),
                          Star(3, 0, -2, 1, 0.5, seed + 11)};
        EXPECT_TRUE(cutter.Cut(rings, pieces)) << seed;
        ExpectCovered(rings, pieces, "seed " + std::to_string(seed));
    }
}

TEST(FaceCutter, FacesInAnyPlaneAreCut)
{
    // A square with a hole, its x turned into each direction: area 100 - 4 = 96 in its plane.
    const Rings flat{Flat({{0, 0}, {10, 0}, {10, 10}, {0, 10}}), Flat({{4, 4}, {6, 4}, {6, 6}, {4, 6}})};
    const GTL::Vector3D<double> axes[][2] = {
        {{1, 0, 0}, {0, 0, 1}}, {{0, 1, 0}, {0, 0, 1}}, {{0.6, 0.8, 0}, {-0.48, 0.36, 0.8}}};
    FaceCutter cutter;
    std::vector<Piece> pieces;
    for (const auto& [u, v] : axes) {
        Rings rings = flat;
        for (Ring& ring : rings)
            for (P3& p : ring) p = P3(1e6, -2e6, 3e6) + (u * p.X() + v * p.Y());
        EXPECT_TRUE(cutter.Cut(rings, pieces));
        double area = 0;
        for (const Piece& piece : pieces)
            area += (piece[1] - piece[0]).Cross(piece[2] - piece[0]).Length() / 2;
        EXPECT_NEAR(area, 96, 1e-6);
    }
}

TEST(FaceCutter, WhatHasNoAreaHasNoPiecesAndWhatCrossesIsToldOf)
{
    FaceCutter cutter;
    std::vector<Piece> pieces;
    for (const Ring& ring :
         {Ring(), Flat({{1, 1}}), Flat({{0, 0}, {4, 4}}), Flat({{0, 0}, {4, 4}, {8, 8}})}) {
        EXPECT_TRUE(cutter.Cut({ring}, pieces));
        EXPECT_TRUE(pieces.empty());
    }
    const Ring square = Flat({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    EXPECT_TRUE(cutter.Cut({square, Flat({{4, 4}, {5, 5}}), Ring()}, pieces))
        << "holes without area are none";
    EXPECT_EQ(pieces.size(), 1U);
    EXPECT_FALSE(cutter.Cut({square, Flat({{-5, 3}, {15, 3}, {15, 6}, {-5, 6}})}, pieces)) << "a hole across";
    EXPECT_FALSE(cutter.Cut({Flat({{0, 0}, {10, 0}, {0, 9}, {10, 10}, {2, -3}})}, pieces))
        << "it crosses itself";
}

TEST(FaceCutter, ManyCornersTakeLittleTime)
{
    // A saw of 40,000 teeth on both sides. Trying every corner against every other would take minutes.
    Ring saw;
    constexpr int TEETH = 40'000;
    for (int i = 0; i < TEETH; ++i) saw.emplace_back(i, i % 2, 0);
    for (int i = TEETH - 1; i >= 0; --i) saw.emplace_back(i, 5 + i % 2, 0);
    FaceCutter cutter;
    std::vector<Piece> pieces;
    EXPECT_TRUE(cutter.Cut({saw}, pieces));
    EXPECT_NEAR(PiecesArea(pieces), FaceArea({saw}), 1e-6);
}

} // namespace
