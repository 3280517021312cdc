// program.h - starts the built program as a user does, and reads what it leaves behind.

#ifndef RAKOVA_TESTS_PROGRAM_H
#define RAKOVA_TESTS_PROGRAM_H

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "process.h"

using Lines = std::vector<std::string>;

inline Lines linesIn(std::string const &text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// The cells of a row of a table.
inline Lines cellsIn(std::string const &line) {
    Lines cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
    return cells;
}

inline Lines linesWith(Lines const &lines, std::string const &text) {
    Lines found;
    for (std::string const &line : lines) {
        if (line.find(text) != std::string::npos) found.push_back(line);
    }
    return found;
}

struct Outcome {
    int status;  // exit status; -1 for a program that a signal ended
    Lines lines; // standard output and error
    std::string text() const {
        std::string all;
        for (std::string const &line : lines) all += line + "\n";
        return all;
    }
};

// A directory of its own, gone with the test; the program runs there.
class Program : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "rakova_cli_XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        m_dir = name;
    }
    void TearDown() override { std::filesystem::remove_all(m_dir); }

    std::string path(std::string const &name) const { return m_dir + "/" + name; }
    Lines file(std::string const &name) const {
        std::ifstream stream(path(name));
        EXPECT_TRUE(stream) << "no file " << name;
        return linesIn(std::string(std::istreambuf_iterator<char>(stream), {}));
    }

    // args are words of the shell. libraries: LD_LIBRARY_PATH, or none if it is empty.
    Outcome run(std::string const &args, std::string const &libraries = "") const {
        std::string command = "env -u LD_LIBRARY_PATH ";
        if (!libraries.empty()) command += "LD_LIBRARY_PATH='" + libraries + "' ";
        return shell(command + "'" RAKOVA "' " + args + " 2>&1 </dev/null");
    }

    // A command of the shell, in the directory of the test. Only standard output is caught.
    Outcome shell(std::string const &command) const {
        int errors = dup(STDERR_FILENO);
        Start start;
        start.words = {"/bin/sh", "-c", command};
        start.dir = m_dir;
        start.prepare = [errors] { dup2(errors, STDERR_FILENO); };
        start.seconds = 280;
        Ended ended = runToEnd(start);
        close(errors);
        return Outcome{ended.status, linesIn(ended.text)};
    }

    void write(std::string const &name, std::string const &text) const { std::ofstream(path(name)) << text; }

    std::string m_dir;
};

// Three calls a parameter set: quick, and free of the questions of accuracy.
inline const std::string quick = "-B -LPERF -dMethod=Manual -dNumLoops=3 ";

#endif
