// A disk that fills up.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace support {

// While one lives, no file of the process grows beyond a size.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : earlierAction(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &earlier);
        rlimit limited = earlier;
        limited.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &earlier);
        std::signal(SIGXFSZ, earlierAction);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*earlierAction)(int);
    rlimit earlier{};
};

} // namespace support
