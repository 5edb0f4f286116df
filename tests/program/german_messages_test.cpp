// What is wrong with data is told in the language of the run, wholly: no English is left on standard error.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/program/program_run.h"

namespace workbench::tests::german_messages_test {

// Compares a good file with another one, in German.
struct GermanRun {
  GermanRun() { folder.write("gut.csv", "id,x\n1,2\n2,3\n"); }

  GermanRun& with(const std::string& name, const std::string& content) {
    folder.write(name, content);
    return *this;
  }

  // All that is on standard error, its lines joined.
  std::string told(const std::string& name) const {
    std::string all = folder.run({"compare", "gut.csv", name, "--id", "id", "--lang", "de"}).err;
    std::replace(all.begin(), all.end(), '\n', ' ');
    return all;
  }

  ProgramFolder folder;
};

TEST(GermanMessages, TellOfAFileThatIsNotThere) {
  EXPECT_EQ(GermanRun().told("fehlt.csv"),
            "Fehler: fehlt.csv: Es gibt keine solche Datei. Prüfen Sie den Namen und den Ordner. ");
}

TEST(GermanMessages, TellOfARowWithTooFewFields) {
  EXPECT_EQ(GermanRun().with("b.csv", "id,x\n1,2\n2\n").told("b.csv"),
            "Fehler: b.csv, Zeile 3: Die Zahl der Felder in dieser Zeile ist 1; erwartet sind 2 wie in der ersten "
            "Zeile. Setzen Sie ein Feld, das ein Trennzeichen enthält, in Anführungszeichen, und schreiben Sie ein "
            "leeres, wo ein Wert fehlt. ");
}

TEST(GermanMessages, TellOfAnUnknownEnding) {
  const std::string told = GermanRun().with("b.xyz", "x").told("b.xyz");
  const std::string start =
      "Fehler: b.xyz: Die Endung des Namens ist keine einer Datendatei. Benutzen Sie eine von diesen: .csv, .tsv,";
  EXPECT_EQ(told.substr(0, start.size()), start);
}

TEST(GermanMessages, TellOfABadDictionary) {
  GermanRun run;
  run.with("b.csv", "id,x\n1,2\n").with("b.schema.json", R"({"fields": [{"name": "id"}, {"name": 5}]})");
  EXPECT_EQ(run.told("b.csv"),
            "Fehler: b.schema.json, /fields/1/name: \"name\" ist eine Zahl und muss ein Text sein. Schreiben Sie einen "
            "Text in Anführungszeichen. ");
}

TEST(GermanMessages, TellOfACellThatIsNotWhatIsDeclared) {
  GermanRun run;
  run.with("b.csv", "id,x\n1,2.5\n");
  run.with("b.schema.json", R"({"fields": [{"name": "id"}, {"name": "x", "type": "integer"}]})");
  EXPECT_EQ(run.told("b.csv"),
            "Fehler: b.csv, Zeile 2: Die Spalte \"x\" ist als eine ganze Zahl deklariert, und \"2.5\" ist keine ganze "
            "Zahl. Berichtigen Sie die Zelle oder die Deklaration, oder führen Sie ihren Text unter den fehlenden "
            "Werten auf. ");
}

TEST(GermanMessages, TellWhyAColumnStaysText) {
  const std::string why =
      "Warnung: Die Spalte \"x\" wird als Text gelesen: in b.csv, Zeile 3: \"drei\" ist keine Zahl; ";
  EXPECT_EQ(GermanRun().with("b.csv", "id,x\n1,2\n2,drei\n").told("b.csv"),
            why + "diese Datei allein wäre als eine Zahl gelesen worden. " + why +
                "die andere Datei wäre als eine Zahl gelesen worden. ");
}

}  // namespace workbench::tests::german_messages_test
