#include "import_command.h"

#include <array>
#include <memory>
#include <optional>

#include "exit_status.h"
#include "import.h"
#include "inputs.h"
#include "json_fields.h"
#include "plain_text.h"
#include "result_file.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Refuse;

enum class LogKind : uint8_t { CSV, BATTERY_HISTORY };

constexpr std::array kLogKinds = {Word<LogKind>{"csv", LogKind::CSV},
                                  Word<LogKind>{"batterystats", LogKind::BATTERY_HISTORY}};

struct ImportOptions {
    std::string log;
    LogKind kind = LogKind::CSV;
    std::string mapping;  ///< a file; empty for none
    std::string timezone;
    std::string start;  ///< empty: the log says it
    std::string file;   ///< empty: standard output
    bool isBare = false;
};

constexpr char kImportFooter[] =
    "What could not be translated is counted and named on standard error, and at the trace's end.\n"
    "Examples:\n"
    "  standby import --from csv night.csv -o night.jsonl          columns time and event, words such as screen on\n"
    "  standby import --from csv --mapping app.json night.csv      columns and words as app.json says\n"
    "  adb shell dumpsys batterystats | standby import --from batterystats --timezone Europe/Berlin -\n"
    "docs/import.md tells the mapping and what becomes what.\n";

std::string ReadMapping(const std::string& name) {
    constexpr size_t kMostBytes = size_t{1024} * 1024;
    Input input(name, "a mapping");
    std::string text = DevStandbyMgr::ReadWhole(input.Stream(), input.Name(), "a mapping", kMostBytes);
    input.Check();
    return text;
}

Authoring::Imported Import(const ImportOptions& options, Input& input, std::ostream& stream) {
    const Authoring::Source source{input.Stream(), input.Name(), options.timezone, options.isBare};
    if (const std::string_view first = input.FirstLine();
        first.starts_with("\xFF\xFE") || first.starts_with("\xFE\xFF")) {
        Refuse(input.Name(), "UTF-16 text", "UTF-8");
    }
    if (options.kind == LogKind::CSV) {
        const auto mapping = options.mapping.empty() ? std::nullopt : std::optional(ReadMapping(options.mapping));
        return Authoring::ImportCsv(source, mapping, options.mapping, stream);
    }
    const auto start = options.start.empty() ? std::nullopt : std::optional(options.start);
    return Authoring::ImportBatteryHistory(source, start, stream);
}

Authoring::Imported Import(const ImportOptions& options, std::ostream& stream) {
    Input input(options.log, "a log");
    try {
        auto imported = Import(options, input, stream);
        input.Check();
        return imported;
    } catch (const InputError&) {
        input.Check();  // what was cut off on the way is not the log's fault
        throw;
    }
}

int RunImport(const ImportOptions& options, OutputFile& output) {
    Authoring::Imported imported;
    int status = kDone;
    if (options.file.empty()) {
        imported = Import(options, output.Stream());
        status = output.Finish();
    } else {
        ResultFile file(options.file);
        imported = Import(options, file.Stream());
        file.Finish();
    }
    if (status == kDone && !imported.losses.IsEmpty()) {
        constexpr size_t kMostTold = 8;
        Complain((options.log == "-" ? "standard input" : options.log) +
                 ": not translated: " + imported.losses.Tell(kMostTold));
    }
    return status;
}

}  // namespace

void AddImport(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<ImportOptions>();
    ImportOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("import", "Write a log of another program as a trace");
    command.footer(kImportFooter);
    command.add_option("LOG", options.log, "The log, - for standard input")->type_name("")->required();
    AddChoice(command, "--from", "KIND", kLogKinds, options.kind,
              "csv (default), or batterystats, the text of Android's battery history");
    command.add_option("--mapping", options.mapping, "What columns and values of a CSV mean, JSON")->type_name("FILE");
    options.timezone = OwnZone();
    command.add_option("--timezone", options.timezone, "The phone's; else that of the variable TZ, or UTC")
        ->type_name("ZONE");
    command.add_option("--start", options.start, "The local time at which a battery history without TIME begins")
        ->type_name("TIME");
    command.add_flag("--bare", options.isBare, "Leave out the ordinary phone's configuration and applications");
    command.add_option("-o,--output", options.file, "Where the trace goes; else to standard output")->type_name("FILE");
    command.callback([shared, &action] {
        const bool isCsv = shared->kind == LogKind::CSV;
        if (isCsv ? !shared->start.empty() : !shared->mapping.empty()) {
            throw CLI::ValidationError(isCsv ? "--start" : "--mapping",
                                       isCsv ? "a CSV names its times" : "a battery history needs none");
        }
        action = [shared](OutputFile& output) { return RunImport(*shared, output); };
    });
}

}  // namespace TARN::Cli
