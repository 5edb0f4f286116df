#include "workbench/language/tokens.h"

#include <fmt/format.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <utility>

#include "workbench/text/wording.h"

namespace workbench::language {

namespace {

using text::sentence;
using Kind = TokenInfoObj::Kind;

bool isDigit(std::int32_t character) { return character >= '0' && character <= '9'; }

bool isWordCharacter(std::int32_t character) {
  if (character == '#' || character == '@' || character == '$') return true;
  return character >= 0 && u_hasBinaryProperty(character, UCHAR_XID_CONTINUE);
}

bool isBlank(std::int32_t character) { return character >= 0 && u_isUWhiteSpace(character); }

// Passes over a comment. False when the text ends first.
bool skipComment(SourceCursor& cursor) {
  cursor.advance();
  cursor.advance();
  while (!cursor.atEnd() && !cursor.at("*/")) cursor.advance();
  if (cursor.atEnd()) return false;
  cursor.advance();
  cursor.advance();
  return true;
}

// Whether the period here ends a command: its line holds nothing more, or a comment runs on into the next line.
bool periodEndsCommand(SourceCursor cursor) {
  const std::int32_t line = cursor.line();
  cursor.advance();
  while (!cursor.atLineEnd()) {
    if (cursor.at("/*")) {
      skipComment(cursor);
      if (cursor.line() != line) return true;
    } else if (isBlank(cursor.character())) {
      cursor.advance();
    } else {
      return false;
    }
  }
  return true;
}

bool atCommandEnd(const SourceCursor& cursor) { return cursor.character() == '.' && periodEndsCommand(cursor); }

// A comment that is a command of its own: its text is not looked at, but for the period that ends it.
void skipCommentCommand(SourceCursor& cursor) {
  while (!cursor.atEnd() && !atCommandEnd(cursor)) cursor.advance();
  cursor.advance();
}

// Passes over a number, if there is one here. False (and nothing passed over) otherwise.
bool skipNumber(SourceCursor& cursor) {
  SourceCursor ahead = cursor;
  const bool isSigned = ahead.character() == '+' || ahead.character() == '-';
  if (isSigned) ahead.advance();
  const auto skipDigits = [&] {
    while (isDigit(ahead.character())) ahead.advance();
  };
  if (!isDigit(ahead.character()) && !(ahead.character() == '.' && isDigit(ahead.following()))) return false;
  skipDigits();
  if (ahead.character() == '.' && isDigit(ahead.following())) {
    ahead.advance();
    skipDigits();
  }
  if (ahead.character() == 'e' || ahead.character() == 'E') {
    SourceCursor exponent = ahead;
    exponent.advance();
    if (exponent.character() == '+' || exponent.character() == '-') exponent.advance();
    if (isDigit(exponent.character())) {
      ahead = exponent;
      skipDigits();
    }
  }
  const bool isWordGoingOn =
      isWordCharacter(ahead.character()) || (ahead.character() == '.' && isWordCharacter(ahead.following()));
  if (isWordGoingOn && !isSigned) return false;
  cursor = ahead;
  return true;
}

void skipWord(SourceCursor& cursor) {
  while (isWordCharacter(cursor.character()) ||
         (cursor.character() == '.' && isWordCharacter(cursor.following()) && !periodEndsCommand(cursor))) {
    cursor.advance();
  }
}

constexpr std::size_t shortestApart = 32;  // bytes; a shorter text lies in the string object itself

std::string unclosedCommentSentence() { return sentence("The comment that starts here has no end. Close it with */."); }

CommandText unclosedComment(const SourceCursor& start, const SourceCursor& end) {
  CommandText command;
  command.begin = start.offset();
  command.end = end.offset();
  command.line = start.line();
  command.column = start.column();
  command.error = SyntaxError{unclosedCommentSentence(), start.line(), start.column()};
  return command;
}

// Reads the tokens of one command.
class CommandReader {
 public:
  explicit CommandReader(SourceCursor& cursor) : cursor_(cursor) {}

  // Requires: the cursor stands on the command's first character.
  CommandText read() {
    command_.begin = command_.end = cursor_.offset();
    command_.line = cursor_.line();
    command_.column = cursor_.column();
    while (!endsHere()) readToken();
    return std::move(command_);
  }

 private:
  bool endsHere() {
    while (isBlank(cursor_.character()) || cursor_.at("/*")) {
      const SourceCursor start = cursor_;
      if (isBlank(cursor_.character())) {
        cursor_.advance();
      } else if (!skipComment(cursor_)) {
        fault(start, unclosedCommentSentence());
      }
    }
    if (isOver_ || cursor_.atEnd()) return true;
    if (!atCommandEnd(cursor_)) return false;
    cursor_.advance();
    command_.end = cursor_.offset();
    return true;
  }

