#pragma once

#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "plot/PlotBytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

/// Each kind of entity twice: as bytes of a file, and as an entity with the same values.
struct PlotKind {
    const char* name;
    void (*bytes)(PlotBytes&);
    std::unique_ptr<DXFEntity> (*entity)();
    void (*check)(const DXFEntity&); ///< of what was read from the bytes
};

namespace PlotKinds {

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;

constexpr std::uint32_t COLOR = 0x102030; ///< blue 16, green 32, red 48

inline PlotBytes& LineData(PlotBytes& bytes)
{
    return bytes.Int(COLOR).Int(3).Float(0.25F);
}

template <class Entity>
std::unique_ptr<Entity> Styled(std::unique_ptr<Entity> entity)
{
    entity->SetInfo(LineInfo(LineInfo::DASHDOT, 0.25F, COLOR));
    return entity;
}

inline void ExpectLineData(const DXFEntity& entity)
{
    const auto& line = dynamic_cast<const DXFLineBase&>(entity);
    EXPECT_EQ(line.Color(), COLOR);
    EXPECT_EQ(line.Style(), 3);
    EXPECT_EQ(line.Width(), 0.25F);
}

template <class Cornered>
std::unique_ptr<DXFEntity> NewCorners()
{
    auto entity = std::make_unique<Cornered>();
    entity->SetColor(COLOR);
    for (int i = 0; i < 4; ++i) (*entity)[i] = P3(i, 10 + i, 20 + i);
    return entity;
}

inline void CornerBytes(PlotBytes& bytes)
{
    bytes.Int(COLOR);
    for (int i = 0; i < 4; ++i) bytes.Point(i, 10 + i, 20 + i);
}

template <class Cornered>
void ExpectCorners(const DXFEntity& entity)
{
    const auto& corners = dynamic_cast<const Cornered&>(entity);
    EXPECT_EQ(corners.Color(), COLOR);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(corners[i], P3(i, 10 + i, 20 + i)) << i;
}

/// U+1F600 is D83D DE00 in UTF-16.
inline PlotBytes& TextBytes(PlotBytes& bytes, std::u16string_view text)
{
    return bytes.Int(COLOR).String(u"Arial").Int(8).Double(30).Float(2.5F).Int(5).Point(1, 2, 3).String(text);
}

template <class Text>
std::unique_ptr<Text> NewText(const wchar_t* string)
{
    auto text = std::make_unique<Text>();
    text->SetText(string);
    text->SetPosition(P3(1, 2, 3));
    TextInfo info;
    info.SetColor(COLOR);
    info.SetFont(L"Arial");
    info.SetJustification(TextInfo::MIDDLE_CENTER);
    info.SetRotation(30);
    info.SetSize(2.5F);
    info.SetStyle(static_cast<TextInfo::STYLE>(TextInfo::BOLD | TextInfo::UNDERLINE));
    text->SetTextInfo(info);
    return text;
}

inline void ExpectText(const DXFEntity& entity, const wchar_t* string)
{
    const auto& text = dynamic_cast<const TextEntity&>(entity);
    EXPECT_EQ(text.Text(), string);
    EXPECT_EQ(text.Position(), P3(1, 2, 3));
    EXPECT_EQ(text.Color(), COLOR);
    EXPECT_EQ(text.GetTextInfo().Color(), COLOR);
    EXPECT_EQ(text.GetTextInfo().Font(), L"Arial");
    EXPECT_EQ(text.GetTextInfo().Justification(), TextInfo::MIDDLE_CENTER);
    EXPECT_EQ(text.GetTextInfo().Rotation().Get(), 30);
    EXPECT_EQ(text.GetTextInfo().Size(), 2.5F);
    EXPECT_EQ(text.GetTextInfo().Style(), 5);
}

inline std::unique_ptr<DXFEntity> NewMText()
{
    auto text = NewText<DXFMText>(L"two\\Plines");
    TextInfo info = text->GetTextInfo();
    info.SetRectWidth(7.5F);
    info.SetMultiLine(true);
    text->SetTextInfo(info);
    return text;
}

inline std::unique_ptr<DXFEntity> NewImage()
{
    auto image = std::make_unique<DXFImage>();
    image->SetColor(COLOR);
    image->SetClipBoundary(DXFImage::CLIP_POLYGON, {{1, 2}, {3, 4}, {5, 6}});
    image->SetBrightness(60);
    image->SetContrast(70);
    image->SetFade(80);
    (void)image->SetFileName(L"no such picture.png");
    image->SetLayerName(L"L");
    image->SetDefinitionHandle(L"7F");
    image->SetReactorHandle(L"80");
    image->SetUVector(P3(0.5, 0, 0.25));
    image->SetVVector(P3(0, 2, 0.125));
    image->SetInsertPoint(P3(11, 12, 13));
    image->SetSize(640, 480.5);
    return image;
}

inline void ImageBytes(PlotBytes& bytes)
{
    bytes.Int(COLOR).Int(2).Int(60).Int(70).Int(80);
    bytes.String(u"no such picture.png").String(u"L").String(u"7F").String(u"80");
    bytes.Doubles({0.5, 0, 0.25, 0, 2, 0.125});
    bytes.Count(3).Doubles({1, 2, 3, 4, 5, 6});
    bytes.Doubles({11, 12, 640, 480.5, 13});
}

inline void ExpectImage(const DXFEntity& entity)
{
    const auto& image = dynamic_cast<const DXFImage&>(entity);
    EXPECT_EQ(image.Color(), COLOR);
    EXPECT_EQ(image.ClipType(), DXFImage::CLIP_POLYGON);
    EXPECT_EQ(image.ClipBoundary(), (std::vector<P2>{{1, 2}, {3, 4}, {5, 6}}));
    EXPECT_EQ(image.Brightness(), 60);
    EXPECT_EQ(image.Contrast(), 70);
    EXPECT_EQ(image.Fade(), 80);
    EXPECT_EQ(image.FileName(), L"no such picture.png");
    EXPECT_EQ(image.LayerName(), L"L");
    EXPECT_EQ(image.DefinitionHandle(), L"7F");
    EXPECT_EQ(image.ReactorHandle(), L"80");
    EXPECT_EQ(image.UVector(), P3(0.5, 0, 0.25));
    EXPECT_EQ(image.VVector(), P3(0, 2, 0.125));
    EXPECT_EQ(image.InsertPoint(), P3(11, 12, 13));
    EXPECT_EQ(image.Width(), 640);
    EXPECT_EQ(image.Height(), 480.5);
}

inline std::unique_ptr<DXFEntity> NewInsert()
{
    auto insert = std::make_unique<DXFInsert>(L"DOOR", P3(1, 2, 3), 45);
    insert->SetScale(P3(2, 3, 4));
    insert->SetExtrusion(P3(0, 0.6, 0.8));
    insert->SetRowCount(5);
    insert->SetRowSpacing(1.5);
    insert->SetColumnCount(6);
    insert->SetColumnSpacing(2.5);
    return insert;
}

inline void ExpectInsert(const DXFEntity& entity)
{
    const auto& insert = dynamic_cast<const DXFInsert&>(entity);
    EXPECT_EQ(insert.BlockName(), L"DOOR");
    EXPECT_EQ(insert.InsertPoint(), P3(1, 2, 3));
    EXPECT_EQ(insert.Scale(), P3(2, 3, 4));
    EXPECT_EQ(insert.Extrusion(), P3(0, 0.6, 0.8));
    EXPECT_EQ(insert.Rotation(), 45);
    EXPECT_EQ(insert.GetRowCount(), 5);
    EXPECT_EQ(insert.GetRowSpacing(), 1.5);
    EXPECT_EQ(insert.GetColumnCount(), 6);
    EXPECT_EQ(insert.GetColumnSpacing(), 2.5);
}

/// The bulge goes out as the model holds it, and does not come back.
template <class Chain>
std::unique_ptr<Chain> NewChain()
{
    auto chain = Styled(std::make_unique<Chain>());
    chain->PushBack(P3(1, 2, 3, 0.5));
    chain->PushBack(P3(4, 5, 6));
    return chain;
}

inline PlotBytes& VertexBytes(PlotBytes& bytes)
{
    return bytes.Count(2).Point(1, 2, 3, 0.5).Point(4, 5, 6);
}

inline void ExpectVertices(const DXFEntity& entity)
{
    const auto& chain = dynamic_cast<const DXFPolyline&>(entity);
    ExpectLineData(chain);
    EXPECT_EQ(chain.GetPoly().Vertices(), (std::vector<P3>{{1, 2, 3}, {4, 5, 6}}));
}

inline std::unique_ptr<DXFEntity> NewPolyline()
{
    auto polyline = NewChain<DXFPolyline>();
    polyline->SetElevation(9);
    polyline->SetLWPolyLine(true);
    return polyline;
}

/// By number, from 2 to 13.
inline const std::vector<PlotKind>& All()
{
    static const std::vector<PlotKind> KINDS = {
        {"solid", CornerBytes, NewCorners<DXFSolid>, ExpectCorners<DXFSolid>},
        {"mtext", [](PlotBytes& b) { TextBytes(b, u"two\\Plines").Float(7.5F).Byte(1); }, NewMText,
         [](const DXFEntity& e) {
             ExpectText(e, L"two\\Plines");
             EXPECT_EQ(dynamic_cast<const DXFMText&>(e).GetTextInfo().RectWidth(), 7.5F);
             EXPECT_TRUE(dynamic_cast<const DXFMText&>(e).GetTextInfo().MultiLine());
         }},
        {"line", [](PlotBytes& b) { LineData(b).Point(1, 2, 3).Point(4, 5, 6); },
         []() -> std::unique_ptr<DXFEntity> {
             return Styled(std::make_unique<DXFLine>(P3(1, 2, 3), P3(4, 5, 6)));
         },
         [](const DXFEntity& e) {
             ExpectLineData(e);
             EXPECT_EQ(dynamic_cast<const DXFLine&>(e).Start(), P3(1, 2, 3));
             EXPECT_EQ(dynamic_cast<const DXFLine&>(e).End(), P3(4, 5, 6));
         }},
        {"polyline", [](PlotBytes& b) { VertexBytes(LineData(b).Double(9).Byte(1)); }, NewPolyline,
         [](const DXFEntity& e) {
             ExpectVertices(e);
             EXPECT_EQ(dynamic_cast<const DXFPolyline&>(e).GetElevation(), 9);
             EXPECT_TRUE(dynamic_cast<const DXFPolyline&>(e).GetLWPolyLine());
         }},
        {"polygon", [](PlotBytes& b) { VertexBytes(LineData(b)); },
         []() -> std::unique_ptr<DXFEntity> { return NewChain<DXFPolygon>(); },
         [](const DXFEntity& e) {
             ExpectVertices(e);
             EXPECT_NE(dynamic_cast<const DXFPolygon*>(&e), nullptr);
         }},
        {"point", [](PlotBytes& b) { b.Int(COLOR).Point(1, 2, 3, 4); },
         []() -> std::unique_ptr<DXFEntity> {
             auto point = std::make_unique<DXFPoint>(P3(1, 2, 3, 4));
             point->SetColor(COLOR);
             return point;
         },
         [](const DXFEntity& e) {
             EXPECT_EQ(e.Color(), COLOR);
             EXPECT_EQ(dynamic_cast<const DXFPoint&>(e).Point(), P3(1, 2, 3));
         }},
        {"circle", [](PlotBytes& b) { LineData(b).Double(0.1).Point(1, 2, 3).Point(0, 0.6, 0.8); },
         []() -> std::unique_ptr<DXFEntity> {
             return Styled(std::make_unique<DXFCircle>(P3(1, 2, 3), 0.1, GTL::Vector3D<double>(0, 0.6, 0.8)));
         },
         [](const DXFEntity& e) {
             const auto& circle = dynamic_cast<const DXFCircle&>(e);
             ExpectLineData(e);
             EXPECT_EQ(circle.Radius(), 0.1) << "in double precision";
             EXPECT_EQ(circle.Center(), P3(1, 2, 3));
             EXPECT_EQ(circle.Extrusion(), GTL::Vector3D<double>(0, 0.6, 0.8));
         }},
        {"text", [](PlotBytes& b) { TextBytes(b, u"a \xD83D\xDE00 \xD83D \x4E2D"); },
         []() -> std::unique_ptr<DXFEntity> { return NewText<DXFText>(L"a \U0001F600 \xD83D \x4E2D"); },
         [](const DXFEntity& e) {
             ExpectText(e, L"a \U0001F600 \xD83D \x4E2D");
         }},
        {"arc",
         [](PlotBytes& b) { LineData(b).Double(7).Point(1, 2, 3).Double(350).Double(10).Point(0, 0.6, 0.8); },
         []() -> std::unique_ptr<DXFEntity> {
             return Styled(
                 std::make_unique<DXFArc>(P3(1, 2, 3), 7, 350, 10, GTL::Vector3D<double>(0, 0.6, 0.8)));
         },
         [](const DXFEntity& e) {
             const auto& arc = dynamic_cast<const DXFArc&>(e);
             ExpectLineData(e);
             EXPECT_EQ(arc.Radius(), 7);
             EXPECT_EQ(arc.Center(), P3(1, 2, 3));
             EXPECT_EQ(arc.StartAngle(), 350);
             EXPECT_EQ(arc.EndAngle(), 10);
             EXPECT_EQ(arc.Extrusion(), GTL::Vector3D<double>(0, 0.6, 0.8));
         }},
        {"image", ImageBytes, NewImage, ExpectImage},
        {"3dface", CornerBytes, NewCorners<DXF3dFace>, ExpectCorners<DXF3dFace>},
        {"insert",
         [](PlotBytes& b) {
             b.String(u"DOOR").Point(1, 2, 3).Point(2, 3, 4).Point(0, 0.6, 0.8).Double(45);
             b.Int(5).Double(1.5).Int(6).Double(2.5);
         },
         NewInsert, ExpectInsert},
    };
    return KINDS;
}

constexpr std::int32_t FIRST = 2;

/// A block with a line and an insert of another block, then two layers, the second with one of each kind.
inline PlotBytes FileOfAll()
{
    PlotBytes bytes;
    bytes.Begin(14).String(u"DOOR").String(u"WALLS").Point(1, 2, 3).Int(64).String(u"lib/doors.dxf");
    bytes.Layer(u"0").Begin(4);
    LineData(bytes).Point(0, 0, 0).Point(1, 0, 0);
    bytes.Begin(15);
    bytes.Layer(u"0", true, 0x00FF00).Layer(u"ALL", false, COLOR);
    std::int32_t kind = FIRST;
    for (const PlotKind& row : All()) row.bytes(bytes.Begin(kind++));
    return bytes;
}

} // namespace PlotKinds
