#include "jbig2decoding.h"

#include <cstring>
#include <memory>

extern "C" {
#include <jbig2.h>
}

namespace engine {

namespace {

// Damage has to be told from soundness, and nobody has to read about it.
void noteTrouble(void *trouble, const char *, Jbig2Severity severity, std::uint32_t)
{
    if (severity >= JBIG2_SEVERITY_WARNING)
        *static_cast<bool *>(trouble) = true;
}

struct Free
{
    void operator()(Jbig2Ctx *context) const { jbig2_ctx_free(context); }
    void operator()(Jbig2GlobalCtx *shared) const { jbig2_global_ctx_free(shared); }
};

using Context = std::unique_ptr<Jbig2Ctx, Free>;

Context contextFor(const std::string &bytes, Jbig2GlobalCtx *shared, bool &trouble)
{
    Context context(jbig2_ctx_new(nullptr, JBIG2_OPTIONS_EMBEDDED, shared, noteTrouble, &trouble));
    if (!context ||
        jbig2_data_in(context.get(), reinterpret_cast<const unsigned char *>(bytes.data()),
                      bytes.size()) < 0)
        trouble = true;
    return context;
}

// jbig2dec's rows are packed like ours, and 1 is black to both.
std::optional<Bitmap> bitmapOf(const Jbig2Image &image)
{
    auto bitmap = Bitmap::blank(image.width, image.height);
    for (std::size_t y = 0; bitmap && y < image.height; ++y)
        std::memcpy(bitmap->row(y), image.data + y * image.stride, bitmap->stride());
    if (bitmap)
        bitmap->clearPadding();
    return bitmap;
}

} // namespace

std::optional<Bitmap> decodeJbig2(const std::string &stream, const std::string &shared,
                                  std::uint32_t width, std::uint32_t height)
{
    bool trouble = false;
    std::unique_ptr<Jbig2GlobalCtx, Free> globals;
    if (!shared.empty())
        globals.reset(jbig2_make_global_ctx(contextFor(shared, nullptr, trouble).release()));
    const Context context = contextFor(stream, globals.get(), trouble);
    if (trouble)
        return {};
    jbig2_complete_page(context.get());
    Jbig2Image *image = jbig2_page_out(context.get());
    if (!image)
        return {};
    auto bitmap =
        image->width == width && image->height == height ? bitmapOf(*image) : std::nullopt;
    jbig2_release_page(context.get(), image);
    return trouble ? std::nullopt : std::move(bitmap);
}

} // namespace engine
