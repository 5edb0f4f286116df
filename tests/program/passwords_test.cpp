// Protected data files and their passwords, as the program's user meets them.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "tests/program/program_run.h"
#include "tests/program/watched_program.h"

namespace workbench::tests::passwords_test {

constexpr const char* active = "id,x\n1,10\n2,20\n3,30\n";
constexpr const char* compared = "id,x\n1,10\n2,21\n3,30\n";

// Two protected files, each with a password of its own, in files that nobody else can read.
struct TwoProtectedFiles {
  TwoProtectedFiles() {
    folder.write("a.csv", active);
    folder.write("b.csv", compared);
    writePassword("first", "geheim-1\n");
    writePassword("second", "second secret word of many characters\r\nanother line\n");
    writePassword("third", "third");
    protect("a.csv", "first");
    protect("b.csv", "second");
  }
  void writePassword(const std::string& name, const std::string& content) const {
    folder.write(name, content);
    chmod(folder.path(name).c_str(), 0600);
  }
  void protect(const std::string& plain, const std::string& password) const {
    const ProgramResult result =
        folder.run({"sort", plain, plain + ".pgp", "--by", "id", "--output-password-file", password});
    EXPECT_EQ(result.status, 0) << result.err;
    std::filesystem::remove(folder.path(plain));
  }
  std::vector<std::string> compare(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> words = {"compare", "a.csv.pgp",       "b.csv.pgp", "--id",
                                      "id",      "--password-file", "first",     "--comparison-password-file",
                                      "second"};
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
  // The number of cases of a protected file.
  std::string casesOf(const std::string& name, const std::string& password) const {
    return cellOf(folder.results({"describe", name, "--password-file", password}), "Dataset", {"Cases", ""});
  }
  ProgramFolder folder;
};

// The words of this user's configuration folder, for as long as it lives.
struct ConfigurationFolder {
  explicit ConfigurationFolder(const std::filesystem::path& folder) { setenv("XDG_CONFIG_HOME", folder.c_str(), 1); }
  ~ConfigurationFolder() { unsetenv("XDG_CONFIG_HOME"); }
};

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(Passwords, ProtectedFilesAreComparedAndTheirCasesSavedProtected) {
  const TwoProtectedFiles files;
  const ProgramResult result =
      files.folder.run(files.compare({"--matched", "m.csv.pgp", "--mismatched", "d.csv.pgp", "--save-active",
                                      "s.csv.pgp", "--output-password-file", "third"}));
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(files.casesOf("m.csv.pgp", "third"), "2");
  EXPECT_EQ(files.casesOf("d.csv.pgp", "third"), "1");
  EXPECT_EQ(files.casesOf("s.csv.pgp", "third"), "3");
  for (const char* name : {"m.csv.pgp", "d.csv.pgp", "s.csv.pgp", "m.schema.json.pgp"}) {
    EXPECT_FALSE(has(files.folder.read(name), "id,x") || has(files.folder.read(name), "fields")) << name;
  }
  EXPECT_FALSE(has(files.folder.names(), "schema.json ")) << files.folder.names();
}

TEST(Passwords, StandNeitherInTheSyntaxNorInTheResultsNorInTheJournal) {
  const TwoProtectedFiles files;
  const ProgramResult result =
      files.folder.run(files.compare({"--matched", "m.csv.pgp", "--output-password-file", "third", "--show-syntax",
                                      "--journal", "journal", "-o", "results.json", "-v"}));
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_TRUE(has(result.out, "PASSWORD='***' NAME=active TYPESWITH='b.csv.pgp' TYPESPASSWORD='***'")) << result.out;
  EXPECT_TRUE(has(result.out, "MATCHPASS='***'")) << result.out;
  EXPECT_TRUE(has(files.folder.read("results.json"), "MATCHPASS='***'"));
  const std::string all = result.out + result.err + files.folder.read("results.json") + files.folder.read("journal");
  for (const char* secret : {"geheim-1", "second secret", "third\"", "'third'", "password-"}) {
    EXPECT_FALSE(has(all, secret)) << secret;
  }
}

TEST(Passwords, ThatAreWrongMissingOrNotWantedAreToldWithTheFile) {
  const TwoProtectedFiles files;
  files.folder.write("plain.csv", active);
  const auto told = [&](const std::vector<std::string>& words) {
    const ProgramResult result = files.folder.run(words);
    EXPECT_EQ(result.status, 2);
    return result.err;
  };
  EXPECT_TRUE(has(told({"describe", "a.csv.pgp", "--password-file", "second"}), "a.csv.pgp: The password is wrong."));
  EXPECT_TRUE(has(told({"describe", "a.csv.pgp"}), "a.csv.pgp: The file is protected by a password, and none"));
  EXPECT_TRUE(has(told({"describe", "plain.csv", "--password-file", "first"}),
                  "plain.csv: The file is not protected by a password."));
}

TEST(Passwords, OfOutputsAndTheirNamesBelongTogetherBeforeAnythingIsRead) {
  const TwoProtectedFiles files;
  // The inputs are not there: who looked at them first would say so.
  const auto told = [&](const std::vector<std::string>& more) {
    std::vector<std::string> words = {"compare", "none1.csv", "none2.csv", "--id", "id"};
    words.insert(words.end(), more.begin(), more.end());
    const ProgramResult result = files.folder.run(words);
    EXPECT_EQ(result.status, 2);
    return result.err;
  };
  EXPECT_TRUE(has(told({"--matched", "m.csv", "--output-password-file", "third"}), "Let the name end in .pgp"));
  EXPECT_TRUE(has(told({"--mismatched", "m.csv.gpg"}), "m.csv.gpg: The name says that the file is protected"));
  EXPECT_TRUE(has(told({"--output-password-file", "third"}), "No data file is written"));
  EXPECT_TRUE(has(told({"--password-file", "nowhere"}), "nowhere: The password file cannot be read"));
  files.writePassword("empty", "\nsecond line\n");
  EXPECT_TRUE(has(told({"--password-file", "empty"}), "empty: The password is empty."));
}

TEST(Passwords, InFilesThatOthersCanReadAreWarnedOf) {
  const TwoProtectedFiles files;
  chmod(files.folder.path("first").c_str(), 0644);
  const ProgramResult result = files.folder.run({"describe", "a.csv.pgp", "--password-file", "first"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(has(result.err, "Others can read the password file first")) << result.err;
  EXPECT_FALSE(has(files.folder.run({"describe", "a.csv.pgp", "--password-file", "first", "-q"}).err, "Others"));
}

TEST(Passwords, OfAJobOpenAndProtectFilesThroughEveryKeyword) {
  const TwoProtectedFiles files;
  files.folder.write("job.txt",
                     "OPEN DATA FILE='a.csv.pgp' PASSWORD='geheim-1' NAME=a.\n"
                     "COMPARE DATASETS\n"
                     "  /COMPDATASET='b.csv.pgp' PASSWORD='second secret word of many characters'\n"
                     "  /VARIABLES=ALL /CASEID=id\n"
                     "  /SAVE MATCHDATASET=YES MATCHNAME='m.csv.pgp' MATCHPASS='third'\n"
                     "        MISMATCHDATASET=YES MISMATCHNAME='d.csv.pgp' MISMATCHPASS='geheim-1'.\n"
                     "SAVE DATA FILE='s.tsv.gpg' PASSWORD='third'.\n");
  const ProgramResult result = files.folder.run({"run", "job.txt", "--journal", "journal", "--format", "json"});
  EXPECT_EQ(result.status, 1) << result.err << result.out;
  EXPECT_EQ(files.casesOf("m.csv.pgp", "third"), "2");
  EXPECT_EQ(files.casesOf("d.csv.pgp", "first"), "1");
  EXPECT_EQ(files.casesOf("s.tsv.gpg", "third"), "3");
  for (const char* secret : {"geheim-1", "second secret", "'third'", "\"third\""}) {
    EXPECT_FALSE(has(result.out + result.err + files.folder.read("journal"), secret)) << secret;
  }
}

TEST(Passwords, ThatTheFirstOutputLacksKeepAnythingFromBeingSaved) {
  const TwoProtectedFiles files;
  const std::string before = files.folder.names();
  const ProgramResult result =
      files.folder.run({"run", "-"},
                       "OPEN DATA FILE='a.csv.pgp' PASSWORD='geheim-1' NAME=a.\n"
                       "COMPARE DATASETS /COMPDATASET='b.csv.pgp' PASSWORD='second secret word of many characters'\n"
                       "  /VARIABLES=ALL /CASEID=id /SAVE MATCHDATASET=YES MATCHNAME='m.csv.pgp'\n"
                       "  MISMATCHDATASET=YES MISMATCHNAME='d.csv.pgp' MISMATCHPASS='third'.\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(has(result.err + result.out, "m.csv.pgp: The name says that the file is protected")) << result.err;
  EXPECT_EQ(files.folder.names(), before);
}

TEST(EncodedPasswords, ProtectWhatTheyWereMadeOf) {
  const TwoProtectedFiles files;
  const ConfigurationFolder configuration(files.folder.path("config"));
  const ProgramResult encoded = files.folder.run({"encode-password"}, "geheim-1\n");
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  const std::string form = encoded.out.substr(0, encoded.out.find('\n'));
  EXPECT_FALSE(has(form, "geheim"));
  struct stat key{};
  ASSERT_EQ(stat(files.folder.path("config/compare-datasets/password-key").c_str(), &key), 0);
  EXPECT_EQ(key.st_mode & 0777U, 0600U);

  const auto job = [](const std::string& password) {
    return "OPEN DATA FILE='a.csv.pgp' PASSWORD='geheim-1' NAME=a.\n"
           "COMPARE DATASETS /COMPDATASET='b.csv.pgp' PASSWORD='second secret word of many characters'\n"
           "  /VARIABLES=ALL /CASEID=id\n"
           "  /SAVE MATCHDATASET=YES MATCHNAME='m.csv.pgp' MATCHPASS='" +
           password + "' ENCRYPTEDPW=YES.\n";
  };
  const ProgramResult result = files.folder.run({"run", "-"}, job(form));
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(files.casesOf("m.csv.pgp", "first"), "2");
  std::filesystem::remove(files.folder.path("m.csv.pgp"));

  std::string damaged = form;
  damaged[damaged.size() - 3] = damaged[damaged.size() - 3] == 'x' ? 'y' : 'x';
  EXPECT_TRUE(has(files.folder.run({"run", "-"}, job(damaged)).err, "damaged"));
  EXPECT_TRUE(has(files.folder.run({"run", "-"}, job("geheim-1")).err, "this is none"));
  std::filesystem::remove_all(files.folder.path("config"));
  EXPECT_TRUE(has(files.folder.run({"run", "-"}, job(form)).err, "encoded with another key"));
  EXPECT_FALSE(files.folder.has("config")) << "decoding makes no key";
  files.folder.run({"encode-password"}, "other\n");
  EXPECT_TRUE(has(files.folder.run({"run", "-"}, job(form)).err, "encoded with another key"));
  EXPECT_FALSE(files.folder.has("m.csv.pgp"));
}

TEST(EncodedPasswords, AreNotMadeWithAKeyThatOthersCanRead) {
  const ProgramFolder folder;
  const ConfigurationFolder configuration(folder.path("config"));
  ASSERT_EQ(folder.run({"encode-password"}, "geheim\n").status, 0);
  chmod(folder.path("config/compare-datasets/password-key").c_str(), 0640);
  const ProgramResult result = folder.run({"encode-password"}, "geheim\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(has(result.err, "Others can read the key")) << result.err;
  EXPECT_EQ(folder.run({"encode-password"}, "\n").status, 2) << "nothing is no password";
}

TEST(PasswordPrompt, AsksOnTheTerminalAndShowsNothingOfWhatIsTyped) {
  const TwoProtectedFiles files;
  ProgramOnTerminal program(files.folder, {"compare", "a.csv.pgp", "b.csv.pgp", "--id", "id", "--password-file", "-",
                                           "--comparison-password-file", "-"});
  program.waitFor("Password of the active dataset: ");
  program.type("geheim-1\n");
  program.waitFor("Password of the comparison dataset: ");
  program.type("secoX\x7fnd secret word of many characters\n");
  EXPECT_FALSE(has(program.commandLine(), "geheim"));
  EXPECT_EQ(program.statusAtEnd(), 1) << program.shown();
  EXPECT_FALSE(has(program.shown(), "geheim")) << program.shown();
  EXPECT_FALSE(has(program.shown(), "secret")) << program.shown();
}

TEST(PasswordPrompt, AsksTwiceForAPasswordThatIsNew) {
  const TwoProtectedFiles files;
  files.folder.write("c.csv", active);
  for (const bool isSame : {false, true}) {
    ProgramOnTerminal program(files.folder,
                              {"sort", "c.csv", "c.csv.pgp", "--by", "id", "--output-password-file", "-"});
    program.waitFor("New password of the saved data: ");
    program.type("third\n");
    program.waitFor("The same once more: ");
    program.type(isSame ? "third\n" : "thirt\n");
    EXPECT_EQ(program.statusAtEnd(), isSame ? 0 : 2) << program.shown();
    EXPECT_EQ(has(program.shown(), "The two passwords are not the same."), !isSame) << program.shown();
    EXPECT_EQ(files.folder.has("c.csv.pgp"), isSame);
  }
  EXPECT_EQ(files.casesOf("c.csv.pgp", "third"), "3");
}

TEST(PasswordPrompt, ThatIsBrokenOffLeavesTheTerminalAsItWas) {
  const TwoProtectedFiles files;
  ProgramOnTerminal program(files.folder, {"describe", "a.csv.pgp", "--password-file", "-"});
  program.waitFor("Password: ");
  EXPECT_FALSE(program.isEchoing());
  program.type("gehe\x03");
  EXPECT_EQ(program.statusAtEnd(), 2) << program.shown();
  EXPECT_TRUE(has(program.shown(), "No password was given.")) << program.shown();
  EXPECT_TRUE(program.isEchoing());
}

TEST(PasswordPrompt, ThatIsEndedFromOutsideLeavesTheTerminalAsItWas) {
  const TwoProtectedFiles files;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    ProgramOnTerminal program(files.folder, {"describe", "a.csv.pgp", "--password-file", "-"});
    program.waitFor("Password: ");
    EXPECT_FALSE(program.isEchoing());
    program.sendSignal(signal);
    EXPECT_EQ(program.statusAtEnd(), 128 + signal) << program.shown();
    EXPECT_TRUE(program.isEchoing()) << "signal " << signal;
  }
}

TEST(PasswordPrompt, ThatHasNoTerminalSaysSo) {
  const TwoProtectedFiles files;
  ProgramOnTerminal program(files.folder, {"describe", "a.csv.pgp", "--password-file", "-"}, WithoutTerminal{});
  EXPECT_EQ(program.statusAtEnd(), 2);
  EXPECT_TRUE(has(program.shown(), "There is no terminal")) << program.shown();
}

// The program stands still while nobody takes its results, which it writes when all else is done.
struct MemoryAfterwards {
  MemoryAfterwards() {
    std::string rows = "id,x\n";
    std::string otherRows = rows;
    for (int id = 1; id <= 1500; ++id) {
      rows += std::to_string(id) + ",1\n";
      otherRows += std::to_string(id) + ",2\n";
    }
    files.folder.write("a.csv", rows);
    files.folder.write("b.csv", otherRows);
    files.protect("a.csv", "first");
    files.protect("b.csv", "second");
  }
  // Those of the texts that stand in the memory of the program once it has run.
  std::vector<std::string> found(std::vector<std::string> words, const std::vector<std::string>& texts) const {
    words.insert(words.end(), {"--format", "json"});
    StandingProgram program(files.folder, words);
    program.waitUntilResultsAreWritten();
    std::vector<std::string> all;
    for (const std::string& text : texts) {
      if (program.memoryHolds(text)) all.push_back(text);
    }
    return all;
  }
  TwoProtectedFiles files;
};

TEST(PasswordMemory, HoldsNoPasswordOfTheCommandLineAfterwards) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer has memory of its own";
#endif
  const MemoryAfterwards memory;
  const auto words = memory.files.compare({"--limit", "none", "--mismatched", "d.csv.pgp", "--save-active", "s.csv.pgp",
                                           "--output-password-file", "third"});
  memory.files.writePassword("third", "drittes Passwort, lang genug\n");
  EXPECT_EQ(memory.found(words, {"geheim-1", "second secret word", "drittes Passwort", "d.csv.pgp"}),
            std::vector<std::string>{"d.csv.pgp"});
}

TEST(PasswordMemory, HoldsNoPasswordOfAJobAfterwards) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer has memory of its own";
#endif
  const MemoryAfterwards memory;
  memory.files.folder.write("job.txt",
                            "OPEN DATA FILE='a.csv.pgp' PASSWORD='geheim-1' NAME=a.\n"
                            "OPEN DATA FILE='b.csv.pgp' PASSWORD='second secret word of many characters' NAME=b.\n"
                            "COMPARE DATASETS /COMPDATASET=a /VARIABLES=ALL /CASEID=id /OUTPUT TABLELIMIT=NONE.\n"
                            "SAVE DATA FILE='s.csv.pgp' PASSWORD='drittes Passwort, lang genug'.\n");
  EXPECT_EQ(memory.found({"run", "job.txt"}, {"geheim-1", "second secret word", "drittes Passwort", "s.csv.pgp"}),
            std::vector<std::string>{"s.csv.pgp"});
}

}  // namespace workbench::tests::passwords_test
