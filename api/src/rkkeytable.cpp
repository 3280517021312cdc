// rkkeytable.cpp - the key table of the session, and the way of the command line through it.

#include <stdio.h>

#include "rkcpu.h"
#include "rkistream.h"
#include "rkregister.h"
#include "rksession.h"

// ---- the table -----------------------------------------------------------------------

static const int noLibrary = -2; // of kel_Init

void rkSession::initOption(char key, rkString help, rkString (*info)(rkString),
                           void (*apply)(rkString, rkSession *), rkString descr, bool hidden) {
    m_options.push_back(new rkOption{key, hidden, help, info, apply, descr});
}

rkOption *rkSession::getOption(char key) {
    for (rkOption *option : m_options) {
        if (option->m_key == key) return option;
    }
    return nullptr;
}

void rkSession::addRows(char const *keys) {
    for (; *keys; ++keys) {
        rkOptionText const &text = rkFindOptionText(*keys);
        rkOptionAction const &action = rkFindOptionAction(*keys);
        initOption(*keys, text.m_help, action.m_info, action.m_apply, rkOptionDescr(text), action.m_hidden);
    }
}

void rkSession::buildKeyTable() {
    addRows("BAdiIPoOLrR");
    if (qKeys) addRows("qQ");
    addRows("uUgnplftFYH");
    if (kel_Init() != noLibrary) addRows("TN");
    addRows("SCsevh?");
}

// ---- one key ----------------------------------------------------------------------------

rkString rkSession::getExitInfo() {
    switch (m_exitLevel) {
        case 1:
            return "ignored because of -e option";
        case 2:
            return "ignored because of -h option";
        case 3:
            return "ignored because of -v option";
        default:
            return "ignored";
    }
}

// A key that its info calls ignored is applied all the same: a log asked for together with the help gets the
// help.
void rkSession::applyOption(char key, rkString arg) {
    m_report << "-" << key << arg << ": ";
    rkOption *option = getOption(key);
    if (!option) {
        m_report << "ignored: incorrect option key\n";
        return;
    }
    m_report << option->m_info(arg) << "\n";
    option->m_apply(arg, this);
}

void rkSession::setIniMode(rkString name, bool write) {
    m_iniName = name;
    m_iniWrite = write;
}

// ---- all of them --------------------------------------------------------------------------

// False for what cannot be read, a directory for instance.
static bool readFirstLine(rkString const &name, rkString &text) {
    FILE *file = fopen(name.c_str(), "r");
    if (!file) return false;
    char buffer[1024];
    bool atEnd;
    getlinebuf(file, buffer, sizeof buffer, atEnd);
    bool good = !ferror(file);
    if (good) text = buffer;
    fclose(file);
    return good;
}

bool rkSession::readCfgFile(rkString &text, rkString &name) {
    rkString file = m_exePath.getFileTitle() + ".cfg";
    name = file;
    if (readFirstLine(name, text)) return true;
    name = m_exePath.getFileDir() + file;
    return readFirstLine(name, text);
}

void rkSession::collectKeys(int argc, char **argv, rkCommandList &keys) {
    rkString text, name;
    if (argc > 1) {
        keys.setArgs(argc - 1, argv + 1);
        m_report << "\n";
    } else if (readCfgFile(text, name)) {
        keys.setArgs(text.c_str());
        m_report << "read from " << name << " file\n";
    } else if (pCmdLine) {
        keys.setArgs(pCmdLine->c_str());
        m_report << "set by _FORCE_CMDLINE preprocessor definition\n";
    } else {
        m_report = "";
    }
}

static int exitLevel(rkCommandList const &keys) {
    if (keys.isKey('?') || keys.isKey('h')) return 2;
    if (keys.isKey('e')) return 1;
    return keys.isKey('v') ? 3 : 0;
}

static rkString lastArg(rkCommandList const &keys, char key) {
    rkString arg("");
    keys.getArg(key, arg);
    return arg;
}

void rkSession::resetModes() {
    m_askMode = 0;
    m_batch = false;
    m_noSort = false;
    m_enumMode = 100;
    m_nameMode = 0;
    m_nameExit = false;
    m_unopenedFile = false;
    m_iniName = "";
    m_report = "Command line options: ";
}

bool rkSession::parseCommandLine(int argc, char **argv) {
    m_exePath = argc > 0 ? argv[0] : "";
    resetModes();
    rkCommandList keys;
    collectKeys(argc, argv, keys);
    m_exitLevel = exitLevel(keys);
    setInDir(lastArg(keys, 'p'));
    setOutDir(lastArg(keys, 'l'));
    setDefName(lastArg(keys, 'n'));
    g_ostrm.setOutLevel(MsgError | MsgWarning | MsgResult);
    for (rkCommandKey &key : keys) applyOption(key.m_key, key.m_arg);
    g_ostrm << m_report;
    m_report = "";
    return openIniFile();
}

bool rkSession::openIniFile() {
    if (m_unopenedFile) {
        g_ostrm << "FATAL ERROR: can't open output file for writing\n";
        return false;
    }
    if (m_iniName.length() > 0 && !g_istrm.setIniFile(m_iniName, m_iniWrite) && m_iniWrite) {
        g_ostrm << "FATAL ERROR: can't open ini-file for writing\n";
        return false;
    }
    updateOptions();
    return true;
}

static void insertCpuList(rkString &descr) {
    int tab = descr.find("\t");
    if (tab == rkString::npos) return;
    descr = descr.substr(0, tab) + rkCpuType::optimizedList() + descr.substr(tab + 1);
}

void rkSession::updateOptions() {
    if (rkOption *option = getOption('T')) insertCpuList(option->m_descr);
    const int askDefault = 1 | 2; // timing method and common parameters
    if (m_batch) {
        m_askMode = 0;
    } else if (m_askMode == 0) {
        m_askMode = askDefault;
    }
}
