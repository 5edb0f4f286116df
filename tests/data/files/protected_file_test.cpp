// Protected data files: what gpg writes is read, what is written gpg reads, and what is not sound is told apart.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/data/files/file_fixture.h"
#include "tests/support/gnupg.h"
#include "workbench/data/files/protected_name.h"

namespace workbench::data {
namespace {

using tests::GnuPg;

constexpr const char* people = "id,name\n1,Ann\n2,Bob\n";
constexpr const char* peopleShown = "1 'Ann' / 2 'Bob'";

// The opened file as a short text, or the problem without the folder's name.
std::string openedWith(const TestFolder& folder, const std::string& path, const Secret& password) {
  auto file = openDataFile(path, {password});
  if (file) return shown(*file);
  std::string text = file.problem().text();
  const std::string prefix = folder.path("");
  for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix))
    text.erase(at, prefix.size());
  return text;
}

struct GnuPgFile {
  explicit GnuPgFile(const std::string& options = "", const std::string& plain = people,
                     const std::string& name = "people.csv.pgp")
      : path(folder.path(name)) {
    gnupg.encrypt(folder.write("plain.csv", plain), path, "correct horse", options);
  }
  std::string openedWith(const Secret& password) const { return data::openedWith(folder, path, password); }

  GnuPg gnupg;
  TestFolder folder;
  std::string path;
};

// Rows of noise, so that packing does not make the message small.
std::string manyRows() {
  std::string text = "id,name\n";
  std::mt19937 random(1);
  for (int row = 0; row < 20'000; ++row) text += fmt::format("{},{:08x}\n", row, random());
  return text;
}

Dictionary idAndName() {
  Variable id;
  id.name = "id";
  Variable name;
  name.name = "name";
  name.width = 8;
  name.format = {FormatType::text, 8, 0};
  Dictionary dictionary;
  dictionary.add(std::move(id));
  dictionary.add(std::move(name));
  return dictionary;
}

void writeOneCase(const std::string& path, const Secret& password) {
  auto writer = createDataFile(path, idAndName(), password);
  ASSERT_TRUE(writer) << writer.problem().text();
  OBS values[2];
  values[0].number = 7;
  std::copy_n("Zoe     ", 8, values[1].text);
  (*writer)->append(values, 1, 2);
  (*writer)->complete();
  (*writer)->commit();
}

TEST(ProtectedFile, WrittenByGpgIsReadInEveryFormThatGpgKnows) {
  for (const char* options :
       {"", "--armor", "--cipher-algo 3DES", "--cipher-algo CAMELLIA192 --compress-algo bzip2", "--s2k-mode 1",
        "--cipher-algo TWOFISH --compress-algo none", "--compress-algo zlib --s2k-digest-algo SHA512"}) {
    EXPECT_EQ(GnuPgFile(options).openedWith("correct horse"), peopleShown) << options;
  }
}

TEST(ProtectedFile, IsReadWhateverItsLengthsAreLike) {
  const std::string rows = manyRows();
  const GnuPgFile file("", rows);
  EXPECT_EQ(file.openedWith("correct horse"), shown(opened(file.folder.path("plain.csv"))));
}

TEST(ProtectedFile, HoldsWhateverItsInnerNameSays) {
  const TestFolder folder;
  for (const char* name : {"a.csv.pgp", "b.tsv.gpg", "c.csv.gz.pgp", "d.csv.zst.PGP"}) {
    writeOneCase(folder.path(name), "secret");
    EXPECT_EQ(openedWith(folder, folder.path(name), "secret"), "7 'Zoe'") << name;
  }
}

TEST(ProtectedFile, ThatIsWrittenIsReadByGpg) {
  const TestFolder folder;
  const GnuPg gnupg;
  writeOneCase(folder.path("out.csv.pgp"), "correct horse");
  EXPECT_EQ(gnupg.decrypted(folder.path("out.csv.pgp"), "correct horse"), "id,name\n7,Zoe\n");
  EXPECT_EQ(gnupg.decrypted(folder.path("out.csv.pgp"), "wrong"), "");
}

TEST(ProtectedFile, IsWrittenWithAes256ManyRoundsAndItsIntegrityProtected) {
  const TestFolder folder;
  const GnuPg gnupg;
  writeOneCase(folder.path("out.csv.pgp"), "secret");
  const std::string packets = gnupg.packets(folder.path("out.csv.pgp"), "secret");
  for (const char* part : {"cipher 9", "s2k 3", "hash 8", "count 16777216", "mdc_method: 2"}) {
    EXPECT_NE(packets.find(part), std::string::npos) << part << "\nin: " << packets;
  }
}

TEST(ProtectedFile, HasItsDictionaryInAProtectedFileToo) {
  const TestFolder folder;
  Dictionary dictionary = idAndName();
  dictionary.at(1).label = "Name of the person";
  auto writer = createDataFile(folder.path("out.csv.pgp"), dictionary, "secret");
  ASSERT_TRUE(writer);
  (*writer)->complete();
  (*writer)->commit();
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"out.csv.pgp", "out.schema.json.pgp"}));
  EXPECT_EQ(folder.read("out.schema.json.pgp").find("person"), std::string::npos);
  EXPECT_TRUE(bringsDictionary(folder.path("out.csv.pgp")));
  const auto file = openDataFile(folder.path("out.csv.pgp"), {"secret"});
  ASSERT_TRUE(file) << file.problem().text();
  EXPECT_EQ((*file)->dictionary().at(1).label, "Name of the person");
  EXPECT_EQ((*file)->dictionaryFile(), folder.path("out.schema.json.pgp"));
}

