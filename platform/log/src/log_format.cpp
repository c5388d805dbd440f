#include "log_format.h"

#include <string>

#include "device.h"

namespace TARN {

namespace {

void Append(std::string& text, LogDetail::Conversion conversion, const LogArgument& argument) {
    switch (conversion) {
        case LogDetail::Conversion::INT:
            text += std::to_string(static_cast<int32_t>(argument.Integer()));
            break;
        case LogDetail::Conversion::UNSIGNED:
            text += std::to_string(static_cast<uint32_t>(argument.Integer()));
            break;
        case LogDetail::Conversion::LONG:
            text += std::to_string(static_cast<int64_t>(argument.Integer()));
            break;
        case LogDetail::Conversion::UNSIGNED_LONG:
            text += std::to_string(argument.Integer());
            break;
        case LogDetail::Conversion::REAL:
            text += std::to_string(argument.Real());  // six decimals, as %f
            break;
        case LogDetail::Conversion::TEXT:
            text += argument.Text();
            break;
        default:
            break;
    }
}

}  // namespace

std::atomic<LogLevel> Log::leastLevel_ = LogLevel::NONE;

void Log::Write(const LogSite& site, std::string_view format, std::span<const LogArgument> arguments) {
    std::string text;
    text.reserve(format.size());
    std::string_view plain;
    for (const LogArgument& argument : arguments) {
        const LogDetail::Conversion conversion = LogDetail::NextConversion(format, plain);
        text += plain;
        Append(text, conversion, argument);
    }
    text += format;
    Device::Current().Log().Write({site.level, site.domain, site.tag, site.file, site.function, site.line, text});
}

}  // namespace TARN
