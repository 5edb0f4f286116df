#include "workbench/language/hidden_passwords.h"

#include <gtest/gtest.h>

#include "workbench/language/job.h"

namespace workbench::language {
namespace {

std::string shown(std::string_view command) { return readJob(command, {"OPEN DATA"}).at(0).syntax; }

TEST(ShownSyntax, IsTheCommandAsWritten) {
  EXPECT_EQ(shown("  open   data FILE = 'a.csv'\n /* why */ NAME=x .\n* next."),
            "open   data FILE = 'a.csv'\n /* why */ NAME=x .");
}

TEST(ShownSyntax, HidesThePasswordsOfEveryKeywordThatEndsInPassOrPassword) {
  EXPECT_EQ(shown("OPEN DATA FILE='a' PASSWORD='geheim' NAME=x."), "OPEN DATA FILE='a' PASSWORD='***' NAME=x.");
  EXPECT_EQ(shown("X /SAVE MATCHPASS = \"a\"\"b\" MISMATCHPASS='c' ENCRYPTEDPW=YES."),
            "X /SAVE MATCHPASS = '***' MISMATCHPASS='***' ENCRYPTEDPW=YES.");
  EXPECT_EQ(shown("X password='a'/NEXT=b."), "X password='***'/NEXT=b.");
}

TEST(ShownSyntax, HidesPasswordsThatAreWrittenWrongly) {
  EXPECT_EQ(shown("X PASSWORD=geheim/1,2 NAME=b."), "X PASSWORD='***' NAME=b.");
  EXPECT_EQ(shown("X PASSWORD='a' 'b' NAME=b."), "X PASSWORD='***' NAME=b.");
  EXPECT_EQ(shown("X PASSWORD 'a' NAME=b."), "X PASSWORD '***' NAME=b.");
  EXPECT_EQ(shown("X PASWORD='a'."), "X PASWORD='***'.");
  EXPECT_EQ(shown("X PASSWORD='never closed.\nY."), "X PASSWORD='***'");
}

TEST(ShownSyntax, HidesNothingElse) {
  EXPECT_EQ(shown("X PASSAGE='a' /VARIABLES=password b."), "X PASSAGE='a' /VARIABLES=password b.");
}

}  // namespace
}  // namespace workbench::language
