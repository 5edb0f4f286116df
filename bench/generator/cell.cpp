#include "bench/generator/cell.h"

namespace bench {
namespace {

constexpr std::uint64_t letters = 26;

char letter(std::uint64_t number) { return static_cast<char>('a' + number % letters); }

// A number taken apart; the digits without zeros before them, so that 0 has none.
struct Digits {
  bool isNegative = false;
  Cell digits;
  std::int64_t decimals = 0;  // how many of the digits stand behind the point
};

Digits digitsOf(std::string_view number) {
  Digits parts;
  bool isBehindPoint = false;
  for (const char character : number) {
    if (character == '-') {
      parts.isNegative = true;
    } else if (character == '.') {
      isBehindPoint = true;
    } else {
      if (isBehindPoint) ++parts.decimals;
      if (character != '0' || !parts.digits.isEmpty()) parts.digits.append(character);
    }
  }
  return parts;
}

}  // namespace

Cell randomNumber(int variable, Chance& chance) {
  Cell cell;
  switch (variable % 3) {
    case 0:
      cell.append(chance.below(7) + 1);
      break;
    case 1:
      cell.append(chance.below(2'000'000) - 1'000'000);
      break;
    default: {
      cell.append(chance.below(100'000));
      cell.append('.');
      const std::int64_t hundredths = chance.below(99) + 1;
      if (hundredths < 10) cell.append('0');
      cell.append(hundredths);
    }
  }
  return cell;
}

Cell randomWord(Chance& chance) {
  constexpr std::int64_t lettersInOneDraw = 12;
  Cell cell;
  std::uint64_t draw = 0;
  const std::int64_t length = 4 + chance.below(16);
  for (std::int64_t at = 0; at < length; ++at) {
    draw = at % lettersInOneDraw == 0 ? chance.bits() : draw / letters;
    cell.append(letter(draw));
  }
  return cell;
}

Cell stringKey(std::int64_t id, std::int64_t identities, Chance& chance) {
  constexpr std::int64_t highest = 95'428'956'661'682'176;  // 26 to the power of 12
  constexpr std::size_t length = 12;
  const std::int64_t step = highest / identities;
  auto number = static_cast<std::uint64_t>((id - 1) * step + chance.below(step));
  std::array<char, length> key;
  for (std::size_t at = length; at > 0; --at) {
    key[at - 1] = letter(number);
    number /= letters;
  }
  return Cell(std::string_view(key.data(), length));
}

Cell inAnyNotation(const Cell& number, Chance& chance) {
  enum Notation { asItIs, withPlus, withMoreDecimals, wholeWithExponent, scientific, count };
  const auto notation = static_cast<Notation>(chance.below(count));
  const Digits parts = digitsOf(number.text());
  if (notation == asItIs || parts.digits.isEmpty()) return number;

  Cell cell;
  if (parts.isNegative) cell.append('-');
  if (!parts.isNegative && notation == withPlus) cell.append('+');
  const std::string_view digits = parts.digits.text();
  switch (notation) {
    case wholeWithExponent:
      cell.append(digits);
      cell.append('e');
      cell.append(-parts.decimals);
      break;
    case scientific:
      cell.append(digits.front());
      if (digits.size() > 1) cell.append('.');
      cell.append(digits.substr(1));
      cell.append('E');
      cell.append(static_cast<std::int64_t>(digits.size()) - 1 - parts.decimals);
      break;
    default:
      cell.append(number.text().substr(parts.isNegative ? 1 : 0));
      if (notation == withMoreDecimals) cell.append(parts.decimals == 0 ? ".0" : "0");
  }
  return cell;
}

}  // namespace bench
