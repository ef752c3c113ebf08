// Messages for the user. A message is kept until it is forgotten, and further ones are dropped
// while it is, so that a fault which repeats shows one message. Any thread but the audio thread.
#pragma once

#include <string>

namespace ormund {

inline constexpr int kMessageBytes = 8192; // with the terminating zero; longer texts are cut

// Formats and keeps the text, whether an editor is open or not: a plug-in prints nothing into its
// host's output.
void showMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));

// An open editor shows the messages. Calls count.
void addMessageViewer();
void removeMessageViewer();

bool hasMessage();
// The kept text; empty for none.
std::string currentMessage();
// Rises with each message kept, so that a viewer sees a new one.
unsigned messageNumber();
void forgetMessage();

} // namespace ormund
