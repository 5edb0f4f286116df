#include "workbench/data/files/server_reference.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <mutex>
#include <vector>

namespace workbench::data {
namespace {

constexpr std::string_view authorityBegin = "://";
constexpr auto none = std::string_view::npos;

// Part of a text.
struct Span {
  std::size_t begin;
  std::size_t end;
};

std::string_view in(std::string_view text, Span span) { return text.substr(span.begin, span.end - span.begin); }

int digitOf(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  const int lower = std::tolower(static_cast<unsigned char>(character));
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// "%40" is "@". What is not written so stays as it is.
std::string decoded(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const int high = text[at] == '%' && at + 2 < text.size() ? digitOf(text[at + 1]) : -1;
    const int low = high < 0 ? -1 : digitOf(text[at + 2]);
    plain += low < 0 ? text[at] : static_cast<char>(high * 16 + low);
    if (low >= 0) at += 2;
  }
  return plain;
}

bool isPort(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) { return character >= '0' && character <= '9'; });
}

// Whether the user ends here, and a server follows: at the first "@", if no "/" stands before it.
bool beginsWithUser(std::string_view reference, std::size_t authority) {
  const std::size_t mark = reference.find_first_of("@/", authority);
  return mark != none && reference[mark] == '@';
}

// Behind the user, where the server's name begins. Signs that a password should not have as they are (an "@" in it)
// are taken for part of it.
std::size_t serverBegin(std::string_view reference, std::size_t authority) {
  if (!beginsWithUser(reference, authority)) return authority;
  const std::size_t first = reference.find('@', authority);
  const std::size_t serverEnd = std::min(reference.find_first_of("/?#", first), reference.size());
  return reference.rfind('@', serverEnd - 1) + 1;
}

// The password between the user and the server; in case of doubt more than that.
std::optional<Span> spanBeforeServer(std::string_view reference, std::size_t authority) {
  if (beginsWithUser(reference, authority)) {
    const std::size_t end = serverBegin(reference, authority) - 1;
    const std::size_t colon = reference.substr(0, end).find(':', authority);
    return colon == none ? std::nullopt : std::optional(Span{colon + 1, end});
  }
  // "user:pass/word@server": with a port where the password should be it is "server:5432/base".
  const bool isInBrackets = authority < reference.size() && reference[authority] == '[';
  const std::size_t colon = reference.find(':', isInBrackets ? reference.find(']', authority) : authority);
  if (colon == none) return std::nullopt;
  const std::string_view behind = reference.substr(colon + 1);
  const std::size_t portEnd = std::min(behind.find_first_of(",/?#"), behind.size());
  const std::size_t nameEnd = isPort(behind.substr(0, portEnd)) ? behind.find_first_of("?#") : none;
  const std::size_t at = behind.substr(0, nameEnd).rfind('@');
  return at == none ? std::nullopt : std::optional(Span{colon + 1, colon + 1 + at});
}

bool isNameOfSecret(std::string_view name) {
  std::string lower = decoded(name);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  constexpr auto parts = std::to_array<std::string_view>({"pass", "pwd", "secret"});
  return lower != "passfile" && std::any_of(parts.begin(), parts.end(), [&](std::string_view part) {
           return lower.find(part) != std::string::npos;
         });
}

// The values of "password" and the like behind the "?".
void addSpansOfParameters(std::string_view reference, std::size_t from, std::vector<Span>& spans) {
  const std::size_t end = std::min(reference.find('#', from), reference.size());
  std::size_t begin = reference.substr(0, end).find('?', from);
  while (begin < end) {
    const std::size_t next = std::min(reference.find('&', ++begin), end);
    const std::size_t sign = reference.substr(0, next).find('=', begin);
    if (sign != none && isNameOfSecret(in(reference, {begin, sign}))) spans.push_back({sign + 1, next});
    begin = next;
  }
}

std::vector<Span> spansOf(std::string_view reference, std::size_t authority) {
  std::vector<Span> spans;
  std::size_t from = serverBegin(reference, authority);
  if (const std::optional<Span> span = spanBeforeServer(reference, authority)) {
    spans.push_back(*span);
    from = span->end;
  }
  addSpansOfParameters(reference, from, spans);
  std::erase_if(spans, [](const Span& span) { return span.begin == span.end; });
  return spans;
}

// "***", "***2".
bool isHidden(std::string_view text) { return text.starts_with("***") && isPort(text.substr(3)); }

std::string withStars(std::string_view reference, const std::vector<Span>& spans, std::string_view stars) {
  std::string shown;
  std::size_t copied = 0;
  for (const Span& span : spans) {
    shown.append(in(reference, {copied, span.begin})).append(stars);
    copied = span.end;
  }
  return shown.append(reference.substr(copied));
}

