// OpenPGP messages that are encrypted to a password: what a protected data file is.
//
// Written with AES-256, the key derived from the password by many rounds, and integrity protected; any OpenPGP program
// opens them. Read in all ciphers, packings and forms that the library knows, but never without integrity protection:
// what was changed on the way would be compared as if it were the data.
#pragma once

#include <functional>
#include <string_view>

#include "workbench/data/files/input_file.h"
#include "workbench/data/files/memory_file.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

// Why no message can have such a password: it is empty, too long for OpenPGP programs, or holds a NUL byte. Nothing
// when it can.
Outcome<Done> checkPassword(const Secret& password);

// Decrypts a message into memory; its integrity was checked when this succeeds. The problem names no file and tells
// apart, as far as the format does: no message, a cut one, a wrong password, a damaged message.
Outcome<Done> decryptMessage(const InputFile& message, const Secret& password, MemoryFile& into);

// Encrypts all that stands in the memory. The message goes to the sink in parts; what that throws comes out of here.
// The problem names no file.
Outcome<Done> encryptMessage(const MemoryFile& from, const Secret& password,
                             const std::function<void(std::string_view)>& sink);

}  // namespace workbench::data
