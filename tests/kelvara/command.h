// command.h - runs a command and collects what it writes.

#ifndef KELVARA_TEST_COMMAND_H
#define KELVARA_TEST_COMMAND_H

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

// The lines that the command writes; a command that fails fails the test.
inline std::vector<std::string> linesOf(const std::string &command) {
    std::string text;
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe) {
        ADD_FAILURE() << command;
        return {};
    }
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) text.append(buffer, n);
    EXPECT_EQ(0, pclose(pipe)) << command;
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

#endif
