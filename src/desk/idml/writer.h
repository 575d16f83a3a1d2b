#pragma once
// IDML out: a document becomes a package again.

#include <string>

#include "desk/model/document.h"

namespace desk {

/// The package that the document was read from, with what changed since: labels, text and its formats, page items that
/// were made, moved, changed or removed, stories and spreads that were made or removed, flags of layers. What this
/// system doesn't understand stays: parts that no change is about keep every byte, in the others only the changed
/// elements differ. Stories that no frame shows are left out when they were made in memory.
///
/// The result is read again before it is given: a change that can't be told in the format is refused with InputError.
/// So is a document that wasn't read from a package.
std::string packageOf(const Document& document);

}  // namespace desk
