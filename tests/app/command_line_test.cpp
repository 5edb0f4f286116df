// The command line: what is understood, and what is refused before anything is read.
#include "workbench/app/command_line.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "workbench/output/display_text.h"
#include "workbench/runtime/current_run.h"

namespace workbench::app {
namespace {

// In English, where a test does not say otherwise: who runs it may speak another language.
Outcome<ProgramOptions> read(std::vector<const char*> arguments) {
  if (std::getenv("LC_ALL") == nullptr) setenv("LC_ALL", "C", 1);
  if (std::getenv("COLUMNS") == nullptr) setenv("COLUMNS", "1000", 1);  // and at no window of its own
  arguments.insert(arguments.begin(), "compare-datasets");
  return readCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

std::string refusal(const std::vector<const char*>& arguments) {
  const auto options = read(arguments);
  return options ? "accepted" : options.problem().text();
}

const CompareRequest& compareOf(const Outcome<ProgramOptions>& options) {
  return std::get<CompareCommand>(options->command).request;
}

TEST(CommandLine, ReadsListsAtTheirCommas) {
  const auto options = read({"compare", "a.csv", "b.csv", "--id", "x,y", "--variables", "p to q,r"});
  ASSERT_TRUE(options) << options.problem().text();
  EXPECT_EQ(compareOf(options).ids, (std::vector<std::string>{"x", "y"}));
  EXPECT_EQ(compareOf(options).variables, (std::vector<std::string>{"p to q", "r"}));
}

TEST(CommandLine, SortsOnlyWhenNeededUnlessTold) {
  EXPECT_EQ(compareOf(read({"compare", "a", "b"})).sort, SortChoice::whenNeeded);
  EXPECT_EQ(compareOf(read({"compare", "a", "b", "--sort", "never"})).sort, SortChoice::never);
  EXPECT_EQ(compareOf(read({"compare", "a", "b", "--sort", "always"})).sort, SortChoice::always);
  EXPECT_NE(refusal({"compare", "a", "b", "--sort", "maybe"}).find("--sort"), std::string::npos);
}

TEST(CommandLine, NoneIsNoPropertyAndAnUnknownOneIsRefusedByName) {
  EXPECT_TRUE(compareOf(read({"compare", "a", "b", "--properties", "none"})).properties.empty());
  EXPECT_EQ(compareOf(read({"compare", "a", "b", "--properties", "label,role"})).properties.size(), 2U);
  EXPECT_NE(refusal({"compare", "a", "b", "--properties", "label,colour"}).find("\"colour\""), std::string::npos);
  EXPECT_NE(refusal({"compare", "a", "b", "--properties", "label,all"}).find("\"all\""), std::string::npos);
}

TEST(CommandLine, TheLimitIsFrom1To10000OrNone) {
  for (const char* good : {"1", "10000", "none"})
    EXPECT_EQ(refusal({"compare", "a", "b", "--limit", good}), "accepted");
  for (const char* bad : {"0", "10001", "-3", "1.5", "many"}) {
    EXPECT_NE(refusal({"compare", "a", "b", "--limit", bad}).find("--limit"), std::string::npos) << bad;
  }
}

TEST(CommandLine, ReadsRenamingsAndWhatIsDropped) {
  const auto options = read({"compare", "a", "b", "--rename", "x=y,p=a b", "--rename", "q=r=s", "--drop", "u,v"});
  ASSERT_TRUE(options) << options.problem().text();
  const std::vector<std::pair<std::string, std::string>> renamed = {{"x", "y"}, {"p", "a b"}, {"q", "r=s"}};
  EXPECT_EQ(compareOf(options).renamed, renamed);
  EXPECT_EQ(compareOf(options).dropped, (std::vector<std::string>{"u", "v"}));
  for (const char* bad : {"x", "=x", "x=", "a=b,c"}) {
    EXPECT_NE(refusal({"compare", "a", "b", "--rename", bad}).find("--rename"), std::string::npos) << bad;
  }
}

TEST(CommandLine, ConvertTakesDataAndThePlaceOfTheCopy) {
  const auto options = read({"convert", "a.csv", "b.parquet"});
  ASSERT_TRUE(options) << options.problem().text();
  const auto& convert = std::get<ConvertCommand>(options->command);
  EXPECT_EQ(convert.input, "a.csv");
  EXPECT_EQ(convert.output, "b.parquet");
  EXPECT_NE(refusal({"convert", "a.csv"}).find("OUT"), std::string::npos);
}

TEST(CommandLine, ColourAndProgressAreAutomaticUnlessTold) {
  const auto outputOf = [](const Outcome<ProgramOptions>& options) {
    return std::get<CompareCommand>(options->command).output;
  };
  EXPECT_EQ(outputOf(read({"compare", "a", "b"})).color, Appearance::automatic);
  EXPECT_EQ(outputOf(read({"compare", "a", "b", "--color", "always"})).color, Appearance::always);
  EXPECT_EQ(outputOf(read({"compare", "a", "b", "--progress", "never"})).progress, Appearance::never);
  EXPECT_NE(refusal({"compare", "a", "b", "--color", "sometimes"}).find("--color"), std::string::npos);
}

TEST(CommandLine, AFlagNameAndNoFlagExcludeEachOther) {
  EXPECT_NE(refusal({"compare", "a", "b", "--flag", "f", "--no-flag"}), "accepted");
}

TEST(CommandLine, AnUnknownOptionOrCommandIsRefused) {
  EXPECT_NE(refusal({"compare", "a", "b", "--nothing"}), "accepted");
  EXPECT_NE(refusal({"contrast", "a", "b"}), "accepted");
  EXPECT_NE(refusal({}), "accepted");
}

TEST(CommandLine, HelpAndVersionAreTexts) {
  const auto version = read({"--version"});
  ASSERT_TRUE(version);
  EXPECT_TRUE(std::get<ShowText>(version->command).text.starts_with("compare-datasets "));
  EXPECT_NE(std::get<ShowText>(read({"--help"})->command).text.find("Exit status"), std::string::npos);
  EXPECT_NE(std::get<ShowText>(read({"compare", "--help"})->command).text.find("--id"), std::string::npos);
}

// The environment's language, for as long as one lives.
class SpokenAtHome {
 public:
  explicit SpokenAtHome(const char* locale) { setenv("LC_ALL", locale, 1); }
  SpokenAtHome(const SpokenAtHome&) = delete;
  SpokenAtHome& operator=(const SpokenAtHome&) = delete;
  ~SpokenAtHome() { setenv("LC_ALL", "C", 1); }
};

struct Refusal {
  std::vector<const char*> arguments;
  std::string english;
  std::string german;
};

TEST(CommandLineWords, SayWhatStandsWrongInEveryLanguage) {
  const std::vector<Refusal> refusals = {
      {{},
       "compare-datasets: A command is required; there are compare, run, describe, convert, sort, encode-password. "
       "Try compare-datasets --help.",
       "compare-datasets: Ein Befehl ist notwendig; es gibt compare, run, describe, convert, sort, encode-password. "
       "Näheres sagt compare-datasets --help."},
      {{"comapre", "a", "b"},
       "compare-datasets: There is no command comapre. Did you mean compare? Try compare-datasets --help.",
       "compare-datasets: Es gibt keinen Befehl comapre. Meinten Sie compare? Näheres sagt compare-datasets --help."},
      {{"--nothing"},
       "compare-datasets: The following argument was not expected: --nothing. Try compare-datasets --help.",
       "compare-datasets: Diese Angabe war nicht erwartet: --nothing. Näheres sagt compare-datasets --help."},
      {{"compare", "a"},
       "compare-datasets: COMPARISON is required. Try compare-datasets compare --help.",
       "compare-datasets: COMPARISON ist notwendig. Näheres sagt compare-datasets compare --help."},
      {{"sort", "a", "b"},
       "compare-datasets: --by is required. Try compare-datasets sort --help.",
       "compare-datasets: --by ist notwendig. Näheres sagt compare-datasets sort --help."},
      {{"compare", "a", "b", "c", "d"},
       "compare-datasets: The following arguments were not expected: c d. Try compare-datasets compare --help.",
       "compare-datasets: Diese Angaben waren nicht erwartet: c d. Näheres sagt compare-datasets compare --help."},
      {{"compare", "a", "b", "--flag", "f", "--no-flag"},
       "compare-datasets: --flag excludes --no-flag. Try compare-datasets compare --help.",
       "compare-datasets: --flag schließt --no-flag aus. Näheres sagt compare-datasets compare --help."},
      {{"compare", "a", "b", "--journal"},
       "--journal: This option takes a value: FILE. Try compare-datasets compare --help.",
       "--journal: Diese Option verlangt einen Wert: DATEI. Näheres sagt compare-datasets compare --help."},
      {{"--plugins"},
       "--plugins: This option takes a value: FOLDER. Try compare-datasets --help.",
       "--plugins: Diese Option verlangt einen Wert: ORDNER. Näheres sagt compare-datasets --help."},
      {{"compare", "a", "b", "-o", "x", "-o", "y"},
       "--output: This option is given more than once. Try compare-datasets compare --help.",
       "--output: Diese Option ist mehr als einmal angegeben. Näheres sagt compare-datasets compare --help."},
      {{"compare", "a", "b", "--quiet=loud"},
       "--quiet: This option takes no value. Try compare-datasets compare --help.",
       "--quiet: Diese Option nimmt keinen Wert. Näheres sagt compare-datasets compare --help."},
      {{"compare", "a", "b", "--tolerance", "x"},
       "--tolerance: \"x\" is no number. Try compare-datasets compare --help.",
       "--tolerance: \"x\" ist keine Zahl. Näheres sagt compare-datasets compare --help."},
      {{"compare", "a", "b", "--tolerance", "2"},
       "--tolerance: The tolerance has to be a number from 0 to below 1.",
       "--tolerance: Die Toleranz muss eine Zahl von 0 bis unter 1 sein."},
      {{"compare", "a", "b", "--sort", "a: b"},
       "--sort: \"a: b\" is none of these: auto, never, always. Try compare-datasets compare --help.",
       "--sort: \"a: b\" ist keines von diesen: auto, never, always. Näheres sagt compare-datasets compare --help."},
      {{"compare", "a", "b", "--color", "1"},
       "--color: \"1\" is none of these: auto, always, never. Try compare-datasets compare --help.",
       "--color: \"1\" ist keines von diesen: auto, always, never. Näheres sagt compare-datasets compare --help."},
      {{"compare", "a", "b", "--limit", "-3"},
       "--limit: \"-3\" is no limit. Write a whole number from 1 to 10000, or none.",
       "--limit: \"-3\" ist keine Obergrenze. Schreiben Sie eine ganze Zahl von 1 bis 10000, oder none."},
      {{"compare", "a", "b", "--rename", "x"},
       "--rename: \"x\" is no renaming. Write OLD=NEW.",
       "--rename: \"x\" ist keine Umbenennung. Schreiben Sie ALT=NEU."},
      {{"compare", "a", "b", "--properties", "colour"},
       "--properties: There is no dictionary property \"colour\". Write all, none, or a list of "
       "width,label,valuelabels,missing,columns,align,measure,role,attributes.",
       "--properties: Es gibt keine Eigenschaft \"colour\" in Variablenverzeichnissen. Schreiben Sie all, none oder "
       "eine "
       "Liste aus width,label,valuelabels,missing,columns,align,measure,role,attributes."},
      {{"compare", "a", "b", "--lang", "tlh"},
       "There is no wording for the language \"tlh\". Choose one of these: de, en.",
       "Es gibt keinen Wortlaut für die Sprache \"tlh\". Wählen Sie eine von diesen: de, en."},
  };
  for (const Refusal& refused : refusals) {
    EXPECT_EQ(refusal(refused.arguments), refused.english);
    const SpokenAtHome german("de_DE.UTF-8");
    EXPECT_EQ(refusal(refused.arguments), refused.german);
  }
}

TEST(CommandLineWords, AreOfTheLanguageThatIsAskedForWhereverItStands) {
  const std::string german =
      "compare-datasets: COMPARISON ist notwendig. Näheres sagt compare-datasets compare --help.";
  EXPECT_EQ(refusal({"compare", "a", "--lang", "de"}), german);
  EXPECT_EQ(refusal({"compare", "--lang=de", "a"}), german);
  EXPECT_EQ(refusal({"compare", "a", "--lang", "en", "--lang", "de"}),
            "--lang: Diese Option ist mehr als einmal angegeben. Näheres sagt compare-datasets compare --help.");
  const SpokenAtHome atHome("de");
  EXPECT_EQ(refusal({"compare", "a", "--lang", "en"}),
            "compare-datasets: COMPARISON is required. Try compare-datasets compare --help.");
}

TEST(CommandLineWords, NeedNoWordingForAVersionAndGiveOneForACommand) {
  EXPECT_EQ(read({"--version", "--lang", "tlh"})->wording, nullptr);
  EXPECT_EQ(read({"compare", "a", "b", "--lang", "de"})->wording->language(), "de");
  EXPECT_EQ(read({"sort", "a", "b", "--by", "x", "--lang", "de"})->wording->language(), "de");
  EXPECT_EQ(read({"encode-password"})->wording->language(), "en");
  EXPECT_EQ(currentRun().wording, nullptr);
}

std::string help(std::vector<const char*> arguments) {
  arguments.push_back("--help");
  const auto options = read(arguments);
  return options ? std::get<ShowText>(options->command).text : options.problem().text();
}

TEST(CommandLineWords, OfTheProgramItselfAreHelpInEveryLanguage) {
  EXPECT_EQ(help({}), R"(Tells exactly how two versions of a dataset differ.
Usage: compare-datasets [OPTIONS] SUBCOMMAND

Options:
  -h,--help                   Print this help message and exit
  --version                   Display program version information and exit
  --plugins FOLDER ...        Another folder of plug-ins

Subcommands:
  compare                     Compare two datasets
  run                         Run a job
  describe                    Show a dataset's dictionary and number of cases
  convert                     Copy a dataset, with its dictionary, into another data file
  sort                        Sort a dataset
  encode-password             Read a password (from the terminal or standard input) and print what ENCRYPTEDPW=YES takes

Exit status: 0 nothing differs, 1 something differs, 2 trouble.
)");
  EXPECT_EQ(help({"--lang", "de"}), R"(Sagt genau, worin sich zwei Fassungen eines Datasets unterscheiden.
Aufruf: compare-datasets [OPTIONEN] BEFEHL

Optionen:
  -h,--help                   Diese Hilfe zeigen
  --version                   Die Version des Programms zeigen
  --plugins ORDNER ...        Ein weiterer Ordner mit Plug-ins

Befehle:
  compare                     Zwei Datasets vergleichen
  run                         Einen Job ausführen
  describe                    Das Variablenverzeichnis eines Datasets und die Zahl seiner Fälle zeigen
  convert                     Ein Dataset mit seinem Variablenverzeichnis in eine andere Datendatei kopieren
  sort                        Ein Dataset sortieren
  encode-password             Ein Passwort lesen (vom Terminal oder von der Standardeingabe) und ausgeben, was ENCRYPTEDPW=YES nimmt

Rückgabewert: 0 nichts ist verschieden, 1 etwas ist verschieden, 2 fehlgeschlagen.
)");
}

// What describes an option, a command or a group stands at the end of its line, behind two blanks at least.
std::vector<std::string> descriptionsIn(const std::string& help) {
  std::vector<std::string> descriptions;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t gap = line.rfind("  ");
    std::string text = gap == std::string::npos ? line : line.substr(gap + 2);
    if (text.find(' ') != std::string::npos) descriptions.push_back(std::move(text));
  }
  return descriptions;
}

TEST(CommandLineWords, LeaveNothingEnglishInTheGermanHelpOfAnyCommand) {
  std::size_t described = 0;
  for (const char* const command : {"compare", "run", "describe", "convert", "sort", "encode-password"}) {
    const std::string german = help({command, "--lang", "de"});
    for (const std::string& description : descriptionsIn(help({command}))) {
      EXPECT_EQ(german.find(description), std::string::npos) << command << ": " << description;
      ++described;
    }
    for (const char* const english : {"Usage", "OPTIONS", "Options:", "Positionals", "REQUIRED", "Excludes", "FILE"}) {
      EXPECT_EQ(german.find(english), std::string::npos) << command << ": " << english;
    }
  }
  EXPECT_GT(described, 80U);
}

TEST(CommandLineWords, FitTheWindowInEveryHelp) {
  for (const char* const columns : {"64", "80", "132"}) {
    setenv("COLUMNS", columns, 1);
    for (const char* const command : {"compare", "run", "describe", "convert", "sort", "encode-password"}) {
      for (const char* const language : {"en", "de"}) {
        std::istringstream lines(help({command, "--lang", language}));
        for (std::string line; std::getline(lines, line);)
          EXPECT_LE(output::displayWidth(line), std::atoi(columns)) << line;
      }
    }
    std::istringstream lines(help({}));
    for (std::string line; std::getline(lines, line);)
      EXPECT_LE(output::displayWidth(line), std::atoi(columns)) << line;
  }
  setenv("COLUMNS", "80", 1);
  const std::string shown = help({});
  EXPECT_NE(shown.find("\n  encode-password             Read a password (from the terminal or standard\n"
                       "                              input) and print what ENCRYPTEDPW=YES takes\n"),
            std::string::npos)
      << shown;
  EXPECT_TRUE(help({"convert"}).starts_with("Copy a dataset, with its dictionary, into another data file\n"));
  unsetenv("COLUMNS");
}

TEST(CommandLineWords, ShowNothingOfHowChoicesAreHeld) {
  const std::string shown = help({"compare"});
  EXPECT_NE(
      shown.find("\n  --sort WHEN                 Bring the datasets into case ID order first: auto (default), never,"),
      std::string::npos);
  EXPECT_EQ(shown.find("->"), std::string::npos);
}

}  // namespace
}  // namespace workbench::app
