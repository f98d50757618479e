// The library's one way to the operating system: commands, their output,
// files, the console, syslog, standard output and error, time and sleep.
// os_posix.cpp is the real side; tests link a fake side that records command
// lines and serves canned output and files.
#pragma once

#include <cstddef>
#include <ctime>

namespace caltofal::os {

// A readable or writable text stream: a command's output or a file.
struct Stream;

// Starts `/bin/sh -c command` with its standard output readable from the
// returned stream (popen(command, "r")); nullptr when it cannot be started.
Stream *openCommand(const char *command);

// Opens a file with an fopen mode ("r", "ab+", ...); close-on-exec.
Stream *openFile(const char *path, const char *mode);

// fgets: at most size-1 bytes up to and including a newline; nullptr at end.
char *readLine(Stream *stream, char *buf, int size);

// fread: up to n bytes; the count read.
std::size_t readBytes(Stream *stream, char *buf, std::size_t n);

// Closes a stream; for a command waits for it and returns its wait status
// (pclose), for a file fclose's result.
int close(Stream *stream);

// Runs `/bin/sh -c command` and waits: system()'s status (127 when the shell
// could not run the command, -1 when it could not be started).
int run(const char *command);

// access(path, F_OK) == 0.
bool exists(const char *path);

// Opens /dev/console read-write, writes, closes: close()'s result, or the
// negative descriptor when the console cannot be opened.
int consoleWrite(const char *data, std::size_t len);

// One syslog line at a priority (the text is not a format).
void syslogLine(int priority, const char *text);

// Standard output (flushed) and standard error.
void stdoutWrite(const char *data, std::size_t len);
void stderrWrite(const char *data, std::size_t len);

// gettimeofday + localtime_r; false when the conversion fails.
bool localNow(std::tm *out);

void sleepSeconds(unsigned seconds);

}  // namespace caltofal::os
