#include "ModelDrawing.h"

#include "Interrupt.h"
#include "import/CLoad3DS.h"
#include "import/FaceCutter.h"
#include "import/SketchUpModel.h"
#include "model/DXF3dFace.h"
#include "platform/InputFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>

namespace {

using P3 = GTL::Point3D<double>;

constexpr unsigned long WHITE = 0xFFFFFF;

bool IsFiniteInSpace(const P3& p)
{
    return std::isfinite(p.X()) && std::isfinite(p.Y()) && std::isfinite(p.Z());
}

void AddFace(DXFLayer& layer, const FaceCutter::Piece& corners, unsigned long color)
{
    auto* face = new DXF3dFace;
    for (int i = 0; i < 4; ++i) (*face)[i] = corners[static_cast<std::size_t>(i)];
    face->SetColor(color);
    layer.Add(face);
}

/// Faces that are not in the drawing, and why not.
struct Dropped {
    std::size_t faces = 0;
    const wchar_t* reason;
};

void WarnOf(const Dropped& dropped, std::vector<std::wstring>& warnings)
{
    if (dropped.faces == 0) return;
    warnings.push_back(std::to_wstring(dropped.faces)
                       + (dropped.faces == 1 ? L" face dropped: " : L" faces dropped: ") + dropped.reason);
}

/// Makes layers under names that a layer can have and no other has.
class LayerMaker {
public:
    explicit LayerMaker(DXF& document) : m_Document(document) {}

    DXFLayer& Make(const std::wstring& name, unsigned long color)
    {
        const std::wstring valid = Valid(name);
        std::wstring unique = valid;
        // Others of the name were numbered up to here.
        for (int& number = m_Numbers[valid]; m_Document.HasLayer(unique);
             unique = valid + L"_" + std::to_wstring(number))
            number = std::max(number, 1) + 1;
        DXFLayer& layer = *m_Document.AddLayer(unique);
        layer.SetColor(color);
        return layer;
    }

private:
    static std::wstring Valid(const std::wstring& name)
    {
        std::wstring valid = name;
        for (wchar_t& c : valid)
            if (c < L' ' || c == L'\x7F' || std::wstring(L"<>/\\\":;?,=`*|").find(c) != std::wstring::npos)
                c = L'_';
        return valid.empty() ? L"UNNAMED" : valid;
    }

    DXF& m_Document;
    std::map<std::wstring, int> m_Numbers;
};

/// A 3DS model that frees its arrays.
struct Model3DS : t3DModel {
    Model3DS() = default;
    ~Model3DS() { CLoad3DS::FreeModel(this); }
    Model3DS(const Model3DS&) = delete;
    Model3DS& operator=(const Model3DS&) = delete;
};

class Drawer3DS {
public:
    Drawer3DS(const t3DModel& model, double metresPerUnit, DXF& document)
        : m_Model(model), m_MetresPerUnit(metresPerUnit), m_Layers(document)
    {
    }

    void Draw(const t3DObject& object)
    {
        DXFLayer* layer = nullptr;
        for (int i = 0; i < object.numOfFaces && !Interrupt::IsStopped(); ++i) {
            FaceCutter::Piece corners;
            if (!FindCorners(object, object.pFaces[i], corners)) continue;
            if (!layer) layer = &m_Layers.Make(ModelText(object.strName), Color(object.materialID));
            AddFace(*layer, corners, Color(object.pFaceMaterials[i]));
        }
    }
    void Warn(std::vector<std::wstring>& warnings) const
    {
        for (const Dropped& dropped : {m_Dangling, m_Flat, m_Endless}) WarnOf(dropped, warnings);
    }

private:
    unsigned long Color(int material) const
    {
        return material < 0 ? WHITE : ModelColor(m_Model.materials[static_cast<std::size_t>(material)].color);
    }
    bool FindCorners(const t3DObject& object, const t3DFace& face, FaceCutter::Piece& corners)
    {
        const int* v = face.vertIndex;
        if (std::any_of(v, v + 3, [&object](int index) { return index >= object.numOfVerts; }))
            return Drop(m_Dangling);
        if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0]) return Drop(m_Flat);
        for (std::size_t i = 0; i < 3; ++i) {
            const t3DPoint& p = object.pVerts[v[i]];
            corners[i] = {double(p.x) / m_MetresPerUnit, double(p.y) / m_MetresPerUnit,
                          double(p.z) / m_MetresPerUnit};
            if (!IsFiniteInSpace(corners[i])) return Drop(m_Endless);
        }
        corners[3] = corners[2];
        return true;
    }
    static bool Drop(Dropped& dropped)
    {
        ++dropped.faces;
        return false;
    }

    const t3DModel& m_Model;
    double m_MetresPerUnit;
    LayerMaker m_Layers;
    Dropped m_Dangling{0, L"the model lacks vertices that they name"};
    Dropped m_Flat{0, L"they name a vertex twice"};
    Dropped m_Endless{0, L"a coordinate is no finite number"};
};

