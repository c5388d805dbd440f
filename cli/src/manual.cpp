#include "manual.h"

#include <cctype>
#include <filesystem>
#include <sstream>

#include "command_facts.h"
#include "completion.h"
#include "player.h"
#include "result_file.h"

namespace TARN::Cli {

namespace {

constexpr char kExamples[] = "Examples:";
constexpr char kExitStatus[] = "Exit status:";

/// A text in which nothing is a request to the formatter, and each sign comes out as it stands here.
std::string Roff(const std::string& text) {
    std::string escaped = text.find_first_of(".'") == 0 ? "\\&" : "";
    for (const char sign : text) {
        switch (sign) {
            case '\\':
                escaped += "\\e";
                break;
            case '-':
                escaped += "\\-";
                break;
            case '\'':
                escaped += "\\(aq";
                break;
            case '`':
                escaped += "\\(ga";
                break;
            case '^':
                escaped += "\\(ha";
                break;
            case '~':
                escaped += "\\(ti";
                break;
            default:
                escaped += sign;
        }
    }
    return escaped;
}

std::string Bold(const std::string& text) {
    return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(const std::string& text) {
    return "\\fI" + Roff(text) + "\\fR";
}

bool IsIndented(const std::string& line) {
    return line.front() == ' ';
}

bool StartsWith(const std::string& line, const std::string& start) {
    return line.compare(0, start.size(), start) == 0;
}

/// The text of a footer, by the sections of a page.
struct Footer {
    std::vector<std::string> description;
    std::vector<std::string> examples;
    std::vector<std::string> exitStatus;

    explicit Footer(const std::string& text) {
        std::vector<std::string>* section = &description;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (StartsWith(line, kExamples)) {
                section = &examples;
                continue;
            }
            if (StartsWith(line, kExitStatus)) {
                section = &exitStatus;
                line.erase(0, line.find_first_not_of(' ', sizeof(kExitStatus) - 1));
            } else if (section == &examples && !line.empty() && !IsIndented(line)) {
                section = &description;
            }
            if (!line.empty()) {
                section->push_back(line);
            }
        }
    }
};

/// The lines of a footer: prose, and indented what is typed or given back, with two spaces before what it means.
void WriteLines(const std::vector<std::string>& lines, std::ostream& page) {
    enum class Kind : uint8_t { NONE, PROSE, TYPED } before = Kind::NONE;
    for (const std::string& line : lines) {
        const std::string text = line.substr(line.find_first_not_of(' '));
        const size_t gap = text.find("  ");
        const Kind kind = IsIndented(line) ? Kind::TYPED : Kind::PROSE;
        if (kind == Kind::TYPED && gap != std::string::npos) {
            page << ".TP\n"
                 << Bold(text.substr(0, gap)) << '\n'
                 << Roff(text.substr(text.find_first_not_of(' ', gap))) << '\n';
        } else {
            const bool isGoingOn = before == Kind::NONE || (before == Kind::PROSE && kind == Kind::PROSE);
            page << (isGoingOn ? "" : ".PP\n") << (kind == Kind::TYPED ? Bold(text) : Roff(text)) << '\n';
        }
        before = kind;
    }
}

void WriteSection(const char* heading, const std::vector<std::string>& lines, std::ostream& page) {
    if (!lines.empty()) {
        page << ".SH " << heading << '\n';
        WriteLines(lines, page);
    }
}

std::string WithDots(const OptionFacts& argument) {
    return Italic(argument.names.front()) + (argument.isRepeated ? "..." : "");
}

std::string Term(const OptionFacts& option) {
    std::string term;
    for (const std::string& name : option.names) {
        term.append(term.empty() ? "" : ", ").append(Bold(name));
    }
    return option.placeholder.empty() ? term : term + " " + Italic(option.placeholder);
}

void WriteOptions(const CommandFacts& command, std::ostream& page) {
    const auto tell = [&page](const std::string& term, const OptionFacts& facts) {
        page << ".TP\n" << term << '\n' << Roff(facts.about) << (facts.isRequired ? " (required)" : "") << ".\n";
        if (!facts.limits.empty()) {
            page << Italic(facts.placeholder) << ": " << Roff(facts.limits) << ".\n";
        }
        for (const std::string& other : facts.excluded) {
            page << "Not with " << Bold(other) << ".\n";
        }
    };
    page << ".SH OPTIONS\n";
    for (const OptionFacts& argument : command.arguments) {
        tell(WithDots(argument), argument);
    }
    for (const OptionFacts& option : command.options) {
        tell(Term(option), option);
    }
}

std::string Synopsis(const CommandFacts& command, const std::string& call) {
    std::string synopsis = Bold(call) + " [" + Italic("OPTION") + "]...";
    for (const OptionFacts& option : command.options) {
        synopsis.append(option.isRequired ? " " + Term(option) : "");
    }
    for (const OptionFacts& argument : command.arguments) {
        synopsis.append(argument.isRequired ? " " + WithDots(argument) : " [" + WithDots(argument) + "]");
    }
    return synopsis;
}

/// The head of a page, up to its description.
void WriteHead(const std::string& name, const CommandFacts& command, const std::string& synopsis, std::ostream& page) {
    std::string title = name;
    for (char& letter : title) {
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    page << ".TH " << Roff(title) << " 1 \"\" \"standby " STANDBY_VERSION "\" \"User Commands\"\n"
         << ".SH NAME\n"
         << name << " \\- " << Roff(command.about) << '\n'
         << ".SH SYNOPSIS\n"
         << synopsis << '\n';
}

void WriteDescription(const CommandFacts& command, const Footer& footer, std::ostream& page) {
    page << ".SH DESCRIPTION\n" << Roff(command.about) << ".\n";
    if (!footer.description.empty()) {
        page << ".PP\n";
        WriteLines(footer.description, page);
    }
}

void WriteSeeAlso(const std::string& name, const std::vector<std::string>& names, std::ostream& page) {
    page << ".SH SEE ALSO\n";
    const char* before = "";
    for (const std::string& other : names) {
        if (other != name) {
            page << before << Bold(other) << "(1)";
            before = ",\n";
        }
    }
    page << '\n';
}

std::string PageName(const std::string& program, const CommandFacts& command) {
    return program + "-" + command.name;
}

std::string ProgramPage(const CommandFacts& program, const std::vector<CommandFacts>& commands,
                        const std::vector<std::string>& names) {
    std::ostringstream page;
    const Footer footer(program.footer);
    WriteHead(
        program.name, program,
        Bold(program.name) + ' ' + Italic("COMMAND") + " [" + Italic("OPTION") + "]... [" + Italic("ARGUMENT") + "]...",
        page);
    WriteDescription(program, footer, page);
    page << ".SH COMMANDS\n";
    for (const CommandFacts& command : commands) {
        page << ".TP\n" << Bold(PageName(program.name, command)) << "(1)\n" << Roff(command.about) << ".\n";
    }
    WriteOptions(program, page);
    WriteSection("EXAMPLES", footer.examples, page);
    WriteSection("EXIT STATUS", footer.exitStatus, page);
    WriteSeeAlso(program.name, names, page);
    return page.str();
}

/// A command that says nothing of its own about these has the examples of the program that call it, and the program's
/// exit statuses.
std::string CommandPage(const CommandFacts& program, const CommandFacts& command,
                        const std::vector<std::string>& names) {
    std::ostringstream page;
    const std::string call = program.name + " " + command.name;
    Footer footer(command.footer);
    const Footer common(program.footer);
    for (const std::string& line : footer.examples.empty() ? common.examples : std::vector<std::string>()) {
        if (StartsWith(line.substr(line.find_first_not_of(' ')), call + " ")) {
            footer.examples.push_back(line);
        }
    }
    for (const std::string& line : footer.exitStatus.empty() ? common.exitStatus : std::vector<std::string>()) {
        if (IsIndented(line)) {
            footer.exitStatus.push_back(line);
        }
    }
    WriteHead(PageName(program.name, command), command, Synopsis(command, call), page);
    WriteDescription(command, footer, page);
    WriteOptions(command, page);
    WriteSection("EXAMPLES", footer.examples, page);
    WriteSection("EXIT STATUS", footer.exitStatus, page);
    WriteSeeAlso(PageName(program.name, command), names, page);
    return page.str();
}

}  // namespace

std::vector<ManualFile> MakeManual(CLI::App& app) {
    const CommandFacts program = FactsOf(app);
    const std::vector<CommandFacts> commands = CommandsOf(app);
    std::vector<std::string> names{program.name};
    for (const CommandFacts& command : commands) {
        names.push_back(PageName(program.name, command));
    }
    const auto path = [](const std::string& name) { return "man/man1/" + name + ".1"; };
    std::vector<ManualFile> files{{path(program.name), ProgramPage(program, commands, names)}};
    for (const CommandFacts& command : commands) {
        files.push_back({path(PageName(program.name, command)), CommandPage(program, command, names)});
    }
    files.push_back({"bash-completion/completions/" + program.name, BashCompletion(program, commands)});
    files.push_back({"zsh/site-functions/_" + program.name, ZshCompletion(program, commands)});
    return files;
}

void WriteManual(const std::vector<ManualFile>& files, const std::string& folder) {
    for (const ManualFile& file : files) {
        const std::filesystem::path path = std::filesystem::path(folder) / file.path;
        std::error_code error;
        std::filesystem::create_directories(path.parent_path(), error);
        if (error) {
            throw Replay::RunError(path.parent_path().string() + ": " + error.message());
        }
        ResultFile result(path.string());
        result.Stream() << file.text;
        result.Finish();
    }
}

}  // namespace TARN::Cli
