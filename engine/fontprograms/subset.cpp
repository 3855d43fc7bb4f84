#include "subset.h"

#include "harfbuzz.h"

#include <algorithm>

namespace engine {

namespace {

using Input = std::unique_ptr<hb_subset_input_t, Destroy<hb_subset_input_destroy>>;
using Plan = std::unique_ptr<hb_subset_plan_t, Destroy<hb_subset_plan_destroy>>;

constexpr hb_tag_t cff = tableTag("CFF ");
constexpr hb_tag_t cmap = tableTag("cmap");
constexpr hb_tag_t maxp = tableTag("maxp");
constexpr hb_tag_t post = tableTag("post");

// What no reader of a PDF file asks of an embedded program: layout, names, vertical metrics, and
// the colours, tables of metrics and such that are about the glyphs that go.
constexpr hb_tag_t uselessTables[] = {
    tableTag("GSUB"), tableTag("GPOS"), tableTag("GDEF"), tableTag("BASE"), tableTag("MATH"),
    tableTag("name"), tableTag("hdmx"), tableTag("vhea"), tableTag("vmtx"), tableTag("VORG"),
    tableTag("COLR"), tableTag("CPAL"), tableTag("CBDT"), tableTag("CBLC"), tableTag("sbix"),
    tableTag("STAT"), tableTag("VDMX")};

std::string tableOf(const Program &program, hb_tag_t tag)
{
    return bytesOf(Blob(hb_face_reference_table(program.get(), tag)));
}

bool isBareCff(const std::string &program)
{
    return !program.empty() && program.front() == '\1';
}

// HarfBuzz 6.0 makes a font of 12 bytes without a glyph of a bare CFF; it asks for a maxp table.
Program wrapped(const std::string &bareCff, Glyph count)
{
    const std::string half = {0, 0, 0x50, 0, char(count >> 8), char(count & 0xFF)};
    Program program(hb_face_builder_create());
    hb_face_builder_add_table(program.get(), cff, blobOf(bareCff, HB_MEMORY_MODE_READONLY).get());
    hb_face_builder_add_table(program.get(), maxp, blobOf(half, HB_MEMORY_MODE_DUPLICATE).get());
    return program;
}

Program programOf(const std::string &bytes, Glyph count)
{
    return isBareCff(bytes)
               ? wrapped(bytes, count)
               : Program(hb_face_create(blobOf(bytes, HB_MEMORY_MODE_READONLY).get(), 0));
}

// HarfBuzz 6.0 drops the cmaps (1,0) and (3,0), and makes version 3 of post tables; with names, it
// keeps those of version 2.
void keepLookups(const Program &program, const Needs &needs, hb_subset_input_t *input)
{
    hb_set_t *asTheyAre = hb_subset_input_set(input, HB_SUBSET_SETS_NO_SUBSET_TABLE_TAG);
    hb_set_t *dropped = hb_subset_input_set(input, HB_SUBSET_SETS_DROP_TABLE_TAG);
    hb_set_add(needs.cmap ? asTheyAre : dropped, cmap);
    const std::string version = tableOf(program, post).substr(0, 4);
    if (needs.names && !version.empty() && version != std::string({0, 2, 0, 0}))
        hb_set_add(asTheyAre, post);
}

unsigned flagsFor(const Needs &needs)
{
    return HB_SUBSET_FLAGS_NOTDEF_OUTLINE |
           (needs.names ? unsigned(HB_SUBSET_FLAGS_GLYPH_NAMES) : 0U) |
           (needs.numbers ? unsigned(HB_SUBSET_FLAGS_RETAIN_GIDS) : 0U);
}

// Where numbers stay, a font without its last glyph would have fewer, and readers would not find
// names and widths any more.
Input inputFor(const Program &program, const Glyphs &glyphs, const Needs &needs)
{
    Input input(hb_subset_input_create_or_fail());
    if (!input)
        return input;
    hb_subset_input_set_flags(input.get(), flagsFor(needs));
    hb_set_t *dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    for (const hb_tag_t table : uselessTables)
        hb_set_add(dropped, table);
    keepLookups(program, needs, input.get());
    hb_set_t *kept = hb_subset_input_glyph_set(input.get());
    for (const Glyph glyph : glyphs)
        hb_set_add(kept, glyph);
    hb_set_add(kept, 0);
    if (needs.numbers)
        hb_set_add(kept, hb_face_get_glyph_count(program.get()) - 1);
    return input;
}

std::map<Glyph, Glyph> numbersIn(const Plan &plan, const Glyphs &glyphs)
{
    const hb_map_t *numbers = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
    std::map<Glyph, Glyph> found;
    for (const Glyph glyph : glyphs)
        found[glyph] = hb_map_get(numbers, glyph);
    return found;
}

Subset made(const std::string &bytes, Glyph count, const Glyphs &glyphs, const Needs &needs)
{
    const Program program = programOf(bytes, count);
    if (hb_face_get_glyph_count(program.get()) != count)
        return {};
    const Input input = inputFor(program, glyphs, needs);
    const Plan plan(input ? hb_subset_plan_create_or_fail(program.get(), input.get()) : nullptr);
    const Program subset(plan ? hb_subset_plan_execute_or_fail(plan.get()) : nullptr);
    if (!subset)
        return {};
    return {isBareCff(bytes) ? tableOf(subset, cff)
                             : bytesOf(Blob(hb_face_reference_blob(subset.get()))),
            numbersIn(plan, glyphs)};
}

// Whether all that is asked of the subset is what the whole program says.
bool isFaithful(const Subset &subset, const Face &face, const Needs &needs)
{
    const auto result = Face::of(subset.bytes);
    if (!result || result->isCidKeyed() != face.isCidKeyed() ||
        (needs.numbers && result->count() != face.count()))
        return false;
    return std::all_of(subset.numbers.begin(), subset.numbers.end(), [&](const auto &entry) {
        return (!needs.numbers || entry.first == entry.second) &&
               result->drawsLike(entry.second, face, entry.first);
    });
}

bool isVariable(const Face &face)
{
    return !face.table("fvar").empty() || !face.table("CFF2").empty();
}

} // namespace

std::optional<Subset> subsetOf(const std::string &program, const Glyphs &glyphs, const Needs &needs)
{
    const auto face = Face::of(program);
    if (!face || face->count() == 0 || isVariable(*face) ||
        (face->isSfnt() && !hasAllTables(program)))
        return std::nullopt;
    Subset subset = made(program, face->count(), glyphs, needs);
    if (!isFaithful(subset, *face, needs))
        return std::nullopt;
    return subset;
}

} // namespace engine
