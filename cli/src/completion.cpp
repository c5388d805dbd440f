#include "completion.h"

#include <sstream>

namespace TARN::Cli {

namespace {

/// A text as one word of a shell.
std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char sign : text) {
        quoted += sign == '\'' ? "'\\''" : std::string(1, sign);
    }
    return quoted + "'";
}

std::string Joined(const std::vector<std::string>& words) {
    return CLI::detail::join(words, " ");
}

/// What bash does for a value or an argument, as the end of a branch of a case.
std::string BashAction(const OptionFacts& facts) {
    switch (facts.kind) {
        case ValueKind::WORDS:
            return "words=" + Quoted(Joined(facts.words));
        case ValueKind::FILE:
            return "compopt -o default";
        case ValueKind::FOLDER:
            return "compopt -o dirnames";
        case ValueKind::NONE:
        case ValueKind::OTHER:
            break;
    }
    return ":";
}

std::string AllNames(const CommandFacts& command) {
    std::vector<std::string> names;
    for (const OptionFacts& option : command.options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return Joined(names);
}

/// The options of a command that take a value, each as a pattern of `command option`.
std::vector<std::pair<std::string, const OptionFacts*>> ValuePatterns(const CommandFacts& command) {
    std::vector<std::pair<std::string, const OptionFacts*>> patterns;
    for (const OptionFacts& option : command.options) {
        if (option.kind == ValueKind::NONE) {
            continue;
        }
        std::string pattern;
        for (const std::string& name : option.names) {
            pattern.append(pattern.empty() ? "" : " | ").append(Quoted(command.name + " " + name));
        }
        patterns.emplace_back(pattern, &option);
    }
    return patterns;
}

/// Escapes what parts the fields of a description for zsh.
std::string ZshField(const std::string& text) {
    std::string field;
    for (const char sign : text) {
        if (sign == ':' || sign == '[' || sign == ']' || sign == '\\') {
            field += '\\';
        }
        field += sign;
    }
    return field;
}

std::string ZshAction(const OptionFacts& facts) {
    switch (facts.kind) {
        case ValueKind::WORDS:
            return "(" + Joined(facts.words) + ")";
        case ValueKind::FILE:
            return "_files";
        case ValueKind::FOLDER:
            return "_files -/";
        case ValueKind::NONE:
        case ValueKind::OTHER:
            break;
    }
    return " ";
}

/// The words for zsh's _arguments, one a line.
void WriteZshOptions(const CommandFacts& command, const std::string& indent, std::ostream& script) {
    for (const OptionFacts& option : command.options) {
        for (const std::string& name : option.names) {
            std::vector<std::string> others = option.excluded;
            if (!option.isRepeated) {
                others.insert(others.end(), option.names.begin(), option.names.end());
            }
            std::string spec = others.empty() ? "" : "(" + Joined(others) + ")";
            spec.append(option.isRepeated ? "*" : "").append(name);
            if (option.kind != ValueKind::NONE) {
                spec.append(name.compare(0, 2, "--") == 0 ? "=" : "+");
            }
            spec.append("[" + ZshField(option.about) + "]");
            if (option.kind != ValueKind::NONE) {
                spec.append(":" + ZshField(option.placeholder) + ":" + ZshAction(option));
            }
            script << " \\\n" << indent << Quoted(spec);
        }
    }
    for (const OptionFacts& argument : command.arguments) {
        const char* place = argument.isRepeated ? "*:" : argument.isRequired ? ":" : "::";
        script << " \\\n" << indent << Quoted(place + ZshField(argument.names.front()) + ":" + ZshAction(argument));
    }
}

}  // namespace

std::string BashCompletion(const CommandFacts& program, const std::vector<CommandFacts>& commands) {
    std::ostringstream values;
    std::ostringstream arguments;
    std::string takesValue;
    std::string commandNames;
    for (const CommandFacts& command : commands) {
        commandNames.append(command.name + " ");
        for (const auto& [pattern, option] : ValuePatterns(command)) {
            takesValue.append(takesValue.empty() ? "" : " | ").append(pattern);
            values << "        " << pattern << ") " << BashAction(*option) << " ;;\n";
        }
        arguments << "        " << Quoted(command.name + " -") << "*) words=" << Quoted(AllNames(command)) << " ;;\n";
        for (size_t place = 0; place < command.arguments.size(); ++place) {
            const OptionFacts& argument = command.arguments[place];
            const std::string where = argument.isRepeated ? Quoted(command.name + " ") + "*"
                                                          : Quoted(command.name + " " + std::to_string(place));
            arguments << "        " << where << ") " << BashAction(argument) << " ;;\n";
        }
    }
    std::ostringstream script;
    script << "# Completes the words of " << program.name << " in bash.\n"
           << "_" << program.name << "() {\n"
           << "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
           << "    local command= place=0 words= i\n"
           << "    COMPREPLY=()\n"
           << "    # --option=value and 02:13 come as three words\n"
           << "    if [[ $word == : || $before == : ]]; then\n"
           << "        return\n"
           << "    elif [[ $word == = ]]; then\n"
           << "        word=\n"
           << "    elif [[ $before == = ]]; then\n"
           << "        before=${COMP_WORDS[COMP_CWORD - 2]}\n"
           << "    fi\n"
           << "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
           << "        case \"$command ${COMP_WORDS[i]}\" in\n"
           << "        " << takesValue << ")\n"
           << "            ((i++))\n"
           << "            if [[ ${COMP_WORDS[i]} == = ]]; then ((i++)); fi ;;\n"
           << "        *' :') ((i++)) ;;\n"
           << "        *' -'?*) ;;\n"
           << "        ' '*) command=${COMP_WORDS[i]} ;;\n"
           << "        *) ((place++)) ;;\n"
           << "        esac\n"
           << "    done\n"
           << "    case \"$command $before\" in\n"
           << values.str() << "    *)\n"
           << "        if [[ $word == -* ]]; then place=-; fi\n"
           << "        case \"$command $place\" in\n"
           << "        ' '*) words=" << Quoted(commandNames + AllNames(program)) << " ;;\n"
           << arguments.str() << "        esac ;;\n"
           << "    esac\n"
           << "    if [[ $words ]]; then mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\"); fi\n"
           << "}\n"
           << "complete -F _" << program.name << " " << program.name << "\n";
    return script.str();
}

std::string ZshCompletion(const CommandFacts& program, const std::vector<CommandFacts>& commands) {
    std::ostringstream script;
    script << "#compdef " << program.name << "\n\n"
           << "local context state state_descr line\n"
           << "typeset -A opt_args\n\n"
           << "_arguments -C";
    WriteZshOptions(program, "    ", script);
    script << " \\\n    '1:command:->command' \\\n    '*::argument:->arguments' && return\n\n"
           << "case $state in\n"
           << "command)\n"
           << "    local -a commands=(\n";
    for (const CommandFacts& command : commands) {
        script << "        " << Quoted(command.name + ":" + ZshField(command.about)) << '\n';
    }
    script << "    )\n"
           << "    _describe command commands ;;\n"
           << "arguments)\n"
           << "    case $line[1] in\n";
    for (const CommandFacts& command : commands) {
        script << "    " << command.name << ")\n        _arguments";
        WriteZshOptions(command, "            ", script);
        script << " ;;\n";
    }
    script << "    esac ;;\n"
           << "esac\n";
    return script.str();
}

}  // namespace TARN::Cli
