#pragma once

#include "model/TextEntity.h"

/// A single line of text.
class HALYARD_API DXFText : public TextEntity {
public:
    DXFText* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    bool Clip(DXFClipContext& context) override;

protected:
    TextRectComp::Rect Measure() const override;
};
