// The dialog in which a page has the user decide.
#pragma once

#include "local/filedialogs.h"

namespace jsapi {

enum class ConfirmType { None, Info, Question, Warning, Error };
template <>
inline constexpr std::array<Choice<ConfirmType>, 5> ChoicesOf<ConfirmType> { {
    { ConfirmType::None, "none" },
    { ConfirmType::Info, "info" },
    { ConfirmType::Question, "question" },
    { ConfirmType::Warning, "warning" },
    { ConfirmType::Error, "error" },
} };

struct ConfirmOptions {
    std::string text;
    std::string title;
    std::string detail;
    std::vector<std::string> buttons;
    std::int32_t defaultButton = 0;
    ConfirmType type = ConfirmType::Question;
    static constexpr auto fields()
    {
        using Self = ConfirmOptions;
        return strictly(std::tuple(
            required("text", &Self::text, "the question; plain text, shown up to 2,000 characters"),
            optional("title", &Self::title, "the title of the dialog, shown up to 100 characters"),
            optional("detail", &Self::detail, "what else the user should know, below it, as long as `text`"),
            optional("buttons", &Self::buttons,
                "the buttons, 1 to 5 strings of at most 60 characters; `[\"OK\", \"Cancel\"]` if it is left out"),
            optional("defaultButton", &Self::defaultButton, "the index of the button for the Enter key"),
            optional("type", &Self::type, "the icon")));
    }
};

/// Returns the index of the button that the user clicked, -1 when the dialog was cancelled or could not be shown. Refuses
/// with WrongParameters. [GUI thread]
Answer<std::int32_t> askToConfirm(const JSContextEnv& page, const ConfirmOptions& options);

} // namespace jsapi
