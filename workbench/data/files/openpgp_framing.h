// Whether an OpenPGP message goes on to where its own lengths say that it ends.
//
// The library that decrypts messages says of one that is damaged and of one whose end is missing the same. The lengths
// stand outside what is encrypted, so they tell without the password.
#pragma once

#include "workbench/data/files/input_file.h"

namespace workbench::data {

// False for one that is sound and for one that has no such lengths, or not where they should be.
bool isCutOff(const InputFile& message);

}  // namespace workbench::data
