// Reading a script: every malformed step is named with the member that is wrong.
#include "Script.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace steplets;
using namespace steplets::scripted;

namespace {
QString errorOf(const char* json) {
    QString error;
    const auto doc = QJsonDocument::fromJson(json);
    auto script = Script::fromJson(doc.isArray() ? QJsonValue(doc.array()) : QJsonValue(doc.object()), &error);
    return script ? QStringLiteral("ok") : error;
}
} // namespace

TEST(ScriptReading, WellFormedStepsOfEveryKindAreTaken) {
    EXPECT_EQ(errorOf(R"([
        {"form": "frmSteplet", "click": "cmdAdd"},
        {"form": "frmSteplet", "tick": "lbTaskTemplates", "item": "Call", "checked": true},
        {"tick": "lbTaskTemplates", "row": 0, "checked": false},
        {"select": "lbContacts", "row": 2, "selected": false},
        {"type": "txtUserInput", "text": ""},
        {"focus": "txtGroupPrompt"},
        {"key": "txtContact", "keyCode": 13, "shift": false, "ctrl": false, "alt": false},
        {"tab": "TabStrip2", "index": 2},
        {"date": "ActiveCalendar1", "value": "2026-04-15"},
        {"dblclick": "MSHFlexGrid1", "row": 1},
        {"toolclick": "abSelectContact", "tool": "Tool0"},
        {"form": "frmPrompt", "close": true},
        {"form": "frmPrompt", "snapshot": true},
        {"msgbox": "OK", "title": " Name Required", "text": "x"},
        {"item": {"set": {"Subject": "x"}, "recurrence": {"Interval": 1}, "close": "save"}},
        {"picker": {"ContactID": 4, "name": "Ada", "EntryID": "c-ada"}},
        {"picker": "cancel"},
        {"wait": 2.5}])"), QStringLiteral("ok"));
}

TEST(ScriptReading, MalformedStepsNameTheStepAndTheMember) {
    EXPECT_EQ(errorOf(R"({"click": "x"})"), QStringLiteral("member \"script\" must be a list of steps"));
    EXPECT_EQ(errorOf(R"([{"click": "a"}, 3])"), QStringLiteral("step 2: a step must be an object"));
    EXPECT_EQ(errorOf(R"([{"click": "a"}, {"tick": "l", "item": "r"}])"), QStringLiteral("step 2: member \"checked\" is missing"));
    EXPECT_EQ(errorOf(R"([{"tick": "l", "checked": true}])"),
              QStringLiteral("step 1: exactly one of the members \"item\" and \"row\" must be given"));
    EXPECT_EQ(errorOf(R"([{"tab": "t", "index": 1.5}])"), QStringLiteral("step 1: member \"index\" must be a whole number"));
    EXPECT_EQ(errorOf(R"([{"date": "c", "value": "15/04/2026"}])"),
              QStringLiteral("step 1: member \"value\" must be a date \"YYYY-MM-DD\""));
    EXPECT_EQ(errorOf(R"([{"close": true}])"), QStringLiteral("step 1: member \"form\" is missing"));
    EXPECT_EQ(errorOf(R"([{"form": "f", "close": false}])"), QStringLiteral("step 1: member \"close\" must be true"));
    EXPECT_EQ(errorOf(R"([{"click": "a", "text": "b"}])"), QStringLiteral("step 1: member \"text\" does not belong in this step"));
    EXPECT_EQ(errorOf(R"([{"click": "a", "focus": "b"}])"), QStringLiteral("step 1: members \"click\", \"focus\" cannot stand in one step"));
    EXPECT_EQ(errorOf(R"([{"item": {"close": "later"}}])"),
              QStringLiteral("step 1: member \"item.close\" must be one of \"save\", \"discard\", \"send\""));
    EXPECT_EQ(errorOf(R"([{"item": {"subject": "x"}}])"),
              QStringLiteral("step 1: member \"item.subject\" does not belong in an item step"));
    EXPECT_EQ(errorOf(R"([{"picker": {"ContactID": "4", "name": "a", "EntryID": "e"}}])"),
              QStringLiteral("step 1: member \"picker.ContactID\" must be a whole number"));
    for (const char* wait : {R"([{"wait": -1}])", R"([{"wait": 1e308}])", R"([{"wait": 3155760001}])"})
        EXPECT_EQ(errorOf(wait), QStringLiteral("step 1: member \"wait\" must be a number of seconds from 0 to 3155760000")) << wait;
    EXPECT_EQ(errorOf(R"([{"form": "f", "dblclick": "g", "row": 1e300}])"), QStringLiteral("step 1: member \"row\" must be a whole number"));
    EXPECT_EQ(errorOf(R"([{"form": "f"}])").left(27), QStringLiteral("step 1: no action member (o"));
}

TEST(ScriptReading, ValuesTakeTheComponentsTypes) {
    EXPECT_TRUE(valueFromJson(QJsonValue()).isNull());
    EXPECT_EQ(valueFromJson(QJsonValue(3)).type(), Value::Type::Int32);
    EXPECT_EQ(valueFromJson(QJsonValue(2.5)).type(), Value::Type::Double);
    EXPECT_EQ(valueFromJson(QJsonValue(true)).type(), Value::Type::Bool);
    EXPECT_EQ(valueFromJson(QJsonValue("2026-03-16T15:30:00")).toDate(), Date::fromParts(2026, 3, 16, 15, 30));
    EXPECT_EQ(valueFromJson(QJsonValue("2026-03-16")).type(), Value::Type::Text) << "only a full date and time is a date";
    EXPECT_EQ(Value(Date::fromParts(4501, 1, 1)).toJson().toString(), QStringLiteral("4501-01-01T00:00:00"));
    EXPECT_EQ(Value(Int16(7)).toJson().toInt(), 7);
}
