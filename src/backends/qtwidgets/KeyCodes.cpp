#include "KeyCodes.h"
#include <utility>

namespace steplets::qt {

namespace {
// The named keys; letters, digits and F-keys follow a rule.
constexpr std::pair<int, Qt::Key> kNamed[] = {
    {8, Qt::Key_Backspace}, {9, Qt::Key_Tab},     {13, Qt::Key_Return}, {27, Qt::Key_Escape},
    {32, Qt::Key_Space},    {33, Qt::Key_PageUp}, {34, Qt::Key_PageDown}, {35, Qt::Key_End},
    {36, Qt::Key_Home},     {37, Qt::Key_Left},   {38, Qt::Key_Up},     {39, Qt::Key_Right},
    {40, Qt::Key_Down},     {45, Qt::Key_Insert}, {46, Qt::Key_Delete}};
} // namespace

Qt::Key qtKeyOf(int code)
{
    if ((code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9')) return static_cast<Qt::Key>(code);
    if (code >= 112 && code <= 123) return static_cast<Qt::Key>(Qt::Key_F1 + (code - 112));
    for (const auto& [c, key] : kNamed)
        if (c == code) return key;
    return Qt::Key_unknown;
}

int keyCodeOf(const QKeyEvent& event)
{
    const int k = event.key();
    // Letters and digits have the codes of their upper-case characters.
    if ((k >= Qt::Key_A && k <= Qt::Key_Z) || (k >= Qt::Key_0 && k <= Qt::Key_9)) return k;
    if (k == Qt::Key_Enter) return 13;
    for (const auto& [code, key] : kNamed)
        if (key == k) return code;
    if (k >= Qt::Key_F1 && k <= Qt::Key_F12) return 112 + (k - Qt::Key_F1);
    return 0;
}

int shiftOf(Qt::KeyboardModifiers modifiers)
{
    return (modifiers & Qt::ShiftModifier ? 1 : 0) | (modifiers & Qt::ControlModifier ? 2 : 0) |
           (modifiers & Qt::AltModifier ? 4 : 0);
}

} // namespace steplets::qt
