#include "command_facts.h"

#include <algorithm>

namespace TARN::Cli {

namespace {

constexpr char kWords[] = "words";
constexpr char kBetweenWords = ' ';

std::vector<std::string> WordsOf(CLI::Option& option) {
    try {
        CLI::Validator words = *option.get_validator(kWords);
        return CLI::detail::split(words.active().get_description(), kBetweenWords);
    } catch (const CLI::OptionNotFound&) {
        return {};
    }
}

ValueKind KindOf(const OptionFacts& facts, bool isArgument) {
    const auto says = [&facts](const char* word) { return facts.placeholder.find(word) != std::string::npos; };
    if (!facts.words.empty()) {
        return ValueKind::WORDS;
    }
    if (says("FOLDER") || says("DIR")) {
        return ValueKind::FOLDER;
    }
    return isArgument || says("FILE") ? ValueKind::FILE : ValueKind::OTHER;
}

OptionFacts FactsOf(CLI::Option& option) {
    OptionFacts facts;
    facts.about = option.get_description();
    facts.words = WordsOf(option);
    facts.isRequired = option.get_required();
    facts.isRepeated = option.get_items_expected_max() > 1;
    for (const CLI::Option* other : option.get_excludes()) {
        facts.excluded.push_back(other->get_name());
    }
    if (option.get_positional()) {
        facts.names = {option.get_name(true)};
        facts.kind = KindOf(facts, true);
        return facts;
    }
    facts.names = CLI::detail::split(option.get_name(false, true), ',');
    if (option.get_items_expected_max() > 0) {
        const std::string type = option.get_type_name();
        const size_t colon = type.find(':');
        facts.placeholder = type.substr(0, colon);
        facts.limits = colon == std::string::npos ? "" : type.substr(colon + 1);
        facts.kind = KindOf(facts, false);
    }
    return facts;
}

void AddOptions(CLI::App& app, CommandFacts& facts) {
    for (CLI::Option* option : app.get_options([](const CLI::Option* one) { return !one->get_group().empty(); })) {
        (option->get_positional() ? facts.arguments : facts.options).push_back(FactsOf(*option));
    }
    for (CLI::App* group : app.get_subcommands([](const CLI::App* one) { return one->get_name().empty(); })) {
        AddOptions(*group, facts);
    }
}

}  // namespace

void NameWords(CLI::Option& option, const std::vector<std::string>& words) {
    // One that is never asked: it has a place for a text that the help leaves alone.
    option.check(CLI::Validator(CLI::detail::join(words, std::string(1, kBetweenWords))).name(kWords).active(false));
}

CommandFacts FactsOf(CLI::App& command) {
    CommandFacts facts;
    facts.name = command.get_name();
    facts.about = command.get_description();
    std::replace(facts.about.begin(), facts.about.end(), '\n', ' ');
    facts.about.erase(facts.about.find_last_not_of(" .") + 1);
    facts.footer = command.get_footer();
    AddOptions(command, facts);
    return facts;
}

std::vector<CommandFacts> CommandsOf(CLI::App& app) {
    std::vector<CommandFacts> commands;
    const auto isCommand = [](const CLI::App* one) { return !one->get_name().empty() && !one->get_group().empty(); };
    for (CLI::App* command : app.get_subcommands(isCommand)) {
        commands.push_back(FactsOf(*command));
    }
    return commands;
}

}  // namespace TARN::Cli
