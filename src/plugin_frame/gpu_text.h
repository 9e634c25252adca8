// What every getSource shares.
#pragma once

#include <cstring>

namespace nezaiva {

// The one kind of consumer that the library writes for.
inline bool isMaterialDescriptor(const char* descriptor)
{
    return descriptor && std::strcmp(descriptor, "MaterialDescriptor") == 0;
}

} // namespace nezaiva
