#include <csetjmp>
#include <cstddef>
#include <vector>

#include <png.h>

#include "platform/picture/Decoders.h"

namespace {
struct PngState {
    png_structp decoder;
    png_infop header;
    ByteSource* source;
    std::uint64_t position;
    std::vector<png_bytep> rows;
    Picture* picture;
    Complaint complaint;
};

[[noreturn]] void Escape(png_structp decoder, png_const_charp)
{
    png_longjmp(decoder, 1);
}

void Ignore(png_structp, png_const_charp) {}

void ReadBytes(png_structp decoder, png_bytep bytes, std::size_t count)
{
    auto* state = static_cast<PngState*>(png_get_io_ptr(decoder));
    const std::size_t got = state->source->ReadAt(state->position, bytes, count);
    state->position += got;
    if (got < count) png_error(decoder, "end of data");
}

Complaint AllocateFor(PngState& state)
{
    // Deflate's best is 1032 to 1, and a byte holds up to eight pixels.
    constexpr std::uint64_t MOST_PIXELS_A_BYTE = 1032 * 8;
    const std::uint64_t backed = Pixels::Product(state.source->Size(), MOST_PIXELS_A_BYTE);
    Picture& picture = *state.picture;
    const Complaint complaint = Pixels::Allocate(picture, png_get_image_width(state.decoder, state.header),
                                                 png_get_image_height(state.decoder, state.header), backed);
    if (complaint) return complaint;
    // libpng fills bytes in the order red, green, blue, alpha; they are turned into pixels in place.
    auto* bytes = reinterpret_cast<png_bytep>(picture.pixels.data());
    const std::size_t stride = static_cast<std::size_t>(picture.width) * 4;
    const auto height = static_cast<std::size_t>(picture.height);
    for (std::size_t i = 0; i < stride * height; ++i) bytes[i] = (i & 3) == 3 ? 255 : 0;
    state.rows.resize(height);
    for (std::size_t y = 0; y < height; ++y) state.rows[y] = bytes + y * stride;
    return nullptr;
}

/// Asks for 8-bit red, green, blue and alpha whatever the file holds.
void ChooseColors(png_structp decoder, png_infop header)
{
    const bool hasAlpha = (png_get_color_type(decoder, header) & PNG_COLOR_MASK_ALPHA) != 0
                          || png_get_valid(decoder, header, PNG_INFO_tRNS) != 0;
    png_set_expand(decoder);
    png_set_scale_16(decoder);
    png_set_gray_to_rgb(decoder);
    if (!hasAlpha) png_set_filler(decoder, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(decoder);
    png_read_update_info(decoder, header);
}

/// libpng's errors jump back to here. Nothing with a destructor may live in this function.
void Run(PngState& state)
{
    constexpr png_alloc_size_t LARGEST_CHUNK = 8 << 20;
    constexpr png_uint_32 MOST_KEPT_CHUNKS = 100;
    if (setjmp(png_jmpbuf(state.decoder)) != 0) return;
    png_set_read_fn(state.decoder, &state, ReadBytes);
    png_set_user_limits(state.decoder, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_chunk_malloc_max(state.decoder, LARGEST_CHUNK);
    png_set_chunk_cache_max(state.decoder, MOST_KEPT_CHUNKS);
    png_read_info(state.decoder, state.header);
    state.complaint = AllocateFor(state);
    if (state.complaint) return;

    // From here on what cannot be read stays black.
    ChooseColors(state.decoder, state.header);
    png_read_image(state.decoder, state.rows.data());
}

void TurnIntoPixels(Picture& picture)
{
    for (std::uint32_t& pixel : picture.pixels) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(&pixel);
        pixel = Pixels::FromRgba(bytes[0], bytes[1], bytes[2], bytes[3]);
    }
    Pixels::KeyOutTransparent(picture);
}
} // namespace

Complaint DecodePng(ByteSource& source, Picture& picture)
{
    PngState state = {};
    state.source = &source;
    state.picture = &picture;
    state.complaint = L"not a PNG file, or a damaged one";
    state.decoder = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Escape, Ignore);
    if (!state.decoder) return L"not enough memory";
    state.header = png_create_info_struct(state.decoder);
    if (state.header) Run(state);
    png_destroy_read_struct(&state.decoder, &state.header, nullptr);
    if (!state.complaint) TurnIntoPixels(picture);
    return state.complaint;
}
