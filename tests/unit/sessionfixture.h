// sessionfixture.h - a session whose program stands in a directory of its own, with its texts caught.

#ifndef RAKOVA_SESSIONFIXTURE_H
#define RAKOVA_SESSIONFIXTURE_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "capture.h"
#include "rk.h"
#include "tempdir.h"

class SessionFixture : public ::testing::Test {
protected:
    void SetUp() override {
        m_cwd = std::filesystem::current_path();
        rkCpuTicker::m_freqMHz = 2000;
        pSession = new rkSession;
    }
    void TearDown() override { std::filesystem::current_path(m_cwd); }

    // Session of another class, as a test file registers it.
    template <class Session>
    static Session *replaceSession() {
        delete pSession;
        Session *session = new Session;
        rkRegSession(session);
        return session;
    }

    std::string path(std::string const &name) const { return m_dir.path(name); }
    void write(std::string const &name, std::string const &text) const { m_dir.write(name, text); }
    std::string read(std::string const &name) const { return fileText(m_dir / name); }
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

    void catchLog() {
        g_ostrm.setMsgLevel(MsgResult);
        m_log = std::make_unique<Capture<rkOStream>>(g_ostrm);
    }
    std::string log() { return m_log->text(); }

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
        CaptureFile file;
        fflush(stdout);
        int console = dup(1);
        dup2(fileno(file.m_stream.m_file), 1);
        int status = pSession->run(argc(), argv());
        fflush(stdout);
        dup2(console, 1);
        close(console);
        text = file.text();
        return status;
    }

    TempDir m_dir;
    std::filesystem::path m_cwd;
    std::vector<std::string> m_args;
    std::vector<char *> m_argv;
    std::unique_ptr<Capture<rkOStream>> m_log;
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
