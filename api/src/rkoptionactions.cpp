// rkoptionactions.cpp - what each key says and does.

#include "rkcpu.h"
#include "rkcstream.h"
#include "rkistream.h"
#include "rkoption.h"
#include "rkregister.h"
#include "rksession.h"

// ---- what the infos share -------------------------------------------------------

// A fact of the argument and how it is named in the report.
struct BitName {
    int bit;
    char const *name;
};

static rkString bitNames(int bits, BitName const *names, int count) {
    rkString text("");
    for (int i = 0; i < count; ++i) {
        if (bits & names[i].bit) text << names[i].name;
    }
    return text;
}

static rkString unless(int level, rkString sentence) {
    return rkSession::isExit(level) ? rkSession::getExitInfo() : sentence;
}

static rkString with(char const *front, rkString middle, char const *back = "") {
    rkString text(front);
    return text << middle << back;
}

static rkString outPath(rkString arg, rkString suffix) {
    return rkSession::genOutPath(arg, suffix);
}

template <class Stream>
static void openOutput(Stream &stream, rkString path, bool append, rkSession *session) {
    if (!stream.addStream(path, append)) session->unopenedFile();
}

static char const noHookInfo[] = "ignored: <kelcore.h> is not included before <km.h> in test files";
static char const noDirInfo[] = "ignored: empty directory name";

static void nothing_apply(rkString, rkSession *) {}

// ---- console and parameters ---------------------------------------------------------

static rkString B_info(rkString) {
    return unless(1, "batch mode");
}
static void B_apply(rkString, rkSession *session) {
    session->setBatchMode(true);
}

static rkString A_info(rkString arg) {
    static const BitName names[] = {{1, ", timing method"},
                                    {2, ", common parameters"},
                                    {4, ", data misalignment"},
                                    {8, ", each test parameters"}};
    rkString list = bitNames(getAskLevel(arg), names, 4);
    return unless(1, with("ask", list.substr(1), " from console"));
}
static void A_apply(rkString arg, rkSession *session) {
    session->addAskMode(getAskLevel(arg));
}

static rkString d_info(rkString arg) {
    if (arg.length() == 0) return unless(1, "ignored: empty data argument");
    int equal = arg.find("=");
    rkString name = equal == rkString::npos ? rkString("") : arg.substr(0, equal);
    name.trim();
    if (name.length() == 0) return unless(1, "ignored: incorrect data format");
    return unless(1, with("set RK parameter ", arg));
}
static void d_apply(rkString arg, rkSession *) {
    g_istrm.m_data.set(arg);
}

static rkString i_info(rkString arg) {
    return unless(1, with("read RK parameters from ", rkSession::genInPath(arg, extIni)));
}
static void i_apply(rkString arg, rkSession *session) {
    session->setIniMode(rkSession::genInPath(arg, extIni), false);
}

static rkString I_info(rkString arg) {
    return unless(1, with("write RK parameters to ", rkSession::genInPath(arg, extIni), " and exit"));
}
static void I_apply(rkString arg, rkSession *session) {
    session->setIniMode(rkSession::genInPath(arg, extIni), true);
}

static rkString P_info(rkString) {
    return unless(1, "read tested function names from ini-file if any");
}
static void P_apply(rkString, rkSession *) {
    rkTest::m_pressing = true;
}

// ---- output files -----------------------------------------------------------------

static rkString o_info(rkString arg) {
    return with("write console output to ", outPath(arg, extOut));
}
static void o_apply(rkString arg, rkSession *session) {
    openOutput(g_ostrm, outPath(arg, extOut), false, session);
}

static rkString O_info(rkString arg) {
    return with("add console output to ", outPath(arg, extOut));
}
static void O_apply(rkString arg, rkSession *session) {
    openOutput(g_ostrm, outPath(arg, extOut), true, session);
}

static rkString L_info(rkString arg) {
    static const BitName names[] = {{MsgError, "errors"},
                                    {MsgWarning, ",warnings"},
                                    {MsgResult, ",performance results"},
                                    {MsgProcess, ",measurement process"},
                                    {MsgTrace, ",tracing info"},
                                    {MsgMemory, ",memory info"},
                                    {MsgData, ",data info"}};
    int level = getLevel(arg);
    if (level == 0) return unless(1, "ignored: incorrect level of console output");
    return unless(1, with("write ", bitNames(level, names, 7), " to console"));
}
static void L_apply(rkString arg, rkSession *session) {
    session->addLevelMode(getLevel(arg));
}

static rkString r_info(rkString arg) {
    return with("write performance result table to ", outPath(arg, extCsv));
}
static void r_apply(rkString arg, rkSession *session) {
    openOutput(g_cstrm, outPath(arg, extCsv), false, session);
}

static rkString R_info(rkString arg) {
    return with("add performance result table to ", outPath(arg, extCsv));
}
static void R_apply(rkString arg, rkSession *session) {
    openOutput(g_cstrm, outPath(arg, extCsv), true, session);
}

enum { NameLines = 1, NameFile = 2 };

