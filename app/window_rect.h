#pragma once
// The window rectangle kept in the settings is the window's rectangle on screen, frame
// included (where the user left it), while Qt places a window by its inner geometry.

#include <QMargins>
#include <QRect>

namespace sedra {

// The frame around `inner` when the window takes `frame` on screen.
inline QMargins FrameMargins(const QRect& inner, const QRect& frame) {
  return {inner.left() - frame.left(), inner.top() - frame.top(), frame.right() - inner.right(),
          frame.bottom() - inner.bottom()};
}
inline QRect OuterRect(const QRect& inner, const QMargins& frame) { return inner.marginsAdded(frame); }
inline QRect InnerRect(const QRect& outer, const QMargins& frame) { return outer.marginsRemoved(frame); }

}  // namespace sedra
