#include "import/DxfImporter.h"

#include <gtest/gtest.h>

#include <string>

#include "dxf/TempFile.h"
#include "model/DXFLine.h"
#include "model/DXFPoint.h"

namespace {

/// Notes the x of every point, and that a line came.
struct Importer : DxfImporter {
    using DxfImporter::Write;
    void Write(const DXFPoint& point) override
    {
        seen += 'P' + std::to_string(static_cast<int>(point.X())) + ' ';
    }
    void Write(const DXFLine&) override { seen += "L "; }
    std::string seen;
};

std::string Entity(const std::string& name, const std::string& layer, int x)
{
    return "0\n" + name + "\n8\n" + layer + "\n10\n" + std::to_string(x) + "\n20\n0\n11\n0\n21\n0\n";
}

class DxfImporterTest : public testing::Test {
protected:
    std::string Import(const std::string& text, bool expected)
    {
        m_File.Write(text);
        Importer importer;
        EXPECT_EQ(importer.Import(m_File.Name().c_str()), expected);
        return importer.seen;
    }
    const TempFile m_File;
};

TEST_F(DxfImporterTest, EntitiesComeLayerByLayer)
{
    const std::string block = "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nb\n10\n0\n20\n0\n"
                              + Entity("POINT", "A", 9) + "0\nENDBLK\n0\nENDSEC\n";
    EXPECT_EQ(Import("0\nSECTION\n2\nTABLES\n0\nLAYER\n2\nOff\n62\n-1\n0\nENDSEC\n" + block
                         + Entity("POINT", "B", 1) + Entity("POINT", "A", 2) + Entity("LINE", "B", 3)
                         + Entity("POINT", "Off", 4) + Entity("POINT", "a", 5) + "0\nEOF\n",
                     true),
              "P4 P1 L P2 P5 ");
}

TEST_F(DxfImporterTest, WhatCannotBeReadVisitsNothing)
{
    EXPECT_EQ(Import(Entity("POINT", "A", 1) + "0\nLINE\n8\nA\n10\n1\n0\nEOF\n", false), "");
    Importer importer;
    EXPECT_FALSE(importer.Import(L"/no such folder/no.dxf"));
    EXPECT_FALSE(importer.Import(nullptr));
    EXPECT_EQ(importer.seen, "");
}

} // namespace