static rkString q_info(rkString arg) {
    if (firstChar(arg) == '+') {
        return unless(1, "add function parameter name lines to csv files defined by -r & -R keys");
    }
    return unless(1, with("write function parameter name lines to ", outPath(arg, extName)));
}
static void q_apply(rkString arg, rkSession *session) {
    if (firstChar(arg) == '+') {
        rkSession::m_nameMode |= NameLines;
        return;
    }
    rkSession::m_nameMode |= NameFile;
    openOutput(g_qstrm, outPath(arg, extName), false, session);
}

static rkString Q_info(rkString) {
    return unless(1, "exit after function parameter name table creation and don't run tests\n");
}
static void Q_apply(rkString, rkSession *) {
    rkSession::m_nameExit = true;
}

static rkString u_info(rkString arg) {
    return unless(1, with("write summary table to ", outPath(arg, extSum)));
}
static void u_apply(rkString arg, rkSession *session) {
    openOutput(g_ustrm, outPath(arg, extSum), false, session);
}

static rkString U_info(rkString arg) {
    return unless(1, with("add summary table to ", outPath(arg, extSum)));
}
static void U_apply(rkString arg, rkSession *session) {
    openOutput(g_ustrm, outPath(arg, extSum), true, session);
}

static rkString m_info(rkString arg) {
    return with("write memory info table to ", outPath(arg, extMem));
}
static void m_apply(rkString arg, rkSession *session) {
    openOutput(g_mstrm, outPath(arg, extMem), false, session);
}

static rkString g_info(rkString arg) {
    return with("create file ", outPath(arg, extSgl), " at the end of RK work");
}
static void g_apply(rkString arg, rkSession *session) {
    session->setSglName(outPath(arg, extSgl));
}

// These three have acted before all other keys, so that their place does not matter.
static rkString n_info(rkString arg) {
    if (arg.length() == 0) return "ignored: empty default name";
    return with("name ini-file and output files as ", arg, ".<proper-ext>");
}
static rkString p_info(rkString arg) {
    return arg.length() == 0 ? rkString(noDirInfo) : with("open test data files & ini-file in ", arg);
}
static rkString l_info(rkString arg) {
    return arg.length() == 0 ? rkString(noDirInfo) : with("open output files in ", arg);
}

// ---- which tests --------------------------------------------------------------------

static rkString conditionInfo(rkString arg, char const *const fronts[4], char const *const backs[4],
                              char const *empty) {
    int kind = getCondition(arg);
    return unless(2, kind == CondEmpty ? rkString(empty) : with(fronts[kind], arg, backs[kind]));
}

static rkString f_info(rkString arg) {
    static char const *const fronts[] = {"test functions containing '", "don't test functions without '",
                                         "don't test functions containing '", "test function equal to '"};
    static char const *const backs[] = {"'", "' in the name", "'", "'"};
    return conditionInfo(arg, fronts, backs, "ignored: empty function pattern");
}
static void f_apply(rkString arg, rkSession *session) {
    switch (getCondition(arg)) {
        case CondOr:
            session->addCondition(new RunCondition_f(arg));
            break;
        case CondAnd:
            session->addCondition(new RunCondition_fAnd(arg));
            break;
        case CondNot:
            session->addCondition(new RunCondition_fNot(arg));
            break;
        case CondEqual:
            session->addCondition(new RunCondition_fEqual(arg));
            break;
    }
}

static rkString t_info(rkString arg) {
    static char const *const fronts[] = {"run tests containing ", "don't run tests which doesn't contain ",
                                         "don't run tests containing ", "run test equal to "};
    static char const *const backs[] = {"", "", "", ""};
    return conditionInfo(arg, fronts, backs, "ignored: empty test pattern");
}
static void t_apply(rkString arg, rkSession *session) {
    switch (getCondition(arg)) {
        case CondOr:
            session->addCondition(new RunCondition_t(arg));
            break;
        case CondAnd:
            session->addCondition(new RunCondition_tAnd(arg));
            break;
        case CondNot:
            session->addCondition(new RunCondition_tNot(arg));
            break;
        case CondEqual:
            session->addCondition(new RunCondition_tEqual(arg));
            break;
    }
}

static rkString F_info(rkString arg) {
    return unless(1, with("start testing from ", arg, " function"));
}
static void F_apply(rkString arg, rkSession *) {
    rkTestList::m_startFunc = arg;
}

enum { HotColumn = 1, HotOnly = 2 };

static rkString H_info(rkString arg) {
    if (firstChar(arg) == 'O') return unless(2, "run tests for hot functions only");
    return unless(2, "add 'Interest' column to table file");
}
static void H_apply(rkString arg, rkSession *) {
    rkTest::m_hot = firstChar(arg) == 'O' ? HotOnly : HotColumn;
}

// ---- how they run ---------------------------------------------------------------------

static rkString Y_info(rkString arg) {
    static char const *const words[] = {"", "high", "normal", "low"};
    int priority = getPriority(arg);
    if (priority == 0) return unless(1, "ignored: incorrect process priority value");
    return unless(1, with("set ", words[priority], " process priority"));
}
static void Y_apply(rkString arg, rkSession *) {
    int priority = getPriority(arg);
    if (priority != 0) rkTool::m_priority = priority;
}

