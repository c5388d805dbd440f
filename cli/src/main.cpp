#include <fstream>
#include <iostream>

#include "jsonl_writer.h"
#include "player.h"
#include "trace.h"

int main(int argc, char** argv) {
    std::ifstream f(argv[argc - 1]);
    const auto trace = TARN::Replay::ReadTrace(f, argv[argc - 1]);
    TARN::Replay::JsonlWriter w(std::cout);
    TARN::Replay::Play(trace, {argv[1], {}}, w);
}
