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

// Well-formed steps of every kind are read by the scenarios and the control tests that play them.
TEST(ScriptReading, MalformedStepsNameTheStepAndTheMember) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"click": "x"})", "member \"script\" must be a list of steps"},
        {R"([{"click": "a"}, 3])", "step 2: a step must be an object"},
        {R"([{"click": "a"}, {"tick": "l", "item": "r"}])", "step 2: member \"checked\" is missing"},
        {R"([{"tick": "l", "checked": true}])", "step 1: exactly one of the members \"item\" and \"row\" must be given"},
        {R"([{"tab": "t", "index": 1.5}])", "step 1: member \"index\" must be a whole number"},
        {R"([{"form": "f", "dblclick": "g", "row": 1e300}])", "step 1: member \"row\" must be a whole number"},
        {R"([{"date": "c", "value": "15/04/2026"}])", "step 1: member \"value\" must be a date \"YYYY-MM-DD\""},
        {R"([{"close": true}])", "step 1: member \"form\" is missing"},
        {R"([{"form": "f", "close": false}])", "step 1: member \"close\" must be true"},
        {R"([{"click": "a", "text": "b"}])", "step 1: member \"text\" does not belong in this step"},
        {R"([{"click": "a", "focus": "b"}])", "step 1: members \"click\", \"focus\" cannot stand in one step"},
        {R"([{"item": {"close": "later"}}])", "step 1: member \"item.close\" must be one of \"save\", \"discard\", \"send\""},
        {R"([{"item": {"subject": "x"}}])", "step 1: member \"item.subject\" does not belong in an item step"},
        {R"([{"picker": {"ContactID": "4", "name": "a", "EntryID": "e"}}])", "step 1: member \"picker.ContactID\" must be a whole number"},
        {R"([{"wait": -1}])", "step 1: member \"wait\" must be a number of seconds from 0 to 3155760000"},
        {R"([{"wait": 3155760001}])", "step 1: member \"wait\" must be a number of seconds from 0 to 3155760000"},
    };
    for (const auto& [json, why] : cases) EXPECT_EQ(errorOf(json), QString::fromUtf8(why)) << json;
    EXPECT_TRUE(errorOf(R"([{"form": "f"}])").startsWith(QStringLiteral("step 1: no action member (o")));
}

TEST(ScriptReading, ValuesTakeTheComponentsTypes) {
    EXPECT_TRUE(valueFromJson(QJsonValue()).isNull());
    EXPECT_EQ(valueFromJson(QJsonValue(3)).type(), Value::Type::Int32);
    EXPECT_EQ(valueFromJson(QJsonValue(2.5)).type(), Value::Type::Double);
    EXPECT_EQ(valueFromJson(QJsonValue(true)).type(), Value::Type::Bool);
    EXPECT_EQ(valueFromJson(QJsonValue("2026-03-16T15:30:00")).toDate(), Date::fromParts(2026, 3, 16, 15, 30));
    EXPECT_EQ(valueFromJson(QJsonValue("2026-03-16")).type(), Value::Type::Text) << "only a full date and time is a date";
    EXPECT_EQ(Value(Int16(7)).toJson().toInt(), 7);
}
