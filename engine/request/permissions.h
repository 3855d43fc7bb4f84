#pragma once

namespace engine {

/// The permissions of an encryption of revision 2 as those of revision 3 (the signed value of the
/// encryption dictionary's P entry): a permission that revision 3 splits in two and that is denied
/// is denied in both halves.
int revision3Permissions(int revision2);

} // namespace engine
