#pragma once

#include <sys/stat.h>

#include <cerrno>
#include <string>
#include <string_view>

// Reading and writing whole files. Everything here raises CannotRun with the option that names the
// file, the file and the reason.

/// The name that stands for standard input or standard error where an option allows it.
constexpr std::string_view kStandardStream = "-";

/// How messages name a file: the option, if there is one, and the path.
std::string nameOf(const char* option, const std::string& strPath);

/// All bytes of a regular file, or of standard input. A pipe or a device is refused, for it could
/// be waited for without end; one that is a standard stream (/dev/stdin) is read all the same.
std::string readFile(const char* option, const std::string& strPath);
std::string readStandardInput();

/// Makes sure that the three standard streams exist. One that the caller closed fails when it is
/// used, where otherwise the next file opened would take its place.
void keepStandardStreams();

void writeStandardOutput(std::string_view strText);
void writeStandardError(std::string_view strText);

// What these and OutputFile share. `strName` is what the message begins with.

/// Raises CannotRun with the reason, or with what the system says of an error number.
[[noreturn]] void cannotUse(const std::string& strName, const std::string& strReason);
[[noreturn]] void fail(const std::string& strName, int error = errno);

void writeAll(int descriptor, std::string_view strText, const std::string& strName);

/// Whether this is what one of the program's standard streams leads to.
bool isStandardStream(const struct stat& status);