TEST(ProtectedFile, MayHaveADictionaryThatEverybodyReads) {
  const GnuPgFile file;
  file.folder.write("people.schema.json", R"({"fields": [{"name": "id", "type": "integer", "title": "Number"},
    {"name": "name", "type": "string"}]})");
  const auto opened = openDataFile(file.path, {"correct horse"});
  ASSERT_TRUE(opened) << opened.problem().text();
  EXPECT_EQ((*opened)->dictionary().at(0).label, "Number");
}

TEST(ProtectedFile, IsNotWrittenWhereAPackageWouldShowItsDictionary) {
  const TestFolder folder;
  folder.write("datapackage.json", R"({"resources": [{"name": "out", "path": "out.csv.pgp"}]})");
  const auto writer = createDataFile(folder.path("out.csv.pgp"), idAndName(), "secret");
  ASSERT_FALSE(writer);
  EXPECT_NE(writer.problem().what.find("would show its dictionary"), std::string::npos) << writer.problem().text();
}

TEST(ProtectedFile, MayBeTheResourceOfAPackage) {
  const GnuPgFile file;
  const std::string package = file.folder.write(
      "datapackage.json", R"({"resources": [{"name": "people", "type": "table", "path": "people.csv.pgp"}]})");
  EXPECT_EQ(openedWith(file.folder, package + "#people", "correct horse"), peopleShown);
  EXPECT_EQ(
      openedWith(file.folder, package, ""),
      "people.csv.pgp: The file is protected by a password, and none was given for it. Give it: PASSWORD='...' in a "
      "job, a password file on the command line.");
}

TEST(ProtectedFile, WantsItsPassword) {
  const GnuPgFile file;
  EXPECT_EQ(
      file.openedWith(""),
      "people.csv.pgp: The file is protected by a password, and none was given for it. Give it: PASSWORD='...' in a "
      "job, a password file on the command line.");
  EXPECT_EQ(file.openedWith("correct horsf"),
            "people.csv.pgp: The password is wrong. Give the one that the file was protected with.");
  EXPECT_EQ(file.openedWith("correct horse"), peopleShown);
  EXPECT_EQ(file.openedWith("wrong"),
            "people.csv.pgp: The password is wrong. Give the one that the file was protected with.")
      << "also when it was opened before";
}

TEST(ProtectedFile, KeepsAPasswordOutOfWhereNoneIsWanted) {
  const TestFolder folder;
  EXPECT_EQ(openedWith(folder, folder.write("a.csv", people), "secret"),
            "a.csv: The file is not protected by a password. Leave the password out.");
  EXPECT_EQ(openedWith(folder, folder.write("b.csv.pgp", people), "secret"),
            "b.csv.pgp: The file is no OpenPGP message, as its name says it were. Give it the name of what it is, and "
            "leave the password out.");
  EXPECT_EQ(openedWith(folder, folder.path("none.csv.pgp"), ""),
            "none.csv.pgp: There is no such file. Check the name and the folder.");
}

// Wherever it is cut, with the right password and with a wrong one.
TEST(ProtectedFile, ThatIsCutOffIsToldFromADamagedOne) {
  const GnuPgFile file("", manyRows());
  const std::string whole = file.folder.read("people.csv.pgp");
  for (const std::size_t kept : {std::size_t{1}, std::size_t{8}, std::size_t{20}, std::size_t{40}, whole.size() / 2,
                                 whole.size() - 23, whole.size() - 1}) {
    const std::string path = file.folder.write("cut.csv.pgp", whole.substr(0, kept));
    for (const char* password : {"correct horse", "wrong"}) {
      EXPECT_EQ(
          openedWith(file.folder, path, password),
          "cut.csv.pgp: The protected file is cut off: its end is missing. Fetch the file again from where it came "
          "from.")
          << kept << " of " << whole.size();
    }
  }
}

