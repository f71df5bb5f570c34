#pragma once
// The directory a scenario plays in, and its set-up before the host's call: both databases with
// the scenario's rows, the settings file, and the vdir with the contact and task collections.
#include "Scenario.h"
#include <QString>

namespace steplets::scenario {

// Where each store lies inside the play directory.
struct Workspace {
    QString dir;                                  // the databases lie here: the component's directory
    QString vdirRoot() const;
    QString configDir() const;                    // the settings file lies below this
    QString settingsFile() const;
};

// A set-up that cannot be done as the scenario asks; the message names the member.
struct SetupProblem {
    QString message;
};

// Creates every store of the scenario in ws.dir (which must hold no databases yet).
void setUp(const Scenario& scenario, const Workspace& ws);

} // namespace steplets::scenario
