// Keeps every text that is drawn while it lives and could not be read: too small, or of too little
// contrast with the ground that it is drawn on.
#pragma once

#include <string>
#include <vector>

namespace ormund {

class ReadableText {
public:
    static constexpr double kLeastSize = 9;
    static constexpr double kLeastContrast = 4.5;

    ReadableText();
    ~ReadableText();
    ReadableText(const ReadableText&) = delete;
    ReadableText& operator=(const ReadableText&) = delete;

    std::vector<std::string> complaints; // each once
    int texts = 0;
};

} // namespace ormund
