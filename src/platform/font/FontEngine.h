#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/Font.h"
#include "platform/FontName.h"

/// What the system knows of a face.
class FontOutline {
public:
    virtual ~FontOutline() = default;

    /// Advance in font units, not negative; none for a character that the face lacks.
    virtual std::optional<std::int32_t> Advance(char32_t character) const = 0;
};

/// What a face is made of.
struct OpenedFont {
    std::unique_ptr<FontOutline> outline;
    FontMetrics metrics;
    int missingAdvance; ///< That of the box for missing characters.
    std::wstring file;
    int index;
};

/// An installed face that was found for a name.
class FontMatch {
public:
    virtual ~FontMatch() = default;

    /// The same for the same face, however it was asked for; different for different faces.
    virtual std::wstring Key() const = 0;
    /// None when the face cannot be read or is not scalable.
    virtual std::optional<OpenedFont> Open() const = 0;
};

/// The system's fonts. Not made for several threads: neither this nor anything that it gives.
class FontEngine {
public:
    static std::unique_ptr<FontEngine> Make();
    virtual ~FontEngine() = default;

    /// The face of a name, or the one that stands in for it. Null when there is none.
    virtual std::unique_ptr<FontMatch> Match(const FontName& name) = 0;
    /// Gives back what is needed for finding faces; those that are open stay so.
    virtual void Close() {}
};
