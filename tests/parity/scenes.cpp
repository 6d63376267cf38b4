// Draws the scenes that two devices are compared by:  parity_scenes OUT [CORPUS]
//
// The numbers are those of one generator with one seed a scene, so that both devices are asked for the same.
#include "Record.h"

#include "dxf/DXFFile.h"
#include "model/DXF.h"
#include "platform/CDC.h"
#include "platform/Picture.h"
#include "platform/Utf8.h"
#include "render/DrawnExtents.h"
#include "render/DxfPen.h"
#include "render/WinDXFDrawer.h"
#include "support/LineInfo.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>

namespace {
constexpr int WIDTH = 640;
constexpr int HEIGHT = 480;
constexpr unsigned long PAPER = 0xFFFFFF;

/// Whole numbers from low to high, both included, the same with every library.
class Numbers {
public:
    explicit Numbers(unsigned seed) : m_Generator(seed) {}

    int Between(int low, int high)
    {
        const auto span = static_cast<std::uint64_t>(std::int64_t{high} - low) + 1;
        return static_cast<int>(low + static_cast<std::int64_t>(m_Generator() % span));
    }
    CPoint Point(int margin)
    {
        const int x = Between(-margin, WIDTH + margin);
        return {x, Between(-margin, HEIGHT + margin)};
    }
    unsigned long Color() { return static_cast<unsigned long>(Between(0, 0xEFEFEF)); }

private:
    std::mt19937 m_Generator;
};

/// A bitmap in a context, painted with the paper's colour but for the first pixel's row, which stays that
/// way.
struct Sheet {
    Sheet()
    {
        if (!bitmap.CreateBitmap(WIDTH, HEIGHT)) std::abort();
        dc.SelectObject(&bitmap);
        dc.FillSolidRect(CRect(0, 0, WIDTH, HEIGHT), PAPER);
        dc.SetBkMode(TRANSPARENT);
    }

