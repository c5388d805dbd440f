#ifndef SHELL_ARGUMENTS_H
#define SHELL_ARGUMENTS_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace TARN::Shell {

/// What follows a command's name, taken word by word. What cannot be used throws InputError.
class Arguments {
public:
    /// `usage` is the whole command as it should be, for messages.
    Arguments(std::string_view text, std::string usage);

    /// The next word; nothing at the end.
    std::optional<std::string> MaybeWord();

    /// The next word, which must be there.
    std::string Word();

    /// The place among `words` of the next word, which must be one of them.
    size_t Choice(std::initializer_list<std::string_view> words);

    /// The next word as JSON, which must be a number, an integer.
    std::string Number();
    std::string Integer();

    /// All that is left, with single blanks at its ends cut off; empty at the end.
    std::string Rest();

    /// The same as JSON; `absent` where nothing is left.
    std::string Json(const std::string& absent);

    /// Nothing may be left.
    void End();

    /// Refuses the command as a whole.
    [[noreturn]] void Misused(const std::string& what) const;

private:
    std::string_view rest_;
    std::string usage_;
};

/// Up to the next blank; both it and the blanks behind are taken off `text`.
[[nodiscard]] std::string_view TakeWord(std::string_view& text);

}  // namespace TARN::Shell

#endif  // SHELL_ARGUMENTS_H
