#include <csignal>

extern "C" bool OnPluginRegister() {
    return std::raise(SIGSEGV) != 0;
}
