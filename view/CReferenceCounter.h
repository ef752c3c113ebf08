// The count that bitmaps, fonts and views share: one reference belongs to the one who constructed
// it, remember() takes another, and the last forget() deletes. Screen thread alone.
#pragma once

namespace ormund {

class CReferenceCounter {
public:
    CReferenceCounter() = default;
    CReferenceCounter(const CReferenceCounter&) = delete;
    CReferenceCounter& operator=(const CReferenceCounter&) = delete;
    virtual ~CReferenceCounter() = default;

    void remember() { ++references; }
    void forget()
    {
        if (--references == 0)
            delete this;
    }
    int getNbReference() const { return references; }

private:
    int references = 1;
};

// Holds one reference for as long as it lives.
template <typename T>
class CShared {
public:
    CShared() = default;
    explicit CShared(T* object) : held(object)
    {
        if (held)
            held->remember();
    }
    CShared(const CShared& other) : CShared(other.held) { }
    CShared& operator=(const CShared& other)
    {
        reset(other.held);
        return *this;
    }
    ~CShared() { reset(nullptr); }
    void reset(T* object)
    {
        if (object)
            object->remember();
        if (held)
            held->forget();
        held = object;
    }
    T* get() const { return held; }
    T* operator->() const { return held; }
    explicit operator bool() const { return held != nullptr; }

private:
    T* held = nullptr;
};

} // namespace ormund
