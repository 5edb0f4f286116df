#include "workbench/data/working/password_reference.h"

#include <sodium.h>

#include <array>
#include <map>

#include "workbench/data/working/refusal.h"

namespace workbench::data {
namespace {

using References = std::map<std::string, Secret, std::less<>>;

References& references() {
  static References all;
  return all;
}

}  // namespace

std::string referenceTo(const Secret& password) {
  if (::sodium_init() < 0) refuse("The system gives no random numbers.");
  std::array<unsigned char, 24> random;
  ::randombytes_buf(random.data(), random.size());
  std::array<char, 2 * random.size() + 1> text;
  ::sodium_bin2hex(text.data(), text.size(), random.data(), random.size());
  std::string reference = std::string("password-") + text.data();
  references().emplace(reference, password);
  return reference;
}

Secret givenPassword(std::string_view given) {
  const auto known = references().find(given);
  return known == references().end() ? Secret(given) : known->second;
}

void forgetPasswords() { references().clear(); }

}  // namespace workbench::data
