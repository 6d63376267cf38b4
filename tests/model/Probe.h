#pragma once

#include "model/DXFPoint.h"

/// A point that counts what is done to its kind.
class Probe : public DXFPoint {
public:
    struct Counts {
        int living;
        int copies;
        int boxes;
    };
    static inline Counts s_Counts{};

    explicit Probe(double x = 0, double y = 0) : DXFPoint(x, y, 0) { ++s_Counts.living; }
    Probe(const Probe& other) : DXFPoint(other)
    {
        ++s_Counts.living;
        ++s_Counts.copies;
    }
    ~Probe() override { --s_Counts.living; }
    Probe* Copy() const override { return new Probe(*this); }
    const GTL::Extents3D<double>& Extents() const override
    {
        ++s_Counts.boxes;
        return DXFPoint::Extents();
    }
};
