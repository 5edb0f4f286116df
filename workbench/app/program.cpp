#include "workbench/app/program.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <system_error>

#include "workbench/app/job_runner.h"
#include "workbench/app/named_files.h"
#include "workbench/app/password_encoding.h"
#include "workbench/app/password_files.h"
#include "workbench/app/password_prompt.h"
#include "workbench/app/progress_line.h"
#include "workbench/app/results_output.h"
#include "workbench/app/session.h"
#include "workbench/app/verdict.h"
#include "workbench/data/data_file.h"
#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/files/openpgp_message.h"
#include "workbench/data/files/path_target.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/kinds/data_kind.h"
#include "workbench/data/working/password_decoder.h"
#include "workbench/data/working/password_reference.h"
#include "workbench/output/display_text.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/interruption.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/diagnostics.h"

namespace workbench::app {

namespace {

constexpr int troubleStatus = static_cast<int>(output::Verdict::trouble);

// What to run, and what follows an error.
struct Job {
  Secret text;  // passwords may stand in it
  OnError onError = OnError::goOn;
};

Outcome<Secret> readJobFile(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    return Problem{text::sentence("This is a folder."), path, text::sentence("Name a job file.")};
  }
  const bool isStandardInput = path == "-";
  const int descriptor = isStandardInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  constexpr std::size_t atOnce = std::size_t{1} << 16;
  SecretBuffer content(atOnce);
  ssize_t bytes = -1;
  while (descriptor >= 0 && (bytes = ::read(descriptor, content.room(atOnce), atOnce)) != 0) {
    if (bytes < 0 && errno != EINTR) break;
    if (bytes > 0) content.taken(static_cast<std::size_t>(bytes));
  }
  if (!isStandardInput && descriptor >= 0) ::close(descriptor);
  if (bytes == 0) return content.secret();
  return Problem{text::sentence("The job file cannot be read."), path, text::sentence("Check its name and rights.")};
}

// Before anything is read: whether the outputs are named as files with the password that is given, or with none.
Outcome<Done> checkOutputNames(const PasswordFiles& files, const std::vector<std::optional<std::string>>& outputs) {
  bool isAnyWritten = false;
  for (const std::optional<std::string>& output : outputs) {
    if (!output) continue;
    isAnyWritten = true;
    if (auto checked = data::checkProtectedName(*output, files.output.has_value()); !checked) return checked;
  }
  if (isAnyWritten || !files.output) return Done{};
  return Problem{text::sentence("No data file is written that the password could protect."), "--output-password-file",
                 text::sentence("Leave the option out, or say what is to be saved.")};
}

std::string namesOf(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : " ") + quotedInJob(name);
  return list;
}

Outcome<Job> jobOf(const CompareCommand& compare) {
  CompareRequest request = compare.request;
  const auto named = checkOutputNames(compare.passwordFiles, {request.saveActive, request.matched, request.mismatched});
  if (!named) return named.problem();
  const auto passwords = readPasswords(compare.passwordFiles, compare.output.quiet);
  if (!passwords) return passwords.problem();
  const auto bothBringDictionaries = [&] {
    return data::bringsDictionary(request.active) && data::bringsDictionary(request.comparison);
  };
  if (!compare.propertiesAreAsked && bothBringDictionaries()) request.properties = {"all"};
  if (compare.showSyntax) {
    request.passwords = hidden(*passwords);
    std::cout << compareJob(request) << '\n';
  }
  request.passwords = *passwords;
  return Job{std::string_view(compareJob(request)), OnError::goOnToComparison};
}

Outcome<Job> jobOf(const RunCommand& run) {
  auto text = readJobFile(run.job);
  if (!text) return text.problem();
  return Job{std::move(*text), run.stopOnError ? OnError::stop : OnError::goOn};
}

