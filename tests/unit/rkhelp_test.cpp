// rkhelp_test.cpp - tests of rkhelp.

#include "helptexts.h"
#include "sessionfixture.h"

namespace {

const std::string hiddenKeys = "SC";
const std::string hiddenRemark = "This is hidden key used by developers only\n";

bool isIn(std::string const &keys, char key) {
    return keys.find(key) != std::string::npos;
}

std::string helps(std::string const &without) {
    std::string text;
    for (HelpText const &row : HelpTexts) {
        if (!isIn(without, row.key)) text += row.help;
    }
    return text;
}

// The table as it is before the keys are parsed: the list of processors is not yet in its place.
std::string extended(std::string const &without) {
    std::string text;
    for (HelpText const &row : HelpTexts) {
        if (isIn(without, row.key) || !*row.help) continue;
        text += std::string("\n") + row.help + (isIn(hiddenKeys, row.key) ? hiddenRemark : "") + row.descr;
    }
    return text;
}

class RkHelp : public SessionFixture {
protected:
    // coreStatus: what the library's kel_Init returns; -2 means that there is none.
    void build(int coreStatus) {
        FakeCore::initStatus = coreStatus;
        rkRegKelEnvironment(FakeCore::bind);
        setKelEnvironment();
        pSession->initSession();
        catchLog();
        g_ostrm.setOutLevel(7);
    }
    std::string rowKeys() const {
        std::string keys;
        for (rkOption *option : pSession->m_options) keys += option->m_key;
        return keys;
    }
};

TEST_F(RkHelp, RowsStandInTheirOrder) {
    build(0);
    EXPECT_EQ(rowKeys(), "BAdiIPoOLrRqQuUgnplftFYHTNSCsevh?");
}

TEST_F(RkHelp, KeyTableAsksTheCoreOnce) {
    build(0);
    EXPECT_EQ(FakeCore::inits, 1);
}

TEST_F(RkHelp, WithoutALibraryThereAreNoKeysForIt) {
    build(-2);
    EXPECT_EQ(rowKeys(), "BAdiIPoOLrRqQuUgnplftFYHSCsevh?");
}

TEST_F(RkHelp, OtherErrorsOfTheCoreLeaveItsKeys) {
    build(-9);
    EXPECT_NE(pSession->getOption('T'), nullptr);
    EXPECT_NE(pSession->getOption('N'), nullptr);
}

TEST_F(RkHelp, NameKeysCanBeLeftOut) {
    qKeys = false;
    build(0);
    EXPECT_EQ(rowKeys(), "BAdiIPoOLrRuUgnplftFYHTNSCsevh?");
}

TEST_F(RkHelp, HiddenRowsAreTheDevelopersKeys) {
    build(0);
    for (rkOption *option : pSession->m_options) {
        EXPECT_EQ(option->m_hidden, isIn(hiddenKeys, option->m_key)) << option->m_key;
    }
}

TEST_F(RkHelp, EveryRowHasItsTexts) {
    build(0);
    for (HelpText const &row : HelpTexts) {
        ASSERT_NE(pSession->getOption(row.key), nullptr) << row.key;
        EXPECT_STREQ(pSession->getOption(row.key)->m_help.c_str(), row.help);
        EXPECT_STREQ(pSession->getOption(row.key)->m_descr.c_str(), row.descr);
    }
}

TEST_F(RkHelp, QuickHelpHasALineForEachKey) {
    build(0);
    pSession->hint(1, true);
    EXPECT_EQ(log(), "QUICK HELP\n" + helps(hiddenKeys));
}

TEST_F(RkHelp, QuickHelpWithoutALibrary) {
    build(-2);
    pSession->hint(1, true);
    EXPECT_EQ(log(), "QUICK HELP\n" + helps(hiddenKeys + "TN"));
}

TEST_F(RkHelp, QuickHelpWithHiddenKeys) {
    build(0);
    pSession->hint(1, false);
    EXPECT_EQ(log(), "QUICK HELP with hidden keys\n" + helps(""));
}

TEST_F(RkHelp, ExtendedHelpExplainsEachKey) {
    build(0);
    pSession->hint('h', true);
    EXPECT_EQ(log(), "EXTENDED HELP\n" + extended(hiddenKeys));
}

TEST_F(RkHelp, ExtendedHelpWithHiddenKeysMarksThem) {
    build(0);
    pSession->hint('?', false);
    EXPECT_EQ(log(), "EXTENDED HELP with hidden keys\n" + extended(""));
}

TEST_F(RkHelp, OneKeyIsExplained) {
    build(0);
    pSession->hint('B', true);
    EXPECT_EQ(log(),
              "EXTENDED KEY HELP\n-B               = batch mode (no console input)\n"
              "If both -B and -A key present in command line then -B key is performed\n");
}

TEST_F(RkHelp, HiddenKeyIsExplainedWithoutARemark) {
    build(0);
    pSession->hint('S', true);
    EXPECT_EQ(log(),
              "EXTENDED KEY HELP\n-SU              = measure functions with data set & use\n"
              "This option should be used to prove parallelize function advantage\n"
              "Test does not show clear function performance\n");
}

TEST_F(RkHelp, KeyWithoutDescription) {
    build(0);
    pSession->hint('e', true);
    EXPECT_EQ(log(),
              "EXTENDED KEY HELP\n-e               = enumerate tests and exit\n"
              "No detailed description for this key\n");
}

TEST_F(RkHelp, KeyWithoutHelpLineIsDeprecated) {
    build(0);
    pSession->hint('?', true);
    std::string descr = HelpTexts[std::size(HelpTexts) - 1].descr;
    EXPECT_EQ(log(), "EXTENDED KEY HELP\nKey -? is deprecated\n" + descr);
}

TEST_F(RkHelp, KeyWithoutARowIsNotValid) {
    build(0);
    pSession->hint('x', true);
    EXPECT_EQ(log(), "EXTENDED KEY HELP\nKey -x is not valid\n");
}

TEST_F(RkHelp, ExtendedHelpNeedsTheMatchingHelpKey) {
    build(0);
    pSession->hint('h', false);
    EXPECT_EQ(log().substr(0, 18), "EXTENDED KEY HELP\n");
}

TEST_F(RkHelp, ListOfProcessorsTakesThePlaceOfTheTab) {
    build(0);
    pSession->updateOptions();
    std::string before, after;
    for (HelpText const &row : HelpTexts) {
        if (row.key != 'T') continue;
        std::string descr = row.descr;
        before = descr.substr(0, descr.find('\t'));
        after = descr.substr(descr.find('\t') + 1);
    }
    EXPECT_EQ(pSession->getOption('T')->m_descr.c_str(), before + rkCpuType::optimizedList().c_str() + after);
}

} // namespace
