#include "CommandText.h"
#include "Commands.h"
#include "Drawing.h"
#include "Interrupt.h"
#include "LayerNames.h"
#include "Progress.h"
#include "Report.h"
#include "SafeOutput.h"
#include "platform/FilePath.h"
#include "platform/PictureFile.h"
#include "platform/Utf8.h"
#include "render/WinDXFDrawer.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

namespace {

using View = GTL::Extents2D<double>;

/// Dark, a little blue.
constexpr unsigned long DARK = 0x221C18;
/// Width in pixels of a picture whose size is not given, unless it would be too high, and its least side.
constexpr int WIDTH = 1600;
constexpr int LEAST_SIDE = 16;
/// Headers and three bytes a pixel: a BMP tells its size in 32 bits.
static_assert(CBitmap::MAX_PIXELS * 3 + 54 <= std::numeric_limits<std::uint32_t>::max());
/// On each side of the drawing, as a part of its size.
constexpr double MARGIN = 0.02;
/// Coordinates beyond are not shown: their differences would be infinite.
constexpr double REACH = 1e300;

struct Options {
    std::string in;
    std::string out;
    std::string size;
    std::string view;
    std::string background;
    std::vector<std::string> layers;
    std::vector<std::string> hidden;
    bool fit = false;
    bool plain = false;
};

std::optional<int> WholeNumber(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<CSize> SizeOf(const std::string& text)
{
    const std::size_t cross = text.find_first_of("xX");
    if (cross == std::string::npos) return std::nullopt;
    const auto width = WholeNumber(std::string_view(text).substr(0, cross));
    const auto height = WholeNumber(std::string_view(text).substr(cross + 1));
    if (!width || !height) return std::nullopt;
    return CSize(*width, *height);
}

/// 0x00BBGGRR from "#rrggbb", "black" or "white".
std::optional<unsigned long> ColorOf(const std::string& text)
{
    constexpr std::size_t DIGITS = 6;
    if (text == "black") return RGB(0, 0, 0);
    if (text == "white") return RGB(255, 255, 255);
    unsigned long rgb = 0;
    const std::string_view digits = std::string_view(text).substr(text.starts_with('#') ? 1 : 0);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), rgb, 16);
    if (digits.size() != DIGITS || error != std::errc() || end != digits.data() + DIGITS) return std::nullopt;
    return SwapRedBlue(rgb);
}

std::string CheckOutputName(const std::string& name)
{
    const std::wstring extension = FilePath::Extension(FromUtf8(name));
    if (FilePath::SameText(extension, L"png") || FilePath::SameText(extension, L"bmp")) return {};
    return name + " does not end in .png or .bmp, the kinds of picture that can be written";
}

std::string CheckSize(const std::string& text)
{
    const std::optional<CSize> size = SizeOf(text);
    if (!size || size->cx < 1 || size->cy < 1) return text + " is not a size like 1600x1200";
    if (size->cx > CBitmap::MAX_SIDE || size->cy > CBitmap::MAX_SIDE)
        return text + " is too large: a side has at most " + std::to_string(CBitmap::MAX_SIDE) + " pixels";
    static_assert(std::int64_t{CBitmap::MAX_SIDE} * CBitmap::MAX_SIDE <= CBitmap::MAX_PIXELS);
    return {};
}

std::string CheckView(const std::string& text)
{
    const std::optional<View> view = BoxOf(text);
    const bool isInReach = view
                           && std::max({-view->MinX(), -view->MinY(), view->MaxX(), view->MaxY()}) <= REACH
                           && std::min({-view->MinX(), -view->MinY(), view->MaxX(), view->MaxY()}) >= -REACH;
    if (!isInReach) return text + " is not a view like 0,0,120.5,80";
    return view->ExtentX() > 0 && view->ExtentY() > 0 ? "" : text + " is a view without width or height";
}

std::string CheckColor(const std::string& text)
{
    return ColorOf(text) ? "" : text + " is not a colour like #18202a, black or white";
}

