#include "workbench/app/program.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <system_error>

#include "workbench/app/job_runner.h"
#include "workbench/app/journal_file.h"
#include "workbench/app/named_files.h"
#include "workbench/app/password_encoding.h"
#include "workbench/app/password_files.h"
#include "workbench/app/password_prompt.h"
#include "workbench/app/progress_line.h"
#include "workbench/app/results_output.h"
#include "workbench/app/session.h"
#include "workbench/app/spoken_language.h"
#include "workbench/app/verdict.h"
#include "workbench/data/files/openpgp_message.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/kinds/data_kind.h"
#include "workbench/data/working/password_decoder.h"
#include "workbench/data/working/password_reference.h"
#include "workbench/output/display_text.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/interruption.h"
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

// On standard output at once: the journal may go there as well.
Outcome<Done> show(const std::string& words) {
  std::cout << words << std::flush;
  if (std::cout) return Done{};
  return Problem{text::sentence("Standard output takes nothing more."), "", ""};
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
    if (auto shown = show(compareJob(request) + '\n'); !shown) return shown.problem();
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

int fail(const Problem& problem) {
  std::cerr << output::visible(problem.text()) << '\n';
  return troubleStatus;
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

int encodePassword() {
  const auto password = passwordToEncode();
  if (!password) return fail(password.problem());
  if (const auto usable = data::checkPassword(*password); !usable) return fail(usable.problem());
  const auto encoded = encodedPassword(*password);
  if (!encoded) return fail(encoded.problem());
  const auto shown = show(*encoded + '\n');
  return shown ? 0 : fail(shown.problem());
}

// Requires: the command is none that only shows a text.
int runCommand(Session& session, const ProgramOptions& options) {
  if (std::holds_alternative<EncodePasswordCommand>(options.command)) return encodePassword();

  const OutputChoice& choice =
      std::visit([](const auto& command) -> const OutputChoice& { return outputOf(command); }, options.command);
  if (const auto named = checkNamedFiles(options.command); !named) return fail(named.problem());
  if (const auto loaded = loadPlugins(session.plugins, options.pluginFolders); !loaded) return fail(loaded.problem());
  auto results = ResultsOutput::open(choice, *session.wording);
  if (!results) return fail(results.problem());
  std::unique_ptr<JournalFile> journalFile;
  if (choice.journal) {
    auto begun = JournalFile::begin(*choice.journal);
    if (!begun) return fail(begun.problem());
    journalFile = std::move(*begun);
  }
  auto job = std::visit([](const auto& command) { return jobOf(command); }, options.command);
  if (!job) return fail(job.problem());
  data::setPasswordDecoder(decodedPassword);
  runShown(session, *job, choice);
  job->text = {};
  data::forgetPasswords();
  const Outcome<Done> journaled = journalFile ? journalFile->end() : Outcome<Done>(Done{});
  (*results)->writeDiagnostics(session.document);
  if (const auto written = (*results)->write(session.document); !written) return fail(written.problem());
  if (!journaled) return fail(journaled.problem());
  return exitStatus(session.document.verdict);
}

}  // namespace

int runProgram(ProgramOptions options) {
  if (const auto* help = std::get_if<ShowText>(&options.command)) {
    const auto shown = show(help->text);
    return shown ? 0 : fail(shown.problem());
  }
  Session session;
  session.wording = std::move(options.wording);
  const WordingInForce inForce(*session.wording);  // before, between and after the commands of a job, too
  try {
    return runCommand(session, options);
  } catch (const std::bad_alloc&) {
    beforeInterruptedEnd({});
    return fail({text::sentence("There is not enough memory."), "", ""});
  } catch (const std::exception& error) {  // what a library lacks, or a fault of this program
    beforeInterruptedEnd({});
    return fail({text::sentence("^1 was ended by an error: ^2", {"compare-datasets", error.what()}), "", ""});
  }
}

}  // namespace workbench::app
