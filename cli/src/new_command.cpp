#include "new_command.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <sstream>

#include "exit_status.h"
#include "json_fields.h"
#include "new_night.h"
#include "result_file.h"

namespace TARN::Cli {

namespace {

struct NewOptions {
    Authoring::NewNight night;
    std::string file;  ///< empty: standard output
    bool isReplacing = false;
};

constexpr char kNewFooter[] =
    "A time is 06:30, 06:30:15 or 2026-03-02T06:30, the first such one from noon of the date on, or from\n"
    "--start. A stretch is 23:00-05:00 or 23:00+6h; what takes stretches can be named several times.\n"
    "Examples:\n"
    "  standby new -o mine.jsonl                        an ordinary night\n"
    "  standby new --alarm 06:30 --call 02:00 --charger 23:00-05:00 -o mine.jsonl\n"
    "  standby new --bed 00:30 --screen 22:10-22:25 --screen 03:10+2m --alarm none\n"
    "  standby new --charger 01:00-02:00 | standby replay -\n";

int RunNew(const NewOptions& options, OutputFile& output) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const int64_t nowMs = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    if (options.file.empty()) {
        Authoring::WriteNewNight(options.night, nowMs, output.Stream());
        return output.Finish();
    }
    std::ostringstream text;
    Authoring::WriteNewNight(options.night, nowMs, text);
    if (!options.isReplacing && std::filesystem::is_regular_file(options.file)) {
        DevStandbyMgr::Refuse(options.file, "is there already, perhaps with changes by hand", "a new name, or --force");
    }
    ResultFile file(options.file);
    file.Stream() << text.str();
    file.Finish();
    return kDone;
}

}  // namespace

void AddNew(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<NewOptions>();
    NewOptions& options = *shared;
    Authoring::NewNight& night = options.night;
    CLI::App& command = *app.add_subcommand("new", "Write a commented night to start from, as a trace");
    command.footer(kNewFooter);
    const auto add = [&command](const char* name, auto& target, const char* placeholder, const char* about) {
        return command.add_option(name, target, about)->type_name(placeholder);
    };
    const auto addStretches = [&add](const char* name, std::vector<std::string>& target, const char* about) {
        add(name, target, "STRETCH", about)->type_size(1)->allow_extra_args(false);
    };
    night.timezone = OwnZone();
    add("--date", night.date, "DATE", "The evening's date, such as 2026-03-01; else today");
    add("--timezone", night.timezone, "ZONE", "Europe/Berlin and the like; else that of the variable TZ, or UTC");
    add("--start", night.start, "TIME", "When the trace begins; else 21:00, or before what comes first");
    add("--end", night.end, "TIME", "When it ends; else half an hour after what comes last");
    CLI::Option* bed = add("--bed", night.bed, "TIME", "When the phone is laid down and the lamp goes out; else 23:00");
    add("--alarm", night.alarm, "TIME", "When the alarm rings, or none; else 07:00");
    addStretches("--screen", night.screen, "When somebody looks at the phone; else from the start until bed time");
    addStretches("--call", night.calls, "A call; of one that is a time only, ten minutes");
    addStretches("--charger", night.charger, "The charger is plugged in");
    addStretches("--airplane", night.airplane, "Airplane mode");
    addStretches("--headset", night.headset, "A headset is connected over Bluetooth");
    addStretches("--music", night.music, "Music plays");
    add("-o,--output", options.file, "FILE", "Where the trace goes; else to standard output");
    command.add_flag("--force", options.isReplacing, "Replace a file that is there");
    command.callback([shared, bed, &action] {
        shared->night.isBedGiven = bed->count() > 0;
        action = [shared](OutputFile& output) { return RunNew(*shared, output); };
    });
}

}  // namespace TARN::Cli
