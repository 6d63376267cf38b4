// Reads a DXF file and prints how long the straight lines of each layer are together.
//   example_line_lengths FILE.dxf
#include "model/DXF.h"
#include "model/DXFLine.h"
#include "model/DXFWriter.h"
#include "platform/Utf8.h"

#include <atomic>
#include <cstdio>

namespace {
/// A visitor: it overrides the kinds that it wants and takes the others as they come.
class LengthMeter : public DXFWriter {
public:
    using DXFWriter::Write;
    void Write(const DXFLine& line) override { m_Length += line.Start().Dist2D(line.End(), false); }

    double m_Length = 0;
};
} // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FILE.dxf\n", arguments[0]);
        return 2;
    }

    DXF drawing;
    const std::atomic<bool> keepGoing{true};
    if (ErrorString e = drawing.Read(FromUtf8(arguments[1]), keepGoing, true); !e) {
        std::fprintf(stderr, "%s\n", ToUtf8(e.Text()).c_str());
        return 1;
    }

    for (std::size_t i = 0; i < drawing.NumLayers(); ++i) {
        const DXFLayer& layer = *drawing[i];
        LengthMeter meter;
        layer.Draw(meter, layer.Extents(), keepGoing);
        std::printf("%s %.3f\n", ToUtf8(layer.Name()).c_str(), meter.m_Length);
    }
    return 0;
}
