// process.h - a program under watch: its console a pipe, a file or a terminal, its time limited, its end told
// in full.

#ifndef RAKOVA_TESTS_PROCESS_H
#define RAKOVA_TESTS_PROCESS_H

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

enum ConsoleKind { ToPipe, ToFile, ToTerminal };

// What a program is started with.
struct Start {
    std::vector<std::string> words; // the program and its arguments
    std::string dir = "/";
    std::string input = "";             // all that standard input gives
    std::function<void()> prepare = {}; // the last thing in the child before the program takes over
    std::vector<std::string> env = {};  // NAME=value, in addition
    ConsoleKind console = ToPipe;
    int seconds = 60; // then it is killed
};

struct Ended {
    bool timedOut = false;
    int signal = 0;   // that ended it; 0 for a program that ended by itself
    int status = -1;  // exit status; -1 for a program that a signal ended
    std::string text; // standard output and error, without a terminal's returns
};

class Process {
public:
    explicit Process(Start start) : m_start(std::move(start)) {
        openConsole();
        m_child = fork();
        if (m_child == 0) become();
        if (m_write >= 0) ::close(m_write);
    }
    Process(Process const &) = delete;
    Process &operator=(Process const &) = delete;
    ~Process() {
        kill();
        if (!m_reaped) waitpid(m_child, nullptr, 0);
        for (FILE *file : {m_file, m_input}) {
            if (file) fclose(file);
        }
        if (m_read >= 0) ::close(m_read);
    }

    // Waits until so many bytes were shown. False if the program ends before, or the time
    // does.
    bool shows(size_t bytes) {
        while (shown() < bytes) {
            if (m_file) {
                usleep(1000);
                if (millisecondsLeft() == 0) return false;
            } else if (!readMore()) {
                return false;
            }
        }
        return true;
    }
    void kill() {
        if (!m_reaped) ::kill(m_child, SIGKILL);
    }
    // Nobody reads any more.
    void closeReader() {
        ::close(m_read);
        m_read = -1;
    }
    Ended end() {
        while (readMore()) {
        }
        Ended ended;
        ended.timedOut = !waitForEnd();
        if (ended.timedOut) {
            kill();
            waitForEnd();
        }
        if (WIFSIGNALED(m_status)) ended.signal = WTERMSIG(m_status);
        if (WIFEXITED(m_status)) ended.status = WEXITSTATUS(m_status);
        if (m_file) readFile();
        ended.text = m_text;
        return ended;
    }

private:
    using Clock = std::chrono::steady_clock;

    void openConsole() {
        m_input = tmpfile();
        fwrite(m_start.input.data(), 1, m_start.input.size(), m_input);
        fflush(m_input);
        rewind(m_input);
        int ends[2] = {-1, -1};
        if (m_start.console == ToFile) {
            m_file = tmpfile();
            m_write = dup(fileno(m_file));
        } else if (m_start.console == ToTerminal ? openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) == 0
                                                 : pipe(ends) == 0) {
            m_read = ends[0];
            m_write = ends[1];
            fcntl(m_read, F_SETFD, FD_CLOEXEC);
        }
    }
    [[noreturn]] void become() {
        dup2(fileno(m_input), STDIN_FILENO);
        dup2(m_write, STDOUT_FILENO);
        dup2(m_write, STDERR_FILENO);
        ::close(m_write);
        std::vector<char *> argv;
        for (std::string &word : m_start.words) argv.push_back(word.data());
        argv.push_back(nullptr);
        for (std::string &setting : m_start.env) putenv(setting.data());
        if (chdir(m_start.dir.c_str()) != 0) _exit(126);
        if (m_start.prepare) m_start.prepare();
        execv(argv[0], argv.data());
        _exit(127);
    }

    size_t shown() const {
        struct stat file;
        return m_file && fstat(fileno(m_file), &file) == 0 ? file.st_size : m_text.size();
    }
    int millisecondsLeft() const {
        auto left = m_deadline - Clock::now();
        return std::max(
            0, static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(left).count()));
    }
    bool readMore() {
        if (m_read < 0) return false;
        pollfd ready = {m_read, POLLIN, 0};
        if (poll(&ready, 1, millisecondsLeft()) <= 0) return false;
        char buffer[65536];
        ssize_t n = read(m_read, buffer, sizeof buffer);
        for (ssize_t i = 0; i < n; ++i) {
            if (m_start.console != ToTerminal || buffer[i] != '\r') m_text += buffer[i];
        }
        return n > 0;
    }
    void readFile() {
        rewind(m_file);
        char buffer[65536];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, m_file)) > 0;) m_text.append(buffer, n);
    }
    bool waitForEnd() {
        if (m_reaped) return true;
        do {
            m_reaped = waitpid(m_child, &m_status, WNOHANG) == m_child;
            if (!m_reaped) usleep(1000);
        } while (!m_reaped && millisecondsLeft() > 0);
        return m_reaped;
    }

    Start m_start;
    Clock::time_point m_deadline = Clock::now() + std::chrono::seconds(m_start.seconds);
    FILE *m_input = nullptr;
    FILE *m_file = nullptr; // of a console that is a file
    int m_read = -1, m_write = -1;
    pid_t m_child = -1;
    bool m_reaped = false;
    int m_status = 0;
    std::string m_text;
};

inline Ended runToEnd(Start start) {
    return Process(std::move(start)).end();
}

#endif
