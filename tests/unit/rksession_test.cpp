// rksession_test.cpp - tests of rksession: the keys as a whole.

#include "rksession.h"

#include "sessionfixture.h"

namespace {

class Session : public SessionFixture {};

// ---- the command line ----------------------------------------------------------------------

TEST_F(Session, NoKeysAtAllGiveAnEmptyReportAndTheDefaults) {
    std::filesystem::current_path(m_dir.path());
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "");
    EXPECT_EQ(pSession->m_askMode, 3);
    EXPECT_EQ(pSession->m_levelMode, 1);
    EXPECT_FALSE(pSession->m_batch);
    EXPECT_FALSE(pSession->m_noSort);
    EXPECT_EQ(pSession->m_enumMode, 100);
    EXPECT_EQ(g_ostrm.outLevel(), 7);
}

TEST_F(Session, KeysAreReported) {
    EXPECT_TRUE(parse({"-B", "-L", "PERF"}));
    EXPECT_EQ(log(),
              "Command line options: \n-B: batch mode\n"
              "-LPERF: write errors,warnings,performance results to console\n");
    EXPECT_EQ(pSession->m_askMode, 0);
    EXPECT_EQ(pSession->m_levelMode, 7);
    EXPECT_STREQ(pSession->m_report.c_str(), "");
}

TEST_F(Session, CfgFileGivesTheKeys) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-B -L PERF\n-v\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(),
              "Command line options: read from prog.cfg file\n-B: batch mode\n"
              "-LPERF: write errors,warnings,performance results to console\n");
    EXPECT_FALSE(s_version);
}

TEST_F(Session, CfgFileOfTheProgramIsFoundFromElsewhere) {
    std::filesystem::create_directory(path("elsewhere"));
    std::filesystem::current_path(path("elsewhere"));
    write("prog.cfg", "-B\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "Command line options: read from " + path("prog.cfg") + " file\n-B: batch mode\n");
}

TEST_F(Session, CfgFileOfTheCurrentDirectoryGoesFirst) {
    std::filesystem::create_directory(path("elsewhere"));
    std::filesystem::current_path(path("elsewhere"));
    write("prog.cfg", "-v\n");
    write("elsewhere/prog.cfg", "-B\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "Command line options: read from prog.cfg file\n-B: batch mode\n");
}

TEST_F(Session, CfgFileGoesBeforeTheBuiltInLine) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-B\n");
    rkRegCmdLine("-v");
    EXPECT_TRUE(parse({}));
    EXPECT_TRUE(pSession->m_batch);
    EXPECT_FALSE(s_version);
}

TEST_F(Session, BuiltInLineGivesTheKeys) {
    std::filesystem::current_path(m_dir.path());
    rkRegCmdLine("-B -L");
    rkRegCmdLine("WARN");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(),
              "Command line options: set by _FORCE_CMDLINE preprocessor definition\n-B: batch mode\n"
              "-LWARN: write errors,warnings to console\n");
}

TEST_F(Session, AnyArgumentShutsOutCfgFileAndBuiltInLine) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-B\n");
    rkRegCmdLine("-B");
    EXPECT_TRUE(parse({"-P"}));
    EXPECT_FALSE(pSession->m_batch);
    EXPECT_EQ(log(), "Command line options: \n-P: read tested function names from ini-file if any\n");
}

TEST_F(Session, EmptyCfgFileHasNoKeys) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "Command line options: read from prog.cfg file\n");
}

TEST_F(Session, DirectoryIsNoCfgFile) {
    std::filesystem::current_path(m_dir.path());
    std::filesystem::create_directory(path("prog.cfg"));
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "");
}

TEST_F(Session, CfgLineIsCutAt1023Characters) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-F" + std::string(2000, 'x') + "\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(rkTestList::m_startFunc.length(), 1021);
}

