// Makes a drawing in memory and writes it as DXF.
//   example_write_drawing FILE.dxf
#include "model/DXF.h"
#include "model/DXFCircle.h"
#include "model/DXFLine.h"
#include "model/DXFText.h"
#include "platform/Utf8.h"

#include <atomic>
#include <cstdio>

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FILE.dxf\n", arguments[0]);
        return 2;
    }

    DXF drawing;
    DXFLayer* triangle = drawing.AddLayer(L"TRIANGLE");
    triangle->SetColor(DXFColor(1)); // red, by its DXF index
    triangle->Add(new DXFLine({0, 0, 0}, {4, 0, 0}));
    triangle->Add(new DXFLine({4, 0, 0}, {4, 3, 0}));
    triangle->Add(new DXFLine({4, 3, 0}, {0, 0, 0}));

    // A layer that is missing is made; the document owns what it is given.
    drawing.Add(L"INCIRCLE", new DXFCircle({3, 1, 0}, 1), true);

    auto* label = new DXFText;
    TextInfo info;
    info.SetFont(L"arial.ttf");
    info.SetSize(0.5F);
    info.SetJustification(TextInfo::MIDDLE_CENTER);
    label->SetText(L"3, 4, 5");
    label->SetPosition({3, 1, 0});
    label->SetTextInfo(info);
    drawing.Add(L"INCIRCLE", label, false);

    const std::atomic<bool> keepGoing{true};
    if (ErrorString e = drawing.Write(FromUtf8(arguments[1]), keepGoing, 0); !e) {
        std::fprintf(stderr, "%s\n", ToUtf8(e.Text()).c_str());
        return 1;
    }
    return 0;
}
