#include "support/log_host.h"

namespace vornaset {

void logRect(const PMRect& rectangle, const String& label) {
    MyLog("%@: %.1f %.1f %.1f %.1f", label, rectangle.left, rectangle.top,
          static_cast<float>(rectangle.right - rectangle.left), static_cast<float>(rectangle.bottom - rectangle.top));
}

void log(UID uid, const String& label) {
    MyLog("%@: %d", label, uid.Get());
}

void logComponent(const URI& uri, int32_t component) {
    if (gLogging != 1) return;
    MyLog("%d: %@", component, uri.GetComponent(static_cast<URI::Component>(component)));
}

}  // namespace vornaset
