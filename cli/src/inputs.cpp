#include "inputs.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "json_fields.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Refuse;

constexpr char kStandardInput[] = "-";

/// Opens a file for reading. Throws InputError when it cannot be opened.
std::ifstream Open(const std::string& name, const char* expected) {
    if (std::error_code error; std::filesystem::is_directory(name, error)) {
        Refuse(name, "is a directory", expected);
    }
    errno = 0;
    std::ifstream file(name);
    if (!file.is_open()) {
        Refuse(name, std::strerror(errno), expected);
    }
    return file;
}

/// A host configuration that is laid over what a trace says. Read once, so that it may come from a pipe.
class ConfigFile {
public:
    explicit ConfigFile(const std::string& name) : name_(name) {
        std::ostringstream text;
        text << Open(name, "a JSON file").rdbuf();
        object_ = nlohmann::json::parse(text.str(), nullptr, /*allow_exceptions=*/false, /*ignore_comments=*/true);
        if (object_.is_discarded()) {
            Refuse(name, "not JSON", "one object");
        }
        DevStandbyMgr::StandbyConfig tried;
        LayOver(tried);
    }

    void LayOver(DevStandbyMgr::StandbyConfig& host) const {
        try {
            host.Merge(object_, {}, /*withPolicy=*/true);
        } catch (const InputError& error) {
            throw InputError(name_ + ": " + error.what());
        }
    }

private:
    std::string name_;
    nlohmann::json object_;
};

Replay::Trace Read(const std::string& name) {
    if (name == kStandardInput) {
        return Replay::ReadTrace(std::cin, "standard input");
    }
    std::ifstream file = Open(name, "a trace");
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
    std::optional<ConfigFile> overrides;
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
