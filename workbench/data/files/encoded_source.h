// Sources of text in another encoding than UTF-8, as UTF-8.
//
// Conversion is strict: a byte that the encoding has not ends it with a problem that names the byte and its offset.
// Nothing is guessed: UTF-16 and UTF-32 have to begin with a byte order mark unless their names say the order of bytes.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "workbench/data/files/byte_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Why the name is that of no encoding, as the end of a sentence; nothing when it is one. The empty name means UTF-8.
std::optional<std::string> encodingProblem(const std::string& encoding);

// Whether the name, which is that of an encoding, is one of UTF-8, which needs no conversion.
bool isUtf8(const std::string& encoding);

// The bytes as UTF-8; the source itself when they are UTF-8 already. Fails for a name that is not known.
Outcome<std::unique_ptr<ByteSource>> asUtf8(std::unique_ptr<ByteSource> source, const std::string& encoding);

}  // namespace workbench::data
