#pragma once
// References between objects of different parts, followed when everything is read.

#include "desk/idml/reading.h"

namespace desk {

/// Gives every text frame its story and its neighbours in the thread. Throws InputError for a story that is missing,
/// for frames threaded in a circle, and for a story that is anchored inside itself.
void linkFrames(Reading& reading);

/// Checks what masters are based on and which ones pages name. Throws InputError for masters based on each other.
void linkMasters(Reading& reading);

/// Gives every page the marker of its section.
void linkSections(Reading& reading);

}  // namespace desk