static rkString T_info(rkString arg) {
    if (!kelEnvironment) return noHookInfo;
    if (rkCpuType::cpuType(arg) == -1) return "ignored: incorrect CPU type";
    return with("call kelInitStaticCpu ( kelCpu", arg, " )");
}
static void T_apply(rkString arg, rkSession *) {
    s_cpuType = rkCpuType::cpuType(arg);
}

static int threads(rkString arg) {
    int n = 0;
    n << arg;
    return n;
}
static rkString N_info(rkString arg) {
    if (!kelEnvironment) return noHookInfo;
    int n = threads(arg);
    if (n <= 0) return "ignored: incorrect number of threads";
    rkString number;
    return with("call kelSetNumThreads(", number << n, ")");
}
static void N_apply(rkString arg, rkSession *) {
    s_numThreads = threads(arg);
}

static rkString S_info(rkString) {
    return unless(1, "include to measurement data set & use time");
}
static void S_apply(rkString, rkSession *) {
    g_tool.m_useData = true;
}

static rkString C_info(rkString) {
    return unless(1, "test data size will be in cache and out of cache if that is supported by test");
}
static void C_apply(rkString, rkSession *) {
    rkTest::m_cache = true;
}

static rkString s_info(rkString arg) {
    return unless(2, firstChar(arg) == '-' ? "don't sort functions" : "sort functions");
}
static void s_apply(rkString arg, rkSession *session) {
    session->setQuickMode(firstChar(arg) == '-');
}

// ---- what ends the run early -------------------------------------------------------------

static int enumMode(rkString arg) {
    switch (firstChar(arg)) {
        case '+':
            return 1;
        case '-':
            return -1;
        default:
            return 0;
    }
}
static rkString e_info(rkString arg) {
    if (rkSession::m_exitLevel == 2) return rkSession::getExitInfo();
    switch (enumMode(arg)) {
        case 1:
            return "enumerate applied and not applied library functions and exit";
        case -1:
            return "enumerate not applied library functions and exit";
        default:
            return "enumerate tested functions and exit";
    }
}
static void e_apply(rkString arg, rkSession *session) {
    session->setEnumMode(enumMode(arg));
}

static rkString v_info(rkString) {
    return "type the version number of the Rakova and exit";
}
static void v_apply(rkString, rkSession *) {
    s_version = true;
}

static rkString keyHelpInfo(rkString arg) {
    return with("type extended help for -", arg.substr(0, 1), " key and exit");
}
static void setHint(rkString arg, bool hide) {
    s_hintHide = hide;
    s_hintArg = arg.length() > 0 ? arg[0] : 1;
}
static rkString h_info(rkString arg) {
    if (arg.length() == 0) return "type short help and exit";
    return firstChar(arg) == 'h' ? rkString("type extended help and exit") : keyHelpInfo(arg);
}
static void h_apply(rkString arg, rkSession *) {
    setHint(arg, true);
}
static rkString question_info(rkString arg) {
    if (arg.length() == 0) return "type short help with hidden key sand exit";
    return firstChar(arg) == '?' ? rkString("type extended help with hidden keys and exit")
                                 : keyHelpInfo(arg);
}
static void question_apply(rkString arg, rkSession *) {
    setHint(arg, false);
}

// ---- the table ------------------------------------------------------------------------------

const rkOptionAction rkOptionActions[] = {
    {'B', false, B_info, B_apply},       {'A', false, A_info, A_apply},
    {'d', false, d_info, d_apply},       {'i', false, i_info, i_apply},
    {'I', false, I_info, I_apply},       {'P', false, P_info, P_apply},
    {'o', false, o_info, o_apply},       {'O', false, O_info, O_apply},
    {'L', false, L_info, L_apply},       {'r', false, r_info, r_apply},
    {'R', false, R_info, R_apply},       {'q', false, q_info, q_apply},
    {'Q', false, Q_info, Q_apply},       {'u', false, u_info, u_apply},
    {'U', false, U_info, U_apply},       {'m', false, m_info, m_apply},
    {'g', false, g_info, g_apply},       {'n', false, n_info, nothing_apply},
    {'p', false, p_info, nothing_apply}, {'l', false, l_info, nothing_apply},
    {'f', false, f_info, f_apply},       {'t', false, t_info, t_apply},
    {'F', false, F_info, F_apply},       {'Y', false, Y_info, Y_apply},
    {'H', false, H_info, H_apply},       {'T', false, T_info, T_apply},
    {'N', false, N_info, N_apply},       {'S', true, S_info, S_apply},
    {'C', true, C_info, C_apply},        {'s', false, s_info, s_apply},
    {'e', false, e_info, e_apply},       {'v', false, v_info, v_apply},
    {'h', false, h_info, h_apply},       {'?', false, question_info, question_apply},
    {0, false, nullptr, nullptr}};

rkOptionAction const &rkFindOptionAction(char key) {
    rkOptionAction const *action = rkOptionActions;
    while (action->m_key && action->m_key != key) ++action;
    return *action;
}
