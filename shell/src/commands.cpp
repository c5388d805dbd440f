#include "commands.h"

#include <array>

namespace TARN::Shell {

std::span<const CommandGroup> CommandGroups() {
    static const std::array kGroups = {
        CommandGroup{"Time goes by", TimeCommands()}, CommandGroup{"What happens to the phone", PhoneCommands()},
        CommandGroup{"The state, by hand", StateCommands()}, CommandGroup{"Ask, keep, leave", AskingCommands()}};
    return kGroups;
}

const Command* FindCommand(std::string_view name) {
    for (const CommandGroup& group : CommandGroups()) {
        for (const Command& command : group.commands) {
            if (command.name == name) {
                return &command;
            }
        }
    }
    return nullptr;
}

std::string UsageOf(const Command& command) {
    std::string usage(command.name);
    return command.usage.empty() ? usage : usage.append(" ").append(command.usage);
}

}  // namespace TARN::Shell
