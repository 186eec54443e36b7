// Standard input, output and error, and files that are read as streams.
#ifndef TYPESCOUT_CLI_PLATFORM_STREAMS_H
#define TYPESCOUT_CLI_PLATFORM_STREAMS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace typescout::cli::platform {

enum class Stream { INPUT, OUTPUT, MESSAGES };

// Makes sure that no file which is opened later takes the place of a stream that was closed before
// the program was started. Such a stream cannot be read or written. To be called first.
void OccupyStandardStreams();

bool IsTerminal(Stream stream);
// Whether the stream is a regular file or the null device, whose output is usually read only after
// the program has ended.
bool IsFile(Stream stream);
// In columns; 80 where that is not known.
std::size_t TerminalWidth(Stream stream);

// Reads up to `capacity` bytes; 0 at the end or with `*error` set.
std::size_t ReadSome(std::intptr_t handle, char* to, std::size_t capacity, int* error);
// The same at an offset in a file that OpenForReading() opened, from several threads if need be;
// less than `capacity` only at the end of the file.
std::size_t ReadAt(std::intptr_t handle, std::uint64_t offset, char* to, std::size_t capacity,
                   int* error);
std::intptr_t OpenForReading(const std::string& path, int* error);
std::intptr_t StandardInput();
void CloseHandle(std::intptr_t handle);

// Writes all of it; returns the error otherwise. After an interrupt it waits for the reader for a
// second at most.
int WriteAll(Stream stream, std::string_view bytes);
bool IsClosedPipe(int error);

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_STREAMS_H