Outcome<Job> jobOf(const DescribeCommand& describe) {
  const auto passwords = readPasswords(describe.passwordFiles, describe.output.quiet);
  if (!passwords) return passwords.problem();
  const std::string job = fmt::format("OPEN DATA FILE={}{}.\nDESCRIBE DATA.\n", quotedInJob(describe.data),
                                      passwordInJob("PASSWORD", passwords->input));
  return Job{std::string_view(job), OnError::stop};
}

// Opens a file, does what is between, and saves the data to another.
template <class Command>
Outcome<Job> savingJob(const Command& command, const std::string& between) {
  const auto named = checkOutputNames(command.passwordFiles, {command.output});
  if (!named) return named.problem();
  const auto passwords = readPasswords(command.passwordFiles, command.results.quiet);
  if (!passwords) return passwords.problem();
  const std::string job = fmt::format("OPEN DATA FILE={}{}.\n{}SAVE DATA FILE={}{}.\n", quotedInJob(command.input),
                                      passwordInJob("PASSWORD", passwords->input), between, quotedInJob(command.output),
                                      passwordInJob("PASSWORD", passwords->output));
  return Job{std::string_view(job), OnError::stop};
}

Outcome<Job> jobOf(const ConvertCommand& convert) { return savingJob(convert, ""); }
Outcome<Job> jobOf(const SortCommand& sort) {
  return savingJob(sort, fmt::format("SORT CASES BY={}.\n", namesOf(sort.by)));
}

// These two run nothing.
Outcome<Job> jobOf(const EncodePasswordCommand&) { return Job{}; }
Outcome<Job> jobOf(const ShowText&) { return Job{}; }

const OutputChoice& outputOf(const CompareCommand& command) { return command.output; }
const OutputChoice& outputOf(const RunCommand& command) { return command.output; }
const OutputChoice& outputOf(const DescribeCommand& command) { return command.output; }
const OutputChoice& outputOf(const ConvertCommand& command) { return command.results; }
const OutputChoice& outputOf(const SortCommand& command) { return command.results; }
const OutputChoice& outputOf(const ShowText&) {
  static const OutputChoice none;
  return none;
}
const OutputChoice& outputOf(const EncodePasswordCommand&) { return outputOf(ShowText()); }

