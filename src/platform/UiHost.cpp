#include "UiHost.h"
#include "runtime/Failure.h"

namespace steplets {

MessageBoxRequest MessageBoxRequest::fromFlags(const QString& prompt, long flags, const QString& title) {
    MessageBoxRequest box;
    box.text = prompt;
    box.title = title;
    switch (flags & 0x7) {
    case 0: box.buttons = Buttons::OK; break;
    case 1: box.buttons = Buttons::OKCancel; break;
    case 4: box.buttons = Buttons::YesNo; break;
    default: throw Failure::invalidCall();
    }
    switch (flags & 0x70) {
    case 0: box.icon = Icon::None; break;
    case 16: box.icon = Icon::Critical; break;
    case 32: box.icon = Icon::Question; break;
    case 48: box.icon = Icon::Exclamation; break;
    case 64: box.icon = Icon::Information; break;
    default: throw Failure::invalidCall();
    }
    box.systemModal = (flags & 4096) != 0;
    return box;
}

QString MessageBoxRequest::buttonsName(Buttons b) {
    switch (b) {
    case Buttons::OK: return QStringLiteral("OK");
    case Buttons::OKCancel: return QStringLiteral("OKCancel");
    case Buttons::YesNo: return QStringLiteral("YesNo");
    }
    return {};
}

QString MessageBoxRequest::iconName(Icon i) {
    switch (i) {
    case Icon::None: return QStringLiteral("none");
    case Icon::Exclamation: return QStringLiteral("exclamation");
    case Icon::Question: return QStringLiteral("question");
    case Icon::Information: return QStringLiteral("information");
    case Icon::Critical: return QStringLiteral("critical");
    }
    return {};
}

QString answerName(MsgBoxAnswer a) {
    switch (a) {
    case MsgBoxAnswer::OK: return QStringLiteral("OK");
    case MsgBoxAnswer::Cancel: return QStringLiteral("Cancel");
    case MsgBoxAnswer::Yes: return QStringLiteral("Yes");
    case MsgBoxAnswer::No: return QStringLiteral("No");
    }
    return {};
}

int UiHost::MsgBox(const QString& prompt, long flags, const QString& title) {
    return static_cast<int>(messageBox(MessageBoxRequest::fromFlags(prompt, flags, title)));
}

} // namespace steplets
