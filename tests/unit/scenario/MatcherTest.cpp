#include "Matcher.h"
#include <QJsonArray>
#include <QJsonDocument>
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

const char* const kEvents = R"({"events": [
    {"at": "t1", "show": "frmSteplet", "caption": "Steplets"},
    {"at": "t2", "msgbox": {"title": " Steplets", "answer": "OK"}},
    {"at": "t3", "report": {"number": "9"}},
    {"at": "t4", "unload": "frmSteplet"}]})";

struct Case {
    const char* pattern;
    const char* actual; // nullptr: the event list above
    bool matches;
};

} // namespace

// Each operator matching what it should is shown by the scenarios whose expectations use it;
// here what it must refuse, and the finer points no scenario leans on.
TEST(Match, PatternsAgainstTranscripts)
{
    const Case cases[] = {
        // Members the pattern does not name are free; the ones it names must be there.
        {R"({"a": 1})", R"({"a": 1, "b": 2})", true},
        {R"({"a": {"x": "y"}})", R"({"a": {"x": "y", "z": null}})", true},
        {R"({"a": 1, "c": 3})", R"({"a": 1, "b": 2})", false},
        {"1", "1.0", true},
        {R"("1")", "1", false},
        // Array patterns match in order; one element cannot stand for two patterns.
        {R"({"events": [{"unload": "frmSteplet"}, {"show": "frmSteplet"}]})", nullptr, false},
        {R"({"events": [{"show": "frmSteplet"}, {"show": "frmSteplet"}]})", nullptr, false},
        // An earlier looser pattern leaves room for a later one.
        {R"([{"x": 1}, {"y": 2}])", R"([{"x": 1, "y": 2}, {"y": 2}])", true},
        {R"([{"x": 1}, {"x": 1, "y": 2}])", R"([{"x": 1, "y": 2}, {"x": 1}])", false},
        {R"({"RecurrencePattern": {"$absent": true}})", R"({"RecurrencePattern": {}})", false},
        {R"({"status": {"$present": true}})", R"({"status": null})", true},
        {R"({"events": {"$count": 4, "$items": [{"at": "t4"}, {"at": "t2"}]}})", nullptr, false},
        {R"({"events": {"$count": 0}})", R"({"events": "none"})", false},
        {R"({"$exactly": [1]})", R"([1, 2])", false},
        // $prefix and $contains look into texts only.
        {R"({"$prefix": "X:"})", R"("\r\nX:")", false},
        {R"({"$contains": "Template6"})", R"("\r\nX:frmProcessTasks: CreateTaskFromTemplate5:Line 420")", false},
        {R"({"$contains": "2"})", "12", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(mismatch(c.pattern, c.actual ? c.actual : kEvents).isEmpty(), c.matches) << c.pattern;
}

TEST(Match, TheDifferenceNamesThePathAndWhatWasFound)
{
    const std::pair<const char*, const char*> cases[][2] = {
        {{R"({"settings": {"Task Selection": 3}})", R"({"settings": {"Task Selection": 2}})"},
         {"settings.Task Selection: expected 3, found 2", nullptr}},
        {{R"({"status": {"$present": true}})", "{}"}, {"status: expected to be present, but it is missing", nullptr}},
        {{R"({"events": {"$count": 3}})", kEvents}, {"events: expected 3 elements, found 4", nullptr}},
        {{R"({"events": {"$countOf": {"unload": "frmSteplet"}, "n": 2}})", kEvents},
         {R"(events: expected 2 elements matching {"unload":"frmSteplet"}, found 1)", nullptr}},
        {{R"({"events": {"$none": {"report": {"$present": true}}}})", kEvents},
         {"events: expected no element matching", "element 2"}},
        {{R"({"events": [{"show": "frmSteplet"}, {"msgbox": {"answer": "Yes"}}]})", kEvents},
         {"events: no element from index 1 on (of 4) matches pattern 1", "\"answer\":\"Yes\""}},
    };
    for (const auto& [in, out] : cases) {
        const QString why = mismatch(in.first, in.second);
        if (out.second) {
            EXPECT_TRUE(why.startsWith(QLatin1String(out.first))) << why.toStdString();
            EXPECT_TRUE(why.contains(QLatin1String(out.second))) << why.toStdString();
        } else {
            EXPECT_EQ(why, QLatin1String(out.first));
        }
    }
}

TEST(CheckPattern, NamesTheMalformedOperatorAndItsPlace)
{
    const std::pair<const char*, const char*> cases[] = {
        {R"({"events": [{"a": 1}, {"$cont": 2}]})", "expect.events[1]: unknown operator \"$cont\""},
        {R"({"n": {"$count": -1}})", "expect.n.$count: expected a whole number, not negative"},
        {R"({"n": {"$countOf": {"a": 1}}})", "expect.n: expected {\"$countOf\": pattern, \"n\": N}"},
        {R"({"n": {"$prefix": 3}})", "expect.n: expected {\"$prefix\": \"text\"}"},
        {R"({"e": {"$count": 2, "$items": [{"x": {"$prefix": "a"}}]}})", ""},
    };
    for (const auto& [pattern, why] : cases) EXPECT_EQ(checkPattern(json(pattern), "expect"), QLatin1String(why)) << pattern;
}
