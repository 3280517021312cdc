// rksession.h - one run of the program, from the command line to the signal file.

#ifndef RAKOVA_RKSESSION_H
#define RAKOVA_RKSESSION_H

#include "rkcommand.h"
#include "rkconditions.h"
#include "rkoption.h"
#include "rkstream.h"

// A test file may register an object of a derived class in place of the default session. Never deleted.
class rkSession {
public:
    rkSession() = default;
    rkSession(rkSession const &) = delete;
    rkSession &operator=(rkSession const &) = delete;

    virtual ~rkSession() = default;
    virtual void initSession();             // the conditions, the modes, the key table
    virtual int run(int argc, char **argv); // the exit status
    virtual void funcTitleToCStream();
    virtual void parmsTitleToCStream();
    virtual void resultTitleToCStream();
    virtual void putTableTitle();
    virtual void putTableTitleLine();
    virtual bool startSession() { return true; } // false stops the run
    virtual void updateOptions();
    virtual bool parseCommandLine(int argc, char **argv); // false: a file could not be opened
    virtual void listTests(int mode);
    virtual void hint(char key, bool hide);
    virtual void hint_quick(bool hide);
    virtual void hint_full(bool hide);
    virtual void hint_descr(char key);
    virtual void outputHeader();
    virtual void outputFooter();
    virtual void outputSignal();
    virtual void readCommonData(); // asks for or reads what holds for all tests

    bool quickOutput(); // help, version, list; true if the run is to stop
    void beginCommonData();
    void endCommonData();
    void selectTestParameters();
    static rkString getEnterTitle(rkString text); // a frame of stars
    bool readTimingMethod();                      // these three return whether the console was asked
    bool readTestParameters();
    bool readDataOffset();

    // Directories and default names. Relative directories count from the program, not from the current one.
    static void setInDir(rkString dir);
    static void setOutDir(rkString dir);
    static void setDefName(rkString name);
    void setSglName(rkString name) { m_sglName = name; }
    static rkString genInPath(rkString name, rkString ext);
    static rkString genOutPath(rkString name, rkString ext);
    static rkString getInPath(rkString name);
    static rkString getOutPath(rkString name);

    static bool isExit(int level) { return m_exitLevel >= level; }
    static rkString getExitInfo();
    void addAskMode(int mode) { m_askMode |= mode; }
    void setBatchMode(bool on) { m_batch = on; }
    void setQuickMode(bool on) { m_noSort = on; }
    void setEnumMode(int mode) { m_enumMode = mode; }
    void addLevelMode(OutputLevel mode) { m_levelMode |= mode; }
    void setIniMode(rkString name, bool write);
    void addCondition(RunCondition *condition) { m_conditions->push_back(condition); }
    void unopenedFile() { m_unopenedFile = true; }

    void initOption(char key, rkString help, rkString (*info)(rkString), void (*apply)(rkString, rkSession *),
                    rkString descr, bool hidden);
    rkOption *getOption(char key); // null for a key that has no row
    void applyOption(char key, rkString arg);
    static bool readCfgFile(rkString &text, rkString &name);

    rkConditions *m_conditions = nullptr;
    rkList<rkOption *> m_options; // rows are never freed
    int m_askMode = 0;            // 1 timing, 2 common parameters, 4 misalignment, 8 parameters of each test
    bool m_batch = false;
    OutputLevel m_levelMode = 1; // console level of the run
    bool m_noSort = false;
    int m_enumMode = 100; // 100 none, 0 tested, 1 all of the library's, -1 those not tested
    bool m_unopenedFile = false;
    rkString m_iniName;
    bool m_iniWrite = false;
    rkString m_report; // of the keys, while they are applied
    rkString m_sglName;

    static int m_nameMode;  // 1 name lines into the result tables, 2 a file of their own
    static bool m_nameExit; // -Q
    static int m_exitLevel; // 0 none, 1 -e, 2 -h or -?, 3 -v
    static rkString m_exePath;
    static rkString m_defName;
    static rkString m_inDir;
    static rkString m_outDir;

private:
    bool start(int argc, char **argv); // keys and quick output; true if there is a run
    int runTests();                    // from the library's data to the last test; the exit status
    void buildKeyTable();              // the rows, in the order of the help
    void addRows(char const *keys);
    void resetModes();
    void collectKeys(int argc, char **argv, rkCommandList &keys);
    bool openIniFile(); // last step of the keys; false after a fatal message
};

// Two forms of the title of the table.
void rkFuncTitleToCStream();
void rkParmsTitleToCStream();
void kmFuncTitleToCStream();
void kmParmsTitleToCStream();

// Path arithmetic.
bool isAbsolutePath(rkString path);
rkString genDirName(rkString dir);
rkString genPathName(rkString dir, rkString name, rkString ext);
rkString getDirPath(rkString name, rkString dir);

extern rkString extIni, extCsv, extOut, extSgl, extName, extSum, extMem; // suffixes of files

extern char s_hintArg;   // of -h or -?: 0 none, 1 quick help, else the key asked about
extern bool s_hintHide;  // hide the hidden keys
extern bool s_version;   // -v
extern int s_cpuType;    // of -T, -1 none
extern int s_numThreads; // of -N
extern const char *RK_version;

void setKelLibInfo();
void setKelEnvironment();
void initStaticCpu();
void setNumThreads();

#endif