TEST_F(Session, LongAndStrangeArgumentsAreReportedAsGiven) {
    std::string word(10000, 'x'), bytes = "\xff\xfe\xe4%s%n";
    EXPECT_TRUE(parse({"-F" + word, "-f", bytes, "-\xe4" + bytes}));
    EXPECT_EQ(log(), "Command line options: \n-F" + word + ": start testing from " + word + " function\n-f" +
                         bytes + ": test functions containing '" + bytes + "'\n-\xe4" + bytes +
                         ": ignored: incorrect option key\n");
}

TEST_F(Session, MissingProgramNameIsSurvived) {
    std::filesystem::current_path(m_dir.path());
    setKelEnvironment();
    pSession->initSession();
    char *none[] = {nullptr};
    EXPECT_TRUE(pSession->parseCommandLine(0, none));
    EXPECT_STREQ(rkSession::m_exePath.c_str(), "");
}

TEST_F(Session, UnknownKeyIsIgnoredAloud) {
    EXPECT_TRUE(parse({"-x", "-m"}));
    EXPECT_EQ(
        log(),
        "Command line options: \n-x: ignored: incorrect option key\n-m: ignored: incorrect option key\n");
}

TEST_F(Session, WithoutALibraryItsKeysAreUnknown) {
    EXPECT_TRUE(parse({"-TAVX", "-N2"}));
    EXPECT_EQ(log(),
              "Command line options: \n-TAVX: ignored: incorrect option key\n"
              "-N2: ignored: incorrect option key\n");
    EXPECT_EQ(s_cpuType, -1);
    EXPECT_EQ(s_numThreads, 0);
}

TEST_F(Session, LastDirectoryCountsAndBothAreReported) {
    EXPECT_TRUE(parse({"-pone", "-ptwo"}));
    EXPECT_EQ(rkSession::m_inDir.c_str(), path("two/"));
    EXPECT_EQ(log(),
              "Command line options: \n-pone: open test data files & ini-file in one\n"
              "-ptwo: open test data files & ini-file in two\n");
}

TEST_F(Session, DirectoriesAndNameHoldForKeysInFrontOfThem) {
    std::filesystem::create_directory(path("logs"));
    EXPECT_TRUE(parse({"-o", "-llogs", "-ntitle"}));
    EXPECT_TRUE(exists("logs/title.txt"));
    EXPECT_TRUE(holds(log(), "-o: write console output to " + path("logs/title.txt") + "\n"));
}

TEST_F(Session, RelativeOutputDirectoryCountsFromTheProgram) {
    std::filesystem::create_directory(path("elsewhere"));
    std::filesystem::current_path(path("elsewhere"));
    EXPECT_TRUE(parse({"-llogs"}));
    EXPECT_EQ(rkSession::m_outDir.c_str(), path("logs/"));
}

TEST_F(Session, NameWithADotGetsNoExtension) {
    EXPECT_TRUE(parse({"-o./out"}));
    EXPECT_TRUE(exists("out"));
    EXPECT_FALSE(exists("out.txt"));
}

TEST_F(Session, HelpGoesBeforeEnumeration) {
    EXPECT_TRUE(parse({"-h", "-e"}));
    EXPECT_EQ(rkSession::m_exitLevel, 2);
    EXPECT_EQ(log(),
              "Command line options: \n-h: type short help and exit\n-e: ignored because of -h option\n");
}

TEST_F(Session, QuestionMarkIsHelpToo) {
    EXPECT_TRUE(parse({"-v", "-e", "-?"}));
    EXPECT_EQ(rkSession::m_exitLevel, 2);
}

TEST_F(Session, EnumerationGoesBeforeTheVersion) {
    EXPECT_TRUE(parse({"-v", "-e"}));
    EXPECT_EQ(rkSession::m_exitLevel, 1);
    EXPECT_TRUE(holds(log(), "-e: enumerate tested functions and exit\n"));
}

TEST_F(Session, VersionAloneIsLevelThree) {
    EXPECT_TRUE(parse({"-v", "-B"}));
    EXPECT_EQ(rkSession::m_exitLevel, 3);
    EXPECT_TRUE(holds(log(), "-B: ignored because of -v option\n"));
}

