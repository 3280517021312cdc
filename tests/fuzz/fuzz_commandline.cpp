// fuzz_commandline.cpp - the keys of the program, up to the list of tests and the help.
// Input: an argument a line; behind a first line "cfg", the configuration file of a start without arguments.

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "fuzz.h"
#include "rk.h"

// ---- files -------------------------------------------------------------------------

namespace {

std::string s_cfg;     // the configuration file, "" for none
rkCommandList *s_keys; // of the run

char s_ini[] = "[Rakova]\nMethod = Auto\n[keliSAD16x16_8u32s]\nsize = 16x16\n";

bool startsWith(std::string const &text, std::string const &start) {
    return text.compare(0, start.size(), start) == 0;
}

// A file stands below a directory of the session unless the user gave the whole path.
bool isAsked(std::string const &path) {
    if (startsWith(path, str(rkSession::m_outDir)) || startsWith(path, str(rkSession::m_inDir))) return true;
    if (!isAbsolutePath(rk(path))) return false;
    for (rkCommandKey const &key : *s_keys) {
        if (str(key.m_arg) == path) return true;
    }
    return false;
}

} // namespace

extern "C" FILE *__real_fopen(char const *name, char const *mode);

// Every file that a key names: writing goes nowhere, reading finds an ini file, and a name with "none" in it
// cannot be opened. The framework opens text files alone; what the fuzzer writes is binary.
extern "C" FILE *__wrap_fopen(char const *name, char const *mode) {
    if (strchr(mode, 'b')) return __real_fopen(name, mode);
    if (strcmp(name, "rakova.cfg") == 0) {
        return s_cfg.empty() ? nullptr : fmemopen(s_cfg.data(), s_cfg.size(), "r");
    }
    if (strcmp(name, "/fuzz/bin/rakova.cfg") == 0 && s_keys->empty()) return nullptr;
    require(isAbsolutePath(name), "relative directories count from the program", name);
    require(isAsked(name), "a key opens the file that it names", name);
    if (strstr(name, "none")) {
        errno = ENOENT;
        return nullptr;
    }
    return mode[0] == 'r' ? fmemopen(s_ini, sizeof s_ini - 1, "r") : fopencookie(nullptr, "w", {});
}

// ---- one session -------------------------------------------------------------------

namespace {

class Session : public rkSession {
public:
    // The rows and the conditions of a session live to the end of the process; here there are many sessions.
    ~Session() override {
        for (rkOption *option : m_options) delete option;
        for (RunCondition *condition : *m_conditions) delete condition;
        delete m_conditions;
    }
};

// What the console would show.
class Console {
public:
    Console() : m_stream(open_memstream(&m_text, &m_size)) { g_ostrm.push_back(&m_stream); }
    ~Console() {
        fclose(m_stream.m_file);
        m_stream.m_file = nullptr;
        free(m_text);
    }
    Console(Console const &) = delete;
    Console &operator=(Console const &) = delete;

    std::string text() {
        fflush(m_stream.m_file);
        return std::string(m_text, m_size);
    }

private:
    char *m_text = nullptr;
    size_t m_size = 0;
    o_stream m_stream;
};

int coreInit() {
    return 0;
}

void bindCore() {
    kel_Init = coreInit;
}

// The keys of the library and the list of tests are there only if something has registered.
bool registerAll() {
    rkRegKelEnvironment(bindCore);
    setKelEnvironment();
    rkRegTest(new __rkTarvoCpuTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), "__rkTarvoCpu", "../rk",
                                   "__rkTarvoCpuTest/Tarvo CPU information"));
    return true;
}

void resetSwitches() {
    g_ostrm.erase(g_ostrm.begin()); // the console of the run, which is not a file
    g_ostrm.close();
    for (rkCStream *table : {&g_cstrm, &g_qstrm, &g_ustrm, &g_mstrm}) table->close();
    g_istrm.close();
    g_istrm.m_data.clear();
    g_tool.m_useData = false;
    rkTool::m_priority = 0;
    rkTest::m_hot = 0;
    rkTest::m_pressing = rkTest::m_cache = false;
    rkTestList::m_startFunc = "";
    s_hintArg = 0;
    s_hintHide = true;
    s_version = false;
    s_cpuType = -1;
    s_numThreads = 0;
}

