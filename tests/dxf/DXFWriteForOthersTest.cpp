#include "dxf/WrittenGroups.h"

#include <cstdio>

#include "TestPlaces.h"
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

namespace {

using P3 = GTL::Point3D<double>;

/// The drawing as an independent program reads it.
class DXFWriteForOthers : public DXFWriteTest {
protected:
    /// Lines of the program's output; empty when no interpreter has the package.
    Rows List() const
    {
        const std::string script = (TestPlaces::Source() / "tests/dxf/list_with_ezdxf.py").string();
        for (const std::string python : {"python3", "/usr/bin/python3"}) {
            const std::string run = python + " -B '" + script + "' '" + m_File.Path().string() + "'";
            const Rows lines =
                Output("if command -v " + python + " >/dev/null; then " + run + "; else echo absent; fi");
            if (lines != Rows{"absent"}) return lines;
        }
        return {};
    }

    static Rows Output(const std::string& command)
    {
        std::FILE* pipe = popen(command.c_str(), "r");
        if (!pipe) return {"cannot run"};
        Rows lines{""};
        for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
            if (c == '\n')
                lines.emplace_back();
            else
                lines.back() += static_cast<char>(c);
        }
        EXPECT_EQ(pclose(pipe), 0) << command;
        lines.pop_back();
        return lines.empty() ? Rows{"nothing"} : lines;
    }
};

TEST_F(DXFWriteForOthers, AnIndependentReaderSeesTheSameDrawing)
{
    m_Drawing.AddLayer(L"Walls \u00E9")->SetColor(DXFColor(3));
    m_Drawing.AddLayer(L"Hidden")->SetVisible(false);
    ASSERT_TRUE(m_Drawing.SetActiveLayer(L"Walls \u00E9"));

    auto* line = Add<DXFLine>(P3(1, 2, 3), P3(-4, 5.5, 0));
    line->SetStyle(LineInfo::DASHED);
    line->SetColor(DXFColor(2));
    Add<DXFPoint>(1, 2, 3);
    auto* solid = Add<DXFSolid>();
    auto* face = Add<DXF3dFace>();
    for (int i = 0; i < 4; ++i) {
        (*solid)[i] = P3(i % 2, i / 2, 0);
        (*face)[i] = P3(i, i * i, 1);
    }
    Add<DXFCircle>(P3(1, 2, 3), 2, GTL::Vector3D<double>(0, 0, -1));
    Add<DXFArc>(P3(1, 1, 1), 2, 10, 350); // bearings 10 to 350: counter-clockwise 100 to 80
    auto* polyline = Add<DXFPolyline>();
    for (const P3& vertex : {P3(1, 2, 3), P3(4, 5, 6, -0.5), P3(7, 5, 6)}) polyline->PushBack(vertex);
    auto* polygon = Add<DXFPolygon>();
    polygon->SetWidth(0.5F);
    for (const P3& vertex : {P3(1, 2, 0, 1), P3(4, 5, 0), P3(7, 5, 0)}) polygon->PushBack(vertex);

    TextInfo info;
    info.SetFont(L"Arial Bold.ttf");
    info.SetSize(2.5F);
    info.SetRotation(Angle(-30));
    info.SetJustification(TextInfo::MIDDLE_CENTER);
    auto* text = Add<DXFText>();
    text->SetText(L"12\u00B0");
    text->SetPosition(P3(1, 2, 3));
    text->SetTextInfo(info);
    auto* mtext = Add<DXFMText>();
    mtext->SetText(L"one\ntwo " + std::wstring(300, L'x'));
    mtext->SetPosition(P3(9, 8, 7));
    info.SetRectWidth(20);
    info.SetRotation(Angle(270));
    mtext->SetTextInfo(info);

    for (const DXFImage::CLIPTYPE clip : {DXFImage::CLIP_RECTANGLE, DXFImage::CLIP_POLYGON}) {
        auto* image = Add<DXFImage>();
        image->SetSize(640, 480);
        static_cast<void>(image->SetFileName(L"d:\\pics\\absent.bmp"));
        image->SetUVector(P3(0.5, 0, 0));
        image->SetVVector(P3(0, 0.5, 0));
        image->SetClipBoundary(clip, {{0, 0}, {10, 0}, {0, 10}});
    }
    Write();

    if (TestPlaces::IS_WINDOWS) GTEST_SKIP() << "the other reader is not run here";
    const Rows lines = List();
    if (lines.empty()) GTEST_SKIP() << "python3 has no package ezdxf (Debian: python3-ezdxf)";
    const Rows expected = {
        "AC1014",
        "layer 0 7 on",
        "layer Walls \xE9 3 on",
        "layer Hidden 7 off",
        "style Arial_Bold_ttf Arial Bold.ttf",
        "LINE Walls \xE9 2 DASHED 1,2,3 -4,5.5,0 0",
        "POINT Walls \xE9 0 BYLAYER 1,2,3",
        "SOLID Walls \xE9 0 BYLAYER 0,0,0 1,0,0 0,1,0 1,1,0",
        "3DFACE Walls \xE9 0 BYLAYER 0,0,1 1,1,1 2,4,1 3,9,1",
        "CIRCLE Walls \xE9 0 CONTINUOUS 1,2,3 2 0,0,-1",
        "ARC Walls \xE9 0 CONTINUOUS 1,1,1 2 100 80 0,0,1",
        "POLYLINE Walls \xE9 0 CONTINUOUS 0,0,0 0 0 open 1,2,3:0 4,5,6:-0.5 7,5,6:0",
        "POLYLINE Walls \xE9 0 CONTINUOUS 0,0,0 0.5 0.5 closed 1,2,0:1 4,5,0:0 7,5,0:0",
        "TEXT Walls \xE9 0 BYLAYER 12\xB0 1,2,3 2.5 30 Arial_Bold_ttf 1 2 1,2,3",
        "MTEXT Walls \xE9 0 BYLAYER 9,8,7 2.5 20 0,1,0 5 \\fArial Bold.ttf|b0|i0|c0|p34;one\\Ptwo "
            + std::string(300, 'x'),
        "IMAGE Walls \xE9 256 BYLAYER 0,0,0 0.5,0,0 0,0.5,0 640,480,0 d:\\pics\\absent.bmp -0.5,-0.5 "
        "10.5,0.5",
        "IMAGE Walls \xE9 256 BYLAYER 0,0,0 0.5,0,0 0,0.5,0 640,480,0 d:\\pics\\absent.bmp 0,470 0,480 "
        "10,480 0,470",
    };
    EXPECT_EQ(lines, expected);
}

} // namespace
