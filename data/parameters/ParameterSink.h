// The single entry point of every value: host, editor, controllers, and the stages that move
// parameters.
#pragma once

namespace ormund {

class ParameterSink {
public:
    // `tag` 0 to 585, others are ignored; `value` 0 to 1. Any thread; never blocks.
    virtual void setParameter(int tag, float value) = 0;

protected:
    ~ParameterSink() = default;
};

} // namespace ormund
