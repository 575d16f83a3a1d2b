#pragma once
// Which modifier keys are down now, asked from the window system, without any event.

namespace vornaset {

bool isShiftKeyPressed();
/// The key that bears "Alt" on most keyboards.
bool isOptionKeyPressed();
/// The key of menu shortcuts, which is Control on this platform.
bool isCmdKeyPressed();

}  // namespace vornaset
