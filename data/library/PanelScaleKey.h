#pragma once

namespace ormund {

// The key of the panel's size in the key store, an int in percent. The window reads and writes it.
inline constexpr char kPanelScaleKey[] = "panel scale";

} // namespace ormund
