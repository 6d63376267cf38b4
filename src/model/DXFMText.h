#pragma once

#include "model/TextEntity.h"

/// A text of several lines, broken at the rectangle width of its attributes. Its string keeps the inline
/// formatting codes as the drawing carries them.
class HALYARD_API DXFMText : public TextEntity {
public:
    DXFMText* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    bool Clip(DXFClipContext& context) override;

protected:
    TextRectComp::Rect Measure() const override;
};
