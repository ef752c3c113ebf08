// Acting once at a change: a cell that remembers the value it saw last.
#pragma once

namespace ormund {

template <typename T>
class LastSeen {
public:
    LastSeen() = default;
    explicit LastSeen(T start) : seen(start) { }
    // True when `value` differs from the one of the last call; remembers it.
    bool changed(T value)
    {
        if (value == seen)
            return false;
        seen = value;
        return true;
    }
    // True on a change from 0 or below to above 0.
    bool rose(T value)
    {
        const bool edge = value > T{} && !(seen > T{});
        seen = value;
        return edge;
    }
    T value() const { return seen; }
    void set(T value) { seen = value; }
    friend bool operator==(const LastSeen&, const LastSeen&) = default;

private:
    T seen{};
};

} // namespace ormund