/// Shows the layers of these names, or all others. Names that the drawing lacks are told.
void ShowLayers(Drawing& drawing, const std::vector<std::string>& names, bool showNamed)
{
    std::vector<bool> found(names.size());
    DXF& document = drawing.Document();
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        bool isNamed = false;
        for (std::size_t n = 0; n < names.size(); ++n) {
            if (!IsMeant(*document[i], names[n])) continue;
            isNamed = true;
            found[n] = true;
        }
        if (showNamed)
            document[i]->SetVisible(isNamed);
        else if (isNamed)
            document[i]->SetVisible(false);
    }
    for (std::size_t n = 0; n < names.size(); ++n)
        if (!found[n]) Warn(drawing.File(), NoSuchLayer(names[n]));
}

/// Sizes of nothing would make scales infinite, and those of a few steps of a double show nothing but steps.
double UsableHalf(double low, double high, double center)
{
    constexpr double RELATIVE = 1e-13;
    const double least = std::max(1 / REACH, std::fabs(center) * RELATIVE);
    const double half = (high / 2 - low / 2) * (1 + 2 * MARGIN);
    return half > least ? half : std::max(0.5, least);
}

/// What is drawn with its margin; a box of nothing has a size all the same. Corners beyond the range of use
/// are brought back into it.
View AroundOf(const View& box)
{
    const auto usable = [](double v) {
        return std::clamp(v, -REACH, REACH);
    };
    const double x0 = usable(box.MinX());
    const double x1 = usable(box.MaxX());
    const double y0 = usable(box.MinY());
    const double y1 = usable(box.MaxY());
    const double x = x0 / 2 + x1 / 2;
    const double y = y0 / 2 + y1 / 2;
    // A line along an axis is as high, or wide, as nothing: the picture's shape gives the rest.
    const double dx = x0 < x1 ? UsableHalf(x0, x1, x) : 0;
    const double dy = y0 < y1 ? UsableHalf(y0, y1, y) : 0;
    const double both = dx == 0 && dy == 0 ? UsableHalf(0, 0, std::max(std::fabs(x), std::fabs(y))) : 0;
    return {{x - dx - both, y - dy - both}, {x + dx + both, y + dy + both}};
}

/// Height by width of what is to be seen; infinite for a line upwards.
double ShapeOf(const View& view)
{
    return view.ExtentY() / view.ExtentX();
}

/// The largest size of that shape within another.
CSize Within(const CSize& most, double shape)
{
    const double height = most.cx * shape;
    if (height <= most.cy) return {most.cx, std::max(1, static_cast<int>(std::lround(height)))};
    return {std::max(1, static_cast<int>(std::lround(most.cy / shape))), most.cy};
}

CSize PictureSize(const Options& options, const View& view)
{
    const double shape = ShapeOf(view);
    if (!options.size.empty()) {
        const CSize size = *SizeOf(options.size);
        return options.fit ? Within(size, shape) : size;
    }
    const CSize size = Within({WIDTH, CBitmap::MAX_SIDE}, shape);
    return {std::max(size.cx, LEAST_SIDE), std::max(size.cy, LEAST_SIDE)};
}

/// The view widened on one axis until it has the picture's shape.
View Shaped(const View& view, const CSize& size)
{
    const double shape = static_cast<double>(size.cy) / size.cx;
    const GTL::Point2D<double> center = view.Center();
    double dx = view.ExtentX() / 2;
    double dy = view.ExtentY() / 2;
    if (dy < dx * shape)
        dy = dx * shape;
    else
        dx = dy / shape;
    return {{center.X() - dx, center.Y() - dy}, {center.X() + dx, center.Y() + dy}};
}

void WarnOf(const WinDXFDrawer::Report& report, const std::wstring& file)
{
    if (report.missingBlocks > 0)
        Warn(file,
             std::to_wstring(report.missingBlocks) + L" inserts show nothing: the drawing lacks the block");
    if (report.recursive > 0)
        Warn(file, std::to_wstring(report.recursive)
                       + L" inserts were left out: a block holds itself, or blocks are nested too deep");
    if (report.limitReached) Warn(file, L"the inserts stand for too much; the rest of them was left out");
}

/// What a drawing shows, by the rules of the drawer that will draw it.
View ExtentsOf(Drawing& drawing, bool plain)
{
    if (!plain) return DrawnExtents().Of(drawing.Document());
    GTL::Extents3D<double> box;
    for (std::size_t i = 0; i < drawing.Document().NumLayers(); ++i)
        if (drawing.Document()[i]->IsVisible()) box.Update(drawing.Document()[i]->Extents());
    return box;
}

