#pragma once
// The person at the screen, as a script plays it: one form step done on the waiting window
// through the control models' own user acts. A step a person could not do is refused.
#include "Script.h"

namespace steplets {
class Form;
}

namespace steplets::scripted {

class ScriptedUser {
public:
    // Does the form action of `step` on `form`; a snapshot step gives the snapshot to record.
    // Throws UserActionRefused when it cannot be done.
    static std::optional<QJsonObject> perform(Form& form, const Step& step);
};

} // namespace steplets::scripted
