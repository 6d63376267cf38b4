#include <csetjmp>
#include <vector>

#include <png.h>

#include "platform/picture/Encoders.h"

namespace {
struct PngState {
    png_structp encoder;
    png_infop header;
    const PixelRows* bitmap;
    OutputFile* file;
    std::vector<png_byte> row;
    bool isDone;
};

[[noreturn]] void Escape(png_structp encoder, png_const_charp)
{
    png_longjmp(encoder, 1);
}

void Ignore(png_structp, png_const_charp) {}

void WriteBytes(png_structp encoder, png_bytep bytes, std::size_t count)
{
    static_cast<OutputFile*>(png_get_io_ptr(encoder))->Write(bytes, count);
}

void Flush(png_structp) {}

void FillRow(PngState& state, int y)
{
    const std::uint32_t* pixels = state.bitmap->Row(y);
    png_bytep bytes = state.row.data();
    for (int x = 0; x < state.bitmap->width; ++x) {
        *bytes++ = static_cast<png_byte>(pixels[x] >> 16 & 0xFF);
        *bytes++ = static_cast<png_byte>(pixels[x] >> 8 & 0xFF);
        *bytes++ = static_cast<png_byte>(pixels[x] & 0xFF);
    }
}

/// libpng's errors jump back to here. Nothing with a destructor may live in this function.
void Run(PngState& state)
{
    constexpr int LEVEL = 4; // line drawings hardly become smaller above
    if (setjmp(png_jmpbuf(state.encoder)) != 0) return;
    png_set_write_fn(state.encoder, state.file, WriteBytes, Flush);
    png_set_IHDR(state.encoder, state.header, static_cast<png_uint_32>(state.bitmap->width),
                 static_cast<png_uint_32>(state.bitmap->height), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(state.encoder, LEVEL);
    png_set_filter(state.encoder, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_write_info(state.encoder, state.header);
    for (int y = 0; y < state.bitmap->height && !state.file->Failed(); ++y) {
        FillRow(state, y);
        png_write_row(state.encoder, state.row.data());
    }
    if (!state.file->Failed()) png_write_end(state.encoder, nullptr);
    state.isDone = true;
}
} // namespace

const wchar_t* EncodePng(const PixelRows& bitmap, OutputFile& file)
{
    PngState state{nullptr, nullptr, &bitmap, &file, {}, false};
    state.row.resize(static_cast<std::size_t>(bitmap.width) * 3);
    state.encoder = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Escape, Ignore);
    if (!state.encoder) return L"not enough memory";
    state.header = png_create_info_struct(state.encoder);
    if (state.header) Run(state);
    png_destroy_write_struct(&state.encoder, &state.header);
    return state.isDone ? nullptr : L"the picture could not be encoded";
}
