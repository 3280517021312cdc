// stretch.cpp - what may stand between two reads of the counter.

#include "stretch.h"

#include <algorithm>
#include <regex>

using std::string;
using std::vector;

namespace {

bool matches(string const &text, char const *pattern) {
    return std::regex_match(text, std::regex(pattern));
}

bool isRead(string const &text) {
    return text == "rdtsc";
}

bool isCallOf(string const &text, string const &function) {
    return matches(text, "call .*") && text.find("<" + function + "@plt>") != string::npos;
}

#define REGISTER "%[a-z0-9]+"
#define ARGUMENT "%([re]?(di|si|dx|cx)|r[89]d?)"
#define MEMORY   "[^%,]*\\([^)]*\\)"
#define COMMENT  "( +#.*)?"

bool isPadding(string const &text) {
    return matches(text, "(cs )?(data16 )*(cs )?nop[wl]?( .*)?|xchg +%ax,%ax");
}

// Memory goes to a register that passes an argument; addresses, registers and immediates to any. xor of a
// register with itself is a 0.
bool isFetch(string const &text) {
    if (matches(text, "mov([sz][a-z]+)? +" MEMORY "," ARGUMENT COMMENT)) return true;
    if (matches(text, "lea +" MEMORY "," REGISTER COMMENT)) return true;
    if (matches(text, "(mov|movabs) +(" REGISTER "|\\$[-x0-9a-f]+)," REGISTER)) return true;
    return matches(text, "xor +(" REGISTER "),\\1");
}

// Each kind of instruction that may stand there only once.
enum Once { Shift, Or, EntryTest, EntryJump, Call, Status, Decrement, JumpBack, Kinds };

struct Judge {
    string const &function;
    Stretch kind;
    int seen[Kinds] = {};

    bool once(Once what) { return ++seen[what] == 1; }

    bool before(string const &text) {
        if (isCallOf(text, function)) return once(Call);
        if (isFetch(text)) return true;
        if (matches(text, "shl +\\$0x20," REGISTER)) return once(Shift);
        if (matches(text, "or +" REGISTER "," REGISTER)) return once(Or);
        if (kind == Stretch::Single) return false;
        if (matches(text, "test +(" REGISTER "),\\1")) return once(EntryTest);
        return matches(text, "jle +.*") && once(EntryJump);
    }
    bool behind(string const &text) {
        if (matches(text, "mov +%eax," REGISTER)) return once(Status);
        if (kind == Stretch::Single) return false;
        if (matches(text, "(sub +\\$0x1|add +\\$0xffffffff|dec[l]?) *,? *" REGISTER)) return once(Decrement);
        return matches(text, "jne +.*") && once(JumpBack);
    }
    bool allows(string const &text) {
        if (isPadding(text)) return true;
        return seen[Call] == 0 ? before(text) : behind(text);
    }
};

} // namespace

vector<string> measuredStretch(vector<string> const &instructions, string const &function) {
    vector<string> found;
    int stretches = 0;
    auto begin = std::find_if(instructions.begin(), instructions.end(), isRead);
    while (begin != instructions.end()) {
        auto end = std::find_if(begin + 1, instructions.end(), isRead);
        if (end == instructions.end()) break;
        vector<string> stretch(begin + 1, end);
        if (std::any_of(stretch.begin(), stretch.end(),
                        [&](string const &t) { return isCallOf(t, function); })) {
            found = stretch;
            ++stretches;
        }
        begin = end;
    }
    return stretches == 1 ? found : vector<string>();
}

string intruder(vector<string> const &stretch, string const &function, Stretch kind) {
    Judge judge{function, kind};
    for (string const &text : stretch) {
        if (!judge.allows(text)) return text;
    }
    return judge.seen[Call] == 1 ? "" : "no call";
}
