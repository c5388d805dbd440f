#include "line_editor.h"

#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace TARN::Cli {

namespace {

constexpr int kKeptLines = 1000;

/// What all of `words` begin with; there is one at least.
std::string CommonBeginning(const std::vector<std::string>& words) {
    std::string common = words.front();
    for (const std::string& word : words) {
        const auto differ = std::mismatch(common.begin(), common.end(), word.begin(), word.end());
        common.erase(differ.first, common.end());
    }
    return common;
}

/// Below the line that is edited, in columns.
void Show(const std::vector<std::string>& words, size_t width) {
    size_t column = 2;
    for (const std::string& word : words) {
        column = std::max(column, word.size() + 2);
    }
    const size_t inLine = std::max<size_t>(width / column, 1);
    std::string text = "\n";
    for (size_t i = 0; i < words.size(); ++i) {
        const bool isLast = i + 1 == words.size() || (i + 1) % inLine == 0;
        text += words[i] + (isLast ? "\n" : std::string(column - words[i].size(), ' '));
    }
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

}  // namespace

struct LineEditor::Parts {
    Parts(std::string file, Completer complete)
        : historyFile(std::move(file)),
          completer(std::move(complete)),
          history(history_init()),
          editor(el_init("standby", stdin, stdout, stderr)) {
        if (history == nullptr || editor == nullptr) {
            Free();
            throw std::runtime_error("cannot edit lines on this terminal");
        }
    }
    ~Parts() { Free(); }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    void Free() {
        if (editor != nullptr) {
            el_end(editor);
        }
        if (history != nullptr) {
            history_end(history);
        }
    }

    static Parts& Of(EditLine* editor) {
        Parts* parts = nullptr;
        el_get(editor, EL_CLIENTDATA, &parts);
        return *parts;
    }

    static const char* Prompt(EditLine* editor) { return Of(editor).prompt.c_str(); }

    static unsigned char Complete(EditLine* editor, int /*key*/) { return Of(editor).CompleteWord(); }

    /// Gives the line up: it stays on the screen, and the next one begins below.
    static unsigned char GiveUp(EditLine* editor, int /*key*/) {
        Parts& parts = Of(editor);
        const LineInfo* line = el_line(editor);
        el_cursor(editor, static_cast<int>(line->lastchar - line->cursor));
        el_insertstr(editor, "^C");
        el_push(editor, "\n");
        parts.isGivenUp = true;
        return CC_REFRESH;
    }

    static unsigned char Suspend(EditLine* /*editor*/, int /*key*/) {
        std::raise(SIGTSTP);  // the editor gives the terminal back and takes it again
        return CC_REDISPLAY;
    }

    unsigned char CompleteWord() {
        const LineInfo* line = el_line(editor);
        const std::string text(line->buffer, line->cursor);
        const std::vector<std::string> words = completer(text);
        if (words.empty()) {
            return CC_REFRESH_BEEP;
        }
        const std::string begun = text.substr(text.find_last_of(" \t") + 1);
        const std::string common = CommonBeginning(words) + (words.size() == 1 ? " " : "");
        if (common.size() > begun.size()) {
            return el_insertstr(editor, common.c_str() + begun.size()) == 0 ? CC_REFRESH : CC_REFRESH_BEEP;
        }
        constexpr int kUsualWidth = 80;
        int width = kUsualWidth;
        el_get(editor, EL_GETTC, "co", &width);
        Show(words, static_cast<size_t>(std::max(width, 1)));
        return CC_REDISPLAY;
    }

    void Load() {
        HistEvent event{};
        ::history(history, &event, H_SETSIZE, kKeptLines);
        ::history(history, &event, H_SETUNIQUE, 1);
        if (!historyFile.empty()) {
            ::history(history, &event, H_LOAD, historyFile.c_str());
        }
    }

    void Keep(const std::string& line) {
        HistEvent event{};
        ::history(history, &event, H_ENTER, line.c_str());
    }

    void Save() {
        if (historyFile.empty()) {
            return;
        }
        std::error_code error;
        std::filesystem::create_directories(std::filesystem::path(historyFile).parent_path(), error);
        HistEvent event{};
        ::history(history, &event, H_SAVE, historyFile.c_str());  // a history that cannot be kept is no loss to tell of
    }

    std::string historyFile;
    Completer completer;
    std::string prompt;
    bool isGivenUp = false;
    History* history;
    EditLine* editor;
};

LineEditor::LineEditor(std::string historyFile, Completer completer) {
    std::setlocale(LC_CTYPE, "");  // so that a letter of several bytes is one
    my_ = std::make_unique<Parts>(std::move(historyFile), std::move(completer));
    EditLine* editor = my_->editor;
    el_set(editor, EL_CLIENTDATA, my_.get());
    el_set(editor, EL_PROMPT, Parts::Prompt);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_HIST, ::history, my_->history);
    el_set(editor, EL_SIGNAL, 1);
    el_set(editor, EL_ADDFN, "complete", "Complete a word", Parts::Complete);
    el_set(editor, EL_BIND, "^I", "complete", nullptr);
    el_set(editor, EL_ADDFN, "give-up", "Give the line up", Parts::GiveUp);
    el_set(editor, EL_BIND, "^C", "give-up", nullptr);
    el_set(editor, EL_ADDFN, "suspend", "Stop the program", Parts::Suspend);
    el_set(editor, EL_BIND, "^Z", "suspend", nullptr);
    el_set(editor, EL_SETTY, "-d", "-isig", nullptr);  // while a line is edited, both are keys and not signals
    el_source(editor, nullptr);                        // the person's own keys, ~/.editrc
    my_->Load();
}

LineEditor::~LineEditor() {
    my_->Save();
}

std::optional<std::string> LineEditor::Read(const std::string& prompt) {
    my_->prompt = prompt;
    my_->isGivenUp = false;
    int length = 0;
    const char* text = el_gets(my_->editor, &length);
    if (text == nullptr || length <= 0) {
        return std::nullopt;
    }
    std::string line(text, static_cast<size_t>(length));
    line.erase(line.find_last_not_of("\r\n \t") + 1);
    if (my_->isGivenUp) {
        return std::string();
    }
    if (!line.empty()) {
        my_->Keep(line);
    }
    return line;
}

}  // namespace TARN::Cli
