#include "ModelInfo.h"

#include "EntityDump.h"
#include "InfoText.h"
#include "ModelDrawing.h"
#include "Report.h"
#include "TextTable.h"
#include "import/CLoad3DS.h"
#include "import/SketchUpModel.h"
#include "platform/Utf8.h"

#include <cmath>
#include <map>

namespace {

Json BoundsJson(const GTL::Extents3D<double>& bounds)
{
    if (!bounds.IsValid()) return {};
    return {{"min", PointJson(bounds.MinPnt())}, {"max", PointJson(bounds.MaxPnt())}};
}

std::string BoundsText(const GTL::Extents3D<double>& bounds)
{
    return bounds.IsValid() ? PointText(bounds.MinPnt()) + " to " + PointText(bounds.MaxPnt()) : "none";
}

int Show(const Json& json)
{
    StandardOutput::Write(JsonText(json));
    return StandardOutput::Finish();
}

std::string Head(const std::wstring& file, const std::vector<std::pair<std::string, std::string>>& rows)
{
    TextTable table({TextTable::LEFT, TextTable::LEFT});
    for (const auto& [label, value] : rows) table.Add({label, value});
    return Printable(file) + "\n" + table.Text("  ");
}

Json WarningsJson(const std::vector<std::wstring>& warnings)
{
    Json json = Json::array();
    for (const std::wstring& warning : warnings) json.push_back(ToUtf8(warning));
    return json;
}

std::string WarningsText(const std::vector<std::wstring>& warnings)
{
    std::string text = warnings.empty() ? "" : "\nWarnings\n";
    for (const std::wstring& warning : warnings) text += "  " + Printable(warning) + "\n";
    return text;
}

/// What there is to say about a 3DS model.
class Info3DS {
public:
    Info3DS(const std::wstring& file, const t3DModel& model)
        : m_File(file), m_Model(model), m_Warnings(FileWarnings3DS(file))
    {
        for (const t3DObject& object : model.objects) {
            m_Vertices += object.numOfVerts;
            m_Faces += object.numOfFaces;
            for (int i = 0; i < object.numOfVerts; ++i) Widen(object.pVerts[i]);
        }
    }

    Json InJson() const
    {
        Json json = {
            {"file", ToUtf8(m_File)}, {"format", "3ds"}, {"vertices", m_Vertices}, {"faces", m_Faces}};
        json["extents"] = BoundsJson(m_Bounds);
        json["objects"] = Json::array();
        for (const t3DObject& object : m_Model.objects)
            json["objects"].push_back({{"name", ToUtf8(ModelText(object.strName))},
                                       {"vertices", object.numOfVerts},
                                       {"faces", object.numOfFaces},
                                       {"texture_vertices", object.numTexVertex},
                                       {"material", MaterialJson(object.materialID)}});
        json["materials"] = Json::array();
        for (const tMaterialInfo& material : m_Model.materials)
            json["materials"].push_back({{"name", ToUtf8(ModelText(material.strName))},
                                         {"color", ColorText(ModelColor(material.color))},
                                         {"texture", ToUtf8(ModelText(material.strFile))}});
        json["warnings"] = WarningsJson(m_Warnings);
        return json;
    }
    std::string InText() const
    {
        return Head(m_File, {{"format", "3DS model"},
                             {"extents", BoundsText(m_Bounds)},
                             {"objects", std::to_string(m_Model.objects.size())},
                             {"materials", std::to_string(m_Model.materials.size())},
                             {"vertices", std::to_string(m_Vertices)},
                             {"faces", std::to_string(m_Faces)}})
               + ObjectsText() + MaterialsText() + WarningsText(m_Warnings);
    }

private:
    void Widen(const t3DPoint& p)
    {
        if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) m_Bounds.Update(p.x, p.y, p.z);
    }
    const tMaterialInfo* Material(int index) const
    {
        return index < 0 ? nullptr : &m_Model.materials[static_cast<std::size_t>(index)];
    }
    Json MaterialJson(int index) const
    {
        const tMaterialInfo* material = Material(index);
        return material ? Json(ToUtf8(ModelText(material->strName))) : Json();
    }
    std::string ObjectsText() const
    {
        if (m_Model.objects.empty()) return "\nObjects: none\n";
        TextTable table({TextTable::LEFT, TextTable::RIGHT, TextTable::RIGHT, TextTable::LEFT});
        table.Add({"name", "vertices", "faces", "material"});
        for (const t3DObject& object : m_Model.objects) {
            const tMaterialInfo* material = Material(object.materialID);
            table.Add({Shown(ModelText(object.strName)), std::to_string(object.numOfVerts),
                       std::to_string(object.numOfFaces),
                       material ? Shown(ModelText(material->strName)) : ""});
        }
        return "\nObjects\n" + table.Text("  ");
    }
    std::string MaterialsText() const
    {
        if (m_Model.materials.empty()) return "\nMaterials: none\n";
        TextTable table({TextTable::LEFT, TextTable::LEFT, TextTable::LEFT});
        table.Add({"name", "colour", "texture"});
        for (const tMaterialInfo& material : m_Model.materials)
            table.Add({Shown(ModelText(material.strName)), ColorText(ModelColor(material.color)),
                       Shown(ModelText(material.strFile))});
        return "\nMaterials\n" + table.Text("  ");
    }

