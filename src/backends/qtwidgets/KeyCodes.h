#pragma once
// Qt keys as the run-time's key codes and shift masks, for the windows' KeyDown handlers.
#include <QKeyEvent>

namespace steplets::qt {

// The run-time's key code of a key press; 0 for keys the windows never look at.
int keyCodeOf(const QKeyEvent& event);
// The Qt key of a run-time key code (Qt::Key_unknown for codes the windows never look at).
Qt::Key qtKeyOf(int keyCode);
// 1 Shift, 2 Ctrl, 4 Alt, added up.
int shiftOf(Qt::KeyboardModifiers modifiers);

} // namespace steplets::qt
