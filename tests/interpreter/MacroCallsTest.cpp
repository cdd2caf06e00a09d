// Calls of scripts and patterns: what parameters see, what comes back, and what is refused.
#include "ScriptRun.h"
#include "text/Replace.h"

namespace kvl {
namespace {

struct MacroRow {
    bool isPattern;
    const char* name;
    const char* parameters;
    const char* body;
};

// The body of each begins on line 3 of its file.
constexpr MacroRow kMacros[] = {
    {true, "SHOW", "#X::STREAM", "<$X$>"},
    {true, "NUMBER", "#N::INTEGER", "$N$"},
    {true, "KINDS", "#A::STREAM, #B::INTEGER, #C::FLOAT, #D::BOOL", "$A$,$B$,$C$,$D$"},
    {true, "FIELD", "#X::IDENTIFIER", "$X$"},
    {true, "BOTH", "#X::IDENTIFIER, #Y::IDENTIFIER", "$X$-$Y$"},
    {true, "WHOLE", "#P::PAIR", "$P:L$+$P:R$"},
    {true, "WHOLEANDPART", "#P::PAIR, #Q::IDENTIFIER", "$P:L$$P:R$$Q$"},
    {true, "PARTANDWHOLE", "#Q::IDENTIFIER, #P::PAIR", "$Q$$P:L$$P:R$"},
    {true, "TWOWHOLES", "#P::PAIR, #Q::PAIR", "$P:L$$Q:L$$P:R$$Q:R$"},
    {true, "HANDON", "#Q::IDENTIFIER, #P::PAIR, #O::PAIR", "$WHOLE(P)$ $WHOLE(O)$ $FIELD(Q)$ $FIELD(P:L)$"},
    {true, "AGAIN", "#P::PAIR, #N::INTEGER",
     "$P:L$$M ::INTEGER = N$$M -= 1$$BEGIN IF M > 0$$AGAIN(P, M)$$END IF M > 0$$P:R$"},
    {true, "WALK", "#R::IDENTIFIER", "$BEGIN ALL R$$R:V$;$END ALL R$"},
    {true, "CELLS", "#L::STRING[]", "$BEGIN ALL L$$L$;$END ALL L$"},
    {true, "PAIRS", "#P::PAIR[]", "$BEGIN ALL P$$P:L$$P:R$;$END ALL P$"},
    {true, "ASTEXT", "#X::STREAM", "$T ::STREAM = SHOW(X)$$T$$T$"},
    {true, "TOOFEW", "", "\n\n$SHOW()$"},
    {false, "STORE", "&X::STREAM, #V::STREAM", "$X = V$"},
    {false, "SETBYCONSTANT", "#X::STREAM", "$X = \"changed\"$"},
    {false, "SETFIELD", "&X::IDENTIFIER, #V::STREAM", "$X = V$"},
    {false, "HANDSET", "&X::STREAM", "$STORE(X, \"deep\")$"},
    {false, "ADD", "&R::IDENTIFIER, #N::ROWS", "$BEGIN ALL N:R EXTEND R$$R:V = N:R:V$$END ALL N:R EXTEND R$"},
    {false, "RELOAD", "&P::PAIR, &Q::IDENTIFIER, #S::STREAM", "$P = S$$Q = P:L$$WHOLE(P)$"},
    {false, "SUBDIRECTORY", "&D::KVL:DIRECTORY", "$D:SUB ::KVL:DIRECTORY$"},
    {false, "BREAK", "&P::PAIR", "$P:L = \"new\"$\n$NOTHING$"},
    {false, "ASKALL", "#A::IDENTIFIER, #B::PAIR", "$DUMP(A, B:L)$"},
};

class CallRun : public ScriptRun {
public:
    CallRun() {
        AddType("ROWS", "::ROWS = ::SEQUENCE{ R ::LIST{ V ::IDENTIFIER } }");
        AddType("PAIR", "::PAIR = ::SEQUENCE{ L ::IDENTIFIER ',' R ::IDENTIFIER }");
        for (const MacroRow& macro : kMacros) {
            macro.isPattern ? AddPattern(macro.name, macro.parameters, macro.body)
                            : AddScript(macro.name, macro.parameters, macro.body);
        }
    }
};

// Line 3 of each script. I has the fields a and b, A the records x, y, z.
constexpr const char* kValues = "$X ::STREAM = \"a,b\"$$I ::PAIR = X$$X = \"x y z\"$$A ::ROWS = X$$X = \"v\"$\n";

class MacroCalls : public testing::TestWithParam<ScriptRow> {};

TEST_P(MacroCalls, Run) {
    const ScriptRow& row = GetParam();
    const std::string body = std::string(kValues) + row.body;
    CallRun run;
    ExpectRow(run, {row.name, body.c_str(), row.output, row.faults});
}

constexpr ScriptRow kParameterRows[] = {
    {"Variable", "$SHOW(X)$", "<v>"},
    {"Literals", "$KINDS(\"t\", 1, 2.5, TRUE)$", "t,1,2.5,TRUE"},
    {"LiteralWithPlaceholder", "$SHOW(\"1$X$2\")$", "<1v2>"},
    {"LiteralWithEscape", "$SHOW(\"1\\t2\")$", "<1\t2>"},
    {"LiteralWithCall", "$SHOW(\"$SHOW(X)$\")$", "<<v>>"},
    {"Element", "$FIELD(I:L)$", "a"},
    {"Instance", "$WHOLE(I)$", "a+b"},
    {"Column", "$BEGIN ALL A:R$$FIELD(A:R:V)$$END ALL A:R$", "xyz"},
    {"List", "$WALK(A:R)$", "x;y;z;"},
    {"ListInItsOwnLoop", "$BEGIN ALL A:R$$WALK(A:R)$$A:R:V$$END ALL A:R$", "x;y;z;xx;y;z;yx;y;z;z"},
    {"BracketList", "$L ::STRING[2]$$BEGIN ALL L$$L = \"c\"$$END ALL L$$CELLS(L)$", "c;c;"},
    {"BracketListOfADeclaredType", "$Q ::PAIR[2]$$BEGIN ALL Q$$Q:R = \"r\"$$END ALL Q$$PAIRS(Q)$", "r;r;"},
    {"SameVariableTwice", "$BOTH(I:L, I:L)$", "a-a"},
    {"SameColumnTwice", "$BEGIN ALL A:R$$BOTH(A:R:V, A:R:V)$$END ALL A:R$", "x-xy-yz-z"},
    {"SameInstanceTwice", "$TWOWHOLES(I, I)$", "aabb"},
    {"PartOfAnotherArgument", "$WHOLEANDPART(I, I:L)$", "aba"},
    {"PartInFront", "$PARTANDWHOLE(I:L, I)$", "aab"},
    {"HandedOn", "$HANDON(I:R, I, I)$", "a+b a+b b a"},
    {"Recursion", "$AGAIN(I, 3)$", "aaabbb"},
    {"LabelsAreBackAfterwards", "$WHOLE(I)$$WHOLEANDPART(I, I:L)$$I:L$$I:R$",
     "a+baba"
     "ab"},
    {"ShortNamesInACall", "$FIELD(:L)$", "a"},
};
INSTANTIATE_TEST_SUITE_P(Parameters, MacroCalls, testing::ValuesIn(kParameterRows), RowName);

constexpr ScriptRow kResultRows[] = {
    {"Reference", "$STORE(X, \"w\")$$X$", "w"},
    {"ConstantReferenceSharesStorage", "$SETBYCONSTANT(X)$$X$", "changed"},
    {"ReferenceThroughTwoCalls", "$HANDSET(X)$$X$", "deep"},
    {"ReferenceToAField", "$SETFIELD(I:R, \"w\")$$I:R$", "w"},
    {"ReferenceToAColumn", "$BEGIN ALL A:R$$SETFIELD(A:R:V, \"w\")$$A:R:V$$END ALL A:R$$WALK(A:R)$", "wwww;w;w;"},
    {"RecordsAppended", "$X = \"p q\"$$N ::ROWS = X$$ADD(A:R, N)$$WALK(A:R)$", "x;y;z;p;q;"},
    {"InstanceReloadedInACall", "$X = \"c,d\"$$RELOAD(I, I:R, X)$$I:L$$I:R$", "ac"},
    {"TextOfAPattern", "$T ::STREAM = SHOW(X)$$T$", "<v>"},
    {"TextOfAPatternInAPattern", "$ASTEXT(X)$", "<v><v>"},
    {"NewDirectoryBelowAParameter", "$OUT ::KVL:DIRECTORY$$SUBDIRECTORY(OUT)$$OUT:SUB$", "/work"},
    {"DirectoryThatIsThereStays", "$O ::KVL:DIRECTORY$$SUBDIRECTORY(O)$$SUBDIRECTORY(O)$$O:SUB$", "/work"},
};
INSTANTIATE_TEST_SUITE_P(Results, MacroCalls, testing::ValuesIn(kResultRows), RowName);

constexpr ScriptRow kFaultRows[] = {
    {"TooFew", "\n$SHOW()$", "", "ERR_DECL_SCRIPT_MACRO_2 5"},
    {"TooMany", "$SHOW(X, X)$", "", "ERR_DECL_SCRIPT_MACRO_2 4"},
    {"TooFewInAPattern", "$TOOFEW()$", "", "ERR_DECL_PATTERN_MACRO_2 5"},
    {"OtherType", "$NUMBER(X)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"LiteralOfOtherType", "$SHOW(1)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"InstanceOfOtherType", "$WHOLE(A)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"ListWithoutSuchAColumn", "$NUMBER(A:R)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"LiteralForAReference", "$STORE(\"w\", X)$", "", "ERR_DECL_SCRIPT_MACRO_5 4"},
    {"ConstantForAReference", "$#K ::STREAM = \"k\"$\n$STORE(K, X)$", "", "ERR_DECL_SCRIPT_MACRO_5 5"},
    {"ConstantForAReferenceByWayOfACall", "$#K ::STREAM = \"k\"$$SETBYCONSTANT(K)$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"UnknownMacro", "$Q()$", "", "ERR_DECL_SCRIPT_MACRO_1 4"},
    {"NoMacro", "$X()$", "", "ERR_DECL_SCRIPT_MACRO_1 4"},
    {"PatternThatWasNeverLoaded", "$P() ::KVL:PATTERN$$P()$", "", "ERR_DECL_SCRIPT_MACRO_1 4"},
    {"UnknownArgument", "$SHOW(Q)$", "", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"AmbiguousArgument", "$J ::PAIR$$FIELD(:L)$", "", "ERR_DECL_SCRIPT_VAR_7 4"},
    {"StreamMacroAsStatement", "$KVL:STREAM:CLEAR_STREAM(X)$", "", "ERR_DECL_SCRIPT_MACRO_4 4"},
    {"FailingBody", "$BREAK(I)$$X$", "", "ERR_DECL_SCRIPT_VAR_5 4"},
};
INSTANTIATE_TEST_SUITE_P(Faults, MacroCalls, testing::ValuesIn(kFaultRows), RowName);

// Keeps what built-in macros were called with, and in which overwrite mode.
class Witness : public SimpleBuiltIns {
public:
    std::vector<const CVariable*> variables;
    std::vector<std::string> labels;
    int overwriteMode = 0;

    bool RunStaticMacro(CPatternSchema& schema, int identifier, MacroValue& value) override {
        overwriteMode = schema.overwriteMode;
        for (const BoundArgument& argument : value.arguments) {
            variables.push_back(argument.variable);
            labels.push_back(argument.variable->label);
        }
        return SimpleBuiltIns::RunStaticMacro(schema, identifier, value);
    }
};

TEST(MacroParameters, AreTheCallersVariablesUnderOtherNames) {
    CallRun run;
    Witness witness;
    SetBuiltIns(&witness);
    run.root->overwriteMode = kOverwriteSkip;
    ASSERT_TRUE(run.Execute(std::string(kValues) + "$ASKALL(A:R, I)$")) << run.outside.console.output;
    EXPECT_EQ(witness.labels, (std::vector<std::string>{"A", "B:L"}));
    ASSERT_EQ(witness.variables.size(), 2U);
    EXPECT_EQ(witness.variables[0], run.root->variableTable.Find("A:R"));
    EXPECT_EQ(witness.variables[1], run.root->variableTable.Find("I:L"));
    EXPECT_EQ(witness.overwriteMode, kOverwriteSkip);
}

TEST(MacroParameters, GetTheirLabelsBackFromAFailingCall) {
    CallRun run;
    ASSERT_FALSE(run.Execute(std::string(kValues) + "$BREAK(I)$"));
    const CVariable* field = run.root->variableTable.Find("I:L");
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->label, "I:L");
    EXPECT_EQ(field->GetText(), "new");
    EXPECT_EQ(field->GetFileLabelKey(), "main.kvl@I:L");
    EXPECT_EQ(field->ownerEntity, run.root.get());
}

TEST(MacroName, OfTheVariableMustBeTheDeclaredOne) {
    CallRun run;
    ASSERT_TRUE(run.Execute(kValues));
    auto* other = static_cast<CVariableKVLMacro*>(run.root->EnterVariable("OTHER", "KVL:PATTERN", kTypePattern));
    other->ShareValue(*run.root->variableTable.Find("ASTEXT"));
    OutputText output;
    RunContext context;
    EXPECT_FALSE(run.root->ExecuteMacroCall("OTHER", {}, "OTHER()", true, output, context));
    EXPECT_NE(run.outside.console.output.find("Actual - Formal Macro/Pattern Name Mismatch. "), std::string::npos);
}

TEST(MacroParameters, AreEvaluatedOnce) {
    CallRun run;
    ASSERT_TRUE(run.Execute("$SHOW(\"$KVL:GENERATION:GUID()$\")$$T ::STREAM = SHOW(\"$KVL:GENERATION:GUID()$\")$"));
    EXPECT_EQ(run.builtIns.callCount, 2);
}

TEST(MacroTrace, TellsCallAndReturn) {
    CallRun run;
    ASSERT_TRUE(run.Execute("$X ::STREAM$$HANDSET(X)$")) << run.outside.console.output;
    EXPECT_EQ(run.outside.console.TextIn(11),
              "\nCall     HANDSET(X)\n"
              "\nCall     STORE(X, \"deep\")\n"
              "\nReturn   STORE(&X::STREAM, #V::STREAM)\n"
              "\nReturn   HANDSET(&X::STREAM)\n");
}

TEST(MacroText, LosesMarksWithTheLineEndsBehindThem) {
    CallRun run;
    run.AddPattern("LIST", "#R::IDENTIFIER",
                   "\n$BEGIN ALL R$\n$R:V$\n$BEGIN SEPARATOR$\n,\n$END SEPARATOR$\n$END ALL R$\n");
    ASSERT_TRUE(run.Execute(std::string(kValues) + "$LIST(A:R)$")) << run.outside.console.output;
    EXPECT_EQ(run.output.find(Process().generationMark), std::string::npos);
    EXPECT_EQ(ReplaceAll(run.output, "\r\n", ""), "x,y,z");
}

TEST(MacroText, IsEncodedWhenTheSourceWas) {
    CallRun run;
    run.AddPattern("UMLAUT", "", "\xC3\xA4");
    ASSERT_TRUE(run.Execute("$UMLAUT()$"));
    EXPECT_EQ(run.output, "\xC3\xA4");
}

// DOWN calls itself until its number is 0.
bool CallNested(ScriptRun& run, int calls) {
    run.AddScript("DOWN", "#N::INTEGER", "$M ::INTEGER = N$$M -= 1$$BEGIN IF M > 0$$DOWN(M)$$END IF M > 0$");
    bool succeeded = false;
    RunOnLargeStack(std::size_t{1} << 30, [&] { succeeded = run.Execute("$DOWN(" + std::to_string(calls) + ")$"); });
    EXPECT_EQ(Process().macroDepth, 0);
    return succeeded;
}

TEST(MacroDepth, TenThousandCallsNest) {
    ScriptRun run;
    EXPECT_TRUE(CallNested(run, kDeepestMacroCall)) << run.faults;
}

TEST(MacroDepth, OneMoreIsRefused) {
    ScriptRun run;
    EXPECT_FALSE(CallNested(run, kDeepestMacroCall + 1));
    EXPECT_EQ(run.faults, "ERR_EXEC_ENVIRON_FATAL_1 3");
    EXPECT_NE(run.outside.console.output.find("Macro calls are nested deeper than 10000. "), std::string::npos);
}

}  // namespace
}  // namespace kvl
