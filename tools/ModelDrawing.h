#pragma once

#include "Recognition.h"
#include "model/DXF.h"

#include <string>
#include <vector>

/// How a model becomes a drawing.
struct ModelOptions {
    /// So long is a unit of the drawing. SketchUp files know their lengths; a 3DS file does not, and one of
    /// its units counts as a metre.
    double metresPerUnit = 1;
    /// (x, y, z) becomes (x, z, -y).
    bool swapAxes = false;
};

struct ModelReading {
    std::wstring complaint; ///< why there is no drawing: a clause that follows the file's name; empty when
                            ///< there is one
    std::vector<std::wstring> warnings;
};

/// Reads a model and adds its faces to an empty document as 3D faces in their colours: of a 3DS file on a
/// layer for each object, which has the object's name and the colour of its material; of a SketchUp file on a
/// layer for each colour. Ends early when the user stops it.
ModelReading DrawModel(const std::wstring& file, MODEL kind, const ModelOptions& options, DXF& document);

/// What there is to warn of in a 3DS file that was read, each as a clause that follows its name.
std::vector<std::wstring> FileWarnings3DS(const std::wstring& file);

/// Reads a SketchUp file. Otherwise says why not, in a clause that follows the file's name.
class SketchUpModel;
std::wstring LoadSketchUp(const std::wstring& file, double metresPerUnit, SketchUpModel& model);

/// A name in a 3DS file as text of a drawing, which has one character for each byte.
std::wstring ModelText(const char* name);
/// Device colour word 0x00BBGGRR of a colour in a 3DS file.
unsigned long ModelColor(const unsigned char (&color)[3]);
