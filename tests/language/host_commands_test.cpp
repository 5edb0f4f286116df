#include "workbench/language/host_commands.h"

#include <gtest/gtest.h>

#include "tests/language/sample_grammar.h"

namespace workbench::language {
namespace {

TEST(HostCommands, ReadTheJobThatShowsThemAll) {
  EXPECT_EQ(answerTo("OPEN DATA FILE='entry1.csv' NAME=first.\n"
                     "OPEN DATA FILE='entry2.csv' PASSWORD='p' NAME=second TYPESWITH='entry1.csv'.\n"
                     "ACTIVATE DATASET NAME=first.\n"
                     "SORT CASES BY=a b, 'c d'.\n"
                     "SORT CASES BY=a LIKE=second WHEN=NEEDED.\nSORT CASES BY=a WITH=second.\n"
                     "CHECK DATASETS WITH=second.\nCHECK DATASETS WITH=second KEYS=a 'c d'.\n"
                     "FILTER CASES BY=v.\nWEIGHT CASES BY=NONE.\nSPLIT CASES BY=a b.\n"
                     "DESCRIBE DATA.\n"
                     "SET OPTIONS TOLERANCE=1e-9 COLLATION='de-u-co-phonebk'.\nSET OPTIONS.\n"
                     "SAVE DATA FILE='out.csv' PASSWORD='q'.\n"
                     "CLOSE DATASET NAME=first.\n"),
            "OPEN DATA FILE='entry1.csv' NAME=first\n"
            "OPEN DATA FILE='entry2.csv' PASSWORD='p' NAME=second TYPESWITH='entry1.csv'\n"
            "ACTIVATE DATASET NAME=first\n"
            "SORT CASES BY=a b 'c d'\n"
            "SORT CASES BY=a LIKE=second WHEN=NEEDED\nSORT CASES BY=a WITH=second\n"
            "CHECK DATASETS WITH=second\nCHECK DATASETS WITH=second KEYS=a 'c d'\n"
            "FILTER CASES BY=v\nWEIGHT CASES BY=NONE\nSPLIT CASES BY=a b\n"
            "DESCRIBE DATA\n"
            "SET OPTIONS TOLERANCE=1e-9 COLLATION='de-u-co-phonebk'\nSET OPTIONS\n"
            "SAVE DATA FILE='out.csv' PASSWORD='q'\n"
            "CLOSE DATASET NAME=first\n");
}

TEST(HostCommands, AreFoundByNameWithoutRegardToCase) {
  EXPECT_NE(hostCommand("sort cases"), nullptr);
  EXPECT_EQ(hostCommand("SORT"), nullptr);
  EXPECT_EQ(hostCommandNames().size(), 11U);
}

}  // namespace
}  // namespace workbench::language
