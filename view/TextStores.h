#pragma once

namespace ormund {

// What is kept of drawn and of measured texts, for all frames of the process: the last reference
// frees it. Screen thread alone.
class TextStores {
public:
    TextStores();
    ~TextStores();
    TextStores(const TextStores&) = delete;
    TextStores& operator=(const TextStores&) = delete;
};

} // namespace ormund
