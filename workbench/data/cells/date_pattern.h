// DatePattern: dates and times written as a pattern in the directives of strptime says, compiled once.
//
//   %Y %y %C %m %b %B %h %d %e %j      year, of the century, century; month by number and name; day of month, of year
//   %G %V %U %W %u %w %a %A            ISO year and week, weeks from Sunday and from Monday, weekday
//   %H %k %I %l %p %M %S %f %z         hours of 24 and of 12, AM or PM, minute, second, its fraction, zone
//   %D %F %R %r %T %n %t %%            shorthands, white space, a percent sign
//
// White space in the pattern is any white space in the text. Names are English, in any case, in full or by three
// letters. Numbers may lack leading zeros, but for years. Everything that a text tells must agree: a weekday that its
// date is not makes it none. What depends on a place or a clock (%c %x %X %Z %s) is not known.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/cells/cell_reading.h"

namespace workbench::data {

// A date, a time or both, as it was read.
struct Moment {
  std::int64_t days = 0;                    // since 1970-01-01
  std::int64_t secondOfDay = 0;             // in the zone it was told in
  std::string_view fraction;                // of the second, its digits as written; part of the text
  std::optional<std::int32_t> zoneMinutes;  // ahead of UTC
};

// What is wrong with a pattern of dates, times or dates with times, as the end of a sentence; nothing when every text
// that follows it says just one of them. The empty pattern means ISO 8601 and is right.
std::optional<std::string> patternProblem(CellType type, std::string_view pattern);

class DatePattern {
 public:
  // Requires: patternProblem() finds none.
  explicit DatePattern(std::string_view pattern);

  // Nothing when the text does not follow the pattern, or no calendar has what it says.
  std::optional<Moment> read(std::string_view text) const;

 private:
  struct Piece {
    char directive = 0;   // its letter; a blank for white space; 0 for a text
    std::string literal;  // that text
  };
  friend std::optional<std::string> patternProblem(CellType type, std::string_view pattern);
  static std::vector<Piece> piecesOf(std::string_view pattern);

  std::vector<Piece> pieces_;
};

// "Z", "+01:00", "+0100" or "+01" at the text's start, taken from it; nothing when there is no zone.
std::optional<std::int32_t> takeZone(std::string_view& text);

}  // namespace workbench::data
