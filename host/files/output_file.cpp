#include "host/files/output_file.h"

#include "host/errors/errors.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <optional>
#include <string>
#include <system_error>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& file, const std::string& reason)
{
    throw WorkError{fmt::format("cannot write {}: {}", file.string(), reason)};
}

// code: what errno holds.
[[noreturn]] void fail(const fs::path& file, int code)
{
    fail(file, std::generic_category().message(code));
}

// Where the bytes end up: the end of a chain of links, whether there is a file or not.
fs::path finalPlace(const fs::path& file)
{
    constexpr int kMostLinks = 40; // as the system's own look-up
    fs::path place = file;
    std::error_code error;
    for (int i = 0; fs::is_symlink(place, error); ++i) {
        if (i == kMostLinks) fail(file, ELOOP);
        place = place.parent_path() / fs::read_symlink(place, error);
    }
    return place;
}

// Why no file can be made beside a place.
[[noreturn]] void failToCreate(const fs::path& file, const fs::path& place, int code)
{
    const fs::path folder = place.parent_path().empty() ? fs::path(".") : place.parent_path();
    std::error_code error;
    if (!fs::exists(folder, error)) fail(file, fmt::format("the folder {} does not exist", folder.string()));
    if (!fs::is_directory(folder, error)) fail(file, fmt::format("{} is not a folder", folder.string()));
    fail(file, code);
}

// A file that is open for writing. All failures name the file that was asked for.
class OpenFile {
public:
    OpenFile(const fs::path& file, int openDescriptor) : asked(file), descriptor(openDescriptor) {}
    ~OpenFile()
    {
        if (descriptor >= 0) ::close(descriptor);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    void write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR) fail(asked, errno);
            if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    void takeMode(mode_t mode)
    {
        if (::fchmod(descriptor, mode) != 0) fail(asked, errno);
    }
    // Some file systems tell only here that a write failed.
    void close()
    {
        const int closed = ::close(descriptor);
        descriptor = -1;
        if (closed != 0) fail(asked, errno);
    }

private:
    const fs::path& asked;
    int descriptor;
};

// A new file beside the final place, gone at the end unless it took that place's name.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& file)
        : asked(file), place(finalPlace(file)), stream(file, create())
    {
    }
    ~TemporaryFile()
    {
        if (!name.empty()) ::unlink(name.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void fill(std::string_view bytes, std::optional<mode_t> mode)
    {
        stream.write(bytes);
        if (mode) stream.takeMode(*mode);
        stream.close();
    }
    void moveIntoPlace()
    {
        if (::rename(name.c_str(), place.c_str()) != 0) fail(asked, errno);
        name.clear();
    }

private:
    int create()
    {
        static std::atomic<unsigned> count{0};
        while (true) {
            // Short, so that it is possible wherever the final name is.
            name = place.parent_path() / fmt::format(".ombrix-{}-{}.tmp", ::getpid(), count++);
            const int made = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (made >= 0) return made;
            const int code = errno;
            if (code == EEXIST) continue; // left by a process of the same number
            name.clear();
            failToCreate(asked, place, code);
        }
    }

    const fs::path& asked;
    fs::path place, name;
    OpenFile stream;
};

struct Target {
    bool isSpecial = false;          // a pipe, a device
    std::optional<mode_t> olderMode; // of a file that is to be replaced
};

Target examine(const fs::path& file)
{
    struct stat status {};
    Target target;
    if (::stat(file.c_str(), &status) != 0) return target;
    if (S_ISDIR(status.st_mode)) fail(file, "it is a folder");
    if (::access(file.c_str(), W_OK) != 0) fail(file, errno);
    target.isSpecial = !S_ISREG(status.st_mode);
    if (!target.isSpecial) target.olderMode = status.st_mode & 07777;
    return target;
}

void writeDirectly(const fs::path& file, std::string_view bytes)
{
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) fail(file, errno);
    OpenFile stream(file, descriptor);
    stream.write(bytes);
    stream.close();
}

} // namespace

void writeOutputFile(const fs::path& file, std::string_view bytes)
{
    const Target target = examine(file);
    if (target.isSpecial) {
        writeDirectly(file, bytes);
        return;
    }
    TemporaryFile temporary(file);
    temporary.fill(bytes, target.olderMode);
    temporary.moveIntoPlace();
}

void checkOutputFile(const fs::path& file)
{
    if (!examine(file).isSpecial) const TemporaryFile probe(file);
}

} // namespace ombrix
