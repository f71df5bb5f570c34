#pragma once
// The scripted host as the unit tests drive it: the person at the screen as JSON steps, and what
// the host recorded. Only for executables that link the scripted backend.
#include "ScriptedHost.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>
#include <memory>

namespace steplets::test {

// A scripted host playing `steps` (JSON text of the script list) from `start`.
inline std::unique_ptr<scripted::ScriptedHost> hostWith(const QByteArray& steps = "[]",
                                                        const QDateTime& start = QDateTime(QDate(2026, 3, 16), QTime(15, 30)))
{
    QString error;
    auto script = scripted::Script::fromJson(QJsonDocument::fromJson(steps).array(), &error);
    EXPECT_TRUE(script.has_value()) << error.toStdString();
    return std::make_unique<scripted::ScriptedHost>(script.value_or(scripted::Script()), start);
}

// The members of the first event of that kind the host recorded.
inline QJsonObject firstEvent(const scripted::ScriptedHost& h, const QString& kind)
{
    for (const auto& e : h.events())
        if (e.toObject().contains(kind)) return e.toObject().value(kind).toObject();
    ADD_FAILURE() << "no " << kind.toStdString() << " event";
    return {};
}

} // namespace steplets::test
