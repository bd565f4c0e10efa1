#pragma once

#include <optional>
#include <string>
#include <vector>

/// Boxes and questions on the user's terminal; without one, the rule answers.
///
/// The rule: a notice is taken note of, a question gets its last button (the one that gives up, so that
/// nothing is tried for ever), a text its proposal, a choice none. It is told in one line on standard error.
///
/// Texts come from documents and font files too, so control characters are taken out before anything is
/// shown. Thread: main.
namespace Dialogs {

/// Whether the user can be asked: there is a terminal, and LOOM_TERMINAL_PROMPT isn't "0".
bool CanAsk();

/// A line on standard error, for what has to be said outside a box.
void Say(const std::string& sentence);

/// Shows a box without waiting.
void Notice(const std::string& header, const std::string& message);

/// Asks yes or no; an empty answer and the end of the input mean no.
bool Ask(const std::string& header, const std::string& message);

/// Asks for a line of text; an empty answer takes the proposal.
/// \return Nothing when the user cancels by ending the input.
std::optional<std::string> AskForText(const std::string& title, const std::string& prompt,
                                      const std::string& proposed);

struct Choice {
  /// True when the input has ended: the user wants no further question.
  bool isEnded = false;
  /// Counted from 0; nothing for an empty answer.
  std::optional<std::size_t> index;
};

/// Lets the user choose one of the options, by number.
/// \param prompt  Says what an empty answer does. Not to be called when CanAsk() is false.
Choice Choose(const std::string& title, const std::vector<std::string>& options, const std::string& prompt);

/// Shows a box with a list of names, of which a long one is cut.
void NoticeWithNames(const std::string& header, const std::string& message,
                     const std::vector<std::string>& names);

/// The text on one line without control characters.
std::string OnOneLine(const std::string& text);

}  // namespace Dialogs
