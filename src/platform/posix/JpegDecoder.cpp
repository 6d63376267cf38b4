#include <algorithm>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <vector>

#include <jerror.h>
#include <jpeglib.h>

#include "platform/picture/Decoders.h"

namespace {
constexpr Complaint UNSUPPORTED = L"a kind of JPEG that is not supported";

/// What libjpeg's callbacks reach. The library's structures come first, so that a pointer to one is a pointer
/// to this.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf escape;
};

struct JpegInput {
    jpeg_source_mgr manager;
    ByteSource* source;
    std::uint64_t position;
    std::vector<JOCTET> buffer;
};

struct JpegProgress {
    jpeg_progress_mgr manager;
    int mostScans;
};

struct JpegState {
    jpeg_decompress_struct decoder;
    JpegErrors errors;
    JpegInput input;
    JpegProgress progress;
    std::vector<JSAMPLE> row;
    std::uint64_t size;
    Picture* picture;
    Complaint complaint;
};

[[noreturn]] void Escape(j_common_ptr decoder)
{
    std::longjmp(reinterpret_cast<JpegErrors*>(decoder->err)->escape, 1);
}

void Ignore(j_common_ptr) {}

void IgnoreMessage(j_common_ptr, int) {}

void IgnoreStart(j_decompress_ptr) {}

/// At the end of the data an end mark is given, so that a file that was cut short shows what it has.
boolean FillBuffer(j_decompress_ptr decoder)
{
    constexpr JOCTET END_MARK[] = {0xFF, JPEG_EOI};
    auto* input = reinterpret_cast<JpegInput*>(decoder->src);
    std::size_t got = input->source->ReadAt(input->position, input->buffer.data(), input->buffer.size());
    input->position += got;
    if (got == 0) {
        input->buffer[0] = END_MARK[0];
        input->buffer[1] = END_MARK[1];
        got = sizeof END_MARK;
    }
    input->manager.next_input_byte = input->buffer.data();
    input->manager.bytes_in_buffer = got;
    return TRUE;
}

void SkipInput(j_decompress_ptr decoder, long count)
{
    auto* input = reinterpret_cast<JpegInput*>(decoder->src);
    if (count <= 0) return;
    auto left = static_cast<std::size_t>(count);
    if (left > input->manager.bytes_in_buffer) {
        input->position += left - input->manager.bytes_in_buffer;
        left = input->manager.bytes_in_buffer;
    }
    input->manager.next_input_byte += left;
    input->manager.bytes_in_buffer -= left;
}

/// Each scan of a progressive file costs a pass over the whole picture, however few bytes it has.
void LimitScans(j_common_ptr common)
{
    const auto* progress = reinterpret_cast<JpegProgress*>(common->progress);
    if (reinterpret_cast<j_decompress_ptr>(common)->input_scan_number > progress->mostScans) Escape(common);
}

void Prepare(JpegState& state, ByteSource& source, Picture& picture)
{
    constexpr std::size_t INPUT_BUFFER_SIZE = 1 << 16;
    state.decoder.err = jpeg_std_error(&state.errors.manager);
    state.errors.manager.error_exit = Escape;
    state.errors.manager.emit_message = IgnoreMessage;
    state.errors.manager.output_message = Ignore;
    state.input.source = &source;
    state.input.buffer.resize(INPUT_BUFFER_SIZE);
    state.input.manager.init_source = IgnoreStart;
    state.input.manager.fill_input_buffer = FillBuffer;
    state.input.manager.skip_input_data = SkipInput;
    state.input.manager.resync_to_restart = jpeg_resync_to_restart;
    state.input.manager.term_source = IgnoreStart;
    state.progress.manager.progress_monitor = LimitScans;
    state.size = source.Size();
    state.picture = &picture;
    state.complaint = L"not a JPEG file, or a damaged one";
}

/// Allocates picture and row for the size in the header. No more than a few bits a block of 64 samples can be
/// saved.
Complaint AllocateFor(JpegState& state)
{
    constexpr std::uint64_t MOST_PIXELS_A_BYTE = 1024;
    constexpr long MEMORY_BASE = 64L << 20;
    constexpr long MEMORY_PER_PIXEL = 10;
    jpeg_decompress_struct& decoder = state.decoder;
    const Complaint complaint = Pixels::Allocate(*state.picture, decoder.image_width, decoder.image_height,
                                                 Pixels::Product(state.size, MOST_PIXELS_A_BYTE));
    if (complaint) return complaint;
    // Encoders make about ten scans; the largest pictures may have a few more, small ones plenty.
    constexpr long MOST_PIXELS_SCANNED = 1L << 31;
    const auto pixels = static_cast<long>(state.picture->pixels.size());
    decoder.mem->max_memory_to_use = MEMORY_BASE + MEMORY_PER_PIXEL * pixels;
    state.progress.mostScans = static_cast<int>(std::clamp(MOST_PIXELS_SCANNED / pixels, 16L, 100L));
    constexpr std::size_t MOST_COMPONENTS = 4;
    state.row.resize(decoder.image_width * MOST_COMPONENTS);
    return nullptr;
}