bool DrawInto(CBitmap& bitmap, const View& view, Drawing& drawing, const Options& options)
{
    const Progress progress("drawing", [] { return Progress::State(); });
    const unsigned long background = options.background.empty() ? DARK : *ColorOf(options.background);
    const CRect rect(0, 0, bitmap.Width(), bitmap.Height());
    CDC dc;
    dc.SelectObject(&bitmap);
    dc.FillSolidRect(rect, background);
    WinDXFDrawer drawer(options.plain ? DrawingOption() : DrawingOption::All(background));
    if (!drawer.Init(&dc, view, rect)) return false;
    drawer.Draw(drawing.Document(), Interrupt::KeepGoing());
    if (!Interrupt::IsStopped()) WarnOf(drawer.GetReport(), drawing.File());
    return true;
}

int Save(const CBitmap& bitmap, const std::wstring& out)
{
    SafeOutput output(out, L"." + FilePath::Extension(out));
    if (const auto complaint = output.Prepare()) return Fail(out, *complaint);
    std::wstring reason;
    if (!SavePicture(output.TemporaryName(), bitmap, &reason))
        return Fail(out, L"cannot be written: " + reason);
    if (Interrupt::IsStopped()) return SayStopped();
    if (const auto complaint = output.Commit()) return Fail(out, *complaint);
    return EXIT_DONE;
}

int Render(const Options& options)
{
    const std::wstring in = FromUtf8(options.in);
    Drawing drawing;
    if (!drawing.Read(in, {.asShown = !options.plain}))
        return Interrupt::IsStopped() ? SayStopped() : Fail(in, drawing.Complaint());
    drawing.Warn();
    if (!options.layers.empty()) ShowLayers(drawing, options.layers, true);
    if (!options.hidden.empty()) ShowLayers(drawing, options.hidden, false);

    View view;
    if (!options.view.empty()) {
        view = *BoxOf(options.view);
    } else {
        view = ExtentsOf(drawing, options.plain);
        if (!view.IsValid()) Warn(in, L"there is nothing to draw");
        view = AroundOf(view);
    }
    const CSize size = PictureSize(options, view);
    CBitmap bitmap;
    if (!bitmap.CreateBitmap(size.cx, size.cy)) return Fail(in, L"there is not the memory for the picture");
    if (!DrawInto(bitmap, Shaped(view, size), drawing, options)) return Fail(in, L"cannot be drawn");
    if (Interrupt::IsStopped()) return SayStopped();
    return Save(bitmap, FromUtf8(options.out));
}

} // namespace

void AddRender(CLI::App& program, int& status)
{
    CLI::App* command = program.add_subcommand("render", "Draw a drawing into a picture (PNG or BMP)");
    command->footer(
        "Without options the picture is 1600 pixels wide and shows all visible layers with a margin "
        "around, on dark.\n\nExamples:\n  halyard render plan.dxf plan.png\n"
        "  halyard render --size 800x600 --background white --hide TEXT plan.dxf plan.png");
    const auto options = std::make_shared<Options>();
    command->add_option("IN", options->in, "The drawing to read")->required();
    command->add_option("OUT", options->out, "The picture to write, named .png or .bmp")
        ->required()
        ->check(CheckOutputName);
    command->add_option("--size", options->size, "Size of the picture in pixels, as 1600x1200")
        ->type_name("WxH")
        ->check(CheckSize);
    command->add_option("--view", options->view, "What to show, by two corners in drawing units")
        ->type_name("X0,Y0,X1,Y1")
        ->check(CheckView);
    command->add_option("--background", options->background, "Colour behind the drawing, as #18202a or white")
        ->type_name("COLOR")
        ->check(CheckColor);
    command->add_option("--layers", options->layers, "Show these layers only, hidden ones too")
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_option("--hide", options->hidden, "Do not show these layers")
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_flag("--fit", options->fit, "Take --size as the most: the picture has the drawing's shape");
    command->add_flag("--plain", options->plain,
                      "Draw by the plain rules, as hosts do that set no drawing options");
    command->callback([options, &status] { status = Render(*options); });
}
