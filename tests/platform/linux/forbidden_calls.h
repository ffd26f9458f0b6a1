/// Calls of the system that a confined program may not make, each by its name.
#pragma once

#include <map>
#include <string>

namespace zelvo::tests {

/// Makes a call and answers as it did: below zero when it was refused, with `errno` set. Empty when there is no such
/// name here.
using ForbiddenCallTable = std::map<std::string, long (*)()>;

[[nodiscard]] const ForbiddenCallTable& forbiddenCalls();

/// How much memory this process gets before there is no more, in MiB; it stops at `most`.
[[nodiscard]] long takeMemory(long most);

}  // namespace zelvo::tests
