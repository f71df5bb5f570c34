#include "Matcher.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include "QStringPrinting.h"
#include <gtest/gtest.h>

using namespace steplets::scenario;

namespace {

QJsonValue json(const char* text)
{
    // Wrapped so that scalars can be written too.
    const QJsonDocument doc = QJsonDocument::fromJson(QByteArray("[") + text + "]");
    EXPECT_TRUE(doc.isArray()) << text;
    return doc.array().at(0);
}

QString mismatch(const char* pattern, const char* actual) { return firstMismatch(json(pattern), json(actual)); }
bool matches(const char* pattern, const char* actual) { return mismatch(pattern, actual).isEmpty(); }

const char* const kEvents = R"({"events": [
    {"at": "t1", "show": "frmSteplet", "caption": "Steplets"},
    {"at": "t2", "msgbox": {"title": " Steplets", "answer": "OK"}},
    {"at": "t3", "report": {"number": "9"}},
    {"at": "t4", "unload": "frmSteplet"}]})";

} // namespace

TEST(MatchObjects, MembersNotNamedInThePatternAreFree)
{
    EXPECT_TRUE(matches(R"({"a": 1})", R"({"a": 1, "b": 2})"));
    EXPECT_TRUE(matches(R"({"a": {"x": "y"}})", R"({"a": {"x": "y", "z": null}})"));
    EXPECT_FALSE(matches(R"({"a": 1, "c": 3})", R"({"a": 1, "b": 2})"));
}

TEST(MatchObjects, DifferenceNamesThePathAndBothValues)
{
    EXPECT_EQ(mismatch(R"({"settings": {"Task Selection": 3}})", R"({"settings": {"Task Selection": 2}})"),
              "settings.Task Selection: expected 3, found 2");
    EXPECT_EQ(mismatch(R"({"store": {"local": {"t": [{"ID": 1, "Name": "a"}]}}})",
                       R"({"store": {"local": {"t": [{"ID": 1, "Name": "b"}]}}})").left(40),
              "store.local.t: no element from index 0 o");
    EXPECT_TRUE(mismatch(R"({"session": {"ErrorTrail": ""}})", R"({"session": {}})").startsWith("session.ErrorTrail: missing"));
}

TEST(MatchScalars, EqualityIsByTypeAndValue)
{
    EXPECT_TRUE(matches("1", "1.0"));
    EXPECT_TRUE(matches("null", "null"));
    EXPECT_TRUE(matches(R"("a b")", R"("a b")"));
    EXPECT_FALSE(matches(R"("1")", "1"));
    EXPECT_FALSE(matches("true", "-1"));
    EXPECT_FALSE(matches("null", R"("")"));
    EXPECT_FALSE(matches(R"(" Steplets")", R"("Steplets")"));
}

TEST(MatchArrays, ElementsMatchInOrderWithGaps)
{
    EXPECT_TRUE(matches(R"({"events": [{"show": "frmSteplet"}, {"unload": "frmSteplet"}]})", kEvents));
    EXPECT_TRUE(matches(R"({"events": [{"report": {"number": "9"}}]})", kEvents));
    EXPECT_TRUE(matches(R"({"events": []})", kEvents));
    // Order counts, and one element cannot stand for two patterns.
    EXPECT_FALSE(matches(R"({"events": [{"unload": "frmSteplet"}, {"show": "frmSteplet"}]})", kEvents));
    EXPECT_FALSE(matches(R"({"events": [{"show": "frmSteplet"}, {"show": "frmSteplet"}]})", kEvents));
}

TEST(MatchArrays, AnEarlierLooserPatternLeavesRoomForALaterOne)
{
    EXPECT_TRUE(matches(R"([{"x": 1}, {"y": 2}])", R"([{"x": 1, "y": 2}, {"y": 2}])"));
    EXPECT_FALSE(matches(R"([{"x": 1}, {"x": 1, "y": 2}])", R"([{"x": 1, "y": 2}, {"x": 1}])"));
}

TEST(MatchArrays, DifferenceNamesThePatternThatFoundNothing)
{
    const QString why = mismatch(R"({"events": [{"show": "frmSteplet"}, {"msgbox": {"answer": "Yes"}}]})", kEvents);
    EXPECT_TRUE(why.startsWith("events: no element from index 1 on (of 4) matches pattern 1")) << why.toStdString();
    EXPECT_TRUE(why.contains("\"answer\":\"Yes\"")) << why.toStdString();
}

TEST(MatchOperators, AbsentAndPresent)
{
    EXPECT_TRUE(matches(R"({"RecurrencePattern": {"$absent": true}})", R"({"Subject": "a"})"));
    EXPECT_FALSE(matches(R"({"RecurrencePattern": {"$absent": true}})", R"({"RecurrencePattern": {}})"));
    EXPECT_TRUE(matches(R"({"store": {"link": {"$absent": true}, "local": {"$present": true}}})", R"({"store": {"local": {}}})"));
    EXPECT_TRUE(matches(R"({"status": {"$present": true}})", R"({"status": null})"));
    EXPECT_EQ(mismatch(R"({"status": {"$present": true}})", R"({})"), "status: expected to be present, but it is missing");
}

