#include "kestro/results/connectionerrors.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using namespace kestro;

namespace {

std::string Printed(const KestroResult& result)
{
    std::ostringstream out;
    out << result;
    return out.str();
}

// What the handler leaves behind: the printed result and what reached the caller.
std::string Outcome(const boost::function<void()>& work)
{
    KestroResult result(results::RESULT_GENERIC_FAILURE, "untouched");
    std::string raised = "nothing";
    try {
        RunConnectionWork(work, result);
    } catch (const authentication_error& e) {
        raised = std::string("authentication_error: ") + e.what();
    } catch (const logindenied_error& e) {
        raised = std::string("logindenied_error: ") + e.what();
    } catch (const std::exception& e) {
        raised = std::string("other: ") + e.what();
    }
    return Printed(result) + " / " + raised;
}

void Fine() {}
void Refused() { throw authentication_error("401 from 10.0.0.5"); }
void MustChange() { throw logindenied_error("PasswordChangeRequired"); }
void Unreachable() { throw std::runtime_error("connection refused"); }

}  // namespace

TEST(ConnectionErrorsTest, LoginFailuresBecomeTheirRowsAndStillUnwind)
{
    const struct {
        void (*work)();
        const char* expected;
    } cases[] = {
        {Fine, "1 untouched / nothing"},
        {Refused, "12 Authentication failed. / authentication_error: 401 from 10.0.0.5"},
        {MustChange,
         "54 The password provided for this account must be changed before access is granted. / "
         "logindenied_error: PasswordChangeRequired"},
        {Unreachable, "1 untouched / other: connection refused"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.expected, Outcome(c.work));
}