  void readToken() {
    const SourceCursor start = cursor_;
    const std::int32_t character = cursor_.character();
    if (character == '\'' || character == '"') {
      readString(start);
    } else if (skipNumber(cursor_)) {
      add(start, Kind::number, std::string(cursor_.textSince(start)));
    } else if (isWordCharacter(character)) {
      skipWord(cursor_);
      add(start, Kind::word, std::string(cursor_.textSince(start)));
    } else {
      readMark(start);
    }
  }

  void readString(const SourceCursor& start) {
    const std::int32_t quote = start.character();
    // It may be a password: room for all of it from the start, apart from this frame, leaves no part of it behind.
    std::string content;
    content.reserve(std::max(bytesToLineEnd(), shortestApart));
    cursor_.advance();
    while (!cursor_.atLineEnd()) {
      const SourceCursor here = cursor_;
      cursor_.advance();
      if (here.character() == quote) {
        if (cursor_.character() != quote) return add(start, Kind::quotedString, std::move(content));
        cursor_.advance();
        content += static_cast<char>(quote);
        continue;
      }
      checkCharacter(here);
      content += cursor_.textSince(here);
    }
    // The line's end takes the place of the missing quote; a period there ends the command, as it was meant to.
    fault(start, sentence("The string that starts here is not closed on its line. Close it with ^1.",
                          {quote == '"' ? "\"" : "'"}));
    const std::size_t last = content.find_last_not_of(" \t");
    isOver_ = last != std::string::npos && content[last] == '.';
    if (isOver_) content.erase(last);
    add(start, Kind::quotedString, std::move(content));
  }

  std::size_t bytesToLineEnd() const {
    SourceCursor end = cursor_;
    while (!end.atLineEnd()) end.advance();
    return end.offset() - cursor_.offset();
  }

  void readMark(const SourceCursor& start) {
    const std::int32_t character = start.character();
    cursor_.advance();
    checkCharacter(start);
    if (character == '.') {
      fault(start,
            sentence("A period stands here in the middle of a line. A command ends with a period at the end of a "
                     "line; a name or file name with a period in it stands in quotes."));
    }
    const bool isAsWritten = character != SourceCursor::notUtf8 && character != 0;
    add(start, character == '*' ? Kind::word : Kind::punctuation,
        isAsWritten ? std::string(cursor_.textSince(start)) : "\uFFFD");
  }

  void checkCharacter(const SourceCursor& place) {
    const std::int32_t character = place.character();
    if (character == SourceCursor::notUtf8) {
      fault(place, sentence("The job is not valid UTF-8 here. Save it as UTF-8."));
    } else if (character != '\t' && character >= 0 && u_iscntrl(character)) {
      fault(place, sentence("A control character (^1) stands here. Remove it.",
                            {fmt::format("U+{:04X}", static_cast<unsigned>(character))}));
    }
  }

  void add(const SourceCursor& start, Kind kind, std::string content) {
    command_.end = cursor_.offset();
    command_.tokens.push_back(
        {TokenInfoObj(kind, std::move(content), start.line(), start.column()), start.offset(), cursor_.offset()});
  }

  void fault(const SourceCursor& place, std::string what) {
    if (!command_.error) command_.error = SyntaxError{std::move(what), place.line(), place.column()};
  }

  SourceCursor& cursor_;
  CommandText command_;
  bool isOver_ = false;
};

}  // namespace

std::optional<CommandText> nextCommand(SourceCursor& job) {
  if (job.offset() == 0 && job.at("\uFEFF")) job.advance();
  while (!job.atEnd()) {
    if (isBlank(job.character()) || atCommandEnd(job)) {
      job.advance();
    } else if (job.at("/*")) {
      const SourceCursor start = job;
      if (!skipComment(job)) return unclosedComment(start, job);
    } else if (job.character() == '*') {
      skipCommentCommand(job);
    } else {
      return CommandReader(job).read();
    }
  }
  return std::nullopt;
}

std::vector<TokenInfoObj> tokensOf(std::string_view text) {
  SourceCursor cursor(text);
  std::vector<TokenInfoObj> tokens;
  while (const std::optional<CommandText> command = nextCommand(cursor)) {
    for (const PlacedToken& placed : command->tokens) tokens.push_back(placed.token);
  }
  return tokens;
}

bool isPunctuation(const TokenInfoObj& token, std::string_view mark) {
  return token.getKind() == TokenInfoObj::Kind::punctuation && token.getString() == mark;
}

}  // namespace workbench::language