    CBitmap bitmap;
    CDC dc;
};

class Album {
public:
    void Add(const std::string& name, Scene::Rule rule, const std::function<void(CDC&)>& draw)
    {
        Sheet sheet;
        draw(sheet.dc);
        Scene scene{name, rule, true, WIDTH, HEIGHT, {}};
        const std::uint32_t* pixels = sheet.bitmap.Pixels();
        scene.values.assign(pixels, pixels + WIDTH * HEIGHT);
        for (std::uint32_t& value : scene.values) value &= 0xFFFFFF;
        m_Scenes.push_back(std::move(scene));
    }
    void Add(const std::string& name, const std::vector<int>& numbers)
    {
        Scene scene{name, Scene::Rule::Equal, false, static_cast<std::uint32_t>(numbers.size()), 1, {}};
        for (const int number : numbers) scene.values.push_back(static_cast<std::uint32_t>(number));
        m_Scenes.push_back(std::move(scene));
    }
    const std::vector<Scene>& Scenes() const { return m_Scenes; }

private:
    std::vector<Scene> m_Scenes;
};

void DrawLine(CDC& dc, CPoint from, CPoint to)
{
    dc.MoveTo(from);
    dc.LineTo(to);
}

/// So many lines with ends within a margin around the sheet, each in a pen of its own.
void DrawLines(CDC& dc, unsigned seed, int count, int margin, int style = PS_SOLID, int width = 1)
{
    Numbers numbers(seed);
    for (int i = 0; i < count; ++i) {
        CPen pen(style, width, numbers.Color());
        dc.SelectObject(&pen);
        const CPoint from = numbers.Point(margin);
        DrawLine(dc, from, numbers.Point(margin));
        dc.SelectObject(static_cast<CPen*>(nullptr));
    }
}

/// Lines through the sheet whose ends are far away on both sides, or on one.
void DrawFarLines(CDC& dc, int reach)
{
    Numbers numbers(5);
    for (int i = 0; i < 500; ++i) {
        CPen pen(PS_SOLID, 1, numbers.Color());
        dc.SelectObject(&pen);
        const CPoint through = numbers.Point(0);
        const CPoint from = numbers.Point(reach);
        const CPoint opposite(2 * through.x - from.x + numbers.Between(-20, 20), 2 * through.y - from.y);
        DrawLine(dc, from, i % 2 == 0 ? opposite : through);
        dc.SelectObject(static_cast<CPen*>(nullptr));
    }
}

/// Short lines in all directions from the same points: every octant, every length up to 12.
void DrawStars(CDC& dc)
{
    constexpr int REACH = 12;
    constexpr int CELL = 2 * REACH + 4;
    Numbers numbers(2);
    for (int y = CELL; y < HEIGHT - CELL; y += CELL)
        for (int x = CELL; x < WIDTH - CELL; x += CELL) {
            const int dx = numbers.Between(-REACH, REACH);
            DrawLine(dc, {x, y}, {x + dx, y + numbers.Between(-REACH, REACH)});
        }
}

std::vector<CPoint> Path(Numbers& numbers, int count, int margin)
{
    std::vector<CPoint> points;
    for (int i = 0; i < count; ++i) points.push_back(numbers.Point(margin));
    return points;
}

/// Steps of a few pixels: dashes run on through many corners.
std::vector<CPoint> Walk(Numbers& numbers, int count)
{
    std::vector<CPoint> points{numbers.Point(0)};
    for (int i = 1; i < count; ++i) {
        const CPoint before = points.back();
        const int dx = numbers.Between(-9, 9);
        points.push_back({before.x + dx, before.y + numbers.Between(-9, 9)});
    }
    return points;
}

void DrawPolylines(CDC& dc, unsigned seed, int style, int width = 1)
{
    Numbers numbers(seed);
    for (int i = 0; i < 60; ++i) {
        CPen pen(style, width, numbers.Color());
        dc.SelectObject(&pen);
        const std::vector<CPoint> path = i % 2 == 0 ? Walk(numbers, 50) : Path(numbers, 6, 200);
        dc.Polyline(path.data(), static_cast<int>(path.size()));
        dc.SelectObject(static_cast<CPen*>(nullptr));
    }
}

void DrawPolygons(CDC& dc, unsigned seed, int count, int fillMode, int penStyle, int width = 1)
{
    Numbers numbers(seed);
    dc.SetPolyFillMode(fillMode);
    for (int i = 0; i < count; ++i) {
        CPen pen(penStyle, width, numbers.Color());
        CBrush brush(numbers.Color());
        dc.SelectObject(&pen);
        dc.SelectObject(&brush);
        const std::vector<CPoint> path = Path(numbers, numbers.Between(3, 9), i % 4 == 0 ? 900 : 20);
        dc.Polygon(path.data(), static_cast<int>(path.size()));
        dc.SelectObject(static_cast<CPen*>(nullptr));
        dc.SelectObject(static_cast<CBrush*>(nullptr));
    }
}

void ClipByStar(CDC& dc, unsigned seed, int count, int margin)
{
    Numbers numbers(seed);
    const std::vector<CPoint> path = Path(numbers, count, margin);
    dc.SetClipPolygon(path.data(), count);
}

/// y up, so many pixels a unit as the drawer and others set it up.
void SetMap(CDC& dc, int mode, CSize window, CSize viewport, CPoint origin, CPoint viewportOrigin)
{
    dc.SetMapMode(mode);
    dc.SetWindowExt(window.cx, window.cy);
    dc.SetViewportExt(viewport.cx, viewport.cy);
    dc.SetWindowOrg(origin.x, origin.y);
    dc.SetViewportOrg(viewportOrigin.x, viewportOrigin.y);
}

struct Map {
    const char* name;
    int mode;
    CSize window;
    CSize viewport;
    CPoint origin;
    CPoint viewportOrigin;
};

constexpr Map MAPS[] = {
    {"moved", MM_TEXT, {1, 1}, {1, 1}, {13, -7}, {5, 90}},
    {"isotropic y up", MM_ISOTROPIC, {640, 480}, {640, -480}, {320, 240}, {320, 240}},
    {"isotropic x 1.7", MM_ISOTROPIC, {1000, 1000}, {1700, 1700}, {0, 0}, {0, 0}},
    {"isotropic x 0.37 y up", MM_ISOTROPIC, {100, 100}, {37, -80}, {-30, 20}, {100, 300}},
    {"anisotropic", MM_ANISOTROPIC, {300, 200}, {-410, 333}, {10, 10}, {600, 3}},
    {"isotropic of odd shape", MM_ISOTROPIC, {611, 397}, {640, -480}, {305, 198}, {320, 240}},
};

/// Where points come out, there and back, and what the extents have become.
std::vector<int> MappedNumbers(const Map& map)
{
    CDC dc;
    SetMap(dc, map.mode, map.window, map.viewport, map.origin, map.viewportOrigin);
    std::vector<int> numbers{dc.GetMapMode(),        dc.GetWindowExt().cx,   dc.GetWindowExt().cy,
                             dc.GetViewportExt().cx, dc.GetViewportExt().cy, dc.GetWindowOrg().x,
                             dc.GetViewportOrg().y};
    Numbers random(77);
    for (int i = 0; i < 2000; ++i) {
        const int reach = i % 2 == 0 ? 2000 : 2'000'000;
        const int x = random.Between(-reach, reach);
        CPoint there(x, random.Between(-reach, reach));
        CPoint back = there;
        dc.LPtoDP(&there);
        dc.DPtoLP(&back);
        numbers.insert(numbers.end(), {there.x, there.y, back.x, back.y});
    }
    return numbers;
}

void AddLines(Album& album)
{
    using enum Scene::Rule;
    album.Add("lines inside", Equal, [](CDC& dc) { DrawLines(dc, 1, 2000, 0); });
    album.Add("lines in stars", Equal, [](CDC& dc) { DrawStars(dc); });
    album.Add("lines from outside", Equal, [](CDC& dc) { DrawLines(dc, 3, 3000, 500); });
    album.Add("lines from far outside", Equal, [](CDC& dc) { DrawLines(dc, 4, 3000, 20'000); });
    album.Add("lines from very far outside", Equal, [](CDC& dc) { DrawFarLines(dc, 5'000'000); });
    album.Add("lines from farthest outside", Equal, [](CDC& dc) { DrawFarLines(dc, 60'000'000); });
    constexpr std::pair<const char*, int> STYLES[] = {
        {"dash", PS_DASH}, {"dot", PS_DOT}, {"dashdot", PS_DASHDOT}, {"dashdotdot", PS_DASHDOTDOT}};
    album.Add("polylines solid", Equal, [](CDC& dc) { DrawPolylines(dc, 6, PS_SOLID); });
    album.Add("polylines inside frame", Equal, [](CDC& dc) { DrawPolylines(dc, 6, PS_INSIDEFRAME); });
    for (const auto& [name, style] : STYLES) {
        const auto lines = [style](CDC& dc) {
            DrawLines(dc, 7, 150, 300, style);
        };
        album.Add(std::string("lines ") + name, Equal, lines);
        album.Add(std::string("lines opaque ") + name, Equal, [&](CDC& dc) {
            dc.SetBkMode(OPAQUE);
            dc.SetBkColor(0x80FFFF);
            lines(dc);
        });
        album.Add(std::string("polylines ") + name, Equal, [style](CDC& dc) { DrawPolylines(dc, 8, style); });
    }
    album.Add("pixels", Equal, [](CDC& dc) {
        Numbers numbers(9);
        for (int i = 0; i < 5000; ++i) {
            const CPoint at = numbers.Point(30);
            dc.SetPixel(at, numbers.Color());
        }
    });
    album.Add("no pen at all", Equal, [](CDC& dc) {
        CPen none(PS_NULL, 1, 0);
        dc.SelectObject(&none);
        DrawLine(dc, {10, 10}, {200, 100});
        dc.SelectObject(static_cast<CPen*>(nullptr));
        DrawLine(dc, {10, 30}, {200, 130});
    });
}

void AddAreas(Album& album)
{
    using enum Scene::Rule;
    for (const auto& [name, mode] : {std::pair("alternate", ALTERNATE), std::pair("winding", WINDING)}) {
        for (const auto& [pen, style] :
             {std::pair("outlined", PS_SOLID), std::pair("bare", PS_NULL), std::pair("dashed", PS_DASH)})
            album.Add(std::string("polygons ") + name + ' ' + pen, Equal,
                      [mode = mode, style = style](CDC& dc) { DrawPolygons(dc, 20, 120, mode, style); });
    }
    album.Add("rectangles", Equal, [](CDC& dc) {
        Numbers numbers(21);
        for (int i = 0; i < 200; ++i) {
            const CPoint a = numbers.Point(50);
            const CPoint b = numbers.Point(50);
            dc.FillSolidRect(CRect(a.x, a.y, b.x, b.y), numbers.Color());
        }
    });
    for (const auto& [name, margin] :
         {std::pair("", 0), std::pair(" far outside", 3000), std::pair(" farthest", 90'000)})
        album.Add(std::string("clipped scene") + name, Equal, [margin = margin](CDC& dc) {
            ClipByStar(dc, 22, 9, margin);
            DrawPolygons(dc, 23, 30, ALTERNATE, PS_SOLID);
            DrawLines(dc, 24, 400, 400);
            DrawPolylines(dc, 25, PS_DASHDOT);
            ClipByStar(dc, 26, 5, margin);
            dc.FillSolidRect(CRect(100, 100, 500, 300), 0x2080F0);
            dc.ResetClip();
            DrawLine(dc, {0, 400}, {640, 420});
        });
    album.Add("copies", Equal, [](CDC& dc) {
        Sheet from;
        DrawPolygons(from.dc, 27, 60, WINDING, PS_SOLID);
        Numbers numbers(28);
        for (int i = 0; i < 60; ++i) {
            const CPoint to = numbers.Point(40);
            const CPoint at = numbers.Point(40);
            const int width = numbers.Between(1, 200);
            dc.BitBlt(to.x, to.y, width, numbers.Between(1, 200), &from.dc, at.x, at.y, SRCCOPY);
        }
        for (int i = 0; i < 20; ++i) {
            const CPoint to = numbers.Point(0);
            const CPoint at = numbers.Point(0);
            dc.BitBlt(to.x, to.y, 150, 150, &dc, at.x, at.y, SRCCOPY);
        }
    });
}

void AddMaps(Album& album)
{
    for (const Map& map : MAPS) {
        album.Add(std::string("map ") + map.name, MappedNumbers(map));
        album.Add(std::string("drawn ") + map.name, Scene::Rule::Equal, [&map](CDC& dc) {
            SetMap(dc, map.mode, map.window, map.viewport, map.origin, map.viewportOrigin);
            dc.FillSolidRect(CRect(40, 50, 170, 110), 0xC0E0FF);
            // Pens of width 0 are one pixel wide at any scale.
            DrawPolygons(dc, 30, 20, ALTERNATE, PS_SOLID, 0);
            ClipByStar(dc, 31, 6, 300);
            DrawLines(dc, 32, 500, 400, PS_SOLID, 0);
            DrawPolylines(dc, 33, PS_DASH, 0);
            dc.ResetClip();
            for (int i = 0; i < 300; ++i) dc.SetPixel(i, i / 2, 0x0000FF);
        });
    }
}

void AddWidePens(Album& album)
{
    for (const int width : {2, 3, 4, 7, 20}) {
        album.Add("wide " + std::to_string(width), Scene::Rule::WidePens, [width](CDC& dc) {
            Numbers numbers(40);
            CPen pen(PS_SOLID, width, 0x804000);
            dc.SelectObject(&pen);
            for (int i = 0; i < 24; ++i) {
                const CPoint from = numbers.Point(10);
                DrawLine(dc, from, numbers.Point(10));
            }
            DrawLine(dc, {100, 50}, {300, 50});
            DrawLine(dc, {50, 100}, {50, 300});
            const std::vector<CPoint> path = Path(numbers, 5, 0);
            dc.Polyline(path.data(), 5);
            dc.SelectObject(static_cast<CPen*>(nullptr));
        });
        album.Add("wide dashes " + std::to_string(width), Scene::Rule::WidePens, [width](CDC& dc) {
            Numbers numbers(41);
            for (const int style : {LineInfo::DASHED, LineInfo::DOT, LineInfo::DASHDOT}) {
                DxfPen pen;
                if (!pen.CreateDxfPen(style, width, numbers.Color())) std::abort();
                dc.SelectObject(&pen);
                for (int i = 0; i < 4; ++i) {
                    const CPoint from = numbers.Point(0);
                    DrawLine(dc, from, numbers.Point(0));
                }
                dc.SelectObject(static_cast<CPen*>(nullptr));
            }
        });
    }
}

void AddScaledPens(Album& album)
{
    for (const Map& map : MAPS)
        album.Add(std::string("pens ") + map.name, Scene::Rule::WidePens, [&map](CDC& dc) {
            SetMap(dc, map.mode, map.window, map.viewport, map.origin, map.viewportOrigin);
            for (const int width : {1, 2, 5}) {
                DrawLines(dc, 34, 12, 0, PS_SOLID, width);
                DrawLines(dc, 35, 12, 0, PS_DASH, width);
            }
        });
}

/// Straight wide lines along the axes have no slanted border: nothing may differ.
void AddStraightWidePens(Album& album)
{
    album.Add("wide bars without caps", Scene::Rule::Equal, [](CDC& dc) {
        Numbers numbers(42);
        for (int i = 0; i < 12; ++i) {
            CPen pen(PS_SOLID, i + 2, numbers.Color());
            dc.SelectObject(&pen);
            // The ends lie outside.
            DrawLine(dc, {-100, 20 + 38 * i}, {WIDTH + 100, 20 + 38 * i});
            DrawLine(dc, {20 + 50 * i, -100}, {20 + 50 * i, HEIGHT + 100});
            dc.SelectObject(static_cast<CPen*>(nullptr));
        }
    });
}

constexpr const wchar_t* FACES[] = {L"Liberation Sans", L"Liberation Serif", L"Liberation Mono",
                                    L"DejaVu Sans", L"DejaVu Sans Mono"};
constexpr std::wstring_view TEXTS[] = {
    L"Hamburgefonstiv 0123456789", L"Wg\u00C4\u00DF\u20AC", L"(x) [y] {z} /\\|", L"", L" ", L"iiiiiiWWWWW",
    L"\u0416\u03A9 \u2205"};

bool MakeFont(CFont& font, const wchar_t* face, int height, int escapement, int weight, bool italic,
              int quality)
{
    return font.CreateFontW(height, 0, escapement, 0, weight, italic, false, false, ANSI_CHARSET,
                            OUT_TT_ONLY_PRECIS, CLIP_LH_ANGLES, quality, DEFAULT_PITCH, face);
}

/// Boxes of texts in many sizes, and the advances of single characters.
std::vector<int> TextNumbers(const wchar_t* face, int weight, bool italic, double scale)
{
    CDC dc;
    if (scale != 1) {
        dc.SetMapMode(MM_ISOTROPIC);
        dc.SetWindowExt(1000, 1000);
        dc.SetViewportExt(static_cast<int>(1000 * scale), -static_cast<int>(1000 * scale));
    }
    std::vector<int> numbers;
    for (const int height : {-200, -64, -31, -12, -7, 6, 9, 10, 13, 14, 16, 21, 32, 55, 100, 233, 400}) {
        CFont font;
        if (!MakeFont(font, face, height, 0, weight, italic, PROOF_QUALITY)) std::abort();
        dc.SelectObject(&font);
        for (const std::wstring_view text : TEXTS) {
            const CSize size = dc.GetTextExtent(text.data(), static_cast<int>(text.size()));
            numbers.insert(numbers.end(), {size.cx, size.cy});
        }
        for (wchar_t character = 32; character < 127; ++character)
            numbers.push_back(dc.GetTextExtent(&character, 1).cx);
        dc.SelectObject(static_cast<CFont*>(nullptr));
    }
    return numbers;
}

void DrawTexts(CDC& dc, const wchar_t* face, std::initializer_list<int> directions)
{
    constexpr unsigned ALIGNS[] = {TA_LEFT | TA_TOP, TA_CENTER | TA_BASELINE, TA_RIGHT | TA_BOTTOM};
    Numbers numbers(50);
    for (const int height : {12, 16, 23, 40}) {
        for (const int direction : directions) {
            CFont font;
            if (!MakeFont(font, face, height, direction, FW_NORMAL, false, ANTIALIASED_QUALITY)) std::abort();
            dc.SelectObject(&font);
            dc.SetTextColor(numbers.Color());
            for (const unsigned align : ALIGNS) {
                dc.SetTextAlign(align);
                const CPoint at = numbers.Point(-60);
                dc.TextOutW(at.x, at.y, TEXTS[0].data(), static_cast<int>(TEXTS[0].size()));
            }
            dc.SelectObject(static_cast<CFont*>(nullptr));
        }
    }
}

void AddTexts(Album& album)
{
    using enum Scene::Rule;
    for (const wchar_t* face : FACES) {
        const std::string name = ToUtf8(face);
        album.Add("boxes " + name, TextNumbers(face, FW_NORMAL, false, 1));
        album.Add("boxes bold " + name, TextNumbers(face, FW_BOLD, false, 1));
        album.Add("boxes slanted " + name, TextNumbers(face, FW_NORMAL, true, 1));
        for (const double scale : {0.7, 1.73, 2.1})
            album.Add("boxes x " + std::to_string(scale).substr(0, 4) + ' ' + name,
                      TextNumbers(face, FW_NORMAL, false, scale));
        album.Add("text " + name, GreyText, [face](CDC& dc) { DrawTexts(dc, face, {0, 900, 1800, 2700}); });
        album.Add("text y up " + name, GreyText, [face](CDC& dc) {
            SetMap(dc, MM_ISOTROPIC, {640, 480}, {640, -480}, {320, 240}, {320, 240});
            DrawTexts(dc, face, {0, 900});
        });
        album.Add("text turned " + name, TurnedText, [face](CDC& dc) {
            DrawTexts(dc, face, {150, 300, 1234});
        });
    }
}

Picture MakePicture(bool hasKey)
{
    Picture picture;
    picture.width = 37;
    picture.height = 23;
    picture.hasColorKey = hasKey;
    Numbers numbers(60);
    for (int i = 0; i < picture.width * picture.height; ++i) {
        const bool isKeyed = hasKey && numbers.Between(0, 3) == 0;
        const auto color = static_cast<std::uint32_t>(numbers.Between(0, 0xFFFFFF));
        picture.pixels.push_back(isKeyed ? Picture::COLOR_KEY : 0xFF000000U | color);
    }
    return picture;
}

void AddPictures(Album& album)
{
    for (const bool hasKey : {false, true}) {
        album.Add(hasKey ? "pictures keyed" : "pictures", Scene::Rule::Equal, [hasKey](CDC& dc) {
            const Picture picture = MakePicture(hasKey);
            ClipByStar(dc, 61, 8, 100);
            Numbers numbers(62);
            for (int i = 0; i < 12; ++i) {
                const CPoint upperLeft = numbers.Point(50);
                const CPoint upperRight = numbers.Point(50);
                dc.DrawPicture(picture, upperLeft, upperRight, numbers.Point(50), hasKey);
            }
            dc.ResetClip();
            dc.DrawPicture(picture, {20, 30}, {57, 30}, {20, 53}, hasKey);
        });
    }
}

/// Drawings without text and images that other programs wrote, below the corpus.
constexpr const char* DRAWINGS[] = {
    "dxf/assimp/DXF__PinkEggFromLW.dxf",
    "dxf/assimp/DXF__issue_2229.dxf",
    "dxf/assimp/DXF__wuson.dxf",
    "dxf/dxf-parser/test__data__polylines.dxf",
    "dxf/ezdxf/AC1003_LINE_Example.dxf",
    "dxf/ezdxf/custom_blocks.dxf",
    "dxf/ezdxf/examples__addons__drawing__data__usa.dxf",
    "dxf/ezdxf/examples__addons__optimize__forms.dxf",
    "dxf/ezdxf/examples_dxf__hatches_1.dxf",
    "dxf/ezdxf/examples_dxf__wipeout_random.dxf",
    "dxf/ezdxf/small_r13.dxf",
    "dxf/gdal/ogr__data__dxf__3d.dxf",
    "dxf/gdal/ogr__data__dxf__byblock-bylayer.dxf",
    "dxf/gdal/ogr__data__dxf__linetypes.dxf",
    "dxf/gdal/ogr__data__dxf__solid.dxf",
};

void DrawDocument(CDC& dc, const DXF& drawing, const DrawingOption& option)
{
    const std::atomic<bool> keepGoing{true};
    DrawnExtents extents;
    const DrawnExtents::Box box = extents.Of(drawing);
    const GTL::Extents2D<double> view({box.MinX(), box.MinY()}, {box.MaxX(), box.MaxY()});
    WinDXFDrawer drawer(option);
    if (!drawer.Init(&dc, view, CRect(0, 0, WIDTH, HEIGHT))) return;
    drawer.Draw(drawing, keepGoing);
}

/// Numbers of drawings that could not be read.
int AddDrawings(Album& album, const std::filesystem::path& corpus)
{
    const std::atomic<bool> keepGoing{true};
    int missing = 0;
    for (const char* file : DRAWINGS) {
        DXF drawing;
        const std::filesystem::path path = corpus / file;
        if (!drawing.Read(path.wstring(), keepGoing, true)) {
            std::fprintf(stderr, "parity_scenes: cannot read %s\n", path.string().c_str());
            ++missing;
            continue;
        }
        const std::string name = path.stem().string();
        const std::size_t title = name.rfind("__");
        const std::string shown = name.substr(title == name.npos ? 0 : title + 2);
        DrawingOption thin = DrawingOption::All(PAPER);
        thin.widestLine = 1;
        album.Add("drawing " + shown, Scene::Rule::Equal, [&](CDC& dc) { DrawDocument(dc, drawing, thin); });
        album.Add("drawing wide " + shown, Scene::Rule::WidePens,
                  [&](CDC& dc) { DrawDocument(dc, drawing, DrawingOption::All(PAPER)); });
    }
    return missing;
}
} // namespace

int main(int count, char** arguments)
{
    if (count < 2) {
        std::fprintf(stderr, "parity_scenes: needs the name of a file to write\n");
        return 2;
    }
    Album album;
    AddLines(album);
    AddAreas(album);
    AddMaps(album);
    AddWidePens(album);
    AddScaledPens(album);
    AddStraightWidePens(album);
    AddTexts(album);
    AddPictures(album);
    int missing = 0;
    if (count > 2 && std::filesystem::is_directory(arguments[2]))
        missing = AddDrawings(album, arguments[2]);
    else
        std::printf("SKIPPED: the drawings of the corpus (%s is no folder; set HALYARD_CORPUS)\n",
                    count > 2 ? arguments[2] : "nothing");
    if (!SceneFile::Write(arguments[1], album.Scenes())) {
        std::fprintf(stderr, "parity_scenes: cannot write %s\n", arguments[1]);
        return 1;
    }
    return missing == 0 ? 0 : 1;
}