TEST(MatchOperators, CountWithAndWithoutItems)
{
    EXPECT_TRUE(matches(R"({"events": {"$count": 4}})", kEvents));
    EXPECT_EQ(mismatch(R"({"events": {"$count": 3}})", kEvents), "events: expected 3 elements, found 4");
    EXPECT_TRUE(matches(R"({"events": {"$count": 4, "$items": [{"at": "t2"}, {"at": "t4"}]}})", kEvents));
    EXPECT_FALSE(matches(R"({"events": {"$count": 4, "$items": [{"at": "t4"}, {"at": "t2"}]}})", kEvents));
    EXPECT_FALSE(matches(R"({"events": {"$count": 0}})", R"({"events": "none"})"));
}

TEST(MatchOperators, ExactlyComparesElementByElement)
{
    EXPECT_TRUE(matches(R"({"$exactly": [1, {"a": 2}]})", R"([1, {"a": 2, "b": 3}])"));
    EXPECT_FALSE(matches(R"({"$exactly": [1]})", R"([1, 2])"));
    EXPECT_EQ(mismatch(R"({"$exactly": [1, 3]})", R"([1, 2])"), "[1]: expected 3, found 2");
}

TEST(MatchOperators, NoneAndCountOf)
{
    EXPECT_TRUE(matches(R"({"events": {"$none": {"msgbox": {"answer": "Cancel"}}}})", kEvents));
    const QString why = mismatch(R"({"events": {"$none": {"report": {"$present": true}}}})", kEvents);
    EXPECT_TRUE(why.startsWith("events: expected no element matching")) << why.toStdString();
    EXPECT_TRUE(why.contains("element 2")) << why.toStdString();
    EXPECT_TRUE(matches(R"({"events": {"$countOf": {"at": {"$prefix": "t"}}, "n": 4}})", kEvents));
    EXPECT_TRUE(matches(R"({"events": {"$countOf": {"report": {"$present": true}}, "n": 1}})", kEvents));
    EXPECT_EQ(mismatch(R"({"events": {"$countOf": {"unload": "frmSteplet"}, "n": 2}})", kEvents),
              R"(events: expected 2 elements matching {"unload":"frmSteplet"}, found 1)");
}

TEST(MatchOperators, PrefixOnTextsOnly)
{
    EXPECT_TRUE(matches(R"({"$prefix": "\r\nX:modInitialize"})", R"("\r\nX:modInitialize: GetRegSettings")"));
    EXPECT_FALSE(matches(R"({"$prefix": "X:"})", R"("\r\nX:")"));
    EXPECT_FALSE(matches(R"({"$prefix": "1"})", "12"));
}

TEST(MatchOperators, ContainsFindsATextAnywhereInTextsOnly)
{
    const char* location = R"("\r\nX:frmProcessTasks: CreateTaskFromTemplate5:Line 420")";
    EXPECT_TRUE(matches(R"({"$contains": "CreateTaskFromTemplate5:Line "})", location));
    EXPECT_TRUE(matches(R"({"$contains": "\r\nX:frmProcessTasks"})", location));
    EXPECT_FALSE(matches(R"({"$contains": "CreateTaskFromTemplate6"})", location));
    EXPECT_FALSE(matches(R"({"$contains": "2"})", "12"));
    EXPECT_EQ(mismatch(R"({"s": {"$contains": "b"}})", R"({"s": "acd"})"), R"(s: expected a text containing "b", found "acd")");
    EXPECT_EQ(checkPattern(json(R"({"n": {"$contains": ["x"]}})"), "expect"), "expect.n: expected {\"$contains\": \"text\"}");
}

TEST(CheckPattern, NamesTheMalformedOperatorAndItsPlace)
{
    EXPECT_EQ(checkPattern(json(R"({"events": [{"a": 1}, {"$cont": 2}]})"), "expect"),
              "expect.events[1]: unknown operator \"$cont\"");
    EXPECT_EQ(checkPattern(json(R"({"n": {"$count": -1}})"), "expect"), "expect.n.$count: expected a whole number, not negative");
    EXPECT_EQ(checkPattern(json(R"({"n": {"$countOf": {"a": 1}}})"), "expect"),
              "expect.n: expected {\"$countOf\": pattern, \"n\": N}");
    EXPECT_EQ(checkPattern(json(R"({"n": {"$prefix": 3}})"), "expect"), "expect.n: expected {\"$prefix\": \"text\"}");
    EXPECT_EQ(checkPattern(json(R"({"n": {"$none": {"$absent": "yes"}}})"), "expect"),
              "expect.n.$none: expected {\"$absent\": true}");
    EXPECT_TRUE(checkPattern(json(R"({"e": {"$count": 2, "$items": [{"x": {"$prefix": "a"}}]}})"), "expect").isEmpty());
}
