// sessionfixture.h - a session whose program stands in a directory of its own, with its texts caught.

#ifndef RAKOVA_SESSIONFIXTURE_H
#define RAKOVA_SESSIONFIXTURE_H

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "rk.h"

class SessionFixture : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/rakova_session_XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        m_dir = pattern;
        m_cwd = std::filesystem::current_path();
        rkCpuTicker::m_freqMHz = 2000;
        pSession = new rkSession;
    }
    void TearDown() override {
        std::filesystem::current_path(m_cwd);
        std::filesystem::remove_all(m_dir);
    }

    // Session of another class, as a test file registers it.
    template <class Session>
    static Session *replaceSession() {
        delete pSession;
        Session *session = new Session;
        rkRegSession(session);
        return session;
    }

    std::string path(std::string const &name) const { return m_dir + "/" + name; }
    void write(std::string const &name, std::string const &text) const { std::ofstream(path(name)) << text; }
    std::string read(std::string const &name) const {
        std::ifstream file(path(name));
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }
    bool exists(std::string const &name) const { return std::filesystem::exists(path(name)); }

    // The program is "prog" in the directory of the test.
    void setArgs(std::vector<std::string> const &args) {
        m_args = args;
        m_args.insert(m_args.begin(), path("prog"));
        m_argv.clear();
        for (std::string &arg : m_args) m_argv.push_back(arg.data());
        m_argv.push_back(nullptr);
    }
    int argc() const { return static_cast<int>(m_args.size()); }
    char **argv() { return m_argv.data(); }

    // Sends what goes to g_ostrm into a file, which g_ostrm closes at the exit.
    void catchLog() {
        m_log = new o_stream(tmpfile());
        g_ostrm.setMsgLevel(MsgResult);
        g_ostrm.push_back(m_log);
    }
    static std::string log() { return textOf(m_log->m_file); }

    // The first steps of a run, up to the keys.
    bool parse(std::vector<std::string> const &args) {
        setKelEnvironment();
        pSession->initSession();
        catchLog();
        setArgs(args);
        return pSession->parseCommandLine(argc(), argv());
    }

    // A whole run; the text is all that reached standard output.
    int run(std::vector<std::string> const &args, std::string &text) {
        setArgs(args);
        FILE *file = tmpfile();
        fflush(stdout);
        int console = dup(1);
        dup2(fileno(file), 1);
        int status = pSession->run(argc(), argv());
        fflush(stdout);
        dup2(console, 1);
        close(console);
        text = textOf(file);
        fclose(file);
        return status;
    }

    static std::string textOf(FILE *file) {
        fflush(file);
        std::string text;
        rewind(file);
        for (int c; (c = getc(file)) != EOF;) text += static_cast<char>(c);
        return text;
    }

    std::string m_dir;
    std::filesystem::path m_cwd;
    std::vector<std::string> m_args;
    std::vector<char *> m_argv;
    static inline o_stream *m_log = nullptr;
};

// A library core that notes what is asked of it.
struct FakeCore {
    static inline int initStatus = 0, initCpuStatus = 0, threadsStatus = 0;
    static inline int inits = 0, cpu = -1, threads = 0, binds = 0;

    static int init() { return ++inits, initStatus; }
    static int initCpu(int code) { return cpu = code, initCpuStatus; }
    static int setThreads(int n) { return threads = n, threadsStatus; }
    static char const *statusString(int status) { return status < 0 ? "no such thing" : "take care"; }
    static void bind() {
        ++binds;
        kel_Init = init;
        kel_InitCpu = initCpu;
        kel_SetNumThreads = setThreads;
        kel_GetStatusString = statusString;
    }
};

#endif
