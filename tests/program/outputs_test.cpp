// What is written: whole or not at all, never over what is read, and to links, pipes and streams as to what they are.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/program/program_run.h"
#include "tests/program/watched_program.h"

namespace workbench::tests::outputs_test {

namespace fs = std::filesystem;

// Files of as many cases; every second case differs.
struct TwoFiles {
  explicit TwoFiles(int cases = 4) {
    std::string active = "id,x\n";
    std::string other = active;
    for (int id = 1; id <= cases; ++id) {
      active += std::to_string(id) + "," + std::to_string(id * 2) + "\n";
      other += std::to_string(id) + "," + std::to_string(id * 2 + (id % 2)) + "\n";
    }
    folder.write("a.csv", active);
    folder.write("b.csv", other);
  }
  static std::vector<std::string> words(std::vector<std::string> options) {
    options.insert(options.begin(), {"compare", "a.csv", "b.csv", "--id", "id"});
    return options;
  }
  ProgramResult compared(std::vector<std::string> options) const { return folder.run(words(std::move(options))); }
  // The program's status when a shell runs this in the folder, `program` standing for a comparison of both files.
  int shell(std::string script) const {
    const std::string program = std::string("'") + PROGRAM + "' compare a.csv b.csv --id id -q ";
    for (std::size_t at = script.find("program"); at != std::string::npos; at = script.find("program", at)) {
      script.replace(at, 7, program);
      at += program.size();
    }
    folder.write(".script", "cd '" + folder.path("").string() + "' && { " + script + "; }");
    const int status = std::system(("sh '" + folder.path(".script").string() + "' 2>/dev/null").c_str());
    fs::remove(folder.path(".script"));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  void makePipe(const std::string& name) const { ASSERT_EQ(::mkfifo(folder.path(name).c_str(), 0600), 0); }

  ProgramFolder folder;
};

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

mode_t modeOf(const fs::path& path) {
  struct stat found{};
  return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 0777U : 0;
}

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Until the folder has a file whose name begins so; its name.
std::string waitForFile(const ProgramFolder& folder, const std::string& beginning) {
  for (int waited = 0; waited < 60'000; waited += 20) {
    for (const auto& entry : fs::directory_iterator(folder.path(""))) {
      if (entry.path().filename().string().starts_with(beginning)) return entry.path().filename();
    }
    ::usleep(20'000);
  }
  ADD_FAILURE() << "no file " << beginning;
  return {};
}

TEST(Outputs, KeepThePermissionsAndTheLinksOfWhatTheyReplace) {
  const TwoFiles files;
  files.folder.write("real.json", "before");
  files.folder.write("real.csv", "before");
  for (const char* const name : {"real.json", "real.csv"}) {
    fs::permissions(files.folder.path(name), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink(name, files.folder.path(std::string("link") + fs::path(name).extension().string()));
  }
  EXPECT_EQ(files.compared({"-o", "link.json", "--matched", "link.csv"}).status, 1);
  EXPECT_TRUE(has(files.folder.read("real.json"), "\"verdict\": \"different\""));
  EXPECT_EQ(files.folder.read("real.csv"), "id,x\n2,4\n4,8\n");
  for (const char* const name : {"real.json", "real.csv"}) EXPECT_EQ(modeOf(files.folder.path(name)), 0600U) << name;
  for (const char* const link : {"link.json", "link.csv"}) EXPECT_TRUE(fs::is_symlink(files.folder.path(link))) << link;
}

TEST(Outputs, AreMadeWhereALinkPointsToThatLeadsNowhereYet) {
  const TwoFiles files;
  fs::create_directory(files.folder.path("there"));
  fs::create_symlink("there/new.json", files.folder.path("link.json"));
  fs::create_symlink("there/new.csv", files.folder.path("link.csv"));
  EXPECT_EQ(files.compared({"-o", "link.json", "--matched", "link.csv"}).status, 1);
  EXPECT_TRUE(fs::is_symlink(files.folder.path("link.json")));
  EXPECT_TRUE(has(files.folder.read("there/new.json"), "verdict"));
  EXPECT_EQ(files.folder.read("there/new.csv"), "id,x\n2,4\n4,8\n");
}

TEST(Outputs, NeverReplaceWhatIsRead) {
  const TwoFiles files;
  fs::create_directory(files.folder.path("sub"));
  fs::create_hard_link(files.folder.path("b.csv"), files.folder.path("hard.csv"));
  fs::create_symlink("b.csv", files.folder.path("soft.csv"));
  const std::string schema = R"({"fields":[{"name":"id","type":"number"},{"name":"x","type":"number"}]})";
  files.folder.write("b.schema.json", schema);
  const std::string before = files.folder.read("b.csv");
  for (const std::string option : {"-o", "--matched", "--mismatched", "--save-active", "--journal"}) {
    for (const std::string name : {"b.csv", "sub/../b.csv", "hard.csv", "soft.csv"}) {
      std::vector<std::string> options = {option, name};
      if (option == "-o") options.insert(options.end(), {"--format", "json"});
      const ProgramResult result = files.compared(options);
      EXPECT_EQ(result.status, 2) << option << " " << name;
      EXPECT_TRUE(has(result.err, name)) << result.err;
      EXPECT_EQ(files.folder.read("b.csv"), before) << option << " " << name;
    }
  }
  const ProgramResult overSchema = files.compared({"-o", "b.schema.json"});
  EXPECT_EQ(overSchema.status, 2);
  EXPECT_TRUE(has(overSchema.err, "would replace a file that data came from")) << overSchema.err;
  EXPECT_EQ(files.folder.read("b.schema.json"), schema);
}

// A file that standard output is redirected to holds whatever goes there, in the order in which it came about.
TEST(Outputs, OfTheJournalToAStreamStandBeforeTheResultsThatGoThereToo) {
  const TwoFiles files;
  const std::string run = "{ echo before; program --show-syntax --journal /dev/stdout -o /dev/stdout --format json; }";
  EXPECT_EQ(files.shell(run + " >both"), 1);
  const std::string both = files.folder.read("both");
  const std::vector<std::string> inOrder = {
      "before\nOPEN DATA",    "\nCOMPARE DATASETS\n",   "\n# COMPARE DATASETS\n",
      "UniversalParser#1 = ", "\n~UniversalParser#1\n", "\"verdict\": \"different\""};
  std::size_t at = 0;
  for (const std::string& part : inOrder) {
    at = both.find(part, at);
    ASSERT_NE(at, std::string::npos) << part << " is not in its place in:\n" << both;
  }
  EXPECT_EQ(files.shell("program --journal /dev/stdout >alone; program --journal /dev/fd/3 3>third; "
                        "program --journal plain; cmp alone plain && cmp third plain"),
            0);
}

TEST(Outputs, NeverReplaceWhatAJobReadsOrSaves) {
  const TwoFiles files;
  const std::string job = "OPEN DATA FILE='a.csv'.\nSAVE DATA FILE='saved.csv'.\nOPEN DATA FILE='b.csv'.\n";
  files.folder.write("job.txt", job);
  for (const std::string name : {"job.txt", "a.csv", "b.csv", "saved.csv", "./saved.csv"}) {
    const ProgramResult result = files.folder.run({"run", "job.txt", "--format", "json", "-o", name});
    EXPECT_EQ(result.status, 2) << name;
    EXPECT_TRUE(has(result.err, name)) << result.err;
    EXPECT_FALSE(has(files.folder.read(name), "verdict")) << name;
  }
  files.folder.write("b.schema.json", "{}");
  fs::create_symlink("a.csv", files.folder.path("log"));
  for (const std::string name : {"a.csv", "b.schema.json", "log"}) {
    const std::string before = files.folder.read(name);
    const ProgramResult result = files.folder.run({"run", "job.txt", "--journal", name});
    EXPECT_EQ(result.status, 2) << name;
    EXPECT_TRUE(has(result.err, "The journal is no data")) << result.err;
    EXPECT_EQ(files.folder.read(name), before) << name;
  }
}

TEST(Outputs, NeverReplaceAPartOfAFolderOrOfAPackageThatIsRead) {
  const TwoFiles files;
  fs::create_directory(files.folder.path("sales"));
  ASSERT_EQ(files.folder.run({"convert", "a.csv", "sales/part.parquet"}).status, 0);
  const std::string part = files.folder.read("sales/part.parquet");
  for (const std::string name : {"sales", "sales/part.parquet"}) {
    EXPECT_EQ(files.folder.run({"compare", "sales", "b.csv", "--matched", name}).status, 2) << name;
    EXPECT_EQ(files.folder.run({"compare", "sales", "b.csv", "-o", name, "--format", "json"}).status, 2) << name;
  }
  EXPECT_EQ(files.folder.read("sales/part.parquet"), part);
  fs::create_directory(files.folder.path("package"));
  fs::copy(files.folder.path("a.csv"), files.folder.path("package/people.csv"));
  const std::string package = R"({"resources":[{"name":"people","path":"people.csv"}]})";
  files.folder.write("package/datapackage.json", package);
  for (const std::string name : {"package/people.csv", "package/datapackage.json"}) {
    const ProgramResult result =
        files.folder.run({"compare", "package/datapackage.json#people", "b.csv", "-o", name, "--format", "json"});
    EXPECT_EQ(result.status, 2) << name;
    EXPECT_TRUE(has(result.err, name)) << result.err;
  }
  EXPECT_EQ(files.folder.read("package/datapackage.json"), package);
  EXPECT_TRUE(files.folder.read("package/people.csv").starts_with("id,x\n"));
}

TEST(Outputs, OfOneNameAreRefusedBeforeAnythingIsRead) {
  const TwoFiles files;
  files.folder.write("out.csv", "before");
  fs::create_symlink("out.csv", files.folder.path("link.csv"));
  fs::create_symlink("new.csv", files.folder.path("nowhere.csv"));
  const std::string names = files.folder.names();
  const std::vector<std::vector<std::string>> choices = {
      {"--matched", "out.csv", "--mismatched", "link.csv"},
      {"--matched", "new.csv", "--save-active", "nowhere.csv"},
      {"--mismatched", "out.csv", "-o", "./out.csv", "--format", "json"},
      {"--journal", "log", "-o", "log", "--format", "json"}};
  for (const auto& options : choices) {
    const ProgramResult result = files.compared(options);
    EXPECT_EQ(result.status, 2) << options[1];
    EXPECT_TRUE(has(result.err, "Two outputs would be written to this file.")) << result.err;
  }
  EXPECT_EQ(files.folder.names(), names);
  EXPECT_EQ(files.folder.read("out.csv"), "before");
}

TEST(Outputs, ThatAreFoldersOrLieInNoneAreRefusedBeforeTheComparison) {
  const TwoFiles files;
  fs::create_directory(files.folder.path("folder.csv"));
  for (const std::string place : {"folder.csv", "none/r.csv"}) {
    const ProgramResult results = files.compared({"-o", place, "--format", "json", "--matched", "m.csv"});
    EXPECT_EQ(results.status, 2) << place;
    EXPECT_TRUE(has(results.err, place)) << results.err;
    const ProgramResult saved = files.compared({"--mismatched", place, "--matched", "m.csv"});
    EXPECT_EQ(saved.status, 2) << place;
    EXPECT_TRUE(has(saved.err, place)) << saved.err;
    EXPECT_FALSE(files.folder.has("m.csv")) << place;
  }
}

TEST(Outputs, OfAFullDiskLeaveWhatWasThereAndNothingElse) {
  const TwoFiles files(20'000);
  files.folder.write("m.csv", "before");
  files.folder.write("r.json", "before");
  files.folder.write("m.schema.json", "{}");
  const std::string names = files.folder.names();
  for (const std::string option :
       {"--matched m.csv", "--matched m.parquet", "--matched m.csv.gz", "--save-active m.csv",
        "--mismatched n.csv --matched m.csv", "--limit none -o r.json"}) {
    EXPECT_EQ(files.shell("trap '' XFSZ; ulimit -f 8; program " + option), 2) << option;
    EXPECT_EQ(files.folder.names(), names) << option;
    EXPECT_EQ(files.folder.read("m.csv"), "before") << option;
    EXPECT_EQ(files.folder.read("r.json"), "before") << option;
  }
}

TEST(Outputs, OfAFullDiskAreNotPutInPlaceByHalf) {
  const TwoFiles files(20'000);
  // There is room for the results and for no more: of 20,000 cases, a few match.
  files.folder.write("b.csv", files.folder.read("a.csv") + "99999,1\n");
  files.folder.write("c.csv", "id,x\n1,2\n2,5\n");
  const std::string names = files.folder.names();
  EXPECT_EQ(files.shell("trap '' XFSZ; ulimit -f 8; program --mismatched n.csv --matched m.csv"), 2);
  EXPECT_EQ(files.folder.names(), names) << "the empty n.csv fits, m.csv does not";
}

// However little memory there is: the program says so with its status, and is never ended by a fault.
TEST(Outputs, OfAProgramWithoutMemoryAreTrouble) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer needs all addresses";
#endif
  const TwoFiles files(20'000);
  int troubles = 0;
  for (int kibibytes = 50'000; kibibytes <= 200'000; kibibytes += 7'500) {
    const int status = files.shell("ulimit -c 0; ulimit -v " + std::to_string(kibibytes) + "; program -o r.html");
    const bool isUnstarted = status == 127;  // there was no room for its libraries
    EXPECT_TRUE(isUnstarted || status == 1 || status == 2) << kibibytes << ": " << status;
    troubles += status == 2 ? 1 : 0;
  }
  EXPECT_GT(troubles, 0);
}

TEST(Outputs, ToAFullDeviceAreTrouble) {
  const TwoFiles files(2'000);
  EXPECT_EQ(files.shell("program -o /dev/full --format json"), 2);
  EXPECT_EQ(files.shell("'" PROGRAM "' compare a.csv b.csv --id id > /dev/full"), 2);
  EXPECT_EQ(files.shell("program --journal /dev/full"), 2);
  EXPECT_EQ(files.shell("program --show-syntax > /dev/full"), 2);
  EXPECT_EQ(files.shell("'" PROGRAM "' --help > /dev/full"), 2);
  EXPECT_EQ(files.shell("echo secret | XDG_CONFIG_HOME=. '" PROGRAM "' encode-password > /dev/full"), 2);
  fs::create_symlink("/dev/full", files.folder.path("m.csv"));
  EXPECT_EQ(files.shell("program --mismatched n.csv --matched m.csv"), 2);
  EXPECT_FALSE(files.folder.has("n.csv"));
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

// The second output is a pipe that nobody reads from, so the program stands with the first one under its private name.
struct StandingWithOutputs {
  StandingWithOutputs() {
    files.folder.write("m.csv", "before");
    files.makePipe("n.csv");
  }
  TwoFiles files;
  std::vector<std::string> words = TwoFiles::words({"--matched", "m.csv", "--mismatched", "n.csv"});
};

TEST(Outputs, OfAKilledProgramTellByTheirNamesWhoseTheyAreAndLeaveTheOldFileWhole) {
  const StandingWithOutputs standing;
  {
    ProgramOnTerminal program(standing.files.folder, standing.words);
    waitForFile(standing.files.folder, ".m.csv.");
    program.sendSignal(SIGKILL);
    EXPECT_EQ(program.statusAtEnd(), 128 + SIGKILL);
  }
  EXPECT_EQ(standing.files.folder.read("m.csv"), "before");
  EXPECT_TRUE(standing.files.folder.names().starts_with(".m.csv.")) << standing.files.folder.names();
}

TEST(Outputs, OfAProgramThatIsEndedFromOutsideLeaveNothingBehind) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const StandingWithOutputs standing;
    ProgramOnTerminal program(standing.files.folder, standing.words);
    waitForFile(standing.files.folder, ".m.csv.");
    program.sendSignal(signal);
    EXPECT_EQ(program.statusAtEnd(), 128 + signal);
    EXPECT_EQ(standing.files.folder.read("m.csv"), "before");
    EXPECT_EQ(standing.files.folder.names(), "a.csv b.csv m.csv n.csv") << signal;
  }
}

TEST(Outputs, GoIntoPipesAsTheyAre) {
  for (const std::string name : {"p.json", "p.csv", "p.csv.gz", "p.parquet"}) {
    const TwoFiles files;
    files.makePipe(name);
    const bool isResults = name == "p.json";
    ProgramOnTerminal program(files.folder, TwoFiles::words({isResults ? "-o" : "--matched", name}));
    const std::string content = contentOf(files.folder.path(name));
    EXPECT_EQ(program.statusAtEnd(), 1) << program.shown();
    EXPECT_TRUE(fs::is_fifo(files.folder.path(name))) << name;
    if (isResults) {
      EXPECT_TRUE(has(content, "\"verdict\": \"different\"")) << content;
      continue;
    }
    const std::string copy = "copy" + name.substr(1);
    files.folder.write(copy, content);
    EXPECT_EQ(files.folder.run({"convert", copy, "back.csv"}).status, 0) << name;
    EXPECT_EQ(files.folder.read("back.csv"), "id,x\n2,4\n4,8\n") << name;
  }
}

TEST(Outputs, IntoAPipeThatIsClosedTakeTheOthersWithThem) {
  const TwoFiles files(100'000);
  files.makePipe("n.csv");
  ProgramOnTerminal program(files.folder, TwoFiles::words({"--matched", "m.csv", "--mismatched", "n.csv"}));
  {
    std::ifstream reader(files.folder.path("n.csv"));
  }
  EXPECT_EQ(program.statusAtEnd(), 2) << program.shown();
  EXPECT_EQ(files.folder.names(), "a.csv b.csv n.csv");
}

TEST(Outputs, GoToStreamsOfTheProcessByTheirNames) {
  const TwoFiles files;
  const ProgramResult result = files.compared({"--show-syntax", "-o", "/dev/stdout", "--format", "json"});
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_TRUE(result.out.starts_with("OPEN DATA")) << "what was shown before stays";
  EXPECT_TRUE(has(result.out, "\"verdict\": \"different\"")) << result.out;
  EXPECT_EQ(files.shell("program --format json -o /dev/fd/3 3>third.json"), 1);
  EXPECT_TRUE(has(files.folder.read("third.json"), "\"verdict\": \"different\""));
  EXPECT_EQ(files.shell("program --format json -o /dev/fd/9"), 2) << "nobody opened it";
  EXPECT_EQ(files.shell("program --format json -o /dev/stdin < a.csv"), 2) << "it is only read";
  fs::create_symlink("/dev/stdout", files.folder.path("m.csv"));
  EXPECT_EQ(files.shell("program --matched m.csv | cat > through.csv; test -s through.csv"), 0);
  EXPECT_EQ(files.folder.read("through.csv"), "id,x\n2,4\n4,8\n");
  EXPECT_TRUE(fs::is_symlink("/dev/stdout"));
}

TEST(Outputs, ThatCannotBePutInPlaceAfterAnotherOneWasAreNamedWithIt) {
  const TwoFiles files;
  files.folder.write("n.csv", "");
  files.folder.write("other", "before");
  // Nothing can take the place of a file that something is mounted on.
  if (files.shell("unshare -m sh -c 'mount --bind other n.csv'") != 0) GTEST_SKIP() << "nothing can be mounted here";
  const int status = files.shell("unshare -m sh -c \"mount --bind other n.csv && '" PROGRAM
                                 "' compare a.csv b.csv --id id --matched m.csv --mismatched n.csv 2> said\"");
  EXPECT_EQ(status, 2);
  const std::string said = files.folder.read("said");
  EXPECT_TRUE(has(said, "n.csv")) << said;
  EXPECT_TRUE(has(said, "These files had been put into place before: m.csv.")) << said;
  EXPECT_EQ(files.folder.read("other"), "before");
  EXPECT_EQ(files.folder.read("m.csv"), "id,x\n2,4\n4,8\n");
}

}  // namespace workbench::tests::outputs_test
