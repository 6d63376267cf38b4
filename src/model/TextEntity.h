#pragma once

#include "model/DXFEntity.h"
#include "support/TextInfo.h"
#include "support/TextRectComp.h"

#include <string>
#include <vector>

/// What single-line and multi-line texts share: a string, a position, attributes, and a box that comes from
/// measuring the string with its font.
class HALYARD_API TextEntity : public DXFEntity {
public:
    const std::wstring& Text() const { return m_Text; }
    void SetText(const std::wstring& text);
    /// The point of the drawing on which the justification's reference point lies.
    const GTL::Point3D<double>& Position() const { return m_Position; }
    void SetPosition(const GTL::Point3D<double>& position);
    const TextInfo& GetTextInfo() const { return m_Info; }
    /// Takes the attributes, their colour as the entity's colour, and registers their font.
    void SetTextInfo(const TextInfo& info);
    /// Clockwise from +x.
    void SetRotation(double degrees);
    void SetSize(float size);
    void SetJustification(TextInfo::JUSTIFICATION justification);
    TextInfo::JUSTIFICATION GetJustification() const { return m_Info.Justification(); }
    /// A box that takes the place of the measured one until the next change.
    void SetClipExtents(const GTL::Extents3D<double>& box);
    const GTL::Extents3D<double>& GetClipExtents() const { return m_ClipExtents; }
    /// Measures the text anew.
    void UpdateExtents() const;

    /// The rectangle of the text in the drawing, placed by its justification.
    TextRectComp::Rect PlacedRectangle() const;

    /// The new rotation is that of the mapped base line. The rectangle width scales with the base line, the
    /// size with the distance of parallels to it. Letters are never mirrored: under a map that mirrors, the
    /// text changes to the other side of its base line. A base line that shrinks to a point keeps its
    /// direction.
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    const GTL::Extents3D<double>& Extents() const override;

    /// Font names in use by all texts of the process, in order of first use, distinct without regard to case.
    /// Not guarded against use from several threads.
    static std::vector<std::wstring> s_FontTable;
    /// Appends this text's font to the table unless it is empty or there already.
    void UpdateFontTable() const;

protected:
    TextEntity() = default;
    TextEntity(const TextEntity&) = default;
    TextEntity& operator=(const TextEntity&) = default;
    /// Measures at the rectangle width when multi-line.
    virtual TextRectComp::Rect Measure() const = 0;

private:
    std::wstring m_Text;
    GTL::Point3D<double> m_Position;
    TextInfo m_Info;
    mutable GTL::Extents3D<double> m_Extents;
    GTL::Extents3D<double> m_ClipExtents;
};
