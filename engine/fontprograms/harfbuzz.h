#pragma once

#include <hb-ot.h>
#include <hb-subset.h>
#include <memory>
#include <string>

namespace engine {

template <auto destroy>
struct Destroy
{
    template <typename Object>
    void operator()(Object *object) const
    {
        destroy(object);
    }
};
using Blob = std::unique_ptr<hb_blob_t, Destroy<hb_blob_destroy>>;
using Program = std::unique_ptr<hb_face_t, Destroy<hb_face_destroy>>;

constexpr hb_tag_t tableTag(const char (&name)[5])
{
    hb_tag_t number = 0;
    for (int place = 0; place < 4; ++place)
        number = number << 8 | hb_tag_t(name[place]);
    return number;
}

/// With HB_MEMORY_MODE_READONLY, the bytes have to outlive the blob and what is made of it.
Blob blobOf(const std::string &bytes, hb_memory_mode_t mode);

std::string bytesOf(const Blob &blob);

/// Whether all tables of a TrueType or OpenType program lie within it; readers make of others what
/// they like.
bool hasAllTables(const std::string &program);

} // namespace engine
