#pragma once

#include "model/DXFPolyline.h"
#include "platform/CString.h"
#include "platform/Lock.h"

#include <memory>
#include <string>
#include <vector>

/// The faces of a SketchUp model, freed from groups and components: each a closed outer ring with its holes,
/// its normal and its colour, in the caller's units, in the model's own axes.
///
/// Files are read by the vendor's library, which is looked for when a model is loaded (docs/models.md). One
/// model is loaded at a time in the whole process; the accessors take no lock.
class HALYARD_API SketchUpModel {
public:
    SketchUpModel();
    /// Copies are deep.
    SketchUpModel(const SketchUpModel& other);
    SketchUpModel(SketchUpModel&& other) noexcept;
    SketchUpModel& operator=(const SketchUpModel& other);
    SketchUpModel& operator=(SketchUpModel&& other) noexcept;
    ~SketchUpModel();

    /// Reads a file. One unit of the result is that many metres long: 1 for metres, 0.0254 for inches. A
    /// model that is loaded stays as it is until Clear, and the result is true.
    ///
    /// False, and no faces, when the vendor's library is missing, the file cannot be read, a call of the
    /// library fails or throws, metresPerUnit is no positive number, groups and components are nested more
    /// than 100 deep (as those are that contain themselves), or they stand for more than ten million faces or
    /// entity lists.
    [[nodiscard]] bool Load(const CString& fileName, double metresPerUnit);
    [[nodiscard]] bool Load(const std::wstring& fileName, double metresPerUnit);
    [[nodiscard]] bool Load(const wchar_t* fileName, double metresPerUnit);

    /// Deletes all faces; the model can be loaded anew.
    void Clear();

    /// True when the vendor's library can be used; otherwise a clause that says what is missing.
    [[nodiscard]] static bool CanLoad(std::wstring& whatIsMissing);

    int GetNumFaces() const { return static_cast<int>(m_Faces.size()); }
    /// The outer ring; its last point repeats the first. Owned by the model; null when there is no such face.
    DXFPolyline* GetFace(int face) const;
    /// As long as the scale of the face's place makes the unit normal. Owned by the model; null when there is
    /// no such face.
    GTL::Point3D<double>* GetFaceNormal(int face) const;
    /// Device colour word 0x00BBGGRR; white for a face without material. 0 when there is no such face.
    unsigned long GetFaceColor(int face) const;
    int GetFaceNumInnerLoops(int face) const;
    /// The ring of a hole, closed as the outer one. Owned by the model; null when there is none.
    DXFPolyline* GetFaceInnerLoop(int face, int loop) const;

private:
    using Ring = std::unique_ptr<DXFPolyline>;
    struct Face {
        Ring outer;
        mutable GTL::Point3D<double> normal; ///< callers may write to it, as they may to the rings
        unsigned long color = 0;
        std::vector<Ring> inner;
    };
    class Loader;

    const Face* FaceAt(int face) const;

    bool m_Loaded = false;
    std::vector<Face> m_Faces;

    static Lock m_FileReadLocker;
};
