// What ends work early. what() is one line for a person that names the place and what is wrong.
#pragma once

#include <stdexcept>

namespace ombrix {

// A file cannot be read or written, or memory is short.
class WorkError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A plug-in library cannot be loaded, or the host refuses it.
class LibraryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The call, or a file's contents, are wrong.
class WrongInput : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    // The errors stand on standard error already; what() is "".
    WrongInput() : std::runtime_error("") {}
};

// The reader of standard output has gone away, as in `nezaiva list | head`.
class ReaderGone : public std::runtime_error {
public:
    ReaderGone() : std::runtime_error("nobody reads standard output any more") {}
};

} // namespace ombrix
