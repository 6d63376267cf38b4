#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

/// The bytes of 3DS files, put together chunk by chunk.
namespace ModelBytes {

inline std::string U16(unsigned value)
{
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

inline std::string U32(std::uint32_t value)
{
    return U16(value & 0xFFFF) + U16(value >> 16);
}

inline std::string Words(std::initializer_list<unsigned> values)
{
    std::string bytes;
    for (const unsigned value : values) bytes += U16(value);
    return bytes;
}

inline std::string Floats(std::initializer_list<float> values)
{
    std::string bytes;
    for (const float value : values) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        bytes += U32(bits);
    }
    return bytes;
}

/// Text with its NUL.
inline std::string Z(const std::string& text)
{
    return text + '\0';
}

/// A header that may lie.
inline std::string Header(unsigned id, std::uint32_t length)
{
    return U16(id) + U32(length);
}

inline std::string Chunk(unsigned id, const std::string& content)
{
    return Header(id, static_cast<std::uint32_t>(content.size()) + 6) + content;
}

/// A whole file: version, then an editor block with this content.
inline std::string File(const std::string& content)
{
    return Chunk(0x4D4D, Chunk(0x0002, U32(3)) + Chunk(0x3D3D, content));
}

/// A named object with these chunks in its mesh.
inline std::string Object(const std::string& name, const std::string& mesh)
{
    return Chunk(0x4000, Z(name) + Chunk(0x4100, mesh));
}

inline std::string Color(unsigned red, unsigned green, unsigned blue)
{
    return Chunk(0x0011, {static_cast<char>(red), static_cast<char>(green), static_cast<char>(blue)});
}

/// A material with this content of its diffuse colour and more chunks behind.
inline std::string Material(const std::string& name, const std::string& color, const std::string& more = "")
{
    return Chunk(0xAFFF, Chunk(0xA000, Z(name)) + Chunk(0xA020, color) + more);
}

/// Four corners of a unit square at z = 3, and the two triangles of it, counter-clockwise from above.
inline std::string SquareVertices()
{
    return Chunk(0x4110, U16(4) + Floats({0, 0, 3, 1, 0, 3, 1, 1, 3, 0, 1, 3}));
}

inline std::string SquareFaces(const std::string& subChunks = "")
{
    return Chunk(0x4120, U16(2) + Words({0, 1, 2, 7, 0, 2, 3, 7}) + subChunks);
}

/// The square's faces of these numbers get a material.
inline std::string FaceMaterial(const std::string& name, std::initializer_list<unsigned> faces)
{
    return Chunk(0x4130, Z(name) + U16(static_cast<unsigned>(faces.size())) + Words(faces));
}

} // namespace ModelBytes