/// The main chunk says how long it is.
bool IsCutShort(const std::wstring& file)
{
    InputFile input;
    unsigned char header[6] = {};
    if (!input.Open(file) || input.Read(header, sizeof header) != sizeof header) return true;
    std::uint64_t length = 0;
    for (std::size_t i = 6; i-- > 2;) length = length << 8 | header[i];
    return input.Size() < length;
}

void Draw3DS(const std::wstring& file, const ModelOptions& options, DXF& document, ModelReading& reading)
{
    Model3DS model;
    if (!CLoad3DS().Import3DS(&model, file.c_str(), options.swapAxes)) {
        reading.complaint = L"cannot be read as a 3DS model";
        return;
    }
    reading.warnings = FileWarnings3DS(file);
    Drawer3DS drawer(model, options.metresPerUnit, document);
    for (const t3DObject& object : model.objects) drawer.Draw(object);
    drawer.Warn(reading.warnings);
}

class SketchUpDrawer {
public:
    SketchUpDrawer(const SketchUpModel& model, bool swapAxes, DXF& document)
        : m_Model(model), m_SwapAxes(swapAxes), m_Layers(document)
    {
    }

    void Draw(int face)
    {
        m_Rings.clear();
        bool isFinite = AddRing(*m_Model.GetFace(face));
        for (int i = 0; i < m_Model.GetFaceNumInnerLoops(face); ++i)
            isFinite = AddRing(*m_Model.GetFaceInnerLoop(face, i)) && isFinite;
        if (!isFinite) {
            ++m_Endless.faces;
            return;
        }
        if (!m_Cutter.Cut(m_Rings, m_Pieces)) ++m_Crossing;
        if (m_Pieces.empty()) ++m_Flat.faces;
        const unsigned long color = m_Model.GetFaceColor(face);
        for (const FaceCutter::Piece& piece : m_Pieces) AddFace(LayerOf(color), piece, color);
    }
    void Warn(std::vector<std::wstring>& warnings) const
    {
        for (const Dropped& dropped : {m_Flat, m_Endless}) WarnOf(dropped, warnings);
        if (m_Crossing > 0)
            warnings.push_back(std::to_wstring(m_Crossing)
                               + L" faces are not covered exactly: their edges cross, or they are not flat");
    }

private:
    bool AddRing(const DXFPolyline& polyline)
    {
        FaceCutter::Ring& ring = m_Rings.emplace_back(polyline.GetPoly().Vertices());
        if (ring.size() > 1 && ring.front() == ring.back()) ring.pop_back();
        if (m_SwapAxes)
            for (P3& p : ring) p = {p.X(), p.Z(), -p.Y()};
        return std::all_of(ring.begin(), ring.end(), IsFiniteInSpace);
    }
    DXFLayer& LayerOf(unsigned long color)
    {
        DXFLayer*& layer = m_LayersByColor[color];
        if (!layer) {
            wchar_t name[16];
            std::swprintf(name, std::size(name), L"COLOR_%06lX", SwapRedBlue(color));
            layer = &m_Layers.Make(name, color);
        }
        return *layer;
    }

    const SketchUpModel& m_Model;
    bool m_SwapAxes;
    LayerMaker m_Layers;
    std::map<unsigned long, DXFLayer*> m_LayersByColor;
    FaceCutter m_Cutter;
    std::vector<FaceCutter::Ring> m_Rings;
    std::vector<FaceCutter::Piece> m_Pieces;
    Dropped m_Flat{0, L"without area"};
    Dropped m_Endless{0, L"a coordinate is no finite number"};
    std::size_t m_Crossing = 0;
};

void DrawSketchUp(const std::wstring& file, const ModelOptions& options, DXF& document, ModelReading& reading)
{
    SketchUpModel model;
    reading.complaint = LoadSketchUp(file, options.metresPerUnit, model);
    SketchUpDrawer drawer(model, options.swapAxes, document);
    for (int face = 0; face < model.GetNumFaces() && !Interrupt::IsStopped(); ++face) drawer.Draw(face);
    drawer.Warn(reading.warnings);
}

} // namespace

ModelReading DrawModel(const std::wstring& file, MODEL kind, const ModelOptions& options, DXF& document)
{
    ModelReading reading;
    (kind == MODEL::IN_3DS ? Draw3DS : DrawSketchUp)(file, options, document, reading);
    return reading;
}

std::vector<std::wstring> FileWarnings3DS(const std::wstring& file)
{
    if (!IsCutShort(file)) return {};
    return {L"the file ends before the model does; it may have been cut short"};
}

std::wstring LoadSketchUp(const std::wstring& file, double metresPerUnit, SketchUpModel& model)
{
    std::wstring missing;
    if (!SketchUpModel::CanLoad(missing)) return L"cannot be read: " + missing;
    if (!model.Load(file, metresPerUnit)) return L"cannot be read as a SketchUp model";
    return {};
}

std::wstring ModelText(const char* name)
{
    std::wstring text;
    for (; *name != '\0'; ++name) text += static_cast<wchar_t>(static_cast<unsigned char>(*name));
    return text;
}

unsigned long ModelColor(const unsigned char (&color)[3])
{
    return color[0] | static_cast<unsigned long>(color[1]) << 8 | static_cast<unsigned long>(color[2]) << 16;
}
