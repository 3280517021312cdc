// badanswers_test.cpp - answers and values that make no sense: the defaults hold, and every question comes.

#include "badinput.h"

namespace {

const std::string summary = "| RK Summary";

class BadAnswers : public BadInput {
protected:
    // The whole console of a run in which all is asked.
    std::string answered(std::string const &input) const {
        Ended ended = runBare({"-AAll"}, input);
        expectOrderlyEnd(ended);
        EXPECT_TRUE(holds(ended.text, summary)) << ended.text.substr(0, 4000);
        return ended.text;
    }
    // The lines between the first value of the timing method and the first test.
    Lines valuesOf(Lines const &data) const {
        Lines args = {"-B"};
        for (std::string const &value : data) args.push_back("-d" + value);
        Ended ended = runBare(args);
        expectOrderlyEnd(ended);
        Lines values;
        for (std::string const &line : linesIn(ended.text)) {
            if (line.find(" = ") != std::string::npos && line.find("-d") != 0) values.push_back(line);
        }
        return values;
    }
    // The sets that a walk takes.
    Lines walk(std::string const &value) const {
        Start start;
        start.words = {FAULTY, "-B", "-LPERF", "-flong", "-dMethod=Manual", "-dNumLoops=1", "-dset=" + value};
        start.env = {"FAULTY_ROUNDS=0", "FAULTY_SETS=2"};
        Ended ended = runToEnd(start);
        expectOrderlyEnd(ended);
        Lines sets;
        for (std::string const &line : linesIn(ended.text)) {
            if (line.find("set=") == 0) sets.push_back(line.substr(4, line.find(' ') - 4));
        }
        return sets;
    }
};

const Lines asked = {
    "\n Method {Auto|Manual|Statistic|Iterative} [Auto] = ", "\n Accuracy, % [5] = ",
    "\n AlignVectorsBy {byte|element} [element] = ", "\n VectorAlign by Element, 0..63 [0] = "};

void expectAllAsked(std::string const &console) {
    size_t at = 0;
    for (std::string const &question : asked) {
        at = console.find(question, at);
        ASSERT_NE(at, std::string::npos) << question << " does not follow in\n" << console.substr(0, 6000);
    }
}

} // namespace

// ---- answers -------------------------------------------------------------------------------------

TEST_F(BadAnswers, NoiseLeavesTheDefaults) {
    std::string bytes = noise(100000, "aAmMsSiIeEbB0123456789");
    std::string console = answered(bytes);
    expectAllAsked(console);
    EXPECT_TRUE(holds(console, " Method = Auto\n"));
    EXPECT_TRUE(holds(console, " Accuracy = 5\n"));
}

TEST_F(BadAnswers, LineOfTenMegabytesIsOneAnswer) {
    std::string console = answered(std::string(10000000, 'x') + "\n7\n");
    expectAllAsked(console);
    EXPECT_TRUE(holds(console, "-Invalid value of Method = xxx"));
    EXPECT_TRUE(holds(console, " Method = Auto\n"));
    EXPECT_TRUE(holds(console, " Accuracy = 7\n")) << "the next line is the next answer";
    EXPECT_LT(console.size(), 20000u);
}

TEST_F(BadAnswers, LineWithoutAnEndIsAnAnswerToo) {
    std::string console = answered("man\n" + std::string(10000000, '1'));
    EXPECT_TRUE(holds(console, " Method = Manual\n"));
    EXPECT_TRUE(holds(console, "\n NumLoops [10] = "));
    EXPECT_TRUE(holds(console, "\n VectorAlign by Element, 0..63 [0] = "));
}

TEST_F(BadAnswers, NulsAreEmptyAnswers) {
    std::string console = answered(std::string(5000, '\0'));
    expectAllAsked(console);
    EXPECT_TRUE(holds(console, " Method = Auto\n"));
    EXPECT_TRUE(holds(console, " VectorAlign = 0\n"));
}

TEST_F(BadAnswers, InputMayEndAtAnyQuestion) {
    std::string const answers[] = {"auto\n", "9\n", "byte\n"};
    std::string const values[] = {" Method = Auto\n", " Accuracy = 9\n", " AlignVectorsBy = byte\n"};
    std::string input;
    for (int given = 0; given < 3; ++given) {
        std::string console = answered(input);
        for (int i = 0; i < given; ++i) EXPECT_TRUE(holds(console, values[i])) << given << values[i];
        EXPECT_TRUE(holds(console, " VectorAlign = 0\n")) << given;
        input += answers[given];
    }
}