// ---- properties ----------------------------------------------------------------------

// What follows a key is in its argument, and no key is lost or made up.
void checkKeys(std::vector<std::string> const &args, rkCommandList const &keys) {
    size_t count = 0;
    for (std::string const &arg : args) count += isKeyString(arg.c_str());
    require(static_cast<size_t>(keys.size()) == count, "there are as many keys as key words");
    for (rkCommandKey const &key : keys) {
        rkString last;
        require(keys.isKey(key.m_key) && keys.getArg(key.m_key, last), "a key of the list is found");
    }
}

// The words of one line and the same words as arguments are the same keys.
void checkLine(std::string const &line) {
    rkStringList words;
    rkString(line.c_str()).parse(words, " ;\t\r\n");
    rkCommandList fromLine, fromWords;
    fromLine.setArgs(line.c_str());
    fromWords.setArgs(words);
    require(fromLine.size() == fromWords.size(), "a line is its words", line);
    checkKeys(listed(words), fromLine);
}

// Every key has its line in the report, in the order given.
void checkReport(std::string const &shown, rkCommandList const &keys) {
    size_t at = shown.find("Command line options: ");
    if (keys.empty()) return;
    require(at != std::string::npos, "the report has its head", shown);
    for (rkCommandKey const &key : keys) {
        std::string entry = std::string("-") + key.m_key + str(key.m_arg) + ": ";
        at = shown.find(entry, at);
        require(at != std::string::npos, "a key stands in the report", entry);
        at += entry.size();
    }
}

void checkModes(Session const &session, rkCommandList const &keys) {
    if (session.m_batch) require(session.m_askMode == 0, "a batch asks nothing");
    if (!session.m_batch) require(session.m_askMode >= 1 && session.m_askMode <= 15, "something is asked");
    require(session.m_batch == keys.isKey('B'), "only -B makes a batch");
    require((session.m_levelMode & ~127) == 0 && (session.m_levelMode & 1), "errors are always shown");
    bool exits = keys.isKey('e') || keys.isKey('h') || keys.isKey('?') || keys.isKey('v');
    require(exits == (rkSession::m_exitLevel > 0), "four keys end the run early");
    require(rkTool::m_priority >= 0 && rkTool::m_priority <= 3, "there are three priorities");
}

void runSession(std::vector<std::string> &args, rkCommandList const &keys) {
    std::vector<char *> argv = {const_cast<char *>("/fuzz/bin/rakova")};
    for (std::string &arg : args) argv.push_back(arg.data());
    Console console;
    Session session;
    session.initSession();
    bool started = session.parseCommandLine(static_cast<int>(argv.size()), argv.data());
    if (started) {
        require(!session.m_unopenedFile, "a file that does not open ends the run");
        checkModes(session, keys);
        bool stops = session.quickOutput();
        require(stops == (rkSession::m_exitLevel > 0), "what ends the run early ends it");
    }
    checkReport(console.text(), keys);
    resetSwitches();
}

std::vector<std::string> argsOf(FuzzInput &input) {
    std::vector<std::string> args = input.lines();
    for (std::string &arg : args) arg = cText(arg);
    return args;
}

// The file's first line as far as the session reads it.
std::string cfgLine() {
    const size_t longest = 1023;
    std::string line = s_cfg.substr(0, s_cfg.find('\n'));
    return cText(line.substr(0, longest));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    static const bool s_registered = registerAll();
    (void)s_registered;
    FuzzInput input(data, size);
    std::vector<std::string> args;
    rkCommandList keys;
    s_keys = &keys;
    s_cfg = "";
    if (size >= 4 && memcmp(data, "cfg\n", 4) == 0) {
        input.line();
        s_cfg = input.rest();
        checkLine(cfgLine());
        keys.setArgs(cfgLine().c_str());
    } else {
        args = argsOf(input);
        rkStringList words;
        for (std::string const &arg : args) words.push_back(rk(arg));
        keys.setArgs(words);
        checkKeys(args, keys);
    }
    runSession(args, keys);
    return 0;
}
