#include "import/SketchUpModel.h"

#include "import/SketchUpLoader.h"
#include "platform/Utf8.h"

#include <cmath>

Lock SketchUpModel::m_FileReadLocker;

namespace {

/// The vendor's library, started until the end of the scope.
class Session {
public:
    explicit Session(const SketchUpApi& api) : m_Api(api) { m_Api.SUInitialize(); }
    ~Session()
    {
        try {
            m_Api.SUTerminate();
        } catch (...) {
            // What was loaded is whole.
        }
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    const SketchUpApi& m_Api;
};

} // namespace

SketchUpModel::SketchUpModel() = default;
SketchUpModel::~SketchUpModel() = default;

SketchUpModel::SketchUpModel(SketchUpModel&& other) noexcept
{
    *this = std::move(other);
}

SketchUpModel& SketchUpModel::operator=(SketchUpModel&& other) noexcept
{
    if (this == &other) return *this;
    m_Faces = std::move(other.m_Faces);
    m_Loaded = other.m_Loaded;
    other.Clear();
    return *this;
}

SketchUpModel::SketchUpModel(const SketchUpModel& other) : m_Loaded(other.m_Loaded)
{
    m_Faces.reserve(other.m_Faces.size());
    for (const Face& face : other.m_Faces) {
        Face& copy = m_Faces.emplace_back();
        copy.outer.reset(face.outer->Copy());
        copy.normal = face.normal;
        copy.color = face.color;
        for (const Ring& ring : face.inner) copy.inner.emplace_back(ring->Copy());
    }
}

SketchUpModel& SketchUpModel::operator=(const SketchUpModel& other)
{
    if (this != &other) *this = SketchUpModel(other);
    return *this;
}

bool SketchUpModel::Load(const CString& fileName, double metresPerUnit)
{
    const auto length = static_cast<std::size_t>(fileName.GetLength());
    return Load(std::wstring(static_cast<const wchar_t*>(fileName), length), metresPerUnit);
}

bool SketchUpModel::Load(const wchar_t* fileName, double metresPerUnit)
{
    return fileName && Load(std::wstring(fileName), metresPerUnit);
}

bool SketchUpModel::Load(const std::wstring& fileName, double metresPerUnit)
try {
    if (m_Loaded) return true;
    if (!(metresPerUnit > 0) || !std::isfinite(metresPerUnit)) return false;
    const LockHold hold(m_FileReadLocker);
    SketchUpApi api;
    std::wstring reason;
    if (!api.Open(reason)) return false;
    const Session session(api);
    std::vector<Face> faces;
    if (!Loader(api, faces).LoadFile(ToUtf8(fileName), metresPerUnit)) return false;
    m_Faces = std::move(faces);
    m_Loaded = true;
    return true;
} catch (...) {
    // Whatever the vendor's library throws.
    return false;
}

bool SketchUpModel::CanLoad(std::wstring& whatIsMissing)
{
    const LockHold hold(m_FileReadLocker);
    return SketchUpApi().Open(whatIsMissing);
}

void SketchUpModel::Clear()
{
    m_Faces.clear();
    m_Loaded = false;
}

const SketchUpModel::Face* SketchUpModel::FaceAt(int face) const
{
    return face >= 0 && face < GetNumFaces() ? &m_Faces[static_cast<std::size_t>(face)] : nullptr;
}

DXFPolyline* SketchUpModel::GetFace(int face) const
{
    const Face* found = FaceAt(face);
    return found ? found->outer.get() : nullptr;
}

GTL::Point3D<double>* SketchUpModel::GetFaceNormal(int face) const
{
    const Face* found = FaceAt(face);
    return found ? &found->normal : nullptr;
}

unsigned long SketchUpModel::GetFaceColor(int face) const
{
    const Face* found = FaceAt(face);
    return found ? found->color : 0;
}

int SketchUpModel::GetFaceNumInnerLoops(int face) const
{
    const Face* found = FaceAt(face);
    return found ? static_cast<int>(found->inner.size()) : 0;
}

DXFPolyline* SketchUpModel::GetFaceInnerLoop(int face, int loop) const
{
    if (loop < 0 || loop >= GetFaceNumInnerLoops(face)) return nullptr;
    return FaceAt(face)->inner[static_cast<std::size_t>(loop)].get();
}
