// terminal.h - the program at a terminal of its own, with somebody who reads before typing.

#ifndef RAKOVA_TESTS_TERMINAL_H
#define RAKOVA_TESTS_TERMINAL_H

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

class Terminal {
public:
    // words: the program and its arguments.
    explicit Terminal(std::vector<std::string> words) {
        std::vector<char *> argv;
        for (std::string &word : words) argv.push_back(word.data());
        argv.push_back(nullptr);
        m_child = forkpty(&m_master, nullptr, nullptr, nullptr);
        if (m_child != 0) return;
        execv(argv[0], argv.data());
        _exit(127);
    }
    Terminal(Terminal const &) = delete;
    Terminal &operator=(Terminal const &) = delete;
    ~Terminal() {
        if (m_running) {
            kill(m_child, SIGKILL);
            waitpid(m_child, nullptr, 0);
        }
        close(m_master);
    }

    // True once the screen shows text behind what was waited for before; false if the program ends, or after
    // a minute.
    bool shows(std::string const &text) {
        size_t found;
        while ((found = m_screen.find(text, m_seen)) == std::string::npos) {
            if (!readMore(60000)) return false;
        }
        m_seen = found + text.size();
        return true;
    }
    // True if nothing more comes within the given time.
    bool isSilent(int milliseconds) { return m_seen == m_screen.size() && !readMore(milliseconds); }
    void type(std::string const &text) {
        for (size_t done = 0; done < text.size();) {
            ssize_t n = write(m_master, text.data() + done, text.size() - done);
            if (n <= 0) return;
            done += static_cast<size_t>(n);
        }
    }
    // The exit status; -1 for a program that a signal ended.
    int end() {
        while (readMore(60000)) {
        }
        int status;
        m_running = waitpid(m_child, &status, 0) != m_child;
        return !m_running && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // All that was shown, with the terminal's echo of what was typed.
    std::string const &screen() const { return m_screen; }

private:
    bool readMore(int milliseconds) {
        pollfd ready = {m_master, POLLIN, 0};
        if (poll(&ready, 1, milliseconds) <= 0) return false;
        char buffer[4096];
        ssize_t n = read(m_master, buffer, sizeof buffer);
        if (n <= 0) return false;
        for (ssize_t i = 0; i < n; ++i) {
            if (buffer[i] != '\r') m_screen += buffer[i];
        }
        return true;
    }

    int m_master = -1;
    pid_t m_child = -1;
    bool m_running = true;
    std::string m_screen;
    size_t m_seen = 0;
};

#endif
