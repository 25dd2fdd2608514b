// Runs the cases on one driver: driver-tests DRIVER [DOCTEST OPTION...]. Prints a line for each case.

#define DOCTEST_CONFIG_IMPLEMENT
#include "drivers/DriverLinePosix.h"

#include <cstdio>
#include <exception>
#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin::test;

namespace {

// "16550: a read never waits: passed", and what failed before it.
class CaseReporter : public doctest::IReporter {
public:
    explicit CaseReporter(const doctest::ContextOptions&) {}

    void test_case_start(const doctest::TestCaseData& data) override { testCase = &data; }
    void test_case_end(const doctest::CurrentTestCaseStats& stats) override {
        const bool isPassed = stats.failure_flags == doctest::TestCaseFailureReason::None;
        std::printf("%s: %s (%.1f s): %s\n", Driver().Name(), testCase->m_name, stats.seconds,
                    isPassed ? "passed" : "FAILED");
        std::fflush(stdout);
    }
    void test_case_exception(const doctest::TestCaseException& exception) override {
        std::printf("  %s: %s\n", testCase->m_name, exception.error_string.c_str());
    }
    void log_assert(const doctest::AssertData& check) override {
        if (!check.m_failed)
            return;
        std::printf("  %s:%d: %s is %s %s\n", check.m_file, check.m_line, check.m_expr, check.m_decomp.c_str(),
                    check.m_exception.c_str());
        for (int context = 0; context < get_num_active_contexts(); ++context) {
            std::ostringstream text;
            get_active_contexts()[context]->stringify(&text);
            std::printf("    %s\n", text.str().c_str());
        }
    }
    void log_message(const doctest::MessageData& message) override {
        std::printf("%s: %s\n", Driver().Name(), message.m_string.c_str());
    }
    void report_query(const doctest::QueryData&) override {}
    void test_run_start() override {}
    void test_run_end(const doctest::TestRunStats&) override {}
    void test_case_reenter(const doctest::TestCaseData&) override {}
    void test_case_skipped(const doctest::TestCaseData&) override {}
    void subcase_start(const doctest::SubcaseSignature&) override {}
    void subcase_end() override {}

private:
    const doctest::TestCaseData* testCase = nullptr;
};

REGISTER_REPORTER("case", 1, CaseReporter);

}

int main(int argumentCount, char** arguments) {
    try {
        const auto driver = MakeDriverLine(argumentCount > 1 ? arguments[1] : "");
        if (driver == nullptr) {
            std::fprintf(stderr, "usage: driver-tests DRIVER [DOCTEST OPTION...]\n");
            return 2;
        }
        SetDriver(*driver);
        doctest::Context context(argumentCount, arguments);
        context.setOption("reporters", "case");
        return context.run();
    } catch (const std::exception& failure) {
        std::printf("%s: the line (%s): FAILED\n", arguments[1], failure.what());
        return 1;
    }
}
