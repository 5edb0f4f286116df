#include "workbench/language/grammar_help.h"

#include <gtest/gtest.h>

#include "tests/language/sample_grammar.h"
#include "workbench/language/host_commands.h"

namespace workbench::language {
namespace {

TEST(GrammarHelp, ListsASubcommandThatWasAddedTwiceOnceAndAsItIsLookedUp) {
  EXPECT_EQ(grammarHelp(compareGrammar()),
            "COMPARE DATASETS: Compare Datasets\n"
            "  [/COMPDATASET[=name ...|'text']\n"
            "      [PASSWORD='text']]\n"
            "  [/VARIABLES[=name ...|'text']]\n"
            "  [/CASEID[=name ...|'text']]\n"
            "  [/SAVE\n"
            "      [FLAGMISMATCHES=YES|NO]\n"
            "      [VARNAME=name|'text']\n"
            "      [MATCHDATASET=YES|NO]\n"
            "      [MATCHNAME=name ...|'text']\n"
            "      [MATCHPASS='text'|NONE]\n"
            "      [ENCRYPTEDPW=YES|NO]]\n"
            "  [/OUTPUT\n"
            "      [VARPROPERTIES=NONE|ALL|MEASURE|LABEL|WIDTH ...]\n"
            "      [CASETABLE=YES|NO]\n"
            "      [TABLELIMIT=1..10000|NONE]]\n");
}

TEST(GrammarHelp, ShowsWhatIsRequiredWithoutBrackets) {
  EXPECT_EQ(grammarHelp(*hostCommand("open data")),
            "OPEN DATA: Open Data\n"
            "  FILE='text'\n"
            "  [PASSWORD='text']\n"
            "  [NAME=name|'text']\n"
            "  [TYPESWITH='text']\n"
            "  [TYPESPASSWORD='text']\n"
            "  [RENAME=name ...|'text']\n"
            "  [DROP=name ...|'text']\n"
            "  [TYPESRENAME=name ...|'text']\n"
            "  [TYPESDROP=name ...|'text']\n");
  EXPECT_EQ(grammarHelp(drawGrammar()),
            "DRAW: Draw\n"
            "  [name ...|'text']\n"
            "  [QUIET]\n"
            "  /SHAPE=name|'text'\n"
            "      SIZE=number (>= 0.5, < 2.5)\n"
            "      [FILLED]\n"
            "      [COUNT=whole number] ...\n");
}

}  // namespace
}  // namespace workbench::language
