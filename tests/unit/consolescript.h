// consolescript.h - plays the user at the console, and keeps what the program prints.

#ifndef RAKOVA_CONSOLESCRIPT_H
#define RAKOVA_CONSOLESCRIPT_H

#include <stdio.h>

#include <string>

#include "rkistream.h"
#include "rkstream.h"

// A file that is gone after the test.
class ScriptFile {
public:
    explicit ScriptFile(std::string const &text = "") : m_file(tmpfile()) {
        fputs(text.c_str(), m_file);
        rewind(m_file);
    }
    ~ScriptFile() { fclose(m_file); }
    ScriptFile(ScriptFile const &) = delete;
    ScriptFile &operator=(ScriptFile const &) = delete;

    // All that the file holds; what is written later goes behind it.
    std::string text() const {
        std::string all;
        fflush(m_file);
        rewind(m_file);
        for (int c = fgetc(m_file); c != EOF; c = fgetc(m_file)) all += static_cast<char>(c);
        fseek(m_file, 0, SEEK_END);
        return all;
    }

    FILE *m_file;
};

// While it lives, g_ostrm writes here too, at the levels of a run with results.
class Printed {
public:
    explicit Printed(OutputLevel level = 7) : m_oldLevel(g_ostrm.outLevel()) {
        m_stream.m_file = m_file.m_file;
        g_ostrm.push_back(&m_stream);
        g_ostrm.setOutLevel(level);
    }
    ~Printed() {
        for (auto i = g_ostrm.begin(); i != g_ostrm.end(); ++i) {
            if (*i != &m_stream) continue;
            g_ostrm.erase(i);
            break;
        }
        g_ostrm.setOutLevel(m_oldLevel);
        m_stream.m_file = nullptr;
    }
    Printed(Printed const &) = delete;
    Printed &operator=(Printed const &) = delete;

    std::string text() const { return m_file.text(); }

private:
    ScriptFile m_file;
    o_stream m_stream{nullptr};
    OutputLevel m_oldLevel;
};

// While it lives, the lines of answers are typed at the console, and the questions are kept.
class ConsoleScript {
public:
    explicit ConsoleScript(std::string const &answers)
        : m_answers(answers), m_oldIn(c_in.m_file), m_oldOut(c_out.m_file) {
        c_in.m_file = m_answers.m_file;
        c_out.m_file = m_questions.m_file;
    }
    ~ConsoleScript() {
        g_istrm.deleteIStream();
        c_in.m_file = m_oldIn;
        c_out.m_file = m_oldOut;
    }
    ConsoleScript(ConsoleScript const &) = delete;
    ConsoleScript &operator=(ConsoleScript const &) = delete;

    std::string questions() const { return m_questions.text(); }

private:
    ScriptFile m_answers;
    ScriptFile m_questions;
    FILE *m_oldIn;
    FILE *m_oldOut;
};

#endif