/// Chooses grey, RGB or CMYK samples. False for anything else.
bool ChooseColors(jpeg_decompress_struct& decoder)
{
    switch (decoder.jpeg_color_space) {
    case JCS_GRAYSCALE:
        decoder.out_color_space = JCS_GRAYSCALE;
        return true;
    case JCS_RGB:
    case JCS_YCbCr:
        decoder.out_color_space = JCS_RGB;
        return true;
    case JCS_CMYK:
    case JCS_YCCK:
        decoder.out_color_space = JCS_CMYK;
        return true;
    default:
        return false;
    }
}

void ConvertGrey(const JSAMPLE* samples, std::uint32_t* pixels, std::size_t width)
{
    for (std::size_t x = 0; x < width; ++x) pixels[x] = Pixels::FromRgb(samples[x], samples[x], samples[x]);
}

void ConvertRgb(const JSAMPLE* samples, std::uint32_t* pixels, std::size_t width)
{
    for (std::size_t x = 0; x < width; ++x, samples += 3)
        pixels[x] = Pixels::FromRgb(samples[0], samples[1], samples[2]);
}

/// Files with Adobe's marker store the inks inverted: 255 is none.
void ConvertCmyk(const JSAMPLE* samples, std::uint32_t* pixels, std::size_t width, bool isInverted)
{
    const unsigned flip = isInverted ? 0 : 255;
    for (std::size_t x = 0; x < width; ++x, samples += 4) {
        const unsigned light = samples[3] ^ flip;
        const auto mixed = [light, flip](unsigned ink) {
            return Pixels::Scaled((ink ^ flip) * light, 255 * 255);
        };
        pixels[x] = Pixels::FromRgb(mixed(samples[0]), mixed(samples[1]), mixed(samples[2]));
    }
}

void ConvertRow(JpegState& state, std::uint32_t* pixels)
{
    const JSAMPLE* samples = state.row.data();
    const std::size_t width = state.decoder.output_width;
    if (state.decoder.out_color_space == JCS_GRAYSCALE) return ConvertGrey(samples, pixels, width);
    if (state.decoder.out_color_space == JCS_RGB) return ConvertRgb(samples, pixels, width);
    ConvertCmyk(samples, pixels, width, state.decoder.saw_Adobe_marker != 0);
}

/// Lossless files and those of 12 bits are no damage.
void NoteKind(JpegState& state)
{
    const int code = state.errors.manager.msg_code;
    if (code == JERR_BAD_PRECISION || code == JERR_SOF_UNSUPPORTED) state.complaint = UNSUPPORTED;
}

/// libjpeg's errors jump back to here. Nothing with a destructor may live in this function.
void Run(JpegState& state)
{
    jpeg_decompress_struct& decoder = state.decoder;
    if (setjmp(state.errors.escape) != 0) return NoteKind(state);
    jpeg_create_decompress(&decoder);
    decoder.src = &state.input.manager;
    decoder.progress = &state.progress.manager;
    jpeg_read_header(&decoder, TRUE);
    if (!ChooseColors(decoder)) {
        state.complaint = UNSUPPORTED;
        return;
    }
    if (const Complaint complaint = AllocateFor(state)) {
        state.complaint = complaint;
        return;
    }
    jpeg_start_decompress(&decoder);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row = state.row.data();
        const JDIMENSION y = decoder.output_scanline;
        if (jpeg_read_scanlines(&decoder, &row, 1) != 1) return;
        // With the first row there is a picture; what cannot be read after it stays black.
        state.complaint = nullptr;
        ConvertRow(state, Pixels::Row(*state.picture, y));
    }
}
} // namespace

Complaint DecodeJpeg(ByteSource& source, Picture& picture)
{
    JpegState state = {};
    Prepare(state, source, picture);
    Run(state);
    jpeg_destroy_decompress(&state.decoder);
    return state.complaint;
}
