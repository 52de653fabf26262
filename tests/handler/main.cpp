// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <fstream>
#include <string>

#include <limits.h>
#include <unistd.h>

// Writes "$PW_RECORDS/<process id>": NUL-terminated fields, first the arguments, then what else a test asks
// for.
int main(int argc, char **argv)
{
    const char *const folder = std::getenv("PW_RECORDS");
    if (!folder)
        return 1;
    std::ofstream record(std::string(folder) + '/' + std::to_string(::getpid()), std::ios::binary);
    for (int i = 0; i < argc; ++i)
        record << "argument=" << argv[i] << '\0';
    char text[PATH_MAX];
    if (::getcwd(text, sizeof text))
        record << "folder=" << text << '\0';
    const ssize_t length = ::readlink("/proc/self/fd/1", text, sizeof text);
    if (length > 0)
        record << "output=" << std::string(text, size_t(length)) << '\0';
    record << "ownSession=" << (::getsid(0) != ::getsid(::getppid()) ? "yes" : "no") << '\0';
    for (char **variable = environ; *variable; ++variable)
        record << *variable << '\0';
    return record.good() ? 0 : 1;
}