    const std::wstring& m_File;
    const t3DModel& m_Model;
    std::vector<std::wstring> m_Warnings;
    long long m_Vertices = 0;
    long long m_Faces = 0;
    GTL::Extents3D<double> m_Bounds;
};

int Show3DS(const std::wstring& file, bool json)
{
    t3DModel model;
    if (!CLoad3DS().Import3DS(&model, file.c_str(), false))
        return Fail(file, L"cannot be read as a 3DS model");
    const Info3DS info(file, model);
    if (!json) StandardOutput::Write(info.InText());
    const int status = json ? Show(info.InJson()) : StandardOutput::Finish();
    CLoad3DS::FreeModel(&model);
    return status;
}

int ShowSketchUp(const std::wstring& file, bool json)
{
    SketchUpModel model;
    if (const std::wstring complaint = LoadSketchUp(file, 1, model); !complaint.empty())
        return Fail(file, complaint);
    GTL::Extents3D<double> bounds;
    long long holes = 0;
    std::map<unsigned long, long long> facesByColor;
    for (int i = 0; i < model.GetNumFaces(); ++i) {
        bounds.Update(model.GetFace(i)->Extents());
        holes += model.GetFaceNumInnerLoops(i);
        ++facesByColor[model.GetFaceColor(i)];
    }
    if (json) {
        Json found = {
            {"file", ToUtf8(file)}, {"format", "skp"}, {"faces", model.GetNumFaces()}, {"holes", holes}};
        found["extents"] = BoundsJson(bounds);
        found["colors"] = Json::array();
        for (const auto& [color, faces] : facesByColor)
            found["colors"].push_back({{"color", ColorText(color)}, {"faces", faces}});
        found["warnings"] = Json::array();
        return Show(found);
    }
    TextTable table({TextTable::LEFT, TextTable::RIGHT});
    table.Add({"colour", "faces"});
    for (const auto& [color, faces] : facesByColor) table.Add({ColorText(color), std::to_string(faces)});
    StandardOutput::Write(Head(file, {{"format", "SketchUp model, in metres"},
                                      {"extents", BoundsText(bounds)},
                                      {"faces", std::to_string(model.GetNumFaces())},
                                      {"holes", std::to_string(holes)}})
                          + "\nColours\n" + table.Text("  "));
    return StandardOutput::Finish();
}

} // namespace

int ModelInfo(const std::wstring& file, MODEL kind, bool json)
{
    return (kind == MODEL::IN_3DS ? Show3DS : ShowSketchUp)(file, json);
}