// What stands for what, as long as the process lives: references without tables.
class HiddenReferences {
 public:
  std::string hide(std::string_view reference, const std::vector<Span>& spans) {
    const std::lock_guard lock(mutex_);
    const std::string_view hidden = reference.substr(0, tableSignOf(reference));
    for (int number = 1;; ++number) {
      const std::string stars = number == 1 ? "***" : fmt::format("***{}", number);
      const auto [known, isNew] = references_.emplace(withStars(hidden, spans, stars), Secret(hidden));
      if (isNew || known->second.view() == hidden) return withStars(reference, spans, stars);
    }
  }
  Secret reveal(std::string_view shown) {
    const std::lock_guard lock(mutex_);
    const auto known = references_.find(shown);
    return known == references_.end() ? Secret(shown) : known->second;
  }

 private:
  std::mutex mutex_;
  std::map<std::string, Secret, std::less<>> references_;
};

HiddenReferences& hiddenReferences() {
  static HiddenReferences references;
  return references;
}

bool isOfScheme(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '+' || character == '-' ||
         character == '.';
}

// Where the reference begins whose "://" stands at that place.
std::size_t schemeBegin(std::string_view text, std::size_t authority) {
  std::size_t begin = authority;
  while (begin > 0 && isOfScheme(text[begin - 1])) --begin;
  return begin;
}

// A string of a job, its quote doubled within; it ends at the quote, or with its line.
struct JobString {
  SecretBuffer content;
  std::size_t end;
};

void readQuoted(std::string_view job, char quote, JobString& string) {
  for (; string.end < job.size() && job[string.end] != '\n'; ++string.end) {
    if (job[string.end] == quote) {
      if (string.end + 1 == job.size() || job[string.end + 1] != quote) return;
      ++string.end;
    }
    string.content.append(job.substr(string.end, 1));
  }
}

}  // namespace

bool isServerReference(std::string_view path) {
  return std::any_of(std::begin(postgresBeginnings), std::end(postgresBeginnings),
                     [&](std::string_view beginning) { return path.starts_with(beginning); });
}

std::size_t tableSignOf(std::string_view reference) {
  const std::size_t authority = reference.find(authorityBegin) + authorityBegin.size();
  const std::optional<Span> password = spanBeforeServer(reference, authority);
  return reference.find('#', password ? password->end : serverBegin(reference, authority));
}

std::string withHiddenPasswords(std::string_view word) {
  const std::size_t sign = word.find(authorityBegin);
  if (sign == none) return std::string(word);
  const std::size_t begin = schemeBegin(word, sign);
  const std::string_view reference = word.substr(begin);
  const std::vector<Span> spans = spansOf(reference, sign - begin + authorityBegin.size());
  const bool areHidden =
      std::all_of(spans.begin(), spans.end(), [&](const Span& span) { return isHidden(in(reference, span)); });
  if (areHidden) return std::string(word);
  return std::string(word.substr(0, begin)) + hiddenReferences().hide(reference, spans);
}

Secret jobWithHiddenPasswords(const Secret& job) {
  const std::string_view text = job.view();
  if (text.find(authorityBegin) == none) return job;
  SecretBuffer shown(text.size() + 1);
  std::size_t copied = 0;
  for (std::size_t sign = text.find(authorityBegin); sign != none; sign = text.find(authorityBegin, copied)) {
    const std::size_t begin = std::max(schemeBegin(text, sign), copied);
    const char before = begin == 0 ? ' ' : text[begin - 1];
    const bool isQuoted = before == '\'' || before == '"';
    JobString string{SecretBuffer(), begin};
    if (isQuoted) {
      readQuoted(text, before, string);
    } else {
      string.end = std::min(text.find_first_of(" \t\r\n", begin), text.size());
      string.content.append(in(text, {begin, string.end}));
    }
    shown.append(in(text, {copied, begin}));
    for (const char character : withHiddenPasswords(string.content.view())) {
      if (isQuoted && character == before) shown.append({&before, 1});
      shown.append({&character, 1});
    }
    copied = string.end;
  }
  shown.append(text.substr(copied));
  return shown.secret();
}

Secret uriOf(std::string_view reference) {
  return hiddenReferences().reveal(reference.substr(0, tableSignOf(reference)));
}

std::optional<std::string> passwordBeforeServer(std::string_view reference) {
  const std::size_t authority = reference.find(authorityBegin) + authorityBegin.size();
  const std::optional<Span> span = spanBeforeServer(reference, authority);
  return span ? std::optional(decoded(in(reference, *span))) : std::nullopt;
}

}  // namespace workbench::data
