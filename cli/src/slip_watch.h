#ifndef CLI_SLIP_WATCH_H
#define CLI_SLIP_WATCH_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "inputs.h"
#include "slips.h"
#include "standby_config.h"

namespace TARN::Cli {

/// Warns of slips in what is read: one line each, each kind once a file.
class SlipWatch {
public:
    /// `tell` takes the lines.
    SlipWatch(bool isStrict, std::function<void(const std::string& line)> tell);

    /// Looks through a trace, or through a configuration by itself, from the file `name`. Throws InputError for one
    /// with a slip where that is an error.
    void Look(const Replay::Trace& trace);
    void Look(const DevStandbyMgr::StandbyConfig& config, const std::string& name);

    /// Reads a trace and looks through it on the way. Throws InputError for one that cannot be read, too.
    [[nodiscard]] PlayableTrace Read(const std::string& name);

    /// How many kinds were told.
    [[nodiscard]] size_t Count() const noexcept { return count_; }

private:
    void Tell(const std::vector<Checks::Slip>& slips, const std::string& name);

    bool isStrict_;
    std::function<void(const std::string& line)> tell_;
    size_t count_ = 0;
};

using ConfigFile = std::optional<DevStandbyMgr::StandbyConfigFile>;

/// The configuration of a file, looked through for slips; nothing where the name is empty. Throws InputError.
[[nodiscard]] ConfigFile ReadConfig(const std::string& name, SlipWatch& slips);

}  // namespace TARN::Cli

#endif  // CLI_SLIP_WATCH_H
