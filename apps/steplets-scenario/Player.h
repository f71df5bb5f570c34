#pragma once
// Plays one scenario: sets up its directory, wires the component's ports to the real backends
// and the scripted host, makes the host's call, writes the transcript and matches `expect`.
#include "Scenario.h"
#include <QJsonObject>
#include <QString>
#include <functional>
#include <optional>

namespace steplets::scenario {

// The exit statuses of the player.
enum Exit { Passed = 0, ExpectationFailed = 1, CannotPlay = 2, ComponentFailed = 3 };

struct PlayResult {
    int exit = Passed;
    QString problem;                        // one line for standard error; empty when all held
    std::optional<QJsonObject> transcript;  // none when the set-up could not be done
};

// The host that renders the windows: the scripted host's models alone, or the Qt Widgets host
// on the offscreen platform (real widgets, real input, the same virtual clock).
enum class Host { Scripted, Qt };

// What a fault test does to the play directory at two moments of a play: when the stores are
// set up, before the host's call; and when an item of the session is about to be saved for the
// first time (given how many were before it).
struct PlayHooks {
    std::function<void(const QString& dir)> afterSetUp;
    std::function<void(int savedBefore)> beforeFirstSave;
};

// Plays in `dir`, which must exist and hold no databases. The Qt host needs a QApplication.
PlayResult play(const Scenario& scenario, const QString& dir, Host on = Host::Scripted, const PlayHooks& hooks = {});

} // namespace steplets::scenario
