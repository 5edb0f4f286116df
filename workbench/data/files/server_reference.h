// References to tables of a database server: "postgresql://anna@host/study#schema.table".
//
// A password in a reference is hidden as soon as it comes into the process: stars take its place in the words of the
// command line and in the text of a job. Only who connects to the server is given it back, so that it is in nothing
// that is shown, kept or handed to a procedure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workbench/runtime/secret.h"

namespace workbench::data {

inline constexpr std::string_view postgresBeginnings[] = {"postgresql://", "postgres://"};

// Whether it begins as a reference to a server that is known.
bool isServerReference(std::string_view path);

// Where the sign stands that parts the table's name; npos: none is named. Requires: it is such a reference.
std::size_t tableSignOf(std::string_view reference);

// The word, with the passwords of a reference in it hidden and kept; other words as they are. What is hidden already
// stays as it is. May be called on any thread.
std::string withHiddenPasswords(std::string_view word);
// The same for all references in the text of a job, in quotes or not.
Secret jobWithHiddenPasswords(const Secret& job);

// The reference for who connects: without its table, hidden passwords in their places again.
Secret uriOf(std::string_view reference);
// The password that stands before the server's name, as it is meant; nothing where none stands there. Who finds another
// one in the same place reads the reference in another way than is hidden here.
std::optional<std::string> passwordBeforeServer(std::string_view reference);

}  // namespace workbench::data
