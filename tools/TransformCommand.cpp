#include "CommandText.h"
#include "Commands.h"
#include "EditDrawing.h"
#include "Interrupt.h"
#include "LayerNames.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <memory>

namespace {

using Map = GTL::Transformation<GTL::Point3D<double>>;
using Step = std::optional<Map> (*)(const std::string& text);

struct TransformOptions {
    EditOptions edit;
    std::map<const CLI::Option*, Step> steps;
    std::vector<std::string> layers;
};

/// "number" or "number@x,y"; the place is the origin when it is not given.
struct NumberAtPlace {
    double number = 0;
    double x = 0;
    double y = 0;
};

std::optional<NumberAtPlace> NumberAtPlaceOf(const std::string& text)
{
    const std::size_t at = text.find('@');
    const auto number = NumbersOf(std::string_view(text).substr(0, at), 1);
    if (!number) return std::nullopt;
    if (at == std::string::npos) return NumberAtPlace{number->front()};
    const auto place = NumbersOf(std::string_view(text).substr(at + 1), 2);
    if (!place) return std::nullopt;
    return NumberAtPlace{number->front(), (*place)[0], (*place)[1]};
}

std::optional<Map> MoveOf(const std::string& text)
{
    auto by = NumbersOf(text, 3);
    if (!by) by = NumbersOf(text + ",0", 3);
    if (!by) return std::nullopt;
    return Map().Translate((*by)[0], (*by)[1], (*by)[2]);
}

std::optional<Map> RotationOf(const std::string& text)
{
    const auto turn = NumberAtPlaceOf(text);
    if (!turn) return std::nullopt;
    return Map().Translate(-turn->x, -turn->y, 0).RotateZ(Angle(turn->number)).Translate(turn->x, turn->y, 0);
}

std::optional<Map> ScaleOf(const std::string& text)
{
    const auto scale = NumberAtPlaceOf(text);
    if (!scale || scale->number <= 0) return std::nullopt;
    const double factor = scale->number;
    return Map()
        .Translate(-scale->x, -scale->y, 0)
        .Scale(factor, factor, factor)
        .Translate(scale->x, scale->y, 0);
}

/// The steps in the order in which they stand on the command line, as one map.
Map MapOf(const CLI::App& command, const TransformOptions& options)
{
    Map map;
    for (const GivenStep& given : StepsInOrder(command)) {
        const auto step = options.steps.find(given.option);
        if (step != options.steps.end()) map.Append(*step->second(given.value));
    }
    return map;
}

std::optional<std::wstring> Apply(Drawing& drawing, const Map& map, const std::vector<std::string>& names)
{
    std::vector<DXFLayer*> layers;
    for (const std::string& name : names) {
        DXFLayer* layer = LayerMeant(drawing, name);
        if (!layer) return NoSuchLayer(name);
        if (std::find(layers.begin(), layers.end(), layer) == layers.end()) layers.push_back(layer);
    }
    if (names.empty()) drawing.Document().Transform(map, Interrupt::KeepGoing());
    for (DXFLayer* layer : layers) layer->Transform(map, Interrupt::KeepGoing());
    return std::nullopt;
}

void AddStep(CLI::App& command, TransformOptions& options, const char* name, Step step, const char* form,
             const char* example, const char* help)
{
    CLI::Option* option = AddStepOption(command, name, form, help);
    option->check([step, example](const std::string& text) {
        return step(text) ? "" : text + " is not of the form of " + example;
    });
    options.steps.emplace(option, step);
}

} // namespace

void AddTransform(CLI::App& program, int& status)
{
    CLI::App* command = program.add_subcommand("transform", "Move, turn and scale a drawing or some layers");
    command->footer("The steps apply in the order in which they are given, each as often as it is given. "
                    "Inserts become the\nentities that they show, on the layers of these.\n\nExample:\n"
                    "  halyard transform --rotate 90@0,0 --move 100,0,0 plan.dxf turned.dxf");
    const auto options = std::make_shared<TransformOptions>();
    AddEditOptions(*command, options->edit);
    AddStep(*command, *options, "--move", MoveOf, "DX,DY[,DZ]", "10,-5.5,0", "Move by so much");
    AddStep(*command, *options, "--rotate", RotationOf, "DEGREES[@X,Y]", "90@0,0",
            "Turn counter-clockwise about a point, or the origin");
    AddStep(*command, *options, "--scale", ScaleOf, "FACTOR[@X,Y]", "2.5@0,0",
            "Scale from a point, or the origin; above 0");
    command->add_option("--layers", options->layers, "Only these layers")
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->callback([command, options, &status] {
        const bool hasStep = std::any_of(options->steps.begin(), options->steps.end(),
                                         [](const auto& step) { return step.first->count() > 0; });
        if (!hasStep) throw CLI::RequiredError("At least one of --move, --rotate and --scale");
        status = EditDrawing(options->edit, [&](Drawing& drawing) {
            return Apply(drawing, MapOf(*command, *options), options->layers);
        });
    });
}
