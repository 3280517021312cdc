// badinput.h - what the tests of bad input share: a program in a directory of its own, and its orderly end.

#ifndef RAKOVA_TESTS_BADINPUT_H
#define RAKOVA_TESTS_BADINPUT_H

#include "program.h"

// The programs stand in the directory of the test, so that files without a path land there.
class BadInput : public Program {
protected:
    void SetUp() override {
        Program::SetUp();
        std::filesystem::create_symlink(RAKOVA, path("rakova"));
        std::filesystem::create_symlink(RAKOVA_BARE, path("bare"));
        std::filesystem::create_directory(path("dir"));
        write("plain", "a file\n");
    }

    Start starting(std::string const &program, Lines const &args) const {
        Start start;
        start.words = {path(program)};
        start.words.insert(start.words.end(), args.begin(), args.end());
        start.dir = m_dir;
        return start;
    }
    Ended runBare(Lines const &args, std::string const &input = "") const {
        Start start = starting("bare", args);
        start.input = input;
        return runToEnd(start);
    }
    std::string content(std::string const &name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }
};

// No signal, no end of the time.
inline void expectOrderlyEnd(Ended const &ended, int status = 0) {
    EXPECT_FALSE(ended.timedOut);
    EXPECT_EQ(ended.signal, 0) << ended.text.substr(0, 4000);
    EXPECT_EQ(ended.status, status) << ended.text.substr(0, 4000);
}

inline bool holds(std::string const &text, std::string const &part) {
    return text.find(part) != std::string::npos;
}

// The same bytes in every run. Without: characters that do not occur.
inline std::string noise(size_t size, std::string const &without = "") {
    std::string bytes;
    for (unsigned long long x = 88172645463325252ull; bytes.size() < size;) {
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        char c = static_cast<char>(x >> 32);
        if (without.find(c) == std::string::npos) bytes += c;
    }
    return bytes;
}

#endif