TEST(ProtectedFile, ThatIsDamagedAnywhereIsRefused) {
  const GnuPgFile file("", manyRows());
  const std::string whole = file.folder.read("people.csv.pgp");
  for (const std::size_t place : {std::size_t{100}, whole.size() / 2, whole.size() - 30, whole.size() - 1}) {
    std::string damaged = whole;
    damaged[place] = static_cast<char>(damaged[place] ^ 1);
    // A length that was changed makes the file end too early or too late, which is told as that.
    const std::string told = openedWith(file.folder, file.folder.write("d.csv.pgp", damaged), "correct horse");
    EXPECT_TRUE(told.find("is damaged: what it holds is not what was encrypted") != std::string::npos ||
                told.find("is cut off") != std::string::npos)
        << place << ": " << told;
  }
}

TEST(ProtectedFile, ThatIsArmoredIsToldWhenItIsCutOrDamaged) {
  const GnuPgFile file("--armor", manyRows(), "people.csv.asc");
  const std::string whole = file.folder.read("people.csv.asc");
  EXPECT_EQ(file.openedWith("correct horse"), shown(opened(file.folder.path("plain.csv"))));
  EXPECT_NE(
      openedWith(file.folder, file.folder.write("cut.csv.asc", whole.substr(0, whole.size() - 100)), "correct horse")
          .find("is cut off"),
      std::string::npos);
  std::string damaged = whole;
  char& changed = damaged[damaged.find('\n', whole.size() / 2) + 5];
  changed = changed == 'A' ? 'B' : 'A';
  EXPECT_NE(openedWith(file.folder, file.folder.write("d.csv.asc", damaged), "correct horse").find("is damaged"),
            std::string::npos);
}

TEST(ProtectedFile, WithoutIntegrityProtectionIsRefused) {
  EXPECT_EQ(
      GnuPgFile("--rfc2440 --cipher-algo CAST5").openedWith("correct horse"),
      "people.csv.pgp: The file's integrity is not protected: nobody could tell whether it was changed. Encrypt it "
      "anew with a program of today.");
}

TEST(ProtectedFile, ThatIsAMessageInTheClearIsNotTakenForProtected) {
  const TestFolder folder;
  // A literal packet: binary, no name, no date, the text "x\n1\n".
  const std::string literal = std::string(
      "\xcb\x0a"
      "b\0\0\0\0\0x\n1\n",
      12);
  EXPECT_EQ(
      openedWith(folder, folder.write("a.csv.pgp", literal), "secret"),
      "a.csv.pgp: The file is an OpenPGP message that is not encrypted. Give it the name of what it is, and leave "
      "the password out.");
}

TEST(ProtectedFile, LeavesItsPlainTextInNoFile) {
  const GnuPgFile file("", manyRows());
  const auto opened = openDataFile(file.path, {"correct horse"});
  ASSERT_TRUE(opened);
  int inMemory = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    const std::string target = std::filesystem::read_symlink(entry.path(), gone).string();
    if (!target.starts_with("/memfd:")) continue;
    ++inMemory;
    const int descriptor = std::stoi(entry.path().filename());
    EXPECT_NE(::pwrite(descriptor, "x", 1, 0), 1) << "it can be changed";
  }
  EXPECT_EQ(inMemory, 1);
  EXPECT_EQ(file.folder.names(), (std::vector<std::string>{"people.csv.pgp", "plain.csv"}));
}

TEST(ProtectedFile, InfersItsTypesTogetherWithAnotherProtectedFile) {
  const GnuPgFile file;
  writeOneCase(file.folder.path("other.csv.pgp"), "second");
  std::filesystem::remove(file.folder.path("other.schema.json.pgp"));
  const auto both = openDataFile(file.path, {"correct horse", file.folder.path("other.csv.pgp"), "second"});
  ASSERT_TRUE(both) << both.problem().text();
  const auto wrong = openDataFile(file.path, {"correct horse", file.folder.path("other.csv.pgp"), "first"});
  ASSERT_FALSE(wrong);
  EXPECT_EQ(wrong.problem().where, file.folder.path("other.csv.pgp"));
}

TEST(ProtectedFile, ThatIsAbandonedLeavesNothing) {
  const TestFolder folder;
  {
    auto writer = createDataFile(folder.path("out.csv.pgp"), idAndName(), "secret");
    ASSERT_TRUE(writer);
  }
  EXPECT_TRUE(folder.names().empty());
}

TEST(ProtectedName, IsThePlainOneWithOneMoreEnding) {
  EXPECT_EQ(plainName("a/people.csv.pgp"), "a/people.csv");
  EXPECT_EQ(plainName("people.csv.gz.GPG"), "people.csv.gz");
  EXPECT_EQ(plainName("people.csv.asc"), "people.csv");
  EXPECT_EQ(plainName("people.csv"), "people.csv");
  EXPECT_EQ(plainName("pgp"), "pgp");
}

}  // namespace
}  // namespace workbench::data
