// Looks for faults in the text of an OBJ file, line by line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ombrix {

struct ObjFault {
    std::size_t line = 0; // from 1; 0: there is no fault
    std::string text;
};

// The first line that cannot be taken as it stands: a position, normal or coordinate without its numbers, a
// face of fewer than three corners, a corner that is no index or refers to what the file does not have.
// Lines of other kinds pass.
ObjFault findObjFault(std::string_view text);

} // namespace ombrix
