#pragma once
// The plot asks for "MS Sans Serif" and "Arial"; everywhere it runs those names map to
// the metric-compatible Liberation Sans, so layout is the same on every platform.

namespace sedra {
void RegisterFontSubstitutes();
}
