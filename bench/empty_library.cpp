#include <string>

/// Something of the C++ library, so that the linker has to find it.
extern "C" std::string* Nothing() {
    return new std::string("a library that does nothing at all");
}
