#include "inputs.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "exit_status.h"
#include "json_fields.h"
#include "standby_config.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Refuse;

constexpr char kStandardInput[] = "-";

Replay::Trace Read(const std::string& name) {
    if (name == kStandardInput) {
        return Replay::ReadTrace(std::cin, "standard input");
    }
    constexpr char kExpected[] = "a trace";
    if (std::error_code error; std::filesystem::is_directory(name, error)) {
        Refuse(name, "is a directory", kExpected);
    }
    errno = 0;
    std::ifstream file(name);
    if (!file.is_open()) {
        Refuse(name, std::strerror(errno), kExpected);
    }
    return Replay::ReadTrace(file, name);
}

}  // namespace

std::optional<std::vector<Replay::Trace>> ReadInputs(const std::vector<std::string>& names, const std::string& config,
                                                     Progress& progress) {
    std::vector<Replay::Trace> traces;
    traces.reserve(names.size());
    bool isRight = true;
    const auto complain = [&](const std::string& text) {
        progress.Erase();
        Complain(text);
        isRight = false;
    };
    std::optional<DevStandbyMgr::StandbyConfigFile> overrides;
    try {
        if (!config.empty()) {
            overrides.emplace(config);
        }
    } catch (const InputError& error) {
        complain(error.what());
    }
    if (std::count(names.begin(), names.end(), kStandardInput) > 1) {
        complain("- stands for standard input, which can be read once only");
        return std::nullopt;
    }
    for (size_t i = 0; i < names.size(); ++i) {
        progress.Show("reading", static_cast<double>(i) / static_cast<double>(names.size()));
        try {
            Replay::Trace trace = Read(names[i]);
            if (overrides) {
                overrides->LayOver(trace.host);
            }
            traces.push_back(std::move(trace));
        } catch (const InputError& error) {
            complain(error.what());
        }
    }
    return isRight ? std::optional(std::move(traces)) : std::nullopt;
}

}  // namespace TARN::Cli
