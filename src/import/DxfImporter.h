#pragma once

#include "model/DXFWriter.h"
#include "platform/Export.h"

/// Hands the entities of a DXF file to a visitor, without a drawing to be kept: derive from it, override the
/// kinds that are wanted, call Import.
class HALYARD_API DxfImporter : public DXFWriter {
public:
    DxfImporter() = default;
    DxfImporter(const DxfImporter&) = default;
    DxfImporter& operator=(const DxfImporter&) = default;

    /// Reads the file, then visits the entities of all layers, visible or not: layer by layer in drawing
    /// order, within a layer in the order of the file. Entities of blocks are not visited. Entities live
    /// until Import returns. False, without any visit, when the file cannot be read or the name is null.
    bool Import(const wchar_t* fileName);
};
