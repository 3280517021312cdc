// ownprocess.cpp - main of the unit tests that fill the whole framework: each case has a process of its own.

#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

using testing::UnitTest;

// True if the case passes, in a child in which nothing has run before.
static bool passes(std::string const &name) {
    fflush(nullptr);
    pid_t child = fork();
    if (child < 0) return false;
    if (child == 0) {
        testing::GTEST_FLAG(filter) = name;
        exit(RUN_ALL_TESTS());
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

static int runEach() {
    int failures = 0;
    for (int s = 0; s < UnitTest::GetInstance()->total_test_suite_count(); ++s) {
        testing::TestSuite const &suite = *UnitTest::GetInstance()->GetTestSuite(s);
        for (int i = 0; i < suite.total_test_count(); ++i) {
            std::string name = std::string(suite.name()) + "." + suite.GetTestInfo(i)->name();
            if (passes(name)) continue;
            ++failures;
            printf("failed in a process of its own: %s\n", name.c_str());
        }
    }
    return failures > 0;
}

// A run that lists or selects cases is an ordinary one.
int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    bool all = testing::GTEST_FLAG(filter) == "*" && !testing::GTEST_FLAG(list_tests);
    return all ? runEach() : RUN_ALL_TESTS();
}
