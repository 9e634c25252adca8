// A process locale whose decimal point is a comma, for tests of text that must not follow it.
#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

// While it lives the process is in such a locale: an installed one, or one that is compiled on the spot.
class CommaLocale {
public:
    CommaLocale() : before(std::setlocale(LC_ALL, nullptr))
    {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"})
            if (use(name)) return;
        compiled = std::filesystem::temp_directory_path() / ("comma_locale_" + std::to_string(::getpid()));
        std::error_code error;
        std::filesystem::create_directories(compiled, error);
        const std::string command =
            "localedef -c -i de_DE -f UTF-8 '" + (compiled / "de_DE.UTF-8").string() + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) < 0) return;
        ::setenv("LOCPATH", compiled.c_str(), 1);
        use("de_DE.UTF-8");
    }
    ~CommaLocale()
    {
        std::setlocale(LC_ALL, before.c_str());
        if (compiled.empty()) return;
        ::unsetenv("LOCPATH");
        std::error_code error;
        std::filesystem::remove_all(compiled, error);
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    // False on a machine that neither has such a locale nor can compile one.
    bool available() const { return active; }

private:
    bool use(const char* name)
    {
        active = std::setlocale(LC_ALL, name) && std::string(std::localeconv()->decimal_point) == ",";
        return active;
    }

    std::string before;
    std::filesystem::path compiled;
    bool active = false;
};