// The locale that the environment names for one purpose.
std::string localeFromEnvironment(const char* purpose) {
  for (const char* name : {"LC_ALL", purpose, "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

// A language that was asked for has to be there; the environment's may be missing, and then it is English.
Outcome<std::unique_ptr<text::Wording>> loadWording(const std::string& asked) {
  if (!asked.empty()) return text::Wording::load(asked);
  const std::string numbers = localeFromEnvironment("LC_NUMERIC");
  auto fromEnvironment = text::Wording::load(localeFromEnvironment("LC_MESSAGES"), numbers);
  if (fromEnvironment) return fromEnvironment;
  return text::Wording::load("en", numbers);
}

Outcome<Done> loadPlugins(Plugins& plugins, const std::vector<std::string>& folders) {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path own = program.parent_path().parent_path() / "lib";
  if (!error && std::filesystem::is_directory(own, error)) {
    if (auto added = plugins.addFolder(own); !added) return added;
  }
  for (const std::string& folder : folders) {
    if (auto added = plugins.addFolder(folder); !added) return added;
  }
  return Done{};
}

// Before, between and after the commands of a job, too.
class WordingInForce {
 public:
  explicit WordingInForce(const text::Wording& wording) { currentRun().wording = &wording; }
  WordingInForce(const WordingInForce&) = delete;
  WordingInForce& operator=(const WordingInForce&) = delete;
  ~WordingInForce() { currentRun().wording = nullptr; }
};

int fail(const Problem& problem) {
  std::cerr << output::visible(problem.text()) << '\n';
  return troubleStatus;
}

bool isNamedAsData(const std::string& path) { return data::dataKind(path) || data::isSchemaName(path); }

Problem unwritableJournal(const std::string& path) {
  return {text::sentence("The journal cannot be written."), path,
          text::sentence("Name a file in a folder that you can write to.")};
}

// Lines go to the file as they are written, so that a run that ends badly can be looked into.
Outcome<Done> startJournal(const std::string& path, std::ofstream& file) {
  // It is begun before a job says what it opens, so nothing that looks like data is ever replaced.
  if (isNamedAsData(path) || isNamedAsData(data::linkTarget(path).string())) {
    return Problem{text::sentence("The journal is no data, and the name is that of a data file."), path,
                   text::sentence("Choose another name.")};
  }
  file.open(path, std::ios::binary | std::ios::trunc);
  if (!file) return unwritableJournal(path);
  journal().sendTo([&file](std::string_view line) { file << line << '\n'; });
  return Done{};
}

bool showsProgress(const OutputChoice& choice) {
  if (choice.progress != Appearance::automatic) return choice.progress == Appearance::always;
  return !choice.quiet && isatty(STDERR_FILENO) != 0;
}

// Runs the job, with a line that says how far it has come, and the diagnostics that were asked for.
void runShown(Session& session, const Job& job, const OutputChoice& choice) {
  std::optional<ProgressLine> progress;
  if (showsProgress(choice)) progress.emplace(standardError(), *session.wording);
  beforeInterruptedEnd([&progress] {
    if (progress) progress->eraseAtTheEnd();
  });
  if (choice.verbose) {
    text::diagnostics().sendToStandardError([&progress] {
      if (progress) progress->erase();
    });
  }
  runJob(session, job.text, job.onError);
  text::diagnostics().sendTo({});
  beforeInterruptedEnd({});
}

// From the terminal, or else from standard input.
Outcome<Secret> passwordToEncode() {
  if (::isatty(STDIN_FILENO) != 0) return askForPassword(text::sentence("Password to encode"), Asking::twice);
  return firstLineOf(STDIN_FILENO, text::sentence("standard input"));
}

int encodePassword(const EncodePasswordCommand& encode) {
  const auto wording = loadWording(encode.language);
  if (!wording) return fail(wording.problem());
  currentRun().wording = wording->get();
  const auto password = passwordToEncode();
  if (!password) return fail(password.problem());
  if (const auto usable = data::checkPassword(*password); !usable) return fail(usable.problem());
  const auto encoded = encodedPassword(*password);
  if (!encoded) return fail(encoded.problem());
  std::cout << *encoded << '\n';
  return 0;
}

}  // namespace

int runProgram(const ProgramOptions& options) {
  if (const auto* show = std::get_if<ShowText>(&options.command)) {
    std::cout << show->text;
    return 0;
  }
  if (const auto* encode = std::get_if<EncodePasswordCommand>(&options.command)) return encodePassword(*encode);
  const OutputChoice& choice =
      std::visit([](const auto& command) -> const OutputChoice& { return outputOf(command); }, options.command);

  Session session;
  auto wording = loadWording(choice.language);
  if (!wording) return fail(wording.problem());
  session.wording = std::move(*wording);
  const WordingInForce inForce(*session.wording);
  if (const auto named = checkNamedFiles(options.command); !named) return fail(named.problem());
  if (const auto loaded = loadPlugins(session.plugins, options.pluginFolders); !loaded) return fail(loaded.problem());
  auto results = ResultsOutput::open(choice, *session.wording);
  if (!results) return fail(results.problem());
  std::ofstream journalFile;
  if (choice.journal) {
    if (const auto started = startJournal(*choice.journal, journalFile); !started) return fail(started.problem());
  }
  currentRun().wording = session.wording.get();  // of what is asked and refused before the first command
  auto job = std::visit([](const auto& command) { return jobOf(command); }, options.command);
  if (!job) return fail(job.problem());
  data::setPasswordDecoder(decodedPassword);
  runShown(session, *job, choice);
  job->text = {};
  data::forgetPasswords();
  journal().sendTo({});
  (*results)->writeDiagnostics(session.document);
  if (const auto written = (*results)->write(session.document); !written) return fail(written.problem());
  if (choice.journal && !journalFile.flush()) return fail(unwritableJournal(*choice.journal));
  return exitStatus(session.document.verdict);
}

}  // namespace workbench::app
