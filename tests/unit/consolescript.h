// consolescript.h - plays the user at the console.

#ifndef RAKOVA_TESTS_CONSOLESCRIPT_H
#define RAKOVA_TESTS_CONSOLESCRIPT_H

#include "capture.h"
#include "rkistream.h"

// While it lives, the lines of answers are typed at the console, and the questions are kept.
class ConsoleScript {
public:
    explicit ConsoleScript(std::string const &answers)
        : m_answers(answers), m_oldIn(c_in.m_file), m_oldOut(c_out.m_file) {
        c_in.m_file = m_answers.m_stream.m_file;
        c_out.m_file = m_questions.m_stream.m_file;
    }
    ~ConsoleScript() {
        g_istrm.deleteIStream();
        c_in.m_file = m_oldIn;
        c_out.m_file = m_oldOut;
    }
    ConsoleScript(ConsoleScript const &) = delete;
    ConsoleScript &operator=(ConsoleScript const &) = delete;

    std::string questions() { return m_questions.text(); }

private:
    CaptureFile m_answers;
    CaptureFile m_questions;
    FILE *m_oldIn;
    FILE *m_oldOut;
};

#endif