TEST_F(Session, SlashHelpEqualsDashHelp) {
    EXPECT_TRUE(parse({"/h"}));
    EXPECT_EQ(rkSession::m_exitLevel, 2);
    EXPECT_EQ(s_hintArg, 1);
    EXPECT_EQ(log(), "Command line options: \n-h: type short help and exit\n");
}

TEST_F(Session, FileIsOpenedAlsoWithHelp) {
    EXPECT_TRUE(parse({"-h", "-o", "log"}));
    EXPECT_TRUE(exists("log.txt"));
}

TEST_F(Session, LogGetsTheReport) {
    EXPECT_TRUE(parse({"-olog"}));
    g_ostrm.flush();
    EXPECT_EQ(read("log.txt"), log());
    EXPECT_TRUE(holds(log(), "-olog: write console output to "));
}

TEST_F(Session, UnopenedFileIsFatalBehindTheWholeReport) {
    EXPECT_FALSE(parse({"-rmissing/dir/x", "-B"}));
    EXPECT_TRUE(holds(log(), "-B: batch mode\nFATAL ERROR: can't open output file for writing\n"));
    EXPECT_TRUE(pSession->m_batch);
}

TEST_F(Session, UnwritableIniFileIsFatal) {
    EXPECT_FALSE(parse({"-Imissing/dir/x"}));
    EXPECT_TRUE(holds(log(), "FATAL ERROR: can't open ini-file for writing\n"));
}

TEST_F(Session, UnreadableIniFileIsSaidOnce) {
    EXPECT_TRUE(parse({"-inone"}));
    EXPECT_EQ(log(), "Command line options: \n-inone: read RK parameters from " + path("none.ini") +
                         "\n-- Can't open file " + path("none.ini") + " to read: \n");
}

TEST_F(Session, ReadableIniFileIsAttached) {
    write("prog.ini", "[Rakova]\nMethod=Manual\n");
    EXPECT_TRUE(parse({"-i"}));
    ASSERT_NE(g_istrm.m_iniFile, nullptr);
    EXPECT_STREQ(g_istrm.m_iniFile->read("Rakova", "Method", "poison").c_str(), "Manual");
}

TEST_F(Session, BatchModeGoesBeforeAskMode) {
    EXPECT_TRUE(parse({"-AAll", "-B"}));
    EXPECT_EQ(pSession->m_askMode, 0);
}

TEST_F(Session, AskModesAreCombined) {
    EXPECT_TRUE(parse({"-AT", "-AM"}));
    EXPECT_EQ(pSession->m_askMode, 5);
}

TEST_F(Session, FunctionPatternWithoutTextAddsNoCondition) {
    EXPECT_TRUE(parse({"-f"}));
    EXPECT_EQ(log(), "Command line options: \n-f: ignored: empty function pattern\n");
    EXPECT_TRUE(pSession->m_conditions->empty());
}

TEST_F(Session, QPlusSetsBitOneAndOpensNoFile) {
    EXPECT_TRUE(parse({"-q+"}));
    EXPECT_EQ(rkSession::m_nameMode, 1);
    EXPECT_TRUE(g_qstrm.empty());
}

TEST_F(Session, ParsingResetsTheModes) {
    pSession->m_enumMode = 1;
    pSession->m_noSort = pSession->m_unopenedFile = true;
    rkSession::m_nameMode = 3;
    rkSession::m_nameExit = true;
    pSession->m_iniName = "poison";
    EXPECT_TRUE(parse({"-B"}));
    EXPECT_EQ(pSession->m_enumMode, 100);
    EXPECT_FALSE(pSession->m_noSort);
    EXPECT_FALSE(pSession->m_unopenedFile);
    EXPECT_EQ(rkSession::m_nameMode, 0);
    EXPECT_FALSE(rkSession::m_nameExit);
    EXPECT_STREQ(pSession->m_iniName.c_str(), "");
}

} // namespace