TEST_F(BadAnswers, InputMayEndAtTheQuestionsOfATest) {
    Start start = starting("rakova", {"-AAll", "-f=keliSAD16x16_8u32s"});
    start.input = "man\n1\n";
    Ended ended = runToEnd(start);
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, "| -OK         keliSAD16x16_8u32s")) << ended.text;
}

// ---- values --------------------------------------------------------------------------------------

TEST_F(BadAnswers, LoopCountsAreTakenAsTheyStand) {
    Lines rest = {" AlignVectorsBy = element", " VectorAlign = 0"};
    auto expected = [&](Lines values) {
        values.insert(values.end(), rest.begin(), rest.end());
        return values;
    };
    EXPECT_EQ(valuesOf({"Method=man", "NumLoops=-5"}), expected({" Method = Manual", " NumLoops = -5"}));
    EXPECT_EQ(valuesOf({"Method=iter", "StartNumLoops=2147483647", "StopNumLoops=-1"}),
              expected({" Method = Iterative", " StartNumLoops = 2147483647", " StopNumLoops = -1",
                        " Accuracy = 5"}));
    EXPECT_EQ(valuesOf({"Method=stat", "NumCalls=x"}),
              expected({" Method = Statistic", "-Invalid value of NumCalls = x", " NumCalls = 3",
                        " TotalCpuClocks = 10000"}));
}

TEST_F(BadAnswers, LoopCountBeyondAnIntIsStillACount) {
    Lines values = valuesOf({"Method=man", "NumLoops=99999999999999"});
    ASSERT_GE(values.size(), 2u);
    EXPECT_EQ(values[1].find(" NumLoops = "), 0u) << values[1];
}

TEST_F(BadAnswers, NegativeLoopCountMeasuresOnce) {
    Start start =
        starting("rakova", {"-B", "-LPERF", "-f=keliSAD4x4_8u32s", "-dMethod=man", "-dNumLoops=-5"});
    Ended ended = runToEnd(start);
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, "\n  nLps=1      perf=")) << ended.text;
}

TEST_F(BadAnswers, MethodAndAccuracyThatAreNone) {
    EXPECT_EQ(valuesOf({"Method="})[0], " Method = Auto");
    Lines values = valuesOf({"Method=x", "Accuracy=nan"});
    ASSERT_GE(values.size(), 4u);
    EXPECT_EQ(values[0], "-Invalid value of Method = x");
    EXPECT_EQ(values[1], " Method = Auto");
    EXPECT_EQ(values[2], "-Invalid value of Accuracy = nan");
    EXPECT_EQ(values[3], " Accuracy = 5");
}

TEST_F(BadAnswers, AlignmentIsTakenModulo64) {
    EXPECT_EQ(valuesOf({"VectorAlign=-64"}).back(), " VectorAlign = 0");
    EXPECT_EQ(valuesOf({"VectorAlign=2147483647"})[3], " VectorAlign = 63");
}

TEST_F(BadAnswers, MisalignedVectorsAreMeasured) {
    Start start = starting(
        "rakova", {"-B", "-f=keliSAD4x4_8u32s", "-dMethod=man", "-dNumLoops=1", "-dVectorAlign=-63"});
    Ended ended = runToEnd(start);
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, "| -OK         keliSAD4x4_8u32s")) << ended.text;
}

TEST_F(BadAnswers, StepsOverTheEndOfTheRangeEndTheWalk) {
    EXPECT_EQ(walk("1;2147483647;+2147483647"), (Lines{"1"}));
    EXPECT_EQ(walk("-2147483648;2147483647;+2147483647"), (Lines{"-2147483648", "-1", "2147483646"}));
    EXPECT_EQ(walk("1;1000000000;*1000000000"), (Lines{"1", "1000000000"}));
}

TEST_F(BadAnswers, ContradictingStepsLeaveTheValues) {
    for (char const *steps : {"1;2;+0", "2;1;-0", "1;4;*0", "1;4;*-1", "4;1;+1", ";;;", "", "x;y;+z"}) {
        EXPECT_EQ(walk(steps), (Lines{"1", "2"})) << steps;
    }
}
