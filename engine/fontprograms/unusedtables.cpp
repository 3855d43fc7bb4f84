#include "unusedtables.h"

#include "harfbuzz.h"

#include <algorithm>
#include <vector>

namespace engine {

namespace {

// Widths for single sizes, which a document states itself; signatures; kerning, which is in the
// positions of what is shown.
constexpr hb_tag_t neverUsed[] = {tableTag("hdmx"), tableTag("VDMX"), tableTag("LTSH"),
                                  tableTag("DSIG"), tableTag("PCLT"), tableTag("JSTF"),
                                  tableTag("kern")};
constexpr hb_tag_t forLayout[] = {tableTag("GSUB"), tableTag("GPOS"), tableTag("GDEF"),
                                  tableTag("BASE"), tableTag("MATH")};

// One font, and not a collection of several.
bool isSfnt(const std::string &program)
{
    const std::string version = program.substr(0, 4);
    return version == std::string({0, 1, 0, 0}) || version == "true" || version == "OTTO";
}

template <typename Tags>
bool isOneOf(hb_tag_t tag, const Tags &tags)
{
    return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

bool isUnused(hb_tag_t tag, TextToCome text)
{
    return isOneOf(tag, neverUsed) || (text == TextToCome::None && isOneOf(tag, forLayout));
}

std::vector<hb_tag_t> tagsOf(const Program &program)
{
    unsigned count = hb_face_get_table_tags(program.get(), 0, nullptr, nullptr);
    std::vector<hb_tag_t> tags(count);
    hb_face_get_table_tags(program.get(), 0, &count, tags.data());
    return tags;
}

} // namespace

std::optional<std::string> withoutUnusedTables(const std::string &program, TextToCome text)
{
    if (!isSfnt(program) || !hasAllTables(program))
        return std::nullopt;
    const Program whole(hb_face_create(blobOf(program, HB_MEMORY_MODE_READONLY).get(), 0));
    const auto tags = tagsOf(whole);
    const Program less(hb_face_builder_create());
    std::size_t kept = 0;
    for (const hb_tag_t tag : tags) {
        const Blob table(hb_face_reference_table(whole.get(), tag));
        if (!isUnused(tag, text) && hb_face_builder_add_table(less.get(), tag, table.get()))
            ++kept;
    }
    if (kept == 0 || kept == tags.size())
        return std::nullopt;
    return bytesOf(Blob(hb_face_reference_blob(less.get())));
}

} // namespace engine
