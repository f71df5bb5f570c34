#include "session/SessionContext.h"
#include "session/modDLLErrHandler.h"
#include "platform/Guard.h"
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <vector>

using namespace steplets;

namespace {
struct Received { QString version, description, number, source, location; };
std::vector<Received> received;
int created = 0;

class ListReporter : public ErrorReporter {
public:
    void Report(const QString& v, const QString& d, const QString& n, const QString& s, const QString& l) override
    {
        received.push_back({v, d, n, s, l});
    }
};
} // namespace

// One process, one first failure: the whole story in one test.
TEST(ReportError, OnlyTheFirstFailureOfTheProcessReachesTheReporter)
{
    session().ports.errorReporter = [] { ++created; return std::make_unique<ListReporter>(); };
    modDLLErrHandler::InstallDiscipline();

    auto failing = [](long number) {
        Guard g("modTest: Failing");
        return g.orElse(false, [&] {
            g(20); throw Failure(number, "Boom " + QString::number(number), "Store");
            return true;
        });
    };
    EXPECT_FALSE(failing(-2147217865));
    EXPECT_FALSE(failing(3021));

    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(created, 1) << "no reporter is created for a later failure";
    EXPECT_EQ(received[0].version, modDLLErrHandler::VersionText());
    EXPECT_TRUE(QRegularExpression("^\\d+\\.\\d+\\.\\d+$").match(received[0].version).hasMatch());
    EXPECT_EQ(received[0].description, "Boom -2147217865");
    EXPECT_EQ(received[0].number, "-2147217865");
    EXPECT_EQ(received[0].source, "Store");
    EXPECT_EQ(received[0].location, "\r\nX:modTest: Failing:Line 20");
    EXPECT_EQ(modDLLErrHandler::FailureCount(), 2);
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:modTest: Failing\r\nX:modTest: Failing"));
}
