#include "workbench/language/tokens.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace workbench::language {
namespace {

using Kind = TokenInfoObj::Kind;

// The tokens of all commands: words as they are, strings in quotes, numbers after "#", other marks in angle brackets; a
// command ends with ";", an error follows as "!line:column".
std::string cut(std::string_view job) {
  SourceCursor cursor(job);
  std::string all;
  while (const std::optional<CommandText> command = nextCommand(cursor)) {
    for (const PlacedToken& placed : command->tokens) {
      const std::string& text = placed.token.getString();
      switch (placed.token.getKind()) {
        case Kind::word:
          all += text + " ";
          break;
        case Kind::quotedString:
          all += "'" + text + "' ";
          break;
        case Kind::number:
          all += "#" + text + " ";
          break;
        case Kind::punctuation:
          all += "<" + text + "> ";
          break;
      }
    }
    all += ";";
    if (command->error) all += fmt::format("!{}:{}", command->error->line, command->error->column);
  }
  return all;
}

std::string placesIn(std::string_view job) {
  std::string places;
  for (const TokenInfoObj& token : tokensOf(job)) places += fmt::format("{}:{} ", token.getLine(), token.getColumn());
  return places;
}

TEST(Tokens, EndACommandAtAPeriodThatEndsItsLine) {
  EXPECT_EQ(cut("A b.\nC d.\n"), "A b ;C d ;");
  EXPECT_EQ(cut("A b.  \t\nC."), "A b ;C ;");
  EXPECT_EQ(cut("A b. /* done */\nC."), "A b ;C ;");
  EXPECT_EQ(cut("A\n  b\n."), "A b ;");
}

TEST(Tokens, EndTheLastCommandAtTheEndOfTheJob) { EXPECT_EQ(cut("A b.\nC d"), "A b ;C d ;"); }

TEST(Tokens, OfAJobWithLineEndsOfAnySystemAreTheSame) {
  EXPECT_EQ(cut("A b.\r\nC d.\r\n"), "A b ;C d ;");
  EXPECT_EQ(cut("A b.\rC d.\r"), "A b ;C d ;");
  EXPECT_EQ(placesIn("A\r\n b\r c"), "1:1 2:2 3:2 ");
}

TEST(Tokens, KeepAPeriodThatStandsInAWordOrNumber) {
  EXPECT_EQ(cut("A x.y 1.5 .5 10.\nB."), "A x.y #1.5 #.5 #10 ;B ;");
  EXPECT_EQ(cut("A x."), "A x ;");
}

TEST(Tokens, RefuseAPeriodInTheMiddleOfALine) { EXPECT_EQ(cut("A b. C d.\nE."), "A b <.> C d ;!1:4E ;"); }

TEST(Tokens, TakeAQuoteDoubledInsideAStringForOne) {
  EXPECT_EQ(cut("A 'it''s' \"say \"\"hi\"\"\" '' \"'\"."), "A 'it's' 'say \"hi\"' '' ''' ;");
}

TEST(Tokens, PassOverComments) {
  EXPECT_EQ(cut("* Don't stop here: a.b.\nA /* not\nthis. */ b."), "A b ;");
  EXPECT_EQ(cut("* one\n two.\n* three.\nA."), "A ;");
  EXPECT_EQ(cut("/* c */ * whole command\n here.\nA."), "A ;");
  EXPECT_EQ(cut("* never ended"), "");
}

TEST(Tokens, TakeAnAsteriskAsAValueForAWord) { EXPECT_EQ(cut("A /D=*."), "A </> D <=> * ;"); }

TEST(Tokens, OfNumbersHaveASignDecimalsAndAnExponent) {
  EXPECT_EQ(cut("A -1 +2.5e-3 1E6 1e-12."), "A #-1 #+2.5e-3 #1E6 #1e-12 ;");
  EXPECT_EQ(cut("A 2019sales 1.2.3 1e."), "A 2019sales 1.2.3 1e ;");
}

TEST(Tokens, OfWordsHoldLettersOfEveryScript) {
  EXPECT_EQ(cut("A größe 年齢 e\u0301t #tmp @x $y a_b."), "A größe 年齢 e\u0301t #tmp @x $y a_b ;");
}

TEST(Tokens, HavePlacesThatCountCharacters) {
  EXPECT_EQ(placesIn("größe b\n  'é' c"), "1:1 1:7 2:3 2:7 ");
  EXPECT_EQ(placesIn("\uFEFFA b"), "1:2 1:4 ");
}

TEST(Tokens, OfAnUnclosedStringEndWithItsLine) {
  EXPECT_EQ(cut("A 'b c.\nD."), "A 'b c' ;!1:3D ;");
  EXPECT_EQ(cut("A 'b\n c.\nD."), "A 'b' c ;!1:3D ;");
}

TEST(Tokens, OfAnUnclosedCommentAreMissing) {
  EXPECT_EQ(cut("A b. \nC /* d.\nE."), "A b ;C ;!2:3");
  EXPECT_EQ(cut("/* a."), ";!1:1");
}

TEST(Tokens, ReportBytesThatAreNoCharacters) {
  EXPECT_EQ(cut("A \xFF b.\nC."), "A <\uFFFD> b ;!1:3C ;");
  EXPECT_EQ(cut("A 'x\xC3y'.\nC."), "A 'x\xC3y' ;!1:5C ;");
  EXPECT_EQ(cut(std::string_view("A \0.\nC.", 7)), "A <\uFFFD> ;!1:3C ;");
  EXPECT_EQ(cut("A \x07.\nC."), "A <\x07> ;!1:3C ;");
}

TEST(Tokens, OfAnEmptyJobAreNone) {
  EXPECT_EQ(cut(""), "");
  EXPECT_EQ(cut(" \n . \n.\n"), "");
}

}  // namespace
}  // namespace workbench::language
