#include "workbench/app/compare_job.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>

#include "workbench/data/working/handle.h"

namespace workbench::app {

namespace {

// That of the flag variable when no other is asked for.
constexpr const char* usualFlagName = "CasesCompare";

// A name that is a plain word stands as it is (TO and ALL are keywords then); any other one in quotes.
std::string nameInJob(const std::string& name) {
  const auto isWordCharacter = [](unsigned char character) { return std::isalnum(character) != 0 || character == '_'; };
  const bool isWord = !name.empty() && std::isdigit(static_cast<unsigned char>(name.front())) == 0 &&
                      std::all_of(name.begin(), name.end(), isWordCharacter);
  return isWord ? name : quotedInJob(name);
}

std::string namesInJob(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    if (!list.empty()) list += ' ';
    list += nameInJob(name);
  }
  return list;
}

// "first TO last" is one item of the option and three words of the language.
std::vector<std::string> wordsOfRanges(const std::vector<std::string>& items) {
  std::vector<std::string> words;
  for (const std::string& item : items) {
    std::string upper = item;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    const std::size_t to = upper.find(" TO ");
    if (to == std::string::npos) {
      words.push_back(item);
    } else {
      words.insert(words.end(), {item.substr(0, to), "TO", item.substr(to + 4)});
    }
  }
  return words;
}

std::string variablesInJob(const CompareRequest& request) {
  return request.variables.empty() ? "ALL" : namesInJob(wordsOfRanges(request.variables));
}

// A dataset's file and its password.
struct ProtectedBy {
  const std::string& file;
  const std::string& password;
};

// What becomes of the comparison dataset's variables, under keywords that begin so.
std::string changesInJob(const CompareRequest& request, const std::string& beginning) {
  std::string changes;
  for (const auto& [former, name] : request.renamed) {
    changes += fmt::format("{} {} TO {}", changes.empty() ? "" : ",", nameInJob(former), nameInJob(name));
  }
  if (!changes.empty()) changes = fmt::format(" {}RENAME={}", beginning, changes.substr(1));
  if (!request.dropped.empty()) changes += fmt::format(" {}DROP={}", beginning, namesInJob(request.dropped));
  return changes;
}

std::string openCommand(const ProtectedBy& data, const std::string& handle, const ProtectedBy& other,
                        const std::string& changes) {
  return fmt::format("OPEN DATA FILE={}{} NAME={} TYPESWITH={}{}{}.\n", quotedInJob(data.file),
                     passwordInJob("PASSWORD", data.password), handle, quotedInJob(other.file),
                     passwordInJob("TYPESPASSWORD", other.password), changes);
}

// Both datasets, at the same time; the comparison side as the active side's variables cut the IDs.
std::string sortCommand(const CompareRequest& request) {
  if (request.ids.empty() || request.sort == SortChoice::never) return {};
  return fmt::format("SORT CASES BY={} WITH={}{}.\n", namesInJob(request.ids), comparisonHandle,
                     request.sort == SortChoice::whenNeeded ? " WHEN=NEEDED" : "");
}

// What should be known of them, whether they were sorted or not.
std::string checkCommand(const CompareRequest& request) {
  const std::string keys = request.ids.empty() ? "" : " KEYS=" + namesInJob(request.ids);
  return fmt::format("CHECK DATASETS WITH={}{}.\n", comparisonHandle, keys);
}

// A file, also where its name alone could be a dataset's handle.
std::string fileInJob(const std::string& path) {
  return quotedInJob(data::isWellFormedHandle(path) ? "./" + path : path);
}

std::string saveSubcommand(const CompareRequest& request) {
  std::string save = request.noFlag ? "  /SAVE FLAGMISMATCHES=NO" : "  /SAVE FLAGMISMATCHES=YES";
  if (request.flagName && !request.noFlag) save += fmt::format(" VARNAME={}", quotedInJob(*request.flagName));
  const std::string& password = request.passwords.output;
  if (request.matched) {
    save += fmt::format(" MATCHDATASET=YES MATCHNAME={}{}", fileInJob(*request.matched),
                        passwordInJob("MATCHPASS", password));
  }
  if (request.mismatched) {
    save += fmt::format(" MISMATCHDATASET=YES MISMATCHNAME={}{}", fileInJob(*request.mismatched),
                        passwordInJob("MISMATCHPASS", password));
  }
  return save + "\n";
}

std::string upperWords(const std::vector<std::string>& words) {
  std::string all = fmt::format("{}", fmt::join(words, " "));
  std::transform(all.begin(), all.end(), all.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
  return all;
}

std::string outputSubcommand(const CompareRequest& request) {
  std::string output = "  /OUTPUT VARPROPERTIES=";
  output += request.properties.empty() ? "NONE" : upperWords(request.properties);
  if (request.limit) output += fmt::format(" TABLELIMIT={}", upperWords({*request.limit}));
  return output;
}

// Behind the comparison the active dataset has the flag variable as well, which must not be profiled beside one of the
// same name in the comparison dataset.
std::string profileCommand(const CompareRequest& request) {
  std::string command = fmt::format("PROFILE DIFFERENCES\n  /COMPDATASET={}\n", comparisonHandle);
  command += fmt::format("  /VARIABLES={}", variablesInJob(request));
  if (!request.noFlag) command += fmt::format(" EXCEPT={}", quotedInJob(request.flagName.value_or(usualFlagName)));
  if (!request.ids.empty()) command += fmt::format("\n  /CASEID={}", namesInJob(request.ids));
  return command + ".\n";
}

}  // namespace

std::string quotedInJob(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'') quoted += '\'';
    quoted += character;
  }
  return quoted + "'";
}

std::string compareJob(const CompareRequest& request) {
  std::string job;
  if (request.tolerance) job += fmt::format("SET OPTIONS TOLERANCE={}.\n", *request.tolerance);
  if (request.collation) job += fmt::format("SET OPTIONS COLLATION={}.\n", quotedInJob(*request.collation));

  const ProtectedBy active{request.active, request.passwords.input};
  const ProtectedBy comparison{request.comparison, request.passwords.comparison};
  job += openCommand(active, activeHandle, comparison, changesInJob(request, "TYPES"));
  job += openCommand(comparison, comparisonHandle, active, changesInJob(request, ""));
  job += fmt::format("ACTIVATE DATASET NAME={}.\n", activeHandle);
  job += sortCommand(request);
  job += checkCommand(request);

  job += fmt::format("COMPARE DATASETS\n  /COMPDATASET={}\n", comparisonHandle);
  job += fmt::format("  /VARIABLES={}\n", variablesInJob(request));
  if (!request.ids.empty()) job += fmt::format("  /CASEID={}\n", namesInJob(request.ids));
  job += saveSubcommand(request);
  job += outputSubcommand(request) + ".\n";
  if (request.profile) job += profileCommand(request);

  if (request.saveActive) {
    job += fmt::format("SAVE DATA FILE={}{}.\n", quotedInJob(*request.saveActive),
                       passwordInJob("PASSWORD", request.passwords.output));
  }
  return job;
}

JobPasswords hidden(const JobPasswords& passwords) {
  const auto shown = [](const std::string& password) { return std::string(password.empty() ? "" : "***"); };
  return {shown(passwords.input), shown(passwords.comparison), shown(passwords.output)};
}

std::string passwordInJob(const char* keyword, const std::string& password) {
  return password.empty() ? "" : fmt::format(" {}={}", keyword, quotedInJob(password));
}

}  // namespace workbench::app
