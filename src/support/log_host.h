#pragma once
// Ready-made log lines for the host's own types.

#include "host/api/strings.h"
#include "host/api/types.h"
#include "support/log.h"

namespace vornaset {

/// "%@: %.1f %.1f %.1f %.1f": the label, left, top, width, height.
void logRect(const PMRect& rectangle, const String& label);
/// "%@: %d"
void log(UID uid, const String& label);
/// "%d: %@": the component's number and its text, which is empty for a number that no component has.
void logComponent(const URI& uri, int32_t component);

}  // namespace vornaset
